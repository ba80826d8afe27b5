"""A print server of a test's own: on a socket in a directory of its own, with queues that keep what they print.
And a printer of a test's own, which such a queue reaches by IPP.

Nothing of the machine's own printing is read or changed; they need no network, no daemon of the machine and no root.
Run as a program it starts a server, prints its directory and its process id in a line, and ends it when the standard
input closes: so it goes together with the test that started it, however that one ends.
"""

import contextlib
import grp
import os
import pathlib
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time

import messagebus

PATIENCE = 20.0  # seconds that the server may take to start

# What the server runs to print: keeps the document and what came with it, complete once the name is there.
BACKEND = """#!/bin/sh
[ $# -gt 0 ] || exit 0
to="{prints}/$1"
cat -- ${{6:+"$6"}} > "$to.part" || exit 1
printf '%s\\n' "$PRINTER" "$4" "$3" "$5" > "$to.txt"
mv "$to.part" "$to.pdf"
"""

# What the printer runs to print: keeps the document and the attributes of its job, complete once the name is there.
COMMAND = """#!/bin/sh
to="{prints}/$IPP_JOB_ID"
cp -- "$1" "$to.part" || exit 1
env | grep '^IPP_' > "$to.txt"
mv "$to.part" "$to.pdf"
"""

# A printer that takes PDF, prints grey unless told otherwise and has two papers.
DESCRIPTION = """*PPD-Adobe: "4.3"
*FormatVersion: "4.3"
*FileVersion: "1.0"
*LanguageVersion: English
*LanguageEncoding: ISOLatin1
*PCFileName: "KEEPER.PPD"
*Manufacturer: "Tests"
*Product: "(Keeper)"
*ModelName: "Keeper"
*ShortNickName: "Keeper"
*NickName: "Keeper, 1.0"
*PSVersion: "(3010) 0"
*LanguageLevel: "3"
*ColorDevice: True
*DefaultColorSpace: RGB
*FileSystem: False
*Throughput: "1"
*TTRasterizer: Type42
*cupsVersion: 2.4
*cupsFilter: "application/pdf 0 -"
*OpenUI *PageSize: PickOne
*OrderDependency: 10 AnySetup *PageSize
*DefaultPageSize: {paper}
*PageSize A4/A4: "<</PageSize[595 842]>>setpagedevice"
*PageSize Letter/Letter: "<</PageSize[612 792]>>setpagedevice"
*CloseUI: *PageSize
*OpenUI *PageRegion: PickOne
*OrderDependency: 10 AnySetup *PageRegion
*DefaultPageRegion: {paper}
*PageRegion A4/A4: "<</PageSize[595 842]>>setpagedevice"
*PageRegion Letter/Letter: "<</PageSize[612 792]>>setpagedevice"
*CloseUI: *PageRegion
*DefaultImageableArea: {paper}
*ImageableArea A4/A4: "9 9 586 833"
*ImageableArea Letter/Letter: "9 9 603 783"
*DefaultPaperDimension: {paper}
*PaperDimension A4/A4: "595 842"
*PaperDimension Letter/Letter: "612 792"
*OpenUI *ColorModel/Color: PickOne
*OrderDependency: 10 AnySetup *ColorModel
*DefaultColorModel: Gray
*ColorModel Gray/Grey: "<</cupsColorSpace 18>>setpagedevice"
*ColorModel RGB/Color: "<</cupsColorSpace 19>>setpagedevice"
*CloseUI: *ColorModel
*OpenUI *Resolution/Resolution: PickOne
*OrderDependency: 10 AnySetup *Resolution
*DefaultResolution: 600dpi
*Resolution 150dpi/150: "<</HWResolution[150 150]>>setpagedevice"
*Resolution 200dpi/200: "<</HWResolution[200 200]>>setpagedevice"
*Resolution 600dpi/600: "<</HWResolution[600 600]>>setpagedevice"
*CloseUI: *Resolution
*DefaultFont: Courier
*Font Courier: Standard "(1.05)" Standard ROM
"""

SERVER = """Listen {socket}
LogLevel debug
Browsing Off
WebInterface No
DefaultAuthType None
PreserveJobHistory No
PreserveJobFiles No
JobRetryInterval 1
<Location />
  Order deny,allow
  Allow all
</Location>
<Policy default>
  <Limit All>
    Order deny,allow
  </Limit>
</Policy>
"""

FILES = """ServerRoot {home}/etc
ServerBin {home}/bin
DataDir {home}/share
DocumentRoot {home}/share
RequestRoot {home}/spool
TempDir {home}/spool/tmp
CacheDir {home}/cache
StateDir {home}/state
AccessLog {home}/access.log
ErrorLog {home}/error.log
PageLog {home}/page.log
SystemGroup {own}
Group {other}
FileDevice Yes
Sandboxing relaxed
SyncOnClose No
"""


def tool(name):
    """A program that may lie where an ordinary user does not look."""
    path = shutil.which(name, path=os.environ["PATH"] + ":/usr/local/sbin:/usr/sbin:/sbin")
    if not path:
        raise FileNotFoundError("there is no " + name)
    return path


def end(process):
    """Ends what was started here, also when it is stopped."""
    if process and process.poll() is None:
        process.terminate()
        process.send_signal(signal.SIGCONT)
        try:
            process.wait(timeout=5)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()


def printed(folder):
    """The PDF files in a folder that a printer keeps them in, in the order of their jobs; each is complete."""
    return sorted(folder.glob("*.pdf"), key=lambda path: int(path.stem))


class Furnished:
    """A directory of its own and the programs that run in it. Subclasses furnish, start and close it."""

    def __init__(self, prefix):
        self.home = pathlib.Path(tempfile.mkdtemp(prefix=prefix))
        self.prints = self.home / "prints"
        self.process = None
        try:
            self._furnish()
            self._start()
        except BaseException:
            self.close()
            raise


class PrintServer(Furnished):
    """Runs until close()."""

    def __init__(self):
        super().__init__("quorvia-print-")

    @property
    def socket(self):
        return self.home / "socket"

    def _furnish(self):
        for name in ("etc/ppd", "bin/backend", "bin/filter", "share/mime", "spool/tmp", "cache", "state", "prints"):
            (self.home / name).mkdir(parents=True)
        # Its own choice of parts, so that the machine's filters make no difference.
        for name in ("daemon", "monitor", "notifier"):
            if os.path.isdir("/usr/lib/cups/" + name):
                os.symlink("/usr/lib/cups/" + name, self.home / "bin" / name)
        os.symlink("/usr/share/cups/mime/mime.types", self.home / "share" / "mime" / "mime.types")
        # PDF goes to a printer as it is.
        (self.home / "share" / "mime" / "own.convs").write_text("application/pdf application/vnd.cups-pdf 0 -\n")
        backend = self.home / "bin" / "backend" / "keep"
        backend.write_text(BACKEND.format(prints=self.prints))
        # The server's own user is to run it: another one does not reach this directory.
        backend.chmod(0o700)
        shutil.copyfile("/usr/lib/cups/backend/ipp", backend.with_name("ipp"))
        backend.with_name("ipp").chmod(0o700)
        for paper in ("A4", "Letter"):
            self.description(paper).write_text(DESCRIPTION.format(paper=paper))
        own = grp.getgrgid(os.getgid()).gr_name
        (self.home / "etc" / "cupsd.conf").write_text(SERVER.format(socket=self.socket))
        (self.home / "etc" / "cups-files.conf").write_text(
            FILES.format(home=self.home, own=own, other="lp" if own != "lp" else "nogroup"))

    def _start(self):
        # A copy: the machine may confine the program of that path to the machine's own files.
        program = self.home / "cupsd"
        shutil.copy(tool("cupsd"), program)
        with open(self.home / "output", "wb") as output:
            self.process = subprocess.Popen(
                [program, "-f", "-c", self.home / "etc" / "cupsd.conf", "-s", self.home / "etc" / "cups-files.conf"],
                stdin=subprocess.DEVNULL, stdout=output, stderr=output, env={"PATH": os.environ["PATH"]})
        finish = time.monotonic() + PATIENCE
        while "scheduler is running" not in self.ask("lpstat", "-r"):
            if self.process.poll() is not None or time.monotonic() > finish:
                said = [path.read_text() for path in (self.home / "output", self.home / "error.log") if path.exists()]
                raise RuntimeError("the print server did not start: " + "".join(said))
            time.sleep(0.03)

    def close(self):
        """Ends the server and removes all that it kept."""
        self.vanish()
        shutil.rmtree(self.home, ignore_errors=True)

    def vanish(self):
        """Ends the server at once; what it kept stays until close()."""
        end(self.process)

    def environment(self):
        """What leads a program to this server, and away from the machine's own choices."""
        return {"CUPS_SERVER": str(self.socket), "CUPS_SERVERROOT": str(self.home / "etc")}

    def ask(self, name, *arguments):
        """What one of the server's tools prints; its errors do not matter."""
        with contextlib.suppress(subprocess.TimeoutExpired):
            return subprocess.run([tool(name), *map(str, arguments)], text=True, check=False, timeout=PATIENCE,
                                  env={**os.environ, **self.environment(), "LC_ALL": "C"},
                                  stdout=subprocess.PIPE, stderr=subprocess.STDOUT).stdout
        return ""

    def description(self, paper):
        """The file that describes a printer with A4 or Letter in it."""
        return self.home / "etc" / (paper + ".ppd")

    def add_queue(self, name, paper="A4"):
        """A queue that accepts jobs and prints at once, to files."""
        said = self.ask("lpadmin", "-p", name, "-v", "keep:/", "-P", self.description(paper), "-E")
        if name not in self.ask("lpstat", "-e").split():
            raise RuntimeError("no queue: " + said)

    def add_ipp_queue(self, name, device):
        """A queue that accepts jobs and hands them to the printer at that address, which it asks what it can; A4."""
        said = self.ask("lpadmin", "-p", name, "-v", device, "-m", "everywhere", "-E")
        description = self.home / "etc" / "ppd" / (name + ".ppd")
        finish = time.monotonic() + PATIENCE
        while not description.exists():  # the server asks the printer after it has answered
            if time.monotonic() > finish:
                raise RuntimeError("no queue: " + said)
            time.sleep(0.03)
        self.ask("lpadmin", "-p", name, "-o", "PageSize=A4")

    def documents(self):
        """The PDF files that were printed to files, in that order; each is complete."""
        return printed(self.prints)

    @staticmethod
    def ticket(document):
        """What came with it: the queue, how many copies, the title, the options."""
        queue, copies, title, options = document.with_suffix(".txt").read_text().splitlines()
        return queue, int(copies), title, options.split(" ")

    @staticmethod
    def page(document, dots=72):
        """The printed page as a PNG file, with so many dots to the inch."""
        target = document.with_suffix("")
        subprocess.run(["pdftoppm", "-png", "-singlefile", "-r", str(dots), str(document), str(target)], check=True,
                       timeout=60)
        return target.with_suffix(".png")


class IppPrinter(Furnished):
    """Takes PDF by IPP on the loopback until close(). It has no paper: it keeps the documents."""

    def __init__(self):
        self.bus = None
        super().__init__("quorvia-printer-")

    def _furnish(self):
        for name in ("prints", "spool"):
            (self.home / name).mkdir()
        # The printer wants a bus, even when it is told to announce nothing there.
        (self.home / "bus.conf").write_text(messagebus.CONFIGURATION.format(socket=self.home / "bus"))
        command = self.home / "command"
        command.write_text(COMMAND.format(prints=self.prints))
        command.chmod(0o700)

    def _start(self):
        self.bus = subprocess.Popen(
            [tool("dbus-daemon"), "--config-file=%s" % (self.home / "bus.conf"), "--nofork", "--print-address"],
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        with self.bus.stdout as answer:
            bus = answer.readline().strip()
        with socket.socket() as free:
            free.bind(("127.0.0.1", 0))
            self.port = free.getsockname()[1]
        self.device = "ipp://localhost:%d/ipp/print" % self.port
        with open(self.home / "output", "wb") as output:
            self.process = subprocess.Popen(
                [tool("ippeveprinter"), "-r", "off", "-n", "localhost", "-p", str(self.port), "-f", "application/pdf",
                 "-s", "10,10", "-d", self.home / "spool", "-c", self.home / "command", "-v", "Loopback"],
                stdin=subprocess.DEVNULL, stdout=output, stderr=output,
                env={"PATH": os.environ["PATH"], "HOME": str(self.home), "DBUS_SYSTEM_BUS_ADDRESS": bus})
        finish = time.monotonic() + PATIENCE
        while not self.answers():
            if self.process.poll() is not None or time.monotonic() > finish:
                raise RuntimeError("the printer did not start: " + (self.home / "output").read_text())
            time.sleep(0.03)

    def answers(self):
        """Whether it tells of itself when it is asked."""
        return subprocess.run([tool("ipptool"), "-q", self.device, "get-printer-attributes.test"], check=False,
                              timeout=PATIENCE, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode == 0

    def vanish(self):
        """Ends it at once; what it got is kept until close()."""
        end(self.process)
        end(self.bus)

    def close(self):
        """Ends it and removes all that it kept."""
        self.vanish()
        shutil.rmtree(self.home, ignore_errors=True)

    def documents(self):
        """The PDF files that it got, in that order; each is complete."""
        return printed(self.prints)

    @staticmethod
    def ticket(document):
        """The attributes of its job by their names there: JOB_NAME, COPIES, ..."""
        lines = document.with_suffix(".txt").read_text().splitlines()
        return dict(line[len("IPP_"):].split("=", 1) for line in lines)


def main():
    # Whoever started this may be asked to end together with it: it then still ends the server first.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    signal.signal(signal.SIGINT, lambda *_: sys.exit(1))
    server = PrintServer()
    try:
        print("%s %d" % (server.home, server.process.pid), flush=True)
        sys.stdin.read()
    finally:
        server.close()


if __name__ == "__main__":
    main()

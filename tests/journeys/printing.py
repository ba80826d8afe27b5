"""A print server of a test's own: on a socket in a directory of its own, with queues that keep what they print.

Nothing of the machine's own printing is read or changed; it needs no network, no other daemon and no root. Run as a
program it starts one, prints its directory and its process id in a line, and ends it when the standard input closes: so
it goes together with the test that started it, however that one ends.
"""

import contextlib
import grp
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import tempfile
import time

PATIENCE = 20.0  # seconds that the server may take to start

# What the server runs to print: keeps the document and what came with it, complete once the name is there.
BACKEND = """#!/bin/sh
[ $# -gt 0 ] || exit 0
to="{prints}/$1"
cat -- ${{6:+"$6"}} > "$to.part" || exit 1
printf '%s\\n' "$PRINTER" "$4" "$3" "$5" > "$to.txt"
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


class PrintServer:
    """Runs until close()."""

    def __init__(self):
        self.home = pathlib.Path(tempfile.mkdtemp(prefix="quorvia-print-"))
        self.socket = self.home / "socket"
        self.prints = self.home / "prints"
        self.process = None
        try:
            self._furnish()
            self._start()
        except BaseException:
            self.close()
            raise

    def _furnish(self):
        for name in ("etc/ppd", "bin/backend", "bin/filter", "share/mime", "spool/tmp", "cache", "state", "prints"):
            (self.home / name).mkdir(parents=True)
        # Its own choice of parts, so that the machine's filters make no difference.
        for name in ("daemon", "monitor", "notifier"):
            if os.path.isdir("/usr/lib/cups/" + name):
                os.symlink("/usr/lib/cups/" + name, self.home / "bin" / name)
        os.symlink("/usr/share/cups/mime/mime.types", self.home / "share" / "mime" / "mime.types")
        backend = self.home / "bin" / "backend" / "keep"
        backend.write_text(BACKEND.format(prints=self.prints))
        backend.chmod(0o700)  # so that it is run by the server's own user
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
        end = time.monotonic() + PATIENCE
        while "scheduler is running" not in self.ask("lpstat", "-r"):
            if self.process.poll() is not None or time.monotonic() > end:
                said = [path.read_text() for path in (self.home / "output", self.home / "error.log") if path.exists()]
                raise RuntimeError("the print server did not start: " + "".join(said))
            time.sleep(0.03)

    def close(self):
        """Ends the server and removes all that it kept."""
        if self.process and self.process.poll() is None:
            self.process.terminate()
            self.process.send_signal(signal.SIGCONT)  # it may be stopped
            try:
                self.process.wait(timeout=5)
            except subprocess.TimeoutExpired:
                self.process.kill()
                self.process.wait()
        shutil.rmtree(self.home, ignore_errors=True)

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
        """A queue that accepts jobs and prints at once."""
        said = self.ask("lpadmin", "-p", name, "-v", "keep:/", "-P", self.description(paper), "-E")
        if name not in self.ask("lpstat", "-e").split():
            raise RuntimeError("no queue: " + said)

    def documents(self):
        """The PDF files that were printed, in that order; each is complete."""
        return sorted(self.prints.glob("*.pdf"), key=lambda path: int(path.stem))

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

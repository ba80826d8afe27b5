"""Drives the built program in an X server of its own: a fresh home, a window manager, real keys and mouse.

Everything that a journey starts is ended by its process id. Waits have a bound and say what they waited for.
"""

import os
import pathlib
import pwd
import shutil
import signal
import sqlite3
import subprocess
import tempfile
import time
import unittest

PROGRAM = os.environ["QUORVIA_PROGRAM"]
SHOTS = os.environ.get("QUORVIA_SHOTS")  # where the screens of failed journeys go
SCREEN = (1280, 800)
CHROME = (0, 121, 191)  # behind tabs and toolbar
PATIENCE = 20.0  # seconds that a condition may take; none of them does on a machine at rest


def wait_until(condition, what, patience=PATIENCE):
    """Waits until `condition` gives something true and returns that; fails with `what` otherwise."""
    end = time.monotonic() + patience
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() > end:
            raise AssertionError("waited in vain for " + what)
        time.sleep(0.03)


class Journey(unittest.TestCase):
    """One X server and one home a test."""

    def setUp(self):
        self.home = pathlib.Path(tempfile.mkdtemp(prefix="quorvia-journey-"))
        self.addCleanup(shutil.rmtree, self.home, ignore_errors=True)
        (self.home / "run").mkdir(mode=0o700)
        self.root = self.home / "root"
        self.pictures = self.home / "pictures"
        self.pictures.mkdir()
        self.environment = {
            "PATH": os.environ["PATH"],
            "LC_ALL": "C.UTF-8",
            "HOME": str(self.home),
            "XDG_CONFIG_HOME": str(self.home / "config"),
            "XDG_DATA_HOME": str(self.home / "data"),
            "XDG_STATE_HOME": str(self.home / "state"),
            "XDG_CACHE_HOME": str(self.home / "cache"),
            "XDG_RUNTIME_DIR": str(self.home / "run"),
            "QUORVIA_ROOT": str(self.root),
            "HALVEXA_MACHINE_STORE": str(self.home / "machine" / "machine.db"),
        }
        self._start_display()

    def tearDown(self):
        failed = any(error for _, error in self._outcome.errors) if hasattr(self._outcome, "errors") else \
            self._outcome.result.failures or self._outcome.result.errors
        if SHOTS and failed:
            os.makedirs(SHOTS, exist_ok=True)
            self.output("import", "-silent", "-window", "root", os.path.join(SHOTS, self.id() + ".png"))

    def _start_display(self):
        reader, writer = os.pipe()
        server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writer), "-screen", "0", "%dx%dx24" % SCREEN, "-nolisten", "tcp"],
            pass_fds=[writer], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(self._end, server)
        os.close(writer)
        with os.fdopen(reader) as answer:
            self.environment["DISPLAY"] = ":" + answer.readline().strip()
        # It swallows windows that come while it starts, and tells by a command of ours when it has.
        ready = self.home / "manager-is-ready"
        manager = subprocess.Popen(["openbox", "--sm-disable", "--startup", "touch %s" % ready],
                                   env=self.environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(self._end, manager)
        wait_until(ready.exists, "the window manager")

    @staticmethod
    def _end(process):
        if process.poll() is None:
            process.terminate()
            try:
                process.wait(timeout=5)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()

    # --- other programs

    def output(self, *command):
        """What a command prints, in the journey's environment; its errors do not matter."""
        return subprocess.run(command, env=self.environment, text=True, check=False, timeout=PATIENCE,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout

    def make(self, *command):
        """Runs a tool that makes a fixture; it must succeed."""
        subprocess.run([str(word) for word in command], env=self.environment, check=True, timeout=60)

    def picture(self, name, colour, size="640x480"):
        """A picture of one colour in the pictures folder."""
        path = self.pictures / name
        self.make("convert", "-size", size, "xc:" + colour, path)
        return path

    def run_in_the_display(self, program, case):
        """Runs one case of a test program in the journey's X server; it must pass."""
        done = subprocess.run([program, case], env={**self.environment, "QT_QPA_PLATFORM": "xcb"}, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=60, check=False)
        self.assertEqual(done.returncode, 0, done.stdout)
        self.assertRegex(done.stdout, r"PASS   : \w+::%s\(\)" % case)

    # --- the program

    def start(self, *arguments, wait=True, **environment):
        """Starts the program; with `wait` until its load step has ended."""
        process = subprocess.Popen([PROGRAM, *map(str, arguments)], env={**self.environment, **environment},
                                   cwd=self.home, user=self.user, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        self.addCleanup(process.stdout.close)
        self.addCleanup(self._end, process)
        if wait:
            before = self.finishes
            wait_until(lambda: self.log_text().count("Finish: Form_Load: frmImageView") > before
                       or process.poll() is not None, "the end of the load step")
            self.assertIsNone(process.poll(), "the program ended while it loaded")
            self.finishes += 1
        return process

    finishes = 0
    user = None  # of the programs started from now on; None: the journey's own

    def become_nobody(self):
        """The programs that start from now on run as an ordinary user, who owns the home."""
        if os.getuid() != 0:
            return
        nobody = pwd.getpwnam("nobody").pw_uid
        for path in [self.home, *self.home.rglob("*")]:
            os.chown(path, nobody, -1, follow_symlinks=False)
        self.user = nobody

    def ended(self, process, status=0):
        """Waits for the program's end and checks its exit status."""
        wait_until(lambda: process.poll() is not None, "the program's end")
        self.assertEqual(process.returncode, status)

    def window(self, name="Quorvia v"):
        """The id of the visible window whose title begins with `name`."""
        return wait_until(lambda: self.windows(name), "a window named " + name)[0]

    def windows(self, name="Quorvia v"):
        return self.output("xdotool", "search", "--onlyvisible", "--name", "^" + name).split()

    def geometry(self, window):
        """Left, top (of the window inside its frame), width, height in pixels of the screen."""
        facts = dict(line.strip().split(":", 1) for line in
                     self.output("xwininfo", "-id", window).splitlines() if ":" in line)
        return tuple(int(facts[name]) for name in
                     ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height"))

    def resize(self, window, width, height):
        self.output("xdotool", "windowsize", window, str(width), str(height))
        wait_until(lambda: self.geometry(window)[2:] == (width, height), "the size %d x %d" % (width, height))

    def move(self, window, left, top):
        before = self.geometry(window)
        self.output("xdotool", "windowmove", window, str(left), str(top))
        wait_until(lambda: self.geometry(window) != before, "the window to move")

    def key(self, *keys):
        """Presses keys one after the other, slower than the debounces."""
        for key in keys:
            self.output("xdotool", "key", key)
            time.sleep(0.25)

    def open(self, *arguments):
        process = self.start(*arguments)
        window = self.window()
        self.focus(window)
        self.built(window)
        return process, window

    def focus(self, window):
        def active():
            self.output("xdotool", "windowactivate", window)
            # The manager says so first, and gives the keyboard over a moment later.
            return (self.output("xdotool", "getactivewindow").strip() == window and
                    self.output("xdotool", "getwindowfocus", "-f").strip() == window)
        wait_until(active, "the focus")

    def click(self, x, y):
        self.output("xdotool", "mousemove", str(x), str(y), "click", "1")

    def at(self, window, place):
        left, top, _, _ = self.geometry(window)
        return left + place[0], top + place[1]

    def press(self, window, place, button="1"):
        x, y = self.at(window, place)
        self.output("xdotool", "mousemove", str(x), str(y), "click", button)

    def menu(self, window, *keys):
        """Opens the context menu in the middle of the window and walks it by keys."""
        x, y = self.centre(window)
        before = self.top_windows()
        self.output("xdotool", "mousemove", str(x), str(y), "click", "3")
        wait_until(lambda: self.top_windows() > before, "the menu")
        for key in keys:
            self.key(key)

    def choose(self, window, place, *keys, button="1"):
        """Opens a menu by the mouse and walks it by keys."""
        before = self.top_windows()
        self.press(window, place, button)
        wait_until(lambda: self.top_windows() > before, "the menu")
        self.key(*keys)

    def answer(self, title, text):
        """Types into the dialog of that title and ends it by Enter."""
        dialog = self.window(title)
        self.focus(dialog)
        self.output("xdotool", "key", "ctrl+a")
        self.output("xdotool", "type", "--delay", "4", str(text))
        self.key("Return")
        wait_until(lambda: not self.windows(title), "the end of the dialog " + title)

    def top_windows(self):
        return len(self.output("xdotool", "search", "--onlyvisible", "--class", "quorvia").split())

    def built(self, window):
        """Waits for the toolbar, which comes a moment after the window, to a place that was kept for it."""
        left, top, width, height = self.geometry(window)
        middle, row = left + width // 2, top + height - 20

        def drawn():
            pixel = self.screen()
            return pixel(middle, top + height - 4) == CHROME and \
                any(pixel(x, row) != CHROME for x in range(middle - 60, middle + 60))
        wait_until(drawn, "the toolbar")

    def close_by_frame(self, window):
        """A click on the close button of the window's frame."""
        left, top, width, _ = self.geometry(window)
        self.click(left + width - 10, top - 10)

    # --- what it leaves behind

    def screen(self):
        """The screen as a function from x, y to (red, green, blue)."""
        data = self.screen_bytes()

        def pixel(x, y):
            at = (y * SCREEN[0] + x) * 3
            return tuple(data[at:at + 3])
        return pixel

    def screen_bytes(self):
        """The screen's rows, three bytes a pixel."""
        return subprocess.run(["import", "-silent", "-window", "root", "-depth", "8", "rgb:-"],
                              env=self.environment, check=True, timeout=PATIENCE, stdout=subprocess.PIPE).stdout

    def pixel(self, x, y):
        return self.screen()(x, y)

    def centre(self, window):
        left, top, width, height = self.geometry(window)
        return left + width // 2, top + height // 2

    def shows(self, window, colour, what=None):
        """Waits until the middle of the window has the colour (red, green, blue)."""
        x, y = self.centre(window)
        wait_until(lambda: self.pixel(x, y) == colour,
                   what or "the colour %s in the middle of the window, which has %s" % (colour, self.pixel(x, y)))

    def log_path(self):
        return self.home / "state" / "quorvia" / "qolog.log"

    def log_text(self):
        return self.log_path().read_text() if self.log_path().exists() else ""

    def log_lines(self):
        """The log's texts without date and time."""
        return [line[len("mm-dd-yyyy - hh:mm:ss"):] for line in self.log_text().splitlines()]

    def setting(self, name, section="Settings"):
        return self.stored(self.home / "config" / "halvexa" / "user.db", "Software\\Halvexa\\Quorvia\\" + section, name)

    def store_number(self, name, value):
        """Stores a number beside the other settings; the program must have run once, and not run now."""
        with sqlite3.connect(self.home / "config" / "halvexa" / "user.db") as store:  # as an opened image was counted
            store.execute("INSERT OR REPLACE INTO settings (key, name, type, value) SELECT key, ?, type, ? "
                          "FROM settings WHERE name = 'ImageOpenCount'", (name, value))

    def common(self, name, subkey):
        return self.stored(self.home / "machine" / "machine.db", "Software\\Halvexa\\" + subkey, name)

    @staticmethod
    def stored(path, key, name):
        """A stored value, None when absent."""
        if not path.exists():
            return None
        with sqlite3.connect("file:%s?mode=ro" % path, uri=True, timeout=10) as store:
            row = store.execute("SELECT value FROM settings WHERE key = ? AND name = ?", (key, name)).fetchone()
        return row[0] if row else None

    def send(self, process, number=signal.SIGTERM):
        process.send_signal(number)


RED, GREEN, BLUE = (255, 0, 0), (0, 255, 0), (0, 0, 255)

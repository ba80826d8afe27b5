"""Scanning with the real helper and the library's pretended scanners, by real keys."""

import signal
import time
import unittest

from harness import RED, Journey, wait_until

FREE_GROUND = 400, 560  # of the welcome panel: a right click on a row opens no menu
MENU = ("t", "s")  # Tools, Scan Image
CANNOT = "Quorvia$"  # the title of the box that says so


class ScanTest(Journey):

    def setUp(self):
        super().setUp()
        self.drivers = self.home / "drivers"
        self.drivers.mkdir()
        self.environment["SANE_CONFIG_DIR"] = str(self.drivers)
        self.pretend()
        self.picture("a.png", "red")

    def pretend(self, *settings):
        (self.drivers / "dll.conf").write_text("test\n")
        lines = ["number_of_devices 2", "mode Gray", "depth 8", "resolution_min 1.0", "resolution_max 1200.0",
                 "resolution_quant 1.0", "resolution 50.0", "geometry_min 0.0", "geometry_max 200.0",
                 "geometry_quant 1.0", "br_x 80.0", "br_y 60.0", 'test-picture "Color pattern"', *settings]
        (self.drivers / "test.conf").write_text("\n".join(lines) + "\n")

    def slow(self):
        """A scan of a minute and more."""
        self.pretend("br_x 150.0", "br_y 150.0", "read-delay true", "read-delay-duration 200000")

    def acquired(self):
        folder = self.root / "Acquired Images"
        return sorted(folder.iterdir()) if folder.exists() else []

    def children(self, process):
        """The ids of the processes that the program has started and that live."""
        return self.output("pgrep", "-P", str(process.pid)).split()

    def lives(self, number):
        return bool(self.output("ps", "-o", "pid=", "-p", number).strip())

    def begin(self, *arguments):
        """Starts the program and runs the command by its menu."""
        process, window = self.open(*arguments)
        if arguments:
            self.shows(window, RED)
            self.menu(window, *MENU)
        else:
            self.choose(window, FREE_GROUND, *MENU, button="3")
        return process, window

    def dialog(self):
        dialog = self.window("Select Source$")
        self.focus(dialog)
        return dialog

    def scanned(self):
        wait_until(self.acquired, "the acquired file")
        files = self.acquired()
        self.assertEqual(len(files), 1)
        self.assertRegex(files[0].name, r"^Image \d{8}-\d{6}\.jpg$")
        return files[0]

    def is_current(self, window, path):
        """The file was opened behind the one before, and has a picture of the scanner's size."""
        wait_until(lambda: not self.windows("TWAIN Select"), "the caption to come back")
        self.focus(window)
        wait_until(lambda: (self.setting("ImageOpenCount") or 0) >= 2, "the acquired image to be opened")
        width, height = self.output("identify", "-format", "%w %h", str(path)).split()
        self.assertGreater(int(width), 100)
        self.assertGreater(int(height), 50)

    def begin_amid_a_scan(self):
        """The program while its helper scans, and the helper's processes."""
        self.slow()
        process, _ = self.begin(self.pictures)
        self.dialog()
        self.key("Return")
        self.window("Scanning the image")
        children = self.children(process)
        self.assertTrue(children)
        return process, children

    # --- the journeys

    def test_chosen_and_acquired(self):
        process, window = self.begin(self.pictures)
        self.dialog()
        self.assertTrue(self.windows("TWAIN Select | Quorvia"))
        self.key("Down", "Return")
        path = self.scanned()
        self.is_current(window, path)
        self.assertFalse(self.windows("Select Source"))
        self.assertEqual(self.setting("Scanner"), "test:1")
        x, y = self.centre(window)
        wait_until(lambda: self.pixel(x, y) != RED, "the acquired picture on the screen")
        self.send(process)
        self.ended(process)

    def test_cancelled_with_an_image_open(self):
        process, window = self.begin(self.pictures)
        self.dialog()
        self.key("Escape")
        box = self.window(CANNOT)
        self.focus(box)
        self.key("Return")
        self.shows(window, RED)
        self.assertEqual(self.acquired(), [])
        self.send(process)
        self.ended(process)

    def test_cancelled_without_an_image(self):
        process, window = self.begin()
        self.dialog()
        self.key("Escape")
        self.focus(self.window(CANNOT))
        self.key("Return")
        self.focus(self.window())
        self.assertEqual(self.setting("ImageOpenCount") or 0, 0)
        self.send(process)
        self.ended(process)

    def test_cancelled_amid_the_scan(self):
        self.slow()
        process, window = self.begin(self.pictures)
        self.dialog()
        self.key("Return")
        box = self.window("Scanning the image")
        self.focus(box)
        time.sleep(0.5)
        self.key("Right", "Delete")  # for the window below, which must not get them
        self.assertTrue((self.pictures / "a.png").exists())
        self.key("Escape")
        self.focus(self.window(CANNOT))
        self.key("Return")
        self.shows(window, RED)
        self.assertEqual(self.children(process), [])
        self.send(process)
        self.ended(process)

    def test_ended_amid_the_scan(self):
        process, children = self.begin_amid_a_scan()
        self.send(process)
        self.ended(process)
        wait_until(lambda: not [child for child in children if self.lives(child)], "the helper's end")
        self.assertEqual(self.acquired(), [])

    def test_killed_amid_the_scan(self):
        process, children = self.begin_amid_a_scan()
        process.kill()
        self.ended(process, -signal.SIGKILL)
        wait_until(lambda: not [child for child in children if self.lives(child)], "the helper's end")

    def test_without_drivers(self):
        (self.drivers / "dll.conf").write_text("# none\n")
        process, window = self.begin(self.pictures)
        box = self.window("TWAIN Error$")
        self.focus(box)
        self.key("Return")
        wait_until(lambda: not self.windows("TWAIN Error"), "the box to go")
        self.shows(window, RED)
        self.assertFalse((self.root / "Acquired Images").exists())
        self.send(process)
        self.ended(process)


if __name__ == "__main__":
    unittest.main()

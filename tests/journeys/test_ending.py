"""Every way of ending saves the same, in order."""

import os
import signal
import unittest

from harness import Journey


class Ending(Journey):
    def start_sized(self, path=None):
        red = self.picture("red.png", "red")
        program = self.start(path or red)
        window = self.window()
        self.resize(window, 500, 300)
        (self.root / "untitled.pic").write_bytes(b"scratch")
        return program, window

    def assert_saved(self, recent=";;"):
        """`recent` as stored: the list is read after the first open, which therefore does not enter it."""
        self.assertEqual((self.setting("MainWidth"), self.setting("MainHeight")), (500 * 15, 300 * 15))
        self.assertEqual(self.setting("MainWindowState"), 0)
        self.assertEqual(self.setting("ToggleInterface"), 1)
        self.assertEqual(self.setting("Recent"), recent)
        self.assertFalse((self.root / "untitled.pic").exists())

    def test_key(self):
        program, window = self.start_sized()
        self.focus(window)
        self.key("Escape")
        self.ended(program)
        self.assert_saved()

    def test_window_manager(self):
        program, window = self.start_sized()
        self.close_by_frame(window)
        self.ended(program)
        self.assert_saved()

    def test_signals(self):
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            with self.subTest(number):
                program, _ = self.start_sized()
                self.send(program, number)
                self.ended(program)
                self.assert_saved()

    def test_signal_while_a_box_is_open(self):
        gone = self.picture("a.png", "lime")
        program, window = self.start_sized(self.pictures)
        self.focus(window)
        gone.unlink()
        self.key("Left", "Left")  # to the last entry, and back to the first, which has gone
        self.window("File Opening Error")
        self.send(program)
        self.ended(program)
        self.assert_saved(";" + str(self.pictures))

    def test_killed_outright_leaves_a_store_that_opens(self):
        program, _ = self.start_sized()
        os.kill(program.pid, signal.SIGKILL)
        self.ended(program, -signal.SIGKILL)
        self.assertEqual(self.setting("ImageOpenCount"), 1)
        self.start(self.picture("red.png", "red"))
        self.assertEqual(self.setting("ImageOpenCount"), 2)
        self.assertFalse([line for line in self.log_lines() if "damaged" in line.lower()])


if __name__ == "__main__":
    unittest.main()

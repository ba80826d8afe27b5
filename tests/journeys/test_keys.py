"""Keys that ask, and keys that place the window."""

import unittest

from harness import GREEN, Journey, RED, wait_until


class Keys(Journey):
    def setUp(self):
        super().setUp()
        self.picture("1.png", "red", "300x200")
        self.picture("2.png", "lime", "300x200")

    def begin(self):
        process = self.start(self.pictures)
        window = self.window()
        self.focus(window)
        self.shows(window, RED)
        return process, window

    def boxes(self, window, title):
        return [box for box in self.windows(title) if box != window]

    def answer(self, window, key, title, answer):
        """Presses `key`, waits for the box with the title, and answers it by a key."""
        self.key(key)
        box = wait_until(lambda: self.boxes(window, title), "the box of " + key)[0]
        self.focus(box)
        self.key(answer)
        wait_until(lambda: not self.boxes(window, title), "the box of %s to close" % key)
        self.focus(window)

    def test_boxes_open_and_close(self):
        process, window = self.begin()
        for key, title in (("F1", "Quorvia$"), ("F2", "Quorvia$"), ("F10", "Quorvia$"), ("F12", "Image Engine$"),
                           ("ctrl+F12", "Image Engine$"), ("ctrl+alt+shift+F7", "Quorvia$")):
            self.answer(window, key, title, "Escape")
        self.key("Right")
        self.shows(window, GREEN)
        self.assertIsNone(process.poll())

    def test_erased_settings_are_gone_with_the_program(self):
        process, window = self.begin()
        self.assertEqual(self.setting("ImageOpenCount"), 1)
        self.answer_and_end(process, window, "n")
        self.assertIsNone(process.poll())
        self.assertEqual(self.setting("ImageOpenCount"), 1)
        self.answer_and_end(process, window, "y")
        self.ended(process)
        for name in ("ImageOpenCount", "SelectedPath", "MainWidth"):
            self.assertIsNone(self.setting(name))
        self.assertIsNotNone(self.common("Quorvia", "Common\\ProgramPaths"))

    def answer_and_end(self, process, window, answer):
        self.key("ctrl+alt+shift+F7")
        box = wait_until(lambda: self.boxes(window, "Quorvia$"), "the question")[0]
        self.focus(box)
        self.key("alt+" + answer)
        wait_until(lambda: process.poll() is not None or not self.boxes(window, "Quorvia$"), "the answer")
        if process.poll() is None:
            self.focus(window)

    def test_the_window_takes_the_size_of_the_picture(self):
        _, window = self.begin()
        before = self.geometry(window)
        self.key("alt+f")
        wait_until(lambda: self.geometry(window)[2:] != before[2:], "another size")
        self.assertLess(self.geometry(window)[2], before[2])
        self.assertEqual(self.geometry(window)[:2], before[:2])

    def test_the_window_is_minimised_and_comes_back(self):
        process, window = self.begin()
        before = self.geometry(window)
        self.key("x")
        wait_until(lambda: "Iconic" in self.output("xprop", "-id", window, "WM_STATE"), "the window to be minimised")
        self.assertIsNone(process.poll())
        self.focus(window)
        wait_until(lambda: self.geometry(window) == before, "its old place")
        self.shows(window, RED)


if __name__ == "__main__":
    unittest.main()

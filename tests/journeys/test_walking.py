"""Walking a folder with the keys."""

import unittest

from harness import BLUE, GREEN, Journey, RED, wait_until


class Walking(Journey):
    def setUp(self):
        super().setUp()
        for name, colour in (("1.png", "red"), ("2.bmp", "lime"), ("3.gif", "blue")):
            self.picture(name, colour)

    def test_keys_walk_and_wrap(self):
        self.start(self.pictures)
        window = self.window()
        self.focus(window)
        self.shows(window, RED)
        for key, colour in (("Right", GREEN), ("Down", BLUE), ("Right", RED), ("Left", BLUE), ("Up", GREEN),
                            ("bracketright", BLUE), ("bracketleft", GREEN), ("ctrl+n", BLUE), ("ctrl+b", GREEN)):
            self.key(key)
            self.shows(window, colour)
        self.assertEqual(self.setting("ImageOpenCount"), 10)

    def test_the_first_step_after_a_file_on_the_line_goes_to_the_first_entry(self):
        self.start(self.pictures / "2.bmp")
        window = self.window()
        self.focus(window)
        self.shows(window, GREEN)
        self.key("Right")
        self.shows(window, RED)

    def test_a_vanished_file_is_passed_forward_and_named_backward(self):
        self.start(self.pictures)
        window = self.window()
        self.focus(window)
        self.shows(window, RED)
        (self.pictures / "2.bmp").unlink()
        self.key("Right")
        self.shows(window, BLUE)
        self.key("Left")
        self.window("File Opening Error")
        self.key("Return")
        wait_until(lambda: not self.windows("File Opening Error"), "the box to close")
        self.shows(window, BLUE)

    def test_other_modifiers_do_nothing(self):
        self.start(self.pictures)
        window = self.window()
        self.focus(window)
        self.shows(window, RED)
        opened = self.setting("ImageOpenCount")
        self.key("shift+Right", "ctrl+Right", "ctrl+shift+n")
        self.assertEqual(self.setting("ImageOpenCount"), opened)
        self.shows(window, RED)

    def test_held_keys_walk_at_most_ten_steps_a_second(self):
        self.start(self.pictures)
        window = self.window()
        self.focus(window)
        self.shows(window, RED)
        before = self.setting("ImageOpenCount")
        self.output("xdotool", "key", "--repeat", "40", "--delay", "25", "Right")  # a second's worth of repeats
        steps = self.setting("ImageOpenCount") - before
        self.assertGreaterEqual(steps, 2)
        self.assertLessEqual(steps, 14)


if __name__ == "__main__":
    unittest.main()

"""Walking a folder with the keys."""

import subprocess
import time
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
        self.key("shift+Right", "ctrl+Right", "alt+Right", "ctrl+shift+n")
        self.key("Right")
        self.shows(window, GREEN)
        self.assertEqual(self.setting("ImageOpenCount"), opened + 1)

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

    def slow_pictures(self):
        """Starts the program on pictures that take longer than the repeats of a key; its process, the window."""
        folder = self.home / "large"
        folder.mkdir()
        for name, colour in (("1", "red"), ("2", "lime"), ("3", "blue")):
            # All passes of such a file must be read before anything can be shown.
            self.make("convert", "-size", "6000x4000", "xc:" + colour, "-interlace", "JPEG", folder / (name + ".jpg"))
        process = self.start(folder)
        window = self.window()
        self.focus(window)
        at = self.centre(window)
        wait_until(lambda: self.pixel(*at)[0] > 200, "the first picture")
        return process, window

    def hold_until(self, key, steps):
        """Holds a key, as the server repeats it, until it has walked so many steps."""
        aim = self.setting("ImageOpenCount") + steps
        self.output("xdotool", "keydown", key)
        try:
            wait_until(lambda: self.setting("ImageOpenCount") >= aim, "%d steps of a held key" % steps)
        finally:
            self.output("xdotool", "keyup", key)

    def test_a_key_let_go_walks_no_further(self):
        self.slow_pictures()
        self.hold_until("Right", 4)
        opened = self.setting("ImageOpenCount")
        time.sleep(4)  # several steps' worth: at most the one under way may follow
        self.assertLessEqual(self.setting("ImageOpenCount"), opened + 1)

    def test_esc_behind_keys_that_wait_for_a_step_ends_the_program(self):
        process = self.start(self.pictures)
        self.focus(self.window())
        self.key("Escape")
        self.ended(process)
        self.store_number("ReadAheadMemory", 0)  # else the step may be a short one, whose debounce drops Esc too
        process, _ = self.slow_pictures()
        opened = self.setting("ImageOpenCount")
        self.output("xdotool", "key", "--delay", "10", *["Right"] * 4, "Escape")
        self.ended(process)
        self.assertEqual(self.setting("ImageOpenCount"), opened + 1)

    def test_a_held_key_shows_pictures_that_take_longer_than_its_repeats(self):
        _, window = self.slow_pictures()
        at = self.centre(window)
        held = subprocess.Popen(["xdotool", "key", "--repeat", "400", "--delay", "25", "Right"], env=self.environment)
        self.addCleanup(held.wait)
        self.addCleanup(held.kill)
        seen = {0}

        def all_were_seen():
            colour = self.pixel(*at)
            seen.add(colour.index(max(colour)))
            return len(seen) == 3
        wait_until(all_were_seen, "the three pictures on the screen")
        self.assertIsNone(held.poll(), "the key was let go before all pictures were seen")


if __name__ == "__main__":
    unittest.main()

"""Menus, keys, list and slideshow, by real keys and mouse."""

import os
import time
import unittest

from harness import Journey, wait_until

RED, GREEN, BLUE = (255, 0, 0), (0, 128, 0), (0, 0, 255)
STEP = 0.15  # seconds between keys, more than the debounces take


class CommandsTest(Journey):

    def setUp(self):
        super().setUp()
        self.files = [self.picture(name, colour) for name, colour in
                      (("a.png", "red"), ("b.png", "green"), ("c.png", "blue"))]

    def open(self, *arguments):
        process = self.start(*arguments)
        window = self.window()
        self.focus(window)
        return process, window

    def press(self, *keys):
        for key in keys:
            self.key(key)
            time.sleep(STEP)

    def menu(self, window, *keys):
        """Opens the context menu in the middle of the window and walks it by keys."""
        x, y = self.centre(window)
        before = self.top_windows()
        self.output("xdotool", "mousemove", str(x), str(y), "click", "3")
        wait_until(lambda: self.top_windows() > before, "the menu")
        for key in keys:
            self.key(key)

    def top_windows(self):
        return len(self.output("xdotool", "search", "--onlyvisible", "--class", "quorvia").split())

    def built(self, window):
        """Waits for the toolbar, which comes a moment after the window."""
        left, top, width, height = self.geometry(window)
        wait_until(lambda: self.pixel(left + width // 2, top + height - 4) == (0, 121, 191), "the toolbar")

    def test_keys_walk_and_wrap(self):
        process, window = self.open(self.pictures)
        self.built(window)
        for key, colour in (("Right", GREEN), ("Down", BLUE), ("Right", RED), ("Left", BLUE), ("bracketleft", GREEN)):
            self.press(key)
            self.shows(window, colour)
        self.send(process)
        self.ended(process)

    def test_vanished_files_are_skipped_forward_only(self):
        process, window = self.open(self.pictures)
        self.built(window)
        os.remove(self.files[1])
        self.press("Right")
        self.shows(window, BLUE)
        self.send(process)
        self.ended(process)

    def test_the_menu_runs_commands(self):
        process, window = self.open(self.pictures)
        self.built(window)
        self.menu(window, "g", "Return")  # Go, Next Image
        self.shows(window, GREEN)
        self.menu(window, "Escape")
        self.shows(window, GREEN)
        self.send(process)
        self.ended(process)

    def test_the_slideshow_runs_and_a_menu_pauses_it(self):
        process, window = self.open(self.pictures, "/miSlideShow")
        self.shows(window, GREEN)
        self.menu(window)
        wait_until(lambda: self.windows(".*Slideshow Paused"), "the caption of the pause")
        colour = self.pixel(self.geometry(window)[0] + 20, self.centre(window)[1])
        time.sleep(2.5)  # longer than a slide: nothing may happen
        self.assertEqual(self.pixel(self.geometry(window)[0] + 20, self.centre(window)[1]), colour)
        self.key("Escape")
        wait_until(lambda: not self.windows(".*Slideshow Paused"), "the end of the pause")
        self.shows(window, BLUE)
        self.press("p")  # and stops it
        self.send(process)
        self.ended(process)

    def test_the_list_follows_the_folder(self):
        process, window = self.open(self.pictures)
        self.built(window)
        self.press("f")
        self.shows(window, RED)
        os.remove(self.files[2])
        time.sleep(3.5)  # the list looks every three seconds
        for colour in (RED, GREEN, RED):  # the new list has no current entry
            self.press("Right")
            self.shows(window, colour)
        self.send(process)
        self.ended(process)

    def test_commands_of_the_line(self):
        process = self.start(self.files[0], "/miMsg_Done", wait=False)
        wait_until(lambda: self.output("xdotool", "search", "--onlyvisible", "--name", "^Quorvia$").strip(), "the message")
        self.key("Return")
        window = self.window()
        self.shows(window, RED)
        self.send(process)
        self.ended(process)
        process = self.start(self.files[0], "/miNoSuchTool")
        self.shows(self.window(), RED)
        self.send(process)
        self.ended(process)

    def test_quick_hide(self):
        process, window = self.open(self.pictures)
        self.built(window)
        self.press("z")
        wait_until(lambda: self.windows("Unknown"), "the other caption")
        self.assertNotEqual(self.pixel(*self.centre(window)), RED)
        self.press("z")
        wait_until(lambda: self.windows("Quorvia v"), "the caption")
        self.shows(window, RED)
        self.send(process)
        self.ended(process)


if __name__ == "__main__":
    unittest.main()

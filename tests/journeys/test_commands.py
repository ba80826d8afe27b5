"""Menus, keys, list and slideshow, by real keys and mouse."""

import os
import time
import unittest

from harness import BLUE, GREEN, Journey, RED, wait_until

STEP = 0.15  # seconds between keys, more than the debounces take


class CommandsTest(Journey):

    def setUp(self):
        super().setUp()
        self.files = [self.picture(name, colour) for name, colour in
                      (("a.png", "red"), ("b.png", "lime"), ("c.png", "blue"))]

    def open(self, *arguments):
        process = self.start(*arguments)
        window = self.window()
        self.focus(window)
        return process, window

    def press(self, *keys):
        for key in keys:
            self.key(key)
            time.sleep(STEP)

    def test_the_list_is_sorted_without_regard_to_case(self):
        folder = self.home / "sorted"
        folder.mkdir()
        for name, colour in (("Beach.gif", "lime"), ("apple.png", "red"), ("cat.bmp", "blue"), ("Zoo.png", "white")):
            self.make("convert", "-size", "320x240", "xc:" + colour, folder / name)
        process, window = self.open(folder)
        for colour in (RED, GREEN, BLUE, (255, 255, 255), RED):
            self.shows(window, colour)
            self.press("Right")
        self.send(process)
        self.ended(process)

    def test_random_shows_every_picture_in_the_end(self):
        process, window = self.open(self.pictures)
        seen = set()

        def all_seen():
            self.press("r")
            seen.add(self.pixel(*self.centre(window)))
            return seen >= {RED, GREEN, BLUE}
        wait_until(all_seen, "each of the three pictures")
        self.assertEqual(seen, {RED, GREEN, BLUE})
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

    def stands(self, seconds=2.5):
        """Asserts that no picture is opened for longer than a slide."""
        opened = self.setting("ImageOpenCount")
        time.sleep(seconds)
        self.assertEqual(self.setting("ImageOpenCount"), opened)

    def goes_on(self):
        """Waits until two more pictures were opened."""
        opened = self.setting("ImageOpenCount")
        wait_until(lambda: self.setting("ImageOpenCount") >= opened + 2, "two slides")

    def test_the_slideshow_runs_and_a_menu_pauses_it(self):
        process, window = self.open(self.pictures, "/miSlideShow")
        self.shows(window, GREEN)
        self.menu(window)
        wait_until(lambda: self.windows(".*Slideshow Paused"), "the caption of the pause")
        self.stands()
        self.key("Escape")
        wait_until(lambda: not self.windows(".*Slideshow Paused"), "the end of the pause")
        self.goes_on()
        self.press("p")
        self.stands()
        self.send(process)
        self.ended(process)

    def test_the_menu_starts_and_stops_the_slideshow(self):
        process, window = self.open(self.pictures)
        self.built(window)
        self.menu(window, "d", "Down", "Down", "Return")  # Slide Show Settings, Reverse
        self.shows(window, BLUE)
        self.shows(window, GREEN)
        self.assertEqual(self.setting("slidemode"), "reverse")
        self.menu(window, "l")  # Slide Show
        wait_until(lambda: self.top_windows() == 1, "the end of the menu")
        self.stands()
        self.send(process)
        self.ended(process)

    def test_the_delay_is_typed_into_the_menu(self):
        process, window = self.open(self.pictures)
        self.built(window)
        for typed, kept in (("3", 3000), ("61", 60000), ("1.5", 1500), ("0", 1000)):
            self.menu(window, "d", "Up", "Right")  # the last row, Delay Settings
            self.output("xdotool", "key", "ctrl+a", "type", typed)
            self.key("Return")
            wait_until(lambda kept=kept: self.setting("Interval") == kept, "the delay of " + typed)
            wait_until(lambda: self.top_windows() == 1, "the end of the menu")
        self.menu(window, "d", "Up", "Right", "Return")  # the field shows what is in force
        wait_until(lambda: self.top_windows() == 1, "the end of the menu")
        self.assertEqual(self.setting("Interval"), 1000)
        self.send(process)
        self.ended(process)

    def test_the_program_starts_hidden(self):
        process = self.start(self.files[0], "/miHide")
        wait_until(lambda: not self.windows(), "the window to go")
        self.assertIsNone(process.poll())
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

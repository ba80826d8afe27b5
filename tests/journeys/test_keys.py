"""Keys that ask, and keys that place the window."""

import unittest

from harness import BLUE, CHROME, GREEN, Journey, RED, wait_until

MARKED = (48, 140, 198)  # the toolkit's own highlight


class Keys(Journey):
    def setUp(self):
        super().setUp()
        self.picture("1.png", "red", "300x200")
        self.picture("2.png", "lime", "300x200")
        self.picture("3.png", "blue", "300x200")

    def begin(self):
        process = self.start(self.pictures)
        window = self.window()
        self.focus(window)
        self.shows(window, RED)
        return process, window

    def boxes(self, window, title):
        return [box for box in self.windows(title) if box != window]

    def look_of(self, window):
        """The picture of a window that has come to rest."""
        def look():
            return self.output("import", "-silent", "-window", window, "-compress", "none", "-depth", "8", "ppm:-")
        pictures = [look()]

        def at_rest():
            pictures.append(look())
            return pictures[-1] == pictures[-2] and len(set(pictures[-1].split())) > 8  # more than its ground
        wait_until(at_rest, "the box to be painted")
        return pictures[-1]

    def answer(self, window, key, title, answer):
        """Presses `key`, waits for the box with the title, and answers it by a key. Returns how the box looked."""
        self.key(key)
        box = wait_until(lambda: self.boxes(window, title), "the box of " + key)[0]
        self.focus(box)
        look = self.look_of(box)
        self.key(answer)
        wait_until(lambda: not self.boxes(window, title), "the box of %s to close" % key)
        self.focus(window)
        return look

    def test_boxes_open_and_close(self):
        process, window = self.begin()
        looks = {key: self.answer(window, key, title, "Escape") for key, title in (
            ("F1", "Quorvia$"), ("F2", "Quorvia$"), ("F10", "Quorvia$"), ("F12", "Image Engine$"),
            ("ctrl+F12", "Image Engine$"), ("ctrl+alt+shift+F7", "Quorvia$"))}
        self.assertEqual(looks["F12"], looks["ctrl+F12"])
        self.assertEqual(len(set(looks.values())), 5, "a key shows the box of another")
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

    def toolbar_height(self, window):
        """Of the toolbar, which comes a moment after the window."""
        left, top, _, height = self.geometry(window)

        def rows():
            pixel = self.screen()
            return next(row for row in range(height) if pixel(left + 5, top + height - 1 - row) != CHROME)
        return wait_until(rows, "the toolbar")

    def test_the_window_takes_the_size_of_the_picture(self):
        _, window = self.begin()
        before = self.geometry(window)
        toolbar = self.toolbar_height(window)
        self.key("alt+f")
        # Pixels of 15 twips: 200 more at the sides, 700 and the toolbar more in height.
        fitted = (300 * 15 + 200) // 15, (200 * 15 + 700) // 15 + toolbar
        wait_until(lambda: self.geometry(window) == before[:2] + fitted, "the size %d x %d" % fitted)

    def test_the_window_is_minimised_and_comes_back(self):
        process, window = self.begin()
        before = self.geometry(window)
        self.key("x")
        wait_until(lambda: "Iconic" in self.output("xprop", "-id", window, "WM_STATE"), "the window to be minimised")
        self.assertIsNone(process.poll())
        self.focus(window)
        wait_until(lambda: self.geometry(window) == before, "its old place")
        self.shows(window, RED)

    def test_keys_work_in_the_list_docked_and_floating(self):
        _, window = self.begin()
        toolbar = self.toolbar_height(window)
        self.key("f")
        left, top, _, height = self.geometry(window)
        row, bar = 18, 12  # an entry's height, and the middle of the band's title bar

        def first_entry():
            pixel = self.screen()
            return next((y for y in range(top + height // 2, top + height - toolbar)
                         if pixel(left + 200, y) == MARKED), None)
        at = wait_until(first_entry, "the marked entry of the list")
        self.click(left + 100, at + 2 * row + row // 2)
        self.shows(window, BLUE)
        self.key("Right")
        self.shows(window, RED)
        self.click(left + 209, top + bar)
        floating = self.window("Picture List$")
        self.focus(floating)
        self.key("Right")
        self.shows(window, GREEN)
        self.key("f")
        wait_until(lambda: not self.windows("Picture List$"), "the list to go")
        self.focus(window)
        self.key("Right")
        self.shows(window, BLUE)

    def test_keys_of_other_layouts_count_by_their_place(self):
        _, window = self.begin()
        for layout, place, tab in (("fr", 11, "Information"), ("fr", 12, "Filmstrip"), ("fr", 10, "Image")):
            self.output("setxkbmap", layout)
            self.key(str(place))  # of the keys 2, 3 and 1
            wait_until(lambda tab=tab: self.setting("ActiveTabWindow") == tab, "the tab " + tab)
        self.output("setxkbmap", "ru")
        for place, colour in ((35, GREEN), (34, RED)):  # ] and [
            self.key(str(place))
            self.shows(window, colour)


if __name__ == "__main__":
    unittest.main()

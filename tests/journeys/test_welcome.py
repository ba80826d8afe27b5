"""A first start: the welcome panel, and the link that asks another question at each start."""

import sqlite3
import unittest

from harness import Journey, RED, wait_until

HEAD = (0, 85, 170)
CHROME = (0, 121, 191)
QUESTIONS = 8  # starts until the link comes round, three of them without one


class Welcome(Journey):
    def first_head(self, window):
        """Place of the first head of the left column, from the window's corner."""
        left, top, width, height = self.geometry(window)

        def find():
            pixel = self.screen()
            for y in range(20, height // 2):
                for x in range(width - 6):
                    if all(pixel(left + x + step, top + y) == HEAD for step in range(6)):
                        return x, y
            return None
        return wait_until(find, "the head of the panel")

    def test_open_image_opens_the_dialog_and_the_picture_takes_the_place(self):
        picture = self.picture("red.png", "red")
        program, window = self.open()
        x, y = self.first_head(window)
        self.press(window, (x + 60, y + 40))  # the row below the head
        self.answer("Open Image", picture)
        self.shows(window, RED)
        self.assertEqual(self.setting("ImageOpenCount"), 1)
        self.focus(window)
        self.key("q")  # closes the picture
        self.first_head(window)
        self.key("Escape")
        self.ended(program)

    def test_the_keys_choose_too(self):
        program, window = self.open()
        self.first_head(window)
        for _ in range(40):
            self.output("xdotool", "key", "Tab")
            self.output("xdotool", "key", "Return")
            if self.windows("Open Image"):
                break
        self.window("Open Image")
        self.key("Escape")
        wait_until(lambda: not self.windows("Open Image"), "the end of the dialog")
        self.assertIsNone(program.poll())

    def test_a_narrow_window_has_one_column(self):
        _, window = self.open()
        self.first_head(window)

        def heads():
            left, top, width, _ = self.geometry(window)
            _, y = self.first_head(window)
            pixel = self.screen()
            row = [pixel(left + x, top + y + 2) == HEAD for x in range(width)]
            return sum(now and not before for before, now in zip([False, *row], row))
        wait_until(lambda: heads() == 2, "two columns")
        self.resize(window, 500, 500)
        wait_until(lambda: heads() == 1, "one column")
        self.resize(window, 1000, 500)
        wait_until(lambda: heads() == 2, "two columns again")

    def link_pixels(self, window):
        """What stands at the right end of the strip of tabs."""
        left, top, width, _ = self.geometry(window)
        pixel = self.screen()
        return tuple(pixel(left + x, top + y) for y in range(3, 24) for x in range(width - 260, width - 4))

    def seen_link(self, window):
        """The same, when it has come to rest; None when it is all chrome."""
        def twice():
            first = self.link_pixels(window)
            return first if first == self.link_pixels(window) else None
        seen = wait_until(twice, "the strip to rest")
        return None if set(seen) == {CHROME} else seen

    def start_and_look(self):
        program, window = self.open()
        self.first_head(window)
        seen = self.seen_link(window)
        self.key("Escape")
        self.ended(program)
        return seen

    def test_the_link_asks_another_question_at_each_start(self):
        seen = []
        for start in range(QUESTIONS):
            seen.append(self.start_and_look())
            self.assertEqual(self.setting("LinkPreview"), (2 + start + 1) % QUESTIONS)
        captions = [each for each in seen if each]
        self.assertEqual(len(captions), 5)
        self.assertEqual(len(set(captions)), 5)
        self.assertEqual([bool(each) for each in seen], [True] * 4 + [False] * 3 + [True])

    def test_a_newer_version_is_told_of_at_every_start(self):
        comments = self.start_and_look()
        with sqlite3.connect(self.home / "config" / "halvexa" / "user.db") as store:
            store.execute("INSERT INTO settings (key, name, type, value) VALUES "
                          "('Software\\Halvexa\\Quorvia\\Settings', 'Latest Version', 1, '2.0.1')")
        first = self.start_and_look()
        self.assertTrue(first)
        self.assertNotEqual(first, comments)
        self.assertEqual(self.start_and_look(), first)
        self.assertEqual(self.setting("LinkPreview"), 3)  # the questions wait


if __name__ == "__main__":
    unittest.main()

"""Stores that are damaged or cannot be written."""

import sqlite3
import unittest

from harness import BLUE, Journey, RED


class Stores(Journey):
    def test_a_damaged_store_is_set_aside(self):
        directory = self.home / "config" / "halvexa"
        directory.mkdir(parents=True)
        (directory / "user.db").write_bytes(b"this is no store at all" * 200)
        self.start(self.picture("red.png", "red"))
        self.shows(self.window(), RED)
        self.assertEqual(self.setting("ImageOpenCount"), 1)
        aside = [path for path in directory.iterdir() if not path.name.startswith("user.db-") and
                 path.name != "user.db"]
        self.assertEqual(len(aside), 1, aside)
        self.assertTrue(aside[0].read_bytes().startswith(b"this is no store"))
        self.assertEqual(len([line for line in self.log_lines() if str(aside[0]) in line]), 1)

    def test_a_user_store_that_cannot_be_made_costs_only_the_settings(self):
        (self.home / "config").write_text("a file where a directory should be")
        program = self.start(self.picture("red.png", "red"))
        self.shows(self.window(), RED)
        self.assertEqual(len([line for line in self.log_lines() if "user.db" in line]), 1)
        self.key("Escape")
        self.ended(program)

    def test_a_machine_store_that_cannot_be_made_ends_the_program(self):
        (self.home / "machine").write_text("a file where a directory should be")
        program = self.start(self.picture("red.png", "red"), wait=False)
        self.window("Fatial Error")
        self.key("Return")
        self.ended(program, 1)
        self.assertFalse(any("Form_Load" in line for line in self.log_lines()))
        self.assertFalse(self.root.exists())

    def test_a_data_root_that_cannot_be_made_is_logged(self):
        self.root.write_text("a file where a directory should be")
        self.start(self.picture("red.png", "red"))
        self.shows(self.window(), RED)
        lines = [line for line in self.log_lines() if line.startswith("Data directory cannot be made: ")]
        self.assertTrue(lines)
        self.assertEqual(len(lines), len(set(lines)), "one line a directory")
        self.assertEqual(self.root.read_text(), "a file where a directory should be")

    def test_a_picture_beyond_the_memory_that_the_user_grants_is_refused(self):
        self.ended_once()
        self.store_number("PictureMemory", 1)
        large = self.picture("large.png", "green", "600x500")  # 1.2 MB of pixels
        program = self.start(large)
        self.window()
        self.assertEqual(len([line for line in self.log_lines() if str(large) in line and
                              "more than this machine shows" in line]), 1, self.log_lines())
        self.send(program)
        self.ended(program)
        self.start(self.picture("small.png", "blue", "500x500"))
        self.shows(self.window(), BLUE)

    def test_settings_of_odd_content_never_stop_the_start(self):
        self.ended_once()
        with sqlite3.connect(self.home / "config" / "halvexa" / "user.db") as store:
            store.execute("UPDATE settings SET type = 1, value = 'wide' WHERE name = 'MainWidth'")
            store.execute("UPDATE settings SET type = 99, value = x'00ff' WHERE name = 'MainHeight'")
            store.execute("UPDATE settings SET type = 4, value = -2000000000 WHERE name = 'MainLeft'")
        self.start(self.pictures / "red.png")
        self.window()

    def ended_once(self):
        program = self.start(self.picture("red.png", "red"))
        self.window()
        self.send(program)
        self.ended(program)


if __name__ == "__main__":
    unittest.main()

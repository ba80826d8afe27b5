"""The selected files of the list converted, mailed and deleted, by real keys and mouse."""

import os
import shutil
import time
import unittest

from harness import BLUE, GREEN, RED, wait_until
from playlists import ENTRY_HEIGHT, MOVE_ALL, PlaylistJourney

FIRST_FILE = (60, 445)  # of the folder's list; pixels from the window's corner


class ConversionTest(PlaylistJourney):

    def names(self):
        return sorted(path.name for path in self.pictures.iterdir())

    def kind(self, path):
        return self.output("identify", "-format", "%m %wx%h", str(path))

    def file(self, number):
        return FIRST_FILE[0], FIRST_FILE[1] + ENTRY_HEIGHT * number

    def select_all(self, window):
        self.press(window, FIRST_FILE)
        self.shows(window, RED)
        self.key("ctrl+a")

    def convert(self, window, *downs):
        """Opens the menu of the list, in it that of the formats, and chooses one of these."""
        self.choose(window, FIRST_FILE, "Down", "Down", "Right", *downs, "Return", button="3")

    def test_one_by_one_and_then_all(self):
        self.picture("c.png", "blue")
        self.picture("d.png", "white")
        process, window = self.open_list()
        self.convert(window, "Down")  # BMP
        first = self.window("bmpConversion Preview: a.png > bmp")
        self.focus(first)
        place = self.geometry(first)[:2]
        self.key("Return")
        wait_until((self.pictures / "a.bmp").exists, "the first converted file")
        second = self.window("bmpConversion Preview: b.png > bmp")
        wait_until(lambda: self.geometry(second)[:2] == place, "the window at its place")
        self.focus(second)
        self.key("n")
        third = self.window("bmpConversion Preview: c.png > bmp")
        self.focus(third)
        self.key("a")
        wait_until(lambda: not self.windows("bmpConversion"), "the end of the conversion")
        wait_until(lambda: self.names() == ["a.bmp", "a.png", "b.png", "c.bmp", "c.png", "d.bmp", "d.png"],
                   "the converted files")
        self.assertEqual(self.kind(self.pictures / "d.bmp"), "BMP3 640x480")
        self.shows(window, RED)
        self.focus(window)
        self.key("Delete")  # of the image on show, which is the new one
        wait_until(lambda: "a.bmp" not in self.names(), "the image in its new form to go")
        self.assertTrue(self.a.exists())
        self.send(process)
        self.ended(process)

    def test_cancelled_in_the_middle_and_a_target_that_exists(self):
        taken = self.pictures / "b.jpg"
        taken.write_bytes(b"what was there")
        process, window = self.open_list()
        self.convert(window)  # JPG; b.jpg, which is no picture, is in the list too
        self.focus(self.window("jpgConversion Preview: a.png > jpg"))
        self.key("Return")
        self.focus(self.window("jpgConversion Preview: b.jpg > jpg"))
        self.key("n")
        self.focus(self.window("jpgConversion Preview: b.png > jpg"))
        self.key("Return")
        wait_until(lambda: self.windows("Quorvia$"), "the question")
        self.focus(self.windows("Quorvia$")[0])
        self.key("alt+n")
        wait_until(lambda: not self.windows("jpgConversion"), "the end of the conversion")
        self.assertEqual(taken.read_bytes(), b"what was there")
        self.assertEqual(self.kind(self.pictures / "a.jpg"), "JPEG 640x480")
        self.send(process)
        self.ended(process)

    def test_of_a_playlist_with_the_originals_gone(self):
        process, window = self.open_panel(self.pictures)
        self.press(window, MOVE_ALL)
        self.holds("Auto Playlist", self.a, self.b)
        wait_until(lambda: self.setting("PlaylistTab") == 1, "the playlist's tab")
        self.focus(window)
        self.press(window, self.entry(0))
        self.shows(window, RED)
        self.key("ctrl+a")
        self.choose(window, self.entry(0), "Down", "Down", "Right", "Up", "Up", "Up", "Return", button="3")  # TIF
        preview = self.window("tifConversion Preview: a.png > tif")
        self.focus(preview)
        self.key("shift+Tab", "space", "a")  # the originals are to go
        wait_until(lambda: self.names() == ["a.tif", "b.tif"], "the converted files in the place of the others")
        self.holds("Auto Playlist", self.pictures / "a.tif", self.pictures / "b.tif")
        trash = self.home / "data" / "Trash" / "files"
        self.assertEqual(sorted(os.listdir(trash)), ["a.png", "b.png"])
        self.shows(window, RED)
        self.send(process)
        self.ended(process)

    def test_deleted_together(self):
        c = self.picture("c.png", "blue")
        c.chmod(0o444)
        process, window = self.open_list()
        self.choose(window, FIRST_FILE, "Down", "Return", button="3")
        wait_until(lambda: self.names() == ["c.png"], "the files to go")
        trash = self.home / "data" / "Trash" / "files"
        self.assertEqual(sorted(os.listdir(trash)), ["a.png", "b.png"])
        wait_until(lambda: "A read-only file cannot be deleted" in self.log_text(), "the line in the log")
        self.shows(window, BLUE)
        self.send(process)
        self.ended(process)

    def many(self, count, size="1600x1200"):
        first = self.pictures / "p00.png"
        self.make("convert", "-size", size, "-seed", "7", "plasma:fractal", first)
        for number in range(1, count):
            shutil.copy(first, self.pictures / ("p%02d.png" % number))

    def test_keys_in_a_batch_reach_nothing_else(self):
        self.many(12)
        before = self.names()
        process, window = self.open_list()
        self.convert(window)
        self.focus(self.window("jpgConversion Preview: a.png > jpg"))
        self.output("xdotool", "key", "a")
        for key in ("Right", "Delete", "Escape", "q"):
            time.sleep(0.1)
            self.output("xdotool", "key", key)
        wait_until(lambda: not self.windows("jpgConversion"), "the end of the conversion")
        self.assertIsNone(process.poll(), "the program went on")
        self.assertEqual([name for name in self.names() if not name.endswith(".jpg")], before)
        self.assertFalse((self.home / "data" / "Trash").exists())
        self.send(process)
        self.ended(process)

    def test_a_held_key_answers_one_question(self):
        self.many(6, "320x240")
        (self.pictures / "b.jpg").write_bytes(b"what was there")
        process, window = self.open_list()
        self.convert(window)
        self.focus(self.window("jpgConversion Preview: a.png > jpg"))
        self.output("xdotool", "keydown", "Return")
        time.sleep(2)
        self.output("xdotool", "keyup", "Return")
        second = self.window("jpgConversion Preview: b.jpg > jpg")
        self.assertEqual([name for name in self.names() if name.endswith(".jpg")], ["a.jpg", "b.jpg"])
        self.focus(second)
        self.key("Escape")
        wait_until(lambda: not self.windows("jpgConversion"), "the end of the conversion")
        self.assertEqual((self.pictures / "b.jpg").read_bytes(), b"what was there")
        self.send(process)
        self.ended(process)

    # --- the window

    def open_list(self):
        """Starts with the panel open and all its files selected."""
        process = self.start(self.pictures)
        window = self.window()
        self.focus(window)
        self.built(window)
        self.key("f")
        wait_until(lambda: self.pixel(*self.at(window, FIRST_FILE)) != (0, 121, 191), "the panel")
        self.select_all(window)
        return process, window


if __name__ == "__main__":
    unittest.main()

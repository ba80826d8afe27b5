"""The playlist editor by real keys and mouse: lists made, filled from two folders, put in order, renamed, deleted."""

import time
import unittest

from harness import BLUE, GREEN, RED, wait_until
from playlists import EDITOR, MOVE_ALL, PlaylistJourney

# Places in the editor at its first size: pixels from the window's corner.
HOME = (50, 67)
FILES = (100, 268)  # the first file of the folder
ENTRIES = (700, 67)  # the first entry of the playlist
ROW = 18
COMBO = (920, 41)
ADD_SELECTED, ADD_ALL, TAKE_OUT = (560, 229), (560, 265), (560, 301)
UP, DOWN = (1096, 261), (1096, 297)
FINISHED = (1070, 685)
FILES_STRIP, ENTRIES_STRIP = (80, 580), (655, 580)  # in the first cell


class PlaylistEditorTest(PlaylistJourney):

    def open_editor(self, *arguments):
        process = self.start(*arguments, "/miPlaylistEditor")
        editor = self.window("Playlist Editor")
        self.focus(editor)
        return process, editor

    def below(self, place, rows):
        return place[0], place[1] + ROW * rows

    def open_folder(self, editor, name):
        """Goes to a folder of the home in the tree."""
        self.press(editor, HOME)
        self.key("Right")
        time.sleep(0.5)
        self.output("xdotool", "type", "--delay", "20", name)
        wait_until(lambda: self.setting("LastDirectory") == str(self.home / name), "the folder " + name)

    def create(self, editor, name):
        self.press(editor, COMBO)
        self.key("End", "Return")
        self.answer("Create New Playlist", name)
        self.focus(editor)

    def double_click(self, editor, place):
        x, y = self.at(editor, place)
        self.output("xdotool", "mousemove", str(x), str(y), "click", "--repeat", "2", "--delay", "60", "1")

    def finish(self, editor):
        self.press(editor, FINISHED)
        wait_until(lambda: not self.windows("Playlist Editor"), "the editor to close")

    def test_a_list_of_two_folders_in_an_order_of_its_own(self):
        process, window = self.open_panel(self.pictures)
        self.press(window, MOVE_ALL)
        self.holds("Auto Playlist", self.a, self.b)
        time.sleep(0.5)  # the tabs come to rest
        self.press(window, EDITOR)
        editor = self.window("Playlist Editor")
        self.focus(editor)
        self.create(editor, "Summer")
        self.holds("Summer")
        self.open_folder(editor, "pictures")
        self.press(editor, ADD_ALL)
        self.open_folder(editor, "other")
        self.double_click(editor, self.below(FILES, 1))  # d
        self.press(editor, FILES)
        self.press(editor, ADD_SELECTED)  # c
        self.press(editor, ENTRIES)
        self.key("ctrl+Down", "ctrl+Down", "ctrl+Down", "ctrl+Down")  # a goes to the end, and stays there
        self.press(editor, self.below(ENTRIES, 1))
        self.press(editor, UP)  # d before b
        self.double_click(editor, self.below(ENTRIES, 2))  # c is taken out
        self.holds("Summer")  # until the end it lives in memory
        self.finish(editor)
        self.holds("Summer", self.d, self.b, self.a)
        self.holds("Auto Playlist", self.a, self.b)

        self.focus(window)
        self.hover(window)
        self.key("Down", "Return")
        wait_until(lambda: self.setting("ImageOpenCount"), "a first image")
        for colour in ((255, 255, 255), GREEN, RED):
            self.key("Right")
            self.shows(window, colour)
        self.send(process)
        self.ended(process)

    def test_the_strip_shows_what_is_selected(self):
        self.write_list("Zoo", self.c, self.a, self.b)
        process, editor = self.open_editor(self.playlist("Zoo"))
        for row, colour in ((2, GREEN), (0, BLUE)):
            self.press(editor, self.below(ENTRIES, row))
            wait_until(lambda: self.pixel(*self.at(editor, ENTRIES_STRIP)) == colour, "the selected picture")
        self.press(editor, ENTRIES_STRIP)  # which takes it out of the selection
        wait_until(lambda: self.pixel(*self.at(editor, ENTRIES_STRIP)) != BLUE, "the strip to become empty")
        self.press(editor, TAKE_OUT)  # nothing is selected
        self.key("Escape")
        wait_until(lambda: not self.windows("Playlist Editor"), "the editor to close")
        self.holds("Zoo", self.c, self.a, self.b)
        self.send(process)
        self.ended(process)

    def write_list(self, name, *files):
        path = self.playlist(name)
        path.parent.mkdir(parents=True, exist_ok=True)
        lines = ["# Quorvia Playlist File - Created: 03/04/2003 Files: %d" % len(files), *map(str, files)]
        path.write_bytes("".join(line + "\r\n" for line in lines + ["# End of File"] * bool(files)).encode())

    def test_lists_are_renamed_and_deleted(self):
        for name, files in (("One", (self.a,)), ("Two", (self.b, self.c)), ("Three", ())):
            self.write_list(name, *files)
        process, editor = self.open_editor(self.playlist("Two"))
        self.press(editor, COMBO)
        self.key("End", "Up", "Return")  # the page of the names
        time.sleep(0.5)
        left, top, width, height = self.geometry(editor)
        middle, centre = left + width // 2, top + height // 2
        names, buttons = middle - 50, middle + 202
        first = centre - 184

        def choose(row):
            self.click(names, first + ROW * row)
        choose(2)  # One, Three, Two
        self.click(buttons, centre - 157)
        self.answer("Rename Playlist", "Spring")
        self.holds("Spring", self.b, self.c)
        self.assertFalse(self.playlist("Two").exists())
        self.focus(editor)
        choose(0)  # One, Spring, Three
        self.click(buttons, centre - 131)
        wait_until(lambda: not self.playlist("One").exists(), "the list to go")
        self.assertTrue(list((self.home / "data" / "Trash" / "files").glob("One*.qol")))
        self.key("Escape", "Escape")
        wait_until(lambda: not self.windows("Playlist Editor"), "the editor to close")
        self.send(process)
        self.ended(process)
        self.assertEqual(self.setting("ActivePlaylist"), str(self.playlist("Spring")))
        self.holds("Spring", self.b, self.c)


if __name__ == "__main__":
    unittest.main()

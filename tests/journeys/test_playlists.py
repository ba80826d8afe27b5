"""Playlists: made, filled, named, walked and found again, by real keys, mouse and drags."""

import shutil
import time
import unittest

from harness import BLUE, GREEN, RED, wait_until
from playlists import (ADD, EXPORT, FIRST_ENTRY, IMPORT, MOVE_ALL, TAB_BEHIND, WHITE, PlaylistJourney)


class PlaylistsTest(PlaylistJourney):

    def test_from_nothing_to_a_list_of_two_folders(self):
        process, window = self.open_panel(self.pictures)
        self.holds("Auto Playlist")  # made by the first start, in the form for no files
        self.press(window, MOVE_ALL)
        self.holds("Auto Playlist", self.a, self.b)
        wait_until(lambda: self.setting("PlaylistTab") == 1, "the playlist's tab")

        self.choose(window, ADD, "Down", "Return")
        self.answer("Add Files to Playlist", self.c)
        self.holds("Auto Playlist", self.a, self.b, self.c)
        self.drop(window, self.entry(5), self.d, self.home / "nothing.txt")
        self.holds("Auto Playlist", self.a, self.b, self.c, self.d)
        self._end(self.dropped_from)

        self.focus(window)
        for colour in (RED, GREEN, BLUE, WHITE, RED):  # from none to the first, and around
            self.key("Right")
            self.shows(window, colour)
        self.press(window, self.entry(2))
        self.shows(window, BLUE)

        self.choose(window, self.entry(1), "Down", "Down", "Down", "Down", "Return", button="3")  # clear the selected
        self.holds("Auto Playlist", self.a, self.c, self.d)
        self.send(process)
        self.ended(process)

    def test_a_folder_is_dropped(self):
        deep = self.other / "deep"
        deep.mkdir()
        shutil.move(self.d, deep / "d.png")
        process, window = self.open_panel(self.pictures)
        self.drop(window, FIRST_ENTRY, self.other)  # with the folders in front it is shown, not added
        self.shows(window, BLUE)
        self._end(self.dropped_from)
        self.press(window, TAB_BEHIND)
        wait_until(lambda: self.setting("PlaylistTab") == 1, "the playlist's tab")
        self.holds("Auto Playlist")
        time.sleep(0.5)  # the tabs come to rest
        self.drop(window, self.entry(3), self.other)
        self.holds("Auto Playlist", self.c, deep / "d.png")
        self.send(process)
        self.ended(process)

    def test_export_import_and_the_next_start(self):
        process, window = self.open_panel(self.pictures)
        self.press(window, MOVE_ALL)
        self.holds("Auto Playlist", self.a, self.b)
        self.press(window, EXPORT)
        self.answer("Export Playlist to File", self.home / "Trip")
        wait_until(lambda: self.entries(self.home / "Trip.qol") == [str(self.a), str(self.b)], "the exported list")
        # Its name is the open playlist's now, which lies among the named ones with the next save.
        self.choose(window, ADD, "Down", "Return")
        self.answer("Add Files to Playlist", self.d)
        self.holds("Trip", self.a, self.b, self.d)
        self.holds("Auto Playlist", self.a, self.b)

        foreign = self.home / "foreign.qol"
        windows = str(self.c).replace("/", "\\")
        foreign.write_bytes(("# by hand\n%s\nC:%s\n/gone.png\n" % (self.b, windows)).encode())
        self.press(window, IMPORT)
        self.answer("Import Playlist from File", foreign)
        self.holds("foreign", self.b, self.c)
        self.holds("Trip", self.a, self.b, self.d)
        self.assertEqual(foreign.read_bytes()[:9], b"# by hand")
        self.key("Right")
        self.shows(window, GREEN)
        self.close_by_frame(window)
        self.ended(process)
        self.assertEqual(self.setting("ActivePlaylist"), str(self.playlist("foreign")))

        process, window = self.open()  # playlist, face and panel as they were left
        self.shows(window, GREEN)
        self.key("Right")
        self.shows(window, BLUE)
        self.key("Right")
        self.shows(window, GREEN)
        self.hover(window)
        self.key("Down", "Return")  # the name behind that of the open one
        self.key("Right")
        self.shows(window, RED)
        self.send(process)
        self.ended(process)
        self.assertEqual(self.setting("ActivePlaylist"), str(self.playlist("Trip")))

    def test_a_file_goes_and_comes_back(self):
        process, window = self.open_panel(self.pictures)
        self.press(window, MOVE_ALL)
        self.holds("Auto Playlist", self.a, self.b)
        wait_until(lambda: self.setting("PlaylistTab") == 1, "the playlist's tab")
        time.sleep(0.5)
        before = self.rows(window)
        self.b.rename(self.home / "away.png")
        wait_until(lambda: self.rows(window) != before, "the entry to say that its file has gone")
        self.holds("Auto Playlist", self.a, self.b)
        (self.home / "away.png").rename(self.b)
        wait_until(lambda: self.rows(window) == before, "the entry as it was")
        self.send(process)
        self.ended(process)
        self.holds("Auto Playlist", self.a, self.b)

    def test_a_playlist_on_the_command_line(self):
        path = self.home / "my list.qol"
        path.write_bytes(("%s\r\n%s\r\n" % (self.c, self.a)).encode())
        process, window = self.open(path)
        self.shows(window, BLUE)
        self.key("Right")
        self.shows(window, RED)
        self.send(process)
        self.ended(process)


if __name__ == "__main__":
    unittest.main()

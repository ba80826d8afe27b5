"""What the journeys about playlists share: the pictures, the files of playlists, and the panel by mouse and keys."""

import os
import re
import subprocess
import time

from harness import Journey, wait_until

WHITE = (255, 255, 255)

# Places in the panel at its first size, docked left: pixels from the window's corner.
TAB_BEHIND = (150, 34)
MOVE_ALL = (73, 418)
NAME = (70, 62)
FIRST_ENTRY = (60, 80)
ENTRY_HEIGHT = 18
ADD, REMOVE, IMPORT, EXPORT, EDITOR = ((left, 627) for left in (13, 39, 65, 91, 117))


class PlaylistJourney(Journey):

    def setUp(self):
        super().setUp()
        self.a = self.picture("a.png", "red")
        self.b = self.picture("b.png", "lime")
        self.other = self.home / "other"
        self.other.mkdir()
        for name, colour in (("c.png", "blue"), ("d.png", "white")):
            self.make("convert", "-size", "640x480", "xc:" + colour, self.other / name)
        self.c, self.d = self.other / "c.png", self.other / "d.png"

    # --- what stands on the disk

    def playlist(self, name):
        return self.root / "Playlist" / (name + ".qol")

    def entries(self, path):
        """The files that stand in a playlist file, whose form is checked; None when there is no file."""
        if not path.exists():
            return None
        lines = path.read_bytes().decode().split("\r\n")
        self.assertEqual(lines.pop(), "")
        head = re.fullmatch(r"# Quorvia Playlist File - Created: (\d\d)/(\d\d)/(\d{4}) Files: (\d+)", lines[0])
        self.assertTrue(head, lines[0])
        files = lines[1:-1]
        self.assertEqual(len(files), int(head[4]))
        self.assertEqual(lines[1:][-1:], ["# End of File"] if files else [])
        return files

    def holds(self, name, *files):
        wait_until(lambda: self.entries(self.playlist(name)) == [str(file) for file in files],
                   "%s in the playlist %s, which has %s" % (files, name, self.entries(self.playlist(name))))

    # --- the program

    def open_panel(self, *arguments):
        process, window = self.open(*arguments)
        self.key("f")
        wait_until(lambda: self.pixel(*self.at(window, FIRST_ENTRY)) == WHITE, "the panel")
        return process, window

    def entry(self, number):
        return FIRST_ENTRY[0], FIRST_ENTRY[1] + ENTRY_HEIGHT * number

    def drop(self, window, place, *files):
        """Drags files from another program's window into this one, and lets them go there."""
        source = subprocess.Popen([os.environ["QUORVIA_DRAG_SOURCE"], *map(str, files)],
                                  env={**self.environment, "QT_QPA_PLATFORM": "xcb"})
        self.addCleanup(self._end, source)
        from_window = self.window("Files to drag")
        self.output("xdotool", "windowmove", from_window, "900", "200")
        wait_until(lambda: self.geometry(from_window)[0] > 800, "the source to move")
        left, top, width, height = self.geometry(from_window)
        x, y = left + width // 2, top + height // 2
        self.output("xdotool", "mousemove", str(x), str(y), "mousedown", "1")
        for step in range(1, 6):
            self.output("xdotool", "mousemove", str(x - 4 * step), str(y))
            time.sleep(0.05)
        x, y = self.at(window, place)
        for step in (-9, -6, -4, -2, -1, 0):
            self.output("xdotool", "mousemove", str(x), str(y + step))
            time.sleep(0.15)  # the two programs agree on the drop meanwhile
        self.output("xdotool", "mouseup", "1")
        self.dropped_from = source

    def rows(self, window):
        """The picture of the first rows of the list, to be compared with another."""
        screen = self.screen()
        left, top = self.at(window, (4, 72))
        return [screen(x, y) for x in range(left, left + 200) for y in range(top, top + 3 * ENTRY_HEIGHT)]

    def hover(self, window):
        """Rests with the pointer on the playlist's name until the list of names opens."""
        before = self.top_windows()
        x, y = self.at(window, NAME)
        for step in range(4):
            self.output("xdotool", "mousemove", str(x + step), str(y))
            time.sleep(0.05)
        wait_until(lambda: self.top_windows() > before, "the names")

"""The current picture turned, saved, resized, renamed, deleted and mailed, by real keys and menus."""

import re
import sqlite3
import subprocess
import time
import unittest
import urllib.parse

from harness import BLUE, GREEN, RED, Journey, wait_until


class EditsTest(Journey):

    def halves(self, name, *options):
        """A picture that is red on the left and blue on the right."""
        path = self.pictures / name
        self.make("convert", "-size", "320x480", "xc:red", "xc:blue", "+append", *options, path)
        return path

    def pixels(self, path):
        """What an independent reader finds in a file: its size, and a function from x, y to its colours."""
        data = subprocess.run(["convert", str(path), "-depth", "8", "ppm:-"], check=True, timeout=60,
                              stdout=subprocess.PIPE).stdout
        _, size, _, rest = data.split(b"\n", 3)
        width, height = map(int, size.split())

        def pixel(x, y):
            return tuple(rest[(y * width + x) * 3:(y * width + x) * 3 + 3])
        return (width, height), pixel

    def trash(self):
        """The files in the trash, each with the path that it came from."""
        folder = self.home / "data" / "Trash"
        found = {}
        for info in (folder / "info").glob("*.trashinfo") if folder.exists() else []:
            text = info.read_text()
            self.assertRegex(text, r"(?m)^DeletionDate=\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d$")
            place = re.search(r"(?m)^Path=(.*)$", text)[1]
            found[folder / "files" / info.stem] = urllib.parse.unquote(place)
        return found

    def test_turned_on_the_screen_and_on_the_disk(self):
        path = self.halves("halves.png")
        before = path.read_bytes()
        process, window = self.open(path)
        left, top, width, height = self.geometry(window)
        x, y = self.centre(window)
        wait_until(lambda: self.pixel(x - 100, y) == RED and self.pixel(x + 100, y) == BLUE, "the picture")
        self.menu(window, "i", "r")
        wait_until(lambda: self.pixel(x, y - 100) == RED and self.pixel(x, y + 100) == BLUE, "the turned picture")
        wait_until(lambda: self.pixels(path)[0] == (480, 640), "the turned file")
        pixel = self.pixels(path)[1]
        self.assertEqual([pixel(240, 10), pixel(240, 630)], [RED, BLUE])
        # What was there can be had back; what the program wrote itself is not kept a second time.
        wait_until(self.trash, "the old file in the trash")
        self.menu(window, "i", "l")
        wait_until(lambda: self.pixels(path)[0] == (640, 480), "the file turned back")
        [(kept, place)] = self.trash().items()
        self.assertEqual(kept.read_bytes(), before)
        self.assertEqual(place, str(self.pictures / "halves (replaced).png"))
        self.send(process)
        self.ended(process)

    def test_a_read_only_file_stays(self):
        path = self.halves("halves.png")
        path.chmod(0o444)
        before = path.read_bytes()
        process, window = self.open(path)
        self.menu(window, "i", "r")
        wait_until(lambda: "read-only" in self.log_text(), "the line in the log")
        x, y = self.centre(window)
        wait_until(lambda: self.pixel(x - 100, y) == RED, "the picture as its file has it")
        self.focus(window)
        self.key("Delete")
        wait_until(lambda: "A read-only file cannot be deleted" in self.log_text(), "the other line in the log")
        self.assertEqual(path.read_bytes(), before)
        self.assertEqual(self.trash(), {})
        self.send(process)
        self.ended(process)

    def test_saved_under_another_name(self):
        path = self.halves("halves.png")
        process, window = self.open(path)
        self.key("ctrl+s")
        self.answer("Save", self.pictures / "new.jpeg")
        wait_until(lambda: self.windows("Quorvia v") and (self.pictures / "new.jpeg").exists(), "the new file")
        wait_until(lambda: self.pixels(self.pictures / "new.jpeg")[0] == (640, 480), "the whole new file")
        # A name that is taken is asked about; the file of that name can be had back.
        old = self.picture("old.png", "lime")
        content = old.read_bytes()
        self.focus(window)
        self.key("ctrl+s")
        dialog = self.window("Save")
        self.focus(dialog)
        self.output("xdotool", "key", "ctrl+a")
        self.output("xdotool", "type", "--delay", "4", str(old))
        self.key("Return")
        wait_until(lambda: len(self.windows("Save")) > 1, "the question")
        self.key("alt+y")
        wait_until(lambda: old.read_bytes() != content, "the replaced file")
        wait_until(lambda: self.pixels(old)[0] == (640, 480), "the whole file")
        self.assertIn(content, [kept.read_bytes() for kept in self.trash()])
        self.send(process)
        self.ended(process)

    def test_a_show_waits_for_the_dialog(self):
        a, b = self.picture("a.png", "red"), self.picture("b.png", "lime")
        process, window = self.open(a)
        self.shows(window, RED)
        self.key("p")
        self.output("xdotool", "key", "ctrl+s")
        dialog = self.window("Save")
        shown = self.pixel(*self.at(window, (5, 300))), self.setting("ImageOpenCount")
        time.sleep(6)  # three steps of the show
        self.assertEqual(shown, (self.pixel(*self.at(window, (5, 300))), self.setting("ImageOpenCount")))
        self.focus(dialog)
        self.key("Escape")
        wait_until(lambda: self.setting("ImageOpenCount") != shown[1], "the show to go on")
        self.assertTrue(a.exists() and b.exists())
        self.send(process)
        self.ended(process)

    def test_renamed_and_deleted(self):
        a, b = self.picture("a.png", "red"), self.picture("b.png", "lime")
        process, window = self.open(a)
        self.shows(window, RED)
        self.key("ctrl+r")
        self.answer("Rename File", "z 100%.png")
        renamed = self.pictures / "z 100%.png"
        wait_until(renamed.exists, "the new name")
        self.assertFalse(a.exists())
        self.shows(window, RED)
        self.key("ctrl+r")
        self.answer("Rename File", "b.png")  # never over another file
        wait_until(lambda: "b.png" in self.log_text(), "the refusal in the log")
        self.assertTrue(renamed.exists())
        content = renamed.read_bytes()
        self.focus(window)
        self.key("Delete")
        self.shows(window, GREEN)
        [(kept, place)] = self.trash().items()
        self.assertEqual((kept.read_bytes(), place), (content, str(renamed)))
        self.assertTrue(b.exists())
        self.send(process)
        self.ended(process)

    def test_resized_by_keys_alone(self):
        path = self.halves("halves.png")
        before = path.read_bytes()
        process, window = self.open(path)
        self.menu(window, "r", "c")
        dialog = self.window("Custom Resize")
        self.focus(dialog)
        self.output("xdotool", "key", "ctrl+a")
        self.output("xdotool", "type", "100")
        self.key("Return")
        wait_until(lambda: not self.windows("Custom Resize"), "the end of the dialog")
        wait_until(lambda: self.windows(r"halves.png \[100x480\]"), "the size in the caption")
        self.assertEqual(path.read_bytes(), before)  # in memory only
        self.send(process)
        self.ended(process)

    def test_mailed(self):
        path = self.halves("two words.png")
        process, window = self.open(path)
        self.send(process)
        self.ended(process)
        tool = self.home / "postrel"
        told = self.home / "told"
        tool.write_text("#!/bin/sh\nfor argument; do printf '%%s\\n' \"$argument\"; done > %s.part\nmv %s.part %s\n"
                        % (told, told, told))
        tool.chmod(0o755)
        with sqlite3.connect(self.home / "machine" / "machine.db") as store:
            store.execute("INSERT INTO settings (key, name, type, value) VALUES (?, 'postrel', 1, ?)",
                          ("Software\\Halvexa\\Common\\ProgramPaths", str(tool)))
        process, window = self.open(path)
        self.key("ctrl+e")
        wait_until(lambda: self.top_windows() > 1, "the question")
        self.key("alt+y")
        wait_until(told.exists, "the start of the tool")
        lines = told.read_text().splitlines()
        self.assertEqual(lines[0], "/subject:Image (two words.png)")
        self.assertTrue(lines[1].startswith("/hiddenbody:<BRX><BRX>-"), lines[1])
        attached = self.root / "qo_sendimage.jpg"
        self.assertEqual(lines[2:], ["/attachments:%s" % attached])
        self.assertEqual(self.pixels(attached)[0], (640, 480))
        self.send(process)
        self.ended(process)


if __name__ == "__main__":
    unittest.main()

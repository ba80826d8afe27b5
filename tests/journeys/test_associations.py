"""The image types: taken over at a start, given back at the end, looked at with the desktop's own tools."""

import os
import pathlib
import subprocess
import unittest

from harness import Journey, PROGRAM, RED

OWN = "quorvia.desktop"
# Each content type with one of its extensions.
TYPES = {
    "image/jpeg": "jpg", "image/gif": "gif", "image/bmp": "bmp", "image/x-dcx": "dcx", "image/x-portable-bitmap": "pbm",
    "image/vnd.zbrush.pcx": "pcx", "image/x-portable-graymap": "pgm", "image/x-softimage-pic": "pic",
    "image/png": "png", "image/x-portable-pixmap": "ppm", "image/rle": "rle", "image/x-tga": "tga",
    "image/tiff": "tif", "image/wmf": "wmf", "application/x-wpg": "wpg"}
EXTENSIONS = ["jpg", "gif", "bmp", "dcx", "dib", "jif", "ljp", "pbm", "pcx", "pgm", "pic", "png", "ppm", "rle", "tga",
              "tif", "wmf", "wpg", "jpeg", "tiff"]
LIST = b"""# chosen by hand\r
[Added Associations]
image/png=other.desktop;

[Default Applications]
image/png=other.desktop;third.desktop
image/jpeg=other.desktop
image/gif=gone.desktop
image/x-tga=
# odd line \xff
image/svg+xml=other.desktop"""


class Associations(Journey):

    def setUp(self):
        super().setUp()
        share = self.home / "share"
        (share / "applications").mkdir(parents=True)
        (share / "mime").symlink_to("/usr/share/mime")
        self.environment["XDG_DATA_DIRS"] = str(share)
        self.environment["XDG_CONFIG_DIRS"] = str(self.home / "etc")
        for name in ("other", "third"):
            (share / "applications" / (name + ".desktop")).write_text(
                "[Desktop Entry]\nType=Application\nName=%s\nExec=true %%f\nMimeType=%s;\n" % (name, ";".join(TYPES)))
        self.make("update-desktop-database", share / "applications")
        self.list = self.home / "config" / "mimeapps.list"
        self.list.parent.mkdir()

    def default(self, kind):
        return self.output("xdg-mime", "query", "default", kind).strip()

    def seen_by_gio(self, kind):
        return self.output("gio", "mime", kind).splitlines()[0].rsplit(" ", 1)[-1]

    def run_once(self, *arguments):
        program = self.start(*arguments)
        self.send(program)
        self.ended(program)

    def take_over(self):
        picture = self.picture("red.png", "red")
        self.run_once(picture)
        self.assertFalse((self.home / "data" / "applications").exists(), "nothing before it is asked for")
        self.store_number("Associate", 1)
        self.run_once(picture)
        self.assertEqual(self.setting("Associate"), 0)

    def uninstall(self):
        subprocess.run([PROGRAM, "/uninstall"], env=self.environment, cwd=self.home, check=True, timeout=20)

    def complaints(self):
        return [line for line in self.log_lines() if line.startswith("Associations")]

    def test_there_and_back(self):
        self.list.write_bytes(LIST)
        before = {kind: self.default(kind) for kind in TYPES}
        seen = {kind: self.seen_by_gio(kind) for kind in TYPES}
        self.assertEqual(before["image/jpeg"], "other.desktop")
        self.take_over()
        for kind in TYPES:
            self.assertEqual(self.default(kind), OWN, kind)
            self.assertEqual(self.seen_by_gio(kind), OWN, kind)
        entry = self.home / "data" / "applications" / OWN
        self.make("desktop-file-validate", entry)
        self.assertIn("\nExec=%s %%f\n" % PROGRAM, entry.read_text())
        self.assertEqual(self.default("image/svg+xml"), "other.desktop")
        for verb in ("Open", "Preview"):
            for extension in EXTENSIONS:
                self.assertEqual(self.setting(verb + "x." + extension, "Associations"),
                                 str(self.home / "share" / "applications" / "other.desktop"), verb + extension)
        self.uninstall()
        self.assertEqual(self.list.read_bytes(), LIST)
        self.assertEqual({kind: self.default(kind) for kind in TYPES}, before)
        self.assertEqual({kind: self.seen_by_gio(kind) for kind in TYPES}, seen)
        self.assertFalse(entry.exists())
        self.assertIsNone(self.setting("MainWidth"))
        self.assertEqual(self.complaints(), [])

    def test_a_desktop_without_lists(self):
        self.take_over()
        for kind in TYPES:
            self.assertEqual(self.default(kind), OWN, kind)
        for extension in ("jif", "ljp", "dcx", "pic"):
            file = self.home / ("x." + extension)
            file.write_bytes(b"nothing")
            self.assertIn(self.output("gio", "info", "-a", "standard::fast-content-type", str(file)).split()[-1],
                          TYPES, extension)
        self.uninstall()
        self.assertFalse(self.list.exists())
        self.assertEqual(self.seen_by_gio("image/png"), "other.desktop")
        self.assertEqual(list((self.home / "data" / "mime" / "packages").iterdir()), [])
        self.assertEqual(self.complaints(), [])

    def test_a_second_take_over_keeps_the_record(self):
        self.list.write_bytes(LIST)
        self.take_over()
        after = self.list.read_bytes()
        self.store_number("Associate", 1)
        self.run_once(self.pictures / "red.png")
        self.assertEqual(self.list.read_bytes(), after)
        self.uninstall()
        self.assertEqual(self.list.read_bytes(), LIST)

    def test_given_back_without_a_display(self):
        self.list.write_bytes(LIST)
        self.take_over()
        self.assertEqual(self.default("image/png"), OWN)
        del self.environment["DISPLAY"]
        self.uninstall()
        self.assertEqual(self.list.read_bytes(), LIST)

    def test_icons_and_entries_that_are_not_indexed_stay_where_they_are(self):
        mine = self.home / "data" / "applications" / "mine.desktop"
        icon = self.home / "share" / "applications" / "icon.desktop"
        text = "[Desktop Entry]\nType=Application\nName=x\nExec=true %f\nMimeType=image/vnd.microsoft.icon;text/html;\n"
        icon.write_text(text)
        self.make("update-desktop-database", icon.parent)
        self.picture("red.png", "red")
        self.store_associate()
        mine.parent.mkdir(parents=True, exist_ok=True)
        mine.write_text(text)
        self.run_once(self.pictures / "red.png")
        self.assertEqual(self.seen_by_gio("image/png"), OWN)
        for kind in ("image/vnd.microsoft.icon", "text/html"):
            self.assertEqual(self.default(kind), "icon.desktop", kind)
            self.assertEqual(self.seen_by_gio(kind), "icon.desktop", kind)
        self.uninstall()
        self.assertEqual(self.seen_by_gio("text/html"), "icon.desktop")

    def store_associate(self):
        self.run_once(self.pictures / "red.png")
        self.store_number("Associate", 1)

    def test_a_list_behind_a_link_and_one_that_cannot_be_written(self):
        dots = self.home / "dots"
        dots.write_bytes(LIST)
        self.list.symlink_to(dots)
        self.take_over()
        self.assertTrue(self.list.is_symlink())
        self.assertEqual(self.default("image/png"), OWN)
        self.uninstall()
        self.assertTrue(self.list.is_symlink())
        self.assertEqual(dots.read_bytes(), LIST)
        self.list.unlink()
        os.mkfifo(self.list)
        self.take_over_again()
        self.assertEqual([str(self.list) in line for line in self.complaints()], [True])

    def take_over_again(self):
        picture = pathlib.Path(self.pictures / "red.png")
        self.run_once(picture)
        self.store_number("Associate", 1)
        program = self.start(picture)
        self.shows(self.window(), RED)
        self.send(program)
        self.ended(program)


if __name__ == "__main__":
    unittest.main()

"""Files that are no pictures, or hardly: one clear line in the log, and nothing lost."""

import os
import struct
import unittest
import zlib

from harness import Journey, RED, wait_until


def png_header(width, height):
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))
    header = chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0))
    return (b"\x89PNG\r\n\x1a\n" + header + chunk(b"IDAT", zlib.compress(b"\0" * 10)))[:100]


class BadInput(Journey):
    def setUp(self):
        super().setUp()
        self.good = self.picture("a-good.png", "red")

    def open_bad(self, name, content, commands=()):
        """Opens a good picture, then steps to the bad file; returns the log lines that name it."""
        path = self.pictures / name
        if content is not None:
            path.write_bytes(content)
        self.start(self.pictures)
        window = self.window()
        self.focus(window)
        self.shows(window, RED)
        self.key("Right", *commands)
        self.assertEqual(self.setting("ImageOpenCount"), 2)
        return window, [line for line in self.log_lines() if str(path) in line]

    def assert_kept(self, name, content):
        window, lines = self.open_bad(name, content)
        self.assertEqual(len(lines), 1, lines)
        self.shows(window, RED)  # the picture before it stays
        self.key("Right")
        self.shows(window, RED)
        if content is not None:
            self.assertEqual((self.pictures / name).read_bytes(), content)

    def test_an_empty_file(self):
        self.assert_kept("b.jpg", b"")

    def test_a_text_file_named_jpg(self):
        self.assert_kept("b.jpg", b"Dear diary,\n" * 30)

    def test_a_huge_png_header_in_a_hundred_bytes(self):
        self.assert_kept("b.png", png_header(60000, 60000))

    def test_a_directory_named_like_a_picture_is_not_listed(self):
        (self.pictures / "b.png").mkdir()
        self.start(self.pictures)
        window = self.window()
        self.focus(window)
        self.shows(window, RED)
        self.key("Right")
        self.assertEqual(self.setting("ImageOpenCount"), 1)

    def test_a_truncated_jpeg_shows_what_is_there(self):
        whole = self.pictures / "whole.jpg"
        self.make("convert", "-size", "600x400", "xc:red", "-quality", "95", whole)
        content = whole.read_bytes()
        whole.unlink()
        window, lines = self.open_bad("b.jpg", content[:len(content) * 2 // 3])
        self.assertEqual(lines, [])
        left, top, width, height = self.geometry(window)
        red, green, blue = self.pixel(left + width // 2, top + height // 2 - 150)
        self.assertTrue(red > 240 and green < 15 and blue < 15, (red, green, blue))

    def test_a_text_file_alone_on_the_line(self):
        path = self.pictures / "note.jpg"
        path.write_bytes(b"no picture")
        self.start(path)
        self.window()
        self.assertEqual(len([line for line in self.log_lines() if str(path) in line]), 1)

    def test_a_folder_without_pictures(self):
        folder = self.home / "bare"
        folder.mkdir()
        self.start(folder)
        self.window()
        self.assertIsNone(self.setting("ImageOpenCount"))

    def test_what_may_not_be_read(self):
        """As an ordinary user: the super-user may read everything."""
        locked = self.home / "locked"
        locked.mkdir()
        self.make("convert", "-size", "20x20", "xc:blue", locked / "a.png")
        closed = self.pictures / "b.png"
        self.make("convert", "-size", "20x20", "xc:blue", closed)
        closed.chmod(0)
        locked.chmod(0)
        self.become_nobody()
        self.addCleanup(locked.chmod, 0o700)

        self.start(self.pictures)
        window = self.window()
        self.focus(window)
        self.shows(window, RED)
        self.key("Right")
        self.shows(window, RED)
        self.assertEqual(len([line for line in self.log_lines() if str(closed) in line]), 1)
        self.key("Escape")
        wait_until(lambda: not self.windows(), "the window to close")

        opened = self.setting("ImageOpenCount")
        self.start(locked)
        self.window()
        self.assertEqual(self.setting("ImageOpenCount"), opened)

    def test_a_pipe_holds_nothing_up(self):
        pipe = self.pictures / "pipe.png"
        os.mkfifo(pipe)
        self.start(pipe)
        self.window()
        self.assertEqual(len([line for line in self.log_lines() if str(pipe) in line]), 1)


if __name__ == "__main__":
    unittest.main()

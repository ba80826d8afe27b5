"""Metafiles, whose drawing needs the toolkit while it comes up and when it goes."""

import struct
import unittest

from harness import Journey, RED, wait_until


def record(function, *words):
    return struct.pack("<IH", 3 + len(words), function) + b"".join(struct.pack("<H", word & 0xFFFF) for word in words)


def metafile(texts):
    """A red square of 200 pixels with `texts` lines of text along its upper edge."""
    text = b"Quick brown foxes "
    words = struct.unpack("<%dH" % (len(text) // 2), text)
    records = [record(0x020B, 0, 0), record(0x020C, 3000, 3000),      # origin and extents of the window
               record(0x02FC, 0, 0x00FF, 0, 0), record(0x012D, 0),    # a red brush, selected
               record(0x02FA, 5, 0, 0, 0, 0), record(0x012D, 1),      # no pen, selected
               record(0x041B, 3000, 3000, 0, 0)]                      # a rectangle
    records += [record(0x0521, len(text), *words, line % 300, line * 7 % 900) for line in range(texts)]
    records.append(record(0))
    body = b"".join(records)
    header = struct.pack("<HHHIHIH", 1, 9, 0x300, 9 + len(body) // 2, 2, max(map(len, records)) // 2, 0)
    placeable = struct.pack("<IHhhhhHI", 0x9AC6CDD7, 0, 0, 0, 3000, 3000, 1440, 0)
    check = 0
    for word in struct.unpack("<10H", placeable):
        check ^= word
    return placeable + struct.pack("<H", check) + header + body


class Drawings(Journey):
    def drawing(self, name, texts):
        path = self.pictures / name
        path.write_bytes(metafile(texts))
        return path

    def test_a_drawing_on_the_line_waits_for_the_toolkit(self):
        path = self.drawing("a.wmf", 3)
        for _ in range(10):
            program = self.start(path)
            self.shows(self.window(), RED)
            self.send(program)
            self.ended(program)

    def test_the_program_ends_while_a_neighbour_is_drawn(self):
        first = self.picture("a.png", "red")
        self.drawing("b.wmf", 30000)
        for _ in range(5):
            program = self.start(first)
            window = self.window()
            self.shows(window, RED)
            self.focus(window)
            self.key("Escape")
            wait_until(lambda: not self.windows(), "the window to close")
            self.ended(program)


if __name__ == "__main__":
    unittest.main()

"""The wallpaper of a bare X server, looked at when the program has ended."""

import unittest

from harness import BLUE, GREEN, Journey, RED, SCREEN, wait_until

BLACK = (0, 0, 0)
RIGHT, BOTTOM = SCREEN[0] - 1, SCREEN[1] - 1


class WallpaperTest(Journey):

    def setUp(self):
        super().setUp()
        self.halves = self.pictures / "halves.png"
        self.make("convert", "-size", "20x30", "xc:red", "xc:blue", "+append", self.halves)

    def root_pixmap(self):
        """The pixmap that the root window tells of, under both names; None when there is none."""
        names = [self.output("xprop", "-root", name).rsplit("#", 1) for name in ("_XROOTPMAP_ID", "ESETROOT_PMAP_ID")]
        if any(len(parts) != 2 for parts in names):
            return None
        self.assertEqual(names[0][1], names[1][1])
        return names[0][1].strip()

    def desktop(self, name):
        return self.stored(self.home / "config" / "halvexa" / "user.db", "Control Panel\\Desktop", name)

    def wallpaper_by(self, command, picture):
        """Starts the program with a command, ends it when the root window has changed, gives the screen."""
        before = self.root_pixmap()
        program = self.start(picture, "/" + command)
        wait_until(lambda: self.root_pixmap() != before, "the wallpaper of " + command)
        self.send(program)
        self.ended(program)
        return self.screen()

    def assert_points(self, screen, *points):
        for x, y, colour in points:
            self.assertEqual(screen(x, y), colour, "at %d, %d" % (x, y))

    def test_styles_from_the_command_line(self):
        stretched = ((0, 0, RED), (0, BOTTOM, RED), (600, 400, RED), (680, 400, BLUE), (RIGHT, 0, BLUE),
                     (RIGHT, BOTTOM, BLUE))
        rows = (
            ("miWallpaper", "2", "0", stretched),
            ("miWallpaperT", "0", "1", ((0, 0, RED), (20, 0, BLUE), (40, 0, RED), (RIGHT, BOTTOM, BLUE),
                                        (1240, BOTTOM, RED))),
            ("miWallpaperC", "0", "0", ((620, 385, RED), (640, 385, BLUE), (659, 414, BLUE), (619, 400, BLACK),
                                        (660, 400, BLACK), (640, 384, BLACK), (640, 415, BLACK), (0, 0, BLACK))),
            ("miWallpaperS", "2", "0", stretched),
        )
        for command, style, tile, points in rows:
            with self.subTest(command):
                screen = self.wallpaper_by(command, self.halves)
                self.assert_points(screen, *points)
                self.assertEqual(self.desktop("WallpaperStyle"), style)
                self.assertEqual(self.desktop("TileWallpaper"), tile)
        self.assertEqual((self.root / "Quorvia.bmp").read_bytes()[:2], b"BM")
        self.assertFalse([line for line in self.log_lines() if "Wallpaper" in line])

    def test_a_key_sets_it_again_and_again(self):
        self.picture("lime.png", "lime", "50x50")
        program = self.start(self.pictures)
        window = self.window()
        self.built(window)
        self.focus(window)
        self.key("ctrl+w")
        first = wait_until(self.root_pixmap, "the first wallpaper")
        self.key("Right")
        self.shows(window, GREEN)
        self.key("ctrl+w")
        wait_until(lambda: self.root_pixmap() != first, "the second wallpaper")
        self.assertEqual(self.setting("ImageOpenCount"), 2)
        self.send(program)
        self.ended(program)
        self.assert_points(self.screen(), (0, 0, GREEN), (RIGHT, BOTTOM, GREEN), (640, 400, GREEN))

    def test_a_desktop_that_takes_none_is_told_to_the_log(self):
        program = self.start(self.halves, "/miWallpaperT", XDG_CURRENT_DESKTOP="GNOME",
                             XDG_DATA_DIRS=str(self.home / "nothing"), GSETTINGS_BACKEND="memory")
        wait_until(lambda: any(line.startswith("Wallpaper not set: ") for line in self.log_lines()), "the log's line")
        self.shows(self.window(), BLUE)
        self.assertIsNone(self.root_pixmap())
        self.assertTrue((self.root / "Quorvia.bmp").exists())
        self.send(program)
        self.ended(program)


if __name__ == "__main__":
    unittest.main()

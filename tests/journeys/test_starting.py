"""Starting with a picture, and coming back as it was left."""

import unittest

from harness import Journey, RED, GREEN, wait_until

LOAD_LINES = [
    "Init: Form_Load: frmImageView",
    "Start: Sizing",
    "End: Sizing",
    "Start: First_CommandLineParsing",
    "End: First_CommandLineParsing",
    "Start: TabLoading and Name",
    "End: TabLoading and Name",
    "Start: frmImageViewPlaylist_Load",
    "End: frmImageViewPlaylist_Load",
    "Finish: Form_Load: frmImageView",
]


class Starting(Journey):
    def test_the_picture_stands_and_the_log_tells_the_road(self):
        program = self.start(self.picture("red.png", "red"))
        window = self.window()
        self.shows(window, RED)
        self.assertEqual(self.log_lines(), LOAD_LINES)
        for line in self.log_text().splitlines():
            self.assertRegex(line, r"^\d\d-\d\d-\d{4} - \d\d:\d\d:\d\d[A-Z]")
        self.assertRegex(self.output("xdotool", "getwindowname", window).strip(), r"^Quorvia v\d+\.\d+\.\d+$")
        self.assertEqual(self.setting("ImageOpenCount"), 1)
        for directory in ("Thumbs", "Playlist", "Description", "Conversion"):
            self.assertTrue((self.root / directory).is_dir(), directory)
        self.assertEqual(self.common("ThumbnailPath", "Common\\ResourcePaths"), str(self.root) + "/Thumbs/")
        self.key("Escape")
        self.ended(program)
        self.assertEqual(program.stdout.read(), "")

    def test_a_first_window_takes_seven_eighths_of_the_screen(self):
        self.start(self.picture("red.png", "red"))
        _, _, width, height = self.geometry(self.window())
        self.assertEqual((width, height), (1280 - 160, 800 - 100))

    def test_geometry_comes_back(self):
        program = self.start(self.picture("red.png", "red"))
        window = self.window()
        self.resize(window, 600, 420)
        self.move(window, 200, 150)
        before = self.geometry(window)
        self.close_by_frame(window)
        self.ended(program)
        self.assertEqual((self.setting("MainWidth"), self.setting("MainHeight")), (600 * 15, 420 * 15))
        for _ in range(2):  # more than once: a frame must not shift it bit by bit
            program = self.start(self.picture("red.png", "red"))
            window = self.window()
            wait_until(lambda: self.geometry(window) == before,
                       "%s to come back, not %s" % (before, self.geometry(window)))
            self.focus(window)
            self.key("Escape")
            self.ended(program)

    def test_a_maximised_window_comes_back_with_its_normal_size_kept(self):
        program = self.start(self.picture("red.png", "red"))
        window = self.window()
        self.resize(window, 640, 400)
        self.move(window, 120, 90)
        self.focus(window)
        before = self.geometry(window)
        self.maximise(window)
        wait_until(lambda: self.geometry(window)[2] == 1280, "the maximised width")
        self.send(program)
        self.ended(program)
        self.assertEqual(self.setting("MainWindowState"), 2)
        self.assertEqual((self.setting("MainWidth"), self.setting("MainHeight")), (640 * 15, 400 * 15))
        program = self.start(self.picture("red.png", "red"))
        window = self.window()
        wait_until(lambda: self.geometry(window)[2] == 1280, "the maximised width of the next start")
        corner = (self.setting("MainLeft"), self.setting("MainTop"))
        self.maximise(window)
        wait_until(lambda: self.geometry(window)[2] == 640, "the normal size")
        self.send(program)
        self.ended(program)
        self.assertEqual((self.setting("MainLeft"), self.setting("MainTop")), corner)
        self.start(self.picture("red.png", "red"))
        window = self.window()
        wait_until(lambda: self.geometry(window) == before,
                   "%s to come back, not %s" % (before, self.geometry(window)))

    def maximise(self, window):
        """Double click on the title bar, as a person does it."""
        left, top, width, _ = self.geometry(window)
        self.output("xdotool", "mousemove", str(left + width // 2), str(top - 10),
                    "click", "--repeat", "2", "--delay", "60", "1")

    def test_a_plain_start_shows_the_first_image_of_the_remembered_folder(self):
        self.picture("b.png", "red")
        self.picture("a.png", "lime")
        program = self.start(self.pictures / "b.png")
        self.shows(self.window(), RED)
        self.key("Escape")
        self.ended(program)
        self.start()
        self.shows(self.window(), GREEN)

    def test_a_small_window_is_raised_to_the_smallest(self):
        program = self.start(self.picture("red.png", "red"))
        window = self.window()
        self.resize(window, 60, 60)
        self.send(program)
        self.ended(program)
        self.start(self.picture("red.png", "red"))
        window = self.window()
        wait_until(lambda: self.geometry(window)[2:] == (100, 133),
                   "the smallest size, not %s" % (self.geometry(window),))


if __name__ == "__main__":
    unittest.main()

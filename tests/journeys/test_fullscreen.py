"""The image alone on the whole screen: keys, mouse, bar, and the show that is nothing else."""

import time
import unittest

from harness import BLUE, GREEN, Journey, RED, SCREEN, wait_until

BLACK = (0, 0, 0)
FULL = (0, 0) + SCREEN
MIDDLE = (SCREEN[0] // 2, SCREEN[1] // 2)
BAR = {"previous": (48, 19), "next": (145, 19), "play": (240, 19), "size": (337, 19), "close": (SCREEN[0] - 48, 19)}


class FullScreen(Journey):
    def setUp(self):
        super().setUp()
        for name, colour in (("1.png", "red"), ("2.bmp", "lime"), ("3.gif", "blue")):
            self.picture(name, colour)

    # --- the window

    def full(self):
        """The ids of the windows that fill the screen."""
        return [window for window in self.windows("Quorvia") if self.geometry(window) == FULL]

    def enter(self, *arguments):
        process, window = self.open(*(arguments or [self.pictures]))
        self.shows(window, RED)
        self.key("ctrl+f")
        self.filled()
        return process, window

    def filled(self):
        window = wait_until(self.full, "the window that fills the screen")[0]
        self.has_keys(window)
        return window

    def has_keys(self, window):
        wait_until(lambda: self.output("xdotool", "getwindowfocus", "-f").strip() == window, "the keys")

    def left(self, window):
        """Waits until the main window has the keys again."""
        wait_until(lambda: not self.full(), "the end of full screen")
        self.has_keys(window)

    def sees(self, place, colour):
        wait_until(lambda: self.pixel(*place) == colour,
                   "the colour %s at %s, which has %s" % (colour, place, self.pixel(*place)))

    def rest(self):
        """Takes the pointer where it shows nothing."""
        self.output("xdotool", "mousemove", "640", "700")

    def show_bar(self):
        self.output("xdotool", "mousemove", "600", "300")
        self.output("xdotool", "mousemove", "600", "20")
        wait_until(lambda: self.pixel(1, 40 - 2) not in (BLACK, RED, GREEN, BLUE), "the bar")

    # --- composing

    def test_the_three_modes(self):
        self.enter()
        self.rest()
        self.sees(MIDDLE, RED)
        self.sees((319, 400), BLACK)  # 640 x 480 lies in the middle as it is
        self.sees((321, 161), RED)
        self.sees((960, 400), BLACK)
        self.key("s")  # fits the width: 1280 x 960, cut above and below
        self.sees((2, 2), RED)
        self.assertEqual(self.setting("cFView"), 1)
        self.key("s")
        self.assertEqual(self.setting("cFView"), 2)
        self.sees((2, 2), RED)
        self.key("s")
        self.sees((2, 2), BLACK)
        self.assertEqual(self.setting("cFView"), 0)
        self.assertEqual(self.setting("ImageOpenCount"), 1)  # nothing was opened for it

    def test_the_caption(self):
        self.enter()
        self.rest()

        def white():
            pixel = self.screen()
            return sum(pixel(x, y) == (255, 255, 255) for x in range(0, 80) for y in range(0, 30))
        self.assertEqual(white(), 0)
        self.key("t")
        wait_until(lambda: white() > 20, "the name")
        self.key("t")
        wait_until(lambda: white() == 0, "the name to go")

    # --- keys

    def test_keys_walk(self):
        self.enter()
        for key, colour in (("Right", GREEN), ("Down", BLUE), ("Right", RED), ("Left", BLUE), ("Up", GREEN)):
            self.key(key)
            self.sees(MIDDLE, colour)
        opened = self.setting("ImageOpenCount")

        def another():
            self.key("space")
            return self.setting("ImageOpenCount") > opened
        wait_until(another, "a picture by chance that is another one")

    def test_the_other_keys(self):
        _, window = self.enter()
        self.key("ctrl+k", "alt+k", "shift+k", "shift", "ctrl")
        self.assertTrue(self.full())
        self.key("k")
        self.left(window)
        self.key("Right")
        self.shows(window, GREEN)
        self.key("ctrl+Return")  # and in again
        self.filled()
        self.sees(MIDDLE, GREEN)

    def test_escape_ends_the_program(self):
        process, _ = self.enter()
        self.key("Escape")
        self.ended(process)

    def test_the_show_runs_here_and_goes_on_in_the_window(self):
        _, window = self.enter()
        self.key("p")
        self.sees(MIDDLE, GREEN)
        self.sees(MIDDLE, BLUE)
        self.key("k")
        self.left(window)
        self.shows(window, RED)
        self.shows(window, GREEN)

    def test_a_missing_file_is_named_in_front(self):
        self.enter()
        (self.pictures / "3.gif").unlink()
        self.key("Up")
        box = self.window("File Opening Error")
        self.has_keys(box)
        x, y = self.centre(box)
        self.assertNotIn(self.pixel(x, y), (BLACK, RED))  # it is seen
        self.key("Return")
        wait_until(lambda: not self.windows("File Opening Error"), "the end of the box")
        self.assertTrue(self.full())
        self.key("Right", "Right")  # from the end of the list, where the entry has gone, to its second one
        self.sees(MIDDLE, GREEN)

    def test_a_held_key_walks_and_stops_with_its_release(self):
        self.enter()
        before = self.setting("ImageOpenCount")
        self.output("xdotool", "key", "--repeat", "30", "--delay", "30", "Right")
        time.sleep(0.5)
        after = self.setting("ImageOpenCount")
        self.assertGreater(after, before + 4)
        self.assertLessEqual(after, before + 30)
        time.sleep(0.5)
        self.assertEqual(self.setting("ImageOpenCount"), after)

    def hold(self, key, seconds, *before_release):
        self.output("xdotool", "keydown", key)
        for other in before_release:
            self.output("xdotool", "keyup", other)
        time.sleep(seconds)
        self.output("xdotool", "keyup", key)

    def test_a_held_key_that_closes_goes_no_further(self):
        _, window = self.enter()
        self.hold("Delete", 1.6)
        self.left(window)
        self.key("Right")
        self.shows(window, GREEN)
        self.assertEqual(len(list(self.pictures.iterdir())), 3)  # in the main window it deletes

    def test_a_held_key_that_opens_does_not_close(self):
        process, window = self.open(self.pictures)
        self.shows(window, RED)
        self.output("xdotool", "keydown", "ctrl")
        self.hold("Return", 1.6, "ctrl")
        self.filled()
        time.sleep(0.5)  # a press that comes at once could be another repeat
        self.key("Return")
        self.left(window)

    def test_other_windows_in_front(self):
        _, window = self.enter()
        full = self.full()[0]
        self.assertIn(hex(int(window)), self.output("xprop", "-id", full, "WM_TRANSIENT_FOR"))
        self.output("xdotool", "windowminimize", full)
        self.focus(window)
        self.key("Right")
        self.shows(window, GREEN)  # it is not taken for hidden
        self.key("ctrl+f")
        self.filled()
        self.sees(MIDDLE, GREEN)

    def test_ended_from_outside(self):
        process, _ = self.enter()
        self.send(process)
        self.ended(process)

    def test_a_broken_file_leaves_the_picture_before_it(self):
        (self.pictures / "2.bmp").write_bytes(b"BM and no more")
        self.enter()
        opened = self.setting("ImageOpenCount")
        self.key("Right")
        wait_until(lambda: self.setting("ImageOpenCount") > opened, "the try")
        self.sees(MIDDLE, RED)
        self.key("Right")
        self.sees(MIDDLE, BLUE)

    # --- mouse and bar

    def test_the_mouse(self):
        _, window = self.enter()
        self.rest()
        self.output("xdotool", "click", "3")
        self.sees(MIDDLE, GREEN)
        self.output("xdotool", "keydown", "shift", "click", "1", "keyup", "shift")
        self.sees(MIDDLE, RED)
        time.sleep(0.6)  # or it is a double click
        self.output("xdotool", "click", "1")
        time.sleep(0.6)
        self.assertTrue(self.full())
        self.output("xdotool", "click", "--repeat", "2", "--delay", "60", "1")
        self.left(window)

    def test_the_bar_comes_and_goes(self):
        self.enter()
        self.rest()
        self.sees((1, 38), BLACK)
        self.show_bar()
        self.output("xdotool", "mousemove", "600", "53")  # below the bar, and still near
        time.sleep(0.2)
        self.assertNotEqual(self.pixel(1, 38), BLACK)
        self.output("xdotool", "mousemove", "600", "56")
        self.sees((1, 38), BLACK)

    def test_the_buttons(self):
        _, window = self.enter()
        self.show_bar()
        self.click(*BAR["next"])
        self.sees(MIDDLE, GREEN)
        self.click(*BAR["previous"])
        self.sees(MIDDLE, RED)
        self.click(*BAR["size"])
        wait_until(lambda: self.setting("cFView") == 1, "best fit")
        self.click(*BAR["play"])
        self.sees(MIDDLE, GREEN)  # by the show
        self.click(*BAR["play"])
        self.click(*BAR["close"])
        self.left(window)

    # --- on the command line

    def test_from_the_line(self):
        self.start(self.pictures, "/miFullScreen")
        self.filled()
        self.sees(MIDDLE, RED)
        self.key("k")
        self.left(self.window())

    def test_alone_on_the_screen(self):
        process = self.start(self.pictures, "/miFullScreen", "/miHide")
        self.filled()
        self.sees(MIDDLE, RED)
        self.assertEqual(len(self.windows("Quorvia")), 1)
        self.key("Right")
        self.sees(MIDDLE, GREEN)
        self.key("Escape")
        self.ended(process)

    def test_a_show_alone_ends_with_any_key(self):
        process = self.start(self.pictures, "/xSlideShow")
        self.filled()
        self.sees(MIDDLE, GREEN)
        self.sees(MIDDLE, BLUE)
        self.key("Right")
        self.ended(process)

    def test_a_show_alone_ends_with_the_mouse(self):
        self.output("xdotool", "mousemove", "600", "300")
        process = self.start(self.pictures, "/xSlideShow")
        self.filled()
        self.sees(MIDDLE, GREEN)
        for x, y in ((603, 300), (606, 310), (606, 700), (604, 200)):  # up and down does not count, nor a touch
            self.output("xdotool", "mousemove", str(x), str(y))
            time.sleep(0.1)
        self.assertIsNone(process.poll())
        self.output("xdotool", "mousemove", "620", "200")
        self.ended(process)

    def test_a_show_alone_ends_with_a_button(self):
        process = self.start(self.pictures, "/xSlideShow")
        self.filled()
        self.output("xdotool", "click", "2")
        self.ended(process)

    def test_without_pictures(self):
        (self.home / "nothing").mkdir()
        for command in ("/miFullScreen", "/xSlideShow"):
            process = self.start(self.home / "nothing", command)
            self.filled()
            self.sees(MIDDLE, BLACK)
            self.key("Escape")
            self.ended(process)

    def test_at_start_by_the_preference(self):
        self.start(self.pictures)
        self.focus(self.window())
        self.key("Escape")
        wait_until(lambda: not self.windows(), "the end")
        self.store_number("cFull", 1)
        self.start(self.pictures)
        self.filled()
        self.sees(MIDDLE, RED)


if __name__ == "__main__":
    unittest.main()

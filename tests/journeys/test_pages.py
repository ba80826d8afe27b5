"""The navigator over the pages of a TIFF."""

import unittest

from harness import BLUE, CHROME, GREEN, Journey, RED, wait_until

YELLOW = (255, 255, 0)


class Pages(Journey):
    def setUp(self):
        super().setUp()
        self.document = self.pictures / "document.tif"
        self.make("convert", "-size", "400x300", "xc:red", "xc:lime", "xc:blue", self.document)

    def buttons(self, window):
        """Screen places of the navigator's two buttons: it stands beside the link at the top right, with a frame around it."""
        left, top, width, _ = self.geometry(window)
        pixel, y = self.screen(), top
        right = next(x for x in range(left + width - 2, left, -1) if pixel(x, y) != CHROME) + 1
        start = next(x for x in range(right - 2, left, -1) if pixel(x, y) == CHROME) + 1
        self.assertGreater(right - start, 60, "no navigator on show")
        return (right - 18, top + 15), (start + 16, top + 15)

    def test_buttons_turn_the_pages_and_stop_at_the_ends(self):
        self.start(self.document)
        window = self.window()
        self.shows(window, RED)
        forward, back = self.buttons(window)
        for place, colour in ((back, RED), (forward, GREEN), (forward, BLUE), (forward, BLUE), (back, GREEN),
                              (back, RED)):
            self.click(*place)
            self.shows(window, colour)
        self.assertEqual(self.setting("ImageOpenCount"), 1)

    def test_another_picture_begins_at_its_first_page_without_navigator(self):
        self.picture("a.png", "yellow")
        self.start(self.document)
        window = self.window()
        self.shows(window, RED)
        forward, _ = self.buttons(window)
        top = self.geometry(window)[1]
        self.click(*forward)
        self.shows(window, GREEN)
        self.focus(window)
        self.key("Right")  # a.png
        self.shows(window, YELLOW)
        wait_until(lambda: self.pixel(forward[0], top) == CHROME, "the navigator to go")
        self.key("Right")  # the document again
        self.shows(window, RED)


if __name__ == "__main__":
    unittest.main()

"""The navigator over the pages of a TIFF."""

import unittest

from harness import BLUE, GREEN, Journey, RED


class Pages(Journey):
    def setUp(self):
        super().setUp()
        self.document = self.pictures / "document.tif"
        self.make("convert", "-size", "400x300", "xc:red", "xc:lime", "xc:blue", self.document)

    def buttons(self, window):
        """Screen places of the navigator's two buttons: it stands in the top right corner."""
        left, top, width, _ = self.geometry(window)
        return (left + width - 15, top + 14), (left + width - 85, top + 14)

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
        self.picture("a.png", "lime")
        self.start(self.document)
        window = self.window()
        self.shows(window, RED)
        forward, _ = self.buttons(window)
        self.assertNotEqual(self.pixel(*forward), self.pixel(forward[0], forward[1] + 100), "no navigator on show")
        self.click(*forward)
        self.shows(window, GREEN)
        self.focus(window)
        self.key("Right")  # a.png
        self.shows(window, GREEN)
        self.assertEqual(self.pixel(*forward), self.pixel(forward[0], forward[1] + 100))
        self.key("Right")  # the document again
        self.shows(window, RED)


if __name__ == "__main__":
    unittest.main()

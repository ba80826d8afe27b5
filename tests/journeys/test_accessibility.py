"""The main window as a screen reader sees it, and as it is reached without a mouse."""

import os
import unittest

from accessibility import AccessibleJourney
from harness import RED, wait_until


# What the Tab key passes by, and why it may: role, name, reason.
WELCOME = (
    ("link", "Lindora Center", "the row of that name is a link to the same place"),
    ("scroll bar", "Vertical scroll bar", "a row comes into sight when it gets the focus"),
)
PICTURE = (("push button", "Picture List", "the F key, and File List in the context menu"),)


class MainWindow(AccessibleJourney):
    def begin(self, *arguments):
        self.process, self.viewer = self.open(*arguments)
        return self.process

    def with_pictures(self):
        for name, colour in (("a.png", "red"), ("b.png", "lime"), ("c.png", "blue")):
            self.picture(name, colour)
        self.begin(self.pictures)
        self.shows(self.viewer, RED)

    def test_without_a_picture(self):
        self.begin()
        self.check("welcome", self.shown("Quorvia"), (
            ("link", "Open Image"), ("push button", "Product Information"), ("page tab list", "Tabs"),
            ("tool bar", "Toolbar")), WELCOME)
        self.no_faults()

    def test_information_and_panels(self):
        self.with_pictures()
        self.key("2", "f", "k")
        self.check("information", self.shown("Quorvia"), (
            ("text", "Description"), ("tree", "Folders"), ("list", "Pictures"), ("link", "View as Slideshow"),
            ("push button", "Show the picture alone")))
        self.no_faults()

    def test_filmstrip(self):
        self.with_pictures()
        self.key("3")
        self.check("filmstrip", self.shown("Quorvia"), (
            ("list", "Filmstrip"), ("list item", "b.png"), ("push button", "Show the picture alone")), PICTURE)
        self.no_faults()

    def test_what_the_filmstrip_tells(self):
        for case in ("theKeysTellWhereTheyAre", "anotherListIsToldOfOnce"):
            self.run_in_the_display(os.environ["QUORVIA_STRIP_TEST"], case)


if __name__ == "__main__":
    unittest.main()

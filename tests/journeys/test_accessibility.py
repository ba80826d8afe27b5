"""The main window as a screen reader sees it, and as it is reached without a mouse."""

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
        self.check("welcome", self.shown("Quorvia"), WELCOME)
        self.no_faults()

    def test_information_and_panels(self):
        self.with_pictures()
        self.key("2", "f", "k")
        self.check("information", self.shown("Quorvia"), (ALONE,))
        self.no_faults()

    def test_filmstrip(self):
        self.with_pictures()
        self.key("3")
        self.check("filmstrip", self.shown("Quorvia"), PICTURE)
        self.no_faults()


if __name__ == "__main__":
    unittest.main()

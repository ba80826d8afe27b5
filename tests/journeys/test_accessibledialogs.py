"""The dialogs of the program as a screen reader sees them, and as they are reached without a mouse."""

import subprocess
import unittest

from accessibility import AccessibleJourney
from harness import RED, wait_until


class Dialogs(AccessibleJourney):
    def setUp(self):
        super().setUp()
        self.picture("a.png", "red")
        self.picture("b.png", "lime")
        self.process, self.viewer = self.open(self.pictures)
        self.shows(self.viewer, RED)

    def keys(self, *keys):
        return lambda: self.key(*keys)

    def visit(self, what, how, otherwise=()):
        top = self.opened(how, what)
        self.check(what, top, otherwise)
        self.closed(top)
        self.focus(self.viewer)

    def test_boxes(self):
        for what, key in (("help", "F1"), ("shortcuts", "F2"), ("about", "F10"), ("engine", "F12")):
            self.visit(what, self.keys(key))
        self.no_faults()

    def test_files(self):
        self.visit("rename", self.keys("ctrl+r"))
        self.visit("open", self.keys("ctrl+o"))
        self.visit("save", self.keys("ctrl+s"))
        self.no_faults()

    def test_size(self):
        self.visit("size", lambda: self.by_menu("r", "c"))
        self.no_faults()

    def test_preferences(self):
        top = self.opened(lambda: self.by_menu("n"), "the preferences")
        for page in ("first", "second", "third", "fourth"):
            self.check("preferences, %s page" % page, self.shown(top.name))
            self.key("ctrl+Tab")
        self.closed(top)
        self.no_faults()

    def test_clipboard(self):
        owner = subprocess.Popen(["xclip", "-quiet", "-selection", "clipboard", "-t", "image/png", "-i",
                                  str(self.pictures / "b.png")], env=self.environment, stdin=subprocess.DEVNULL,
                                 stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(self._end, owner)
        wait_until(lambda: self.output("xclip", "-selection", "clipboard", "-o", "-t", "TARGETS"), "the offer")
        self.visit("clipboard", self.keys("ctrl+v"), (("menu item", "View", "Alt and its letter open it"),))
        self.no_faults()

    def test_playlist_editor(self):
        self.visit("editor", lambda: self.by_menu("t", "p"))
        self.no_faults()


if __name__ == "__main__":
    unittest.main()

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

    def visit(self, what, how, holds, otherwise=()):
        top = self.opened(how, what)
        self.check(what, top, holds, otherwise)
        self.closed(top)
        self.focus(self.viewer)

    def test_boxes(self):
        asks = (("label", "You have requested to view .*"), ("push button", "Yes"), ("push button", "No"))
        tells = (("label", ".*Image Engine: .*"), ("push button", "OK"))
        for what, key, holds in (("help", "F1", asks), ("shortcuts", "F2", asks), ("about", "F10", tells),
                                 ("engine", "F12", tells)):
            self.visit(what, self.keys(key), holds)
        self.no_faults()

    def test_files(self):
        files = (("tree", "Files"), ("tree item", "b.png"), ("text", "File name:"), ("list", "Sidebar"))
        self.visit("rename", self.keys("ctrl+r"), (("text", "Rename File to"), ("push button", "OK")))
        self.visit("open", self.keys("ctrl+o"), files)
        self.visit("save", self.keys("ctrl+s"), (*files, ("push button", "Save")))
        self.no_faults()

    def test_size(self):
        self.visit("size", lambda: self.by_menu("r", "c"), (
            ("text", "Width"), ("text", "Height"), ("check box", "Constrain Aspects")))
        self.no_faults()

    def test_preferences(self):
        top = self.opened(lambda: self.by_menu("n"), "the preferences")
        for page, holds in (
                ("General Settings", (("check box", "Load Previous Layout"), ("push button", "Background Color"))),
                ("Fullscreen Settings", (("check box", "Enable Border"), ("push button", "Background Color"))),
                ("JPEG Settings", (("scroll bar", "Luminance Quality"), ("check box", "Grayscale"))),
                ("Advanced", (("check box", "Enable Beta Features"), ("push button", "Clear Thumbnails")))):
            self.check("preferences, " + page, self.shown(top.name), (("page tab", page), *holds))
            self.key("ctrl+Tab")
        self.closed(top)
        self.no_faults()

    def test_clipboard(self):
        owner = subprocess.Popen(["xclip", "-quiet", "-selection", "clipboard", "-t", "image/png", "-i",
                                  str(self.pictures / "b.png")], env=self.environment, stdin=subprocess.DEVNULL,
                                 stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(self._end, owner)
        wait_until(lambda: self.output("xclip", "-selection", "clipboard", "-o", "-t", "TARGETS"), "the offer")
        top = self.opened(self.keys("ctrl+v"), "clipboard")
        self.check("clipboard", top, (("push button", "Paste Image >>"), ("push button", "Cancel")),
                   (("menu item", "View", "Alt and its letter open it"),))
        self.check_menu("menu of the clipboard", self.keys("alt+v"), 0, 2)
        self.key("Escape")
        self.no_faults()

    def test_playlist_editor(self):
        self.visit("editor", lambda: self.by_menu("t", "p"), (
            ("tree", "Folders"), ("list", "Images of the folder"), ("list item", "a.png"), ("combo box", "Auto Playlist")))
        self.no_faults()


if __name__ == "__main__":
    unittest.main()

"""What the main window turns into, and its menus, as a screen reader sees them, and as they are reached without a mouse."""

import unittest

from accessibility import AccessibleJourney, LOST
from harness import RED, wait_until

# What does what the buttons of the bar do: role, name, reason.
BAR = tuple(("push button", name, reason) for name, reason in (
    ("View Previous Image", "the Left key"), ("View Next Image", "the Right key"),
    ("Toggle Slideshow Setting", "the P key"), (r"Change Display Types .*", "the S key"),
    ("Close Fullscreen", "the K key")))
PICTURE = (("push button", "Picture List", "the F key, and File List in the context menu"),)


class States(AccessibleJourney):
    def begin(self, *arguments):
        if not arguments:
            self.picture("a.png", "red")
            self.picture("b.png", "lime")
        self.process, self.viewer = self.open(*(arguments or [self.pictures]))
        self.shows(self.viewer, RED)

    def test_full_screen(self):
        self.begin()
        top = self.opened(lambda: self.key("ctrl+f"), "full screen")
        self.assertEqual([(node.role, node.name) for node in top.below()], [("frame", "Fullscreen")])
        self.check_names("full screen", top)
        self.output("xdotool", "mousemove", "600", "300")

        def barred():
            self.output("xdotool", "mousemove", "600", "20", "mousemove", "610", "20")
            now = self.tree(top.path)
            return now if any(node.name == "Fullscreen bar" for node in now.below()) else None
        self.check("full screen with its bar", wait_until(barred, "the bar"), tuple(row[:2] for row in BAR), BAR)
        self.key("p")
        self.check_names("slide show", self.tree(top.path))
        self.key("p")
        self.closed(top, "k")
        self.no_faults()

    def test_pages(self):
        document = self.pictures / "document.tif"
        self.make("convert", "-size", "400x300", "xc:red", "xc:lime", "xc:blue", document)
        self.begin(document)
        top = self.shown("Quorvia")
        self.check("pages", top, (("push button", "Previous page"), ("push button", "Next page"), ("label", "1 of 3")), PICTURE)
        self.go_to(self.found(top, "push button", "Next page"))
        self.key("space")
        self.shows(self.viewer, (0, 255, 0))
        self.no_faults()

    def test_menu_keys_in_the_panels(self):
        self.begin()
        self.key("f", "k")
        top = self.shown("Quorvia")
        for role, name in (("tree", "Folders"), ("push button", "Select Directory"), ("link", "View as Slideshow")):
            for key in ("shift+F10", "Menu"):
                self.go_to(self.found(top, role, name))
                before = self.focused()
                first = self.brought(lambda: self.key(key), lambda: self.ask("moved", before, LOST), "the menu")
                self.assertEqual(self.tree(first[0]).name, "Open")
                self.key("Escape")
                wait_until(lambda: self.ask("focus")[-1] == top.path, "the end of the menu")

    def test_menus(self):
        self.begin()
        for key in ("shift+F10", "Menu"):
            menu = self.check_menu("context menu by " + key, lambda: self.key(key), 12)
            self.key("Escape")
            wait_until(lambda: self.ask("focus")[-1] != menu.path, "the end of the menu")
        self.no_faults()


if __name__ == "__main__":
    unittest.main()

"""The faces of the panel, and the toolkit's dialogs, as a screen reader sees them, and as they are reached without a mouse."""

import unittest

from accessibility import AccessibleJourney
from harness import RED, wait_until
from printwindow import PrintJourney, WINDOW

# The toolkit's own, to which no name or role can be given from outside: role, name, reason.
COLOURS = (
    ("filler", "Basic colors", "a field of colours is no known role to the toolkit"),
    ("filler", "Custom colors", "a field of colours is no known role to the toolkit"),
    ("label", r"\s*", "it tells of the colour under the pointer, while one is picked from the screen"),
)
FONTS = (
    ("text", "", "what it shows is chosen in the list beneath it"),
    ("list", "", "the toolkit tells no name of a list, though it has a label"),
)
TABBED_PAST = (
    ("text", "", "what it shows is chosen in the list beneath it"),
    ("text", "Size", "the list beneath it, and Alt and the letter of its label"),
)
# What the dialog of colours has to hold.
WELLS = (("filler", "Basic colors"), ("spin box", "Red:"), ("text", "HTML:"), ("push button", "OK"))


class Panels(AccessibleJourney):
    def setUp(self):
        super().setUp()
        self.picture("a.png", "red")
        self.picture("b.png", "lime")
        self.process, self.viewer = self.open(self.pictures)
        self.shows(self.viewer, RED)

    def begin(self):
        """The main window, with the list of pictures."""
        self.key("f")
        return self.shown("Quorvia")

    def pressed(self, top, name, role="push button"):
        self.go_to(self.found(top, role, name))
        return self.opened(lambda: self.key("space"), name)

    def test_folder(self):
        top = self.pressed(self.begin(), "Select Directory")
        self.check("folder", top, (("text", "Directory:"), ("tree", "Files"), ("push button", "Choose")))
        self.closed(top)
        self.no_faults()

    def test_playlist(self):
        top = self.begin()
        self.go_to(self.found(top, "page tab", "Playlist"))
        self.key("space")
        wait_until(lambda: any(node.name == "Playlist Editor" for node in self.tree(top.path).below()), "the playlist")
        self.check("playlist", self.shown("Quorvia"), (
            ("page tab", "Playlist"), ("push button", "Add Images to Playlist"), ("push button", "Playlist Editor"),
            ("push button", "Playlist: Auto Playlist"), ("label", "0 Images")))
        self.no_faults()

    def test_floating_list(self):
        self.go_to(self.found(self.begin(), "push button", "Float Picture List"))
        self.key("space")
        self.focus(self.window("Picture List$"))
        top = self.shown("Picture List")
        self.go_to(self.found(top, "list", "Pictures"))  # from the panel itself, to which no key leads
        self.check("floating list", top, (
            ("list", "Pictures"), ("list item", ".*b .*"), ("tree", "Folders"), ("push button", "Dock Picture List")))
        self.go_to(self.found(top, "push button", "Dock Picture List"))
        self.key("space")
        wait_until(lambda: not self.windows("Picture List$"), "the end of the window")
        self.no_faults()

    def test_colour(self):
        preferences = self.opened(lambda: self.by_menu("n"), "the preferences")
        top = self.pressed(preferences, "Background Color")
        self.check("colour", top, WELLS, unsaid=COLOURS)
        self.closed(top)
        self.no_faults()

    def test_list_menu(self):
        self.go_to(self.found(self.begin(), "list", "Pictures"))
        self.check_menu("menu of the list", lambda: self.by_menu("Down"), 2)
        self.key("Escape")
        self.no_faults()

    def test_filmstrip_menu(self):
        self.key("3")
        self.go_to(self.found(self.shown("Quorvia"), "list", "Filmstrip"))
        self.check_menu("menu of the filmstrip", lambda: self.by_menu("Down"), 0)
        self.key("Escape")
        self.no_faults()


class Printing(AccessibleJourney, PrintJourney):
    def test_font_and_colour(self):
        self.start_viewer()
        self.summon(WINDOW)
        window = self.shown(WINDOW)
        self.go_to(self.found(window, "push button", "Font..."))
        top = self.opened(lambda: self.key("space"), "the font")
        self.check("font", top, (
            ("list item", "DejaVu Sans"), ("text", "Size"), ("push button", "OK"), ("push button", "Color of the text")),
            TABBED_PAST, FONTS)
        self.closed(top)
        self.no_faults()

    def test_effects_menu(self):
        self.start_viewer()
        self.summon(WINDOW)
        self.go_to(self.found(self.shown(WINDOW), "push button", "FX Features >"))
        self.check_menu("effects", lambda: self.by_menu("Down", opener="space"), 0)
        self.key("Escape")
        self.no_faults()


if __name__ == "__main__":
    unittest.main()

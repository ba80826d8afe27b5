"""The windows of single tasks as a screen reader sees them, and as they are reached without a mouse."""

import sqlite3
import unittest

from accessibility import AccessibleJourney
from harness import RED, wait_until
from printwindow import PrintJourney, WINDOW


class Printing(AccessibleJourney, PrintJourney):
    def test_window(self):
        self.start_viewer()
        self.summon(WINDOW)
        self.check("print", self.shown(WINDOW), (
            ("text", "Page Title"), ("radio button", "Landscape"), ("push button", "Print")))
        self.no_faults()


class Tools(AccessibleJourney):
    def begin(self):
        self.picture("a.png", "red")
        self.picture("b.png", "lime")
        self.process, self.viewer = self.open(self.pictures)
        self.shows(self.viewer, RED)

    def test_conversion(self):
        self.begin()
        self.key("f")
        top = self.shown("Quorvia")
        self.go_to(self.found(top, "list", "Pictures"))
        self.key("ctrl+a")
        preview = self.opened(lambda: self.by_menu("Down", "Down", "Right", "Down", "Return"), "the preview")
        self.check("conversion", preview, (("label", "Preview:"), ("push button", "Yes to All")))
        self.no_faults()

    def test_second_page_of_the_editor(self):
        self.begin()
        top = self.opened(lambda: self.by_menu("t", "p"), "the editor")
        self.go_to(self.found(top, "combo box", ""))
        self.key("alt+Down")
        self.key("End", "Up", "Return")
        page = wait_until(lambda: self.holding("push button", "Rename"), "the page of the names")
        self.check("editor, second page", page, (("list", "Playlists"), ("push button", "Create New")))
        self.no_faults()

    def holding(self, role, name):
        """The editor, once it has a control of that role and name."""
        top = self.shown("Playlist Editor")
        return top if any((node.role, node.name) == (role, name) for node in top.below()) else None

    def slow_scanners(self):
        drivers = self.home / "drivers"
        drivers.mkdir()
        (drivers / "dll.conf").write_text("test\n")
        (drivers / "test.conf").write_text("\n".join(("number_of_devices 2", "mode Gray", "depth 8",
                                                      "br_x 150.0", "br_y 150.0", "read-delay true",
                                                      "read-delay-duration 200000")) + "\n")
        self.environment["SANE_CONFIG_DIR"] = str(drivers)

    def test_scan(self):
        self.slow_scanners()
        self.begin()
        top = self.opened(lambda: self.by_menu("t", "s"), "the scanners")
        self.check("scanners", top, (("list", "Sources"), ("list item", "Noname .*"), ("combo box", "300 dpi")))
        progress = self.opened(lambda: self.key("Return"), "the progress")
        self.check("scan", progress, (("progress bar", ".*"), ("push button", "Cancel")))
        box = self.opened(lambda: self.key("Escape"), "the box")
        self.check("not scanned", box, (("label", "Either 'cancel' .*"), ("push button", "OK")))
        self.closed(box)
        self.no_faults()

    def test_tool_that_is_not_there(self):
        self.start("/miRunNomalux", wait=False)
        self.check("not found", self.shown("Program Not Found"), (
            ("label", "Nomalux could not be found .*"), ("push button", "Yes"), ("push button", "No")))
        self.no_faults()

    def test_update(self):
        process, _ = self.open()
        self.send(process)
        self.ended(process)
        updater = self.home / "updater"
        updater.write_text("#!/bin/sh\n")
        updater.chmod(0o755)
        for tree, key, value in (("machine/machine.db", "Common\\ComponentPaths", str(updater)),
                                 ("config/halvexa/user.db", "Quorvia\\SettingsNet", "0")):
            with sqlite3.connect(self.home / tree) as store:
                store.execute("INSERT OR REPLACE INTO settings (key, name, type, value) VALUES (?, 'AutoUpdate', 1, ?)",
                              ("Software\\Halvexa\\" + key, value))
        self.start("/miAutoUpdate", wait=False)
        self.check("update", self.shown("Quorvia"), (
            ("label", "This application will .*"), ("push button", "OK"), ("push button", "Cancel")))
        self.no_faults()


if __name__ == "__main__":
    unittest.main()

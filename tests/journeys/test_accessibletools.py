"""The windows of single tasks as a screen reader sees them, and as they are reached without a mouse."""

import sqlite3
import unittest

from accessibility import AccessibleJourney
from harness import Journey, RED, wait_until
from printwindow import PrintJourney, WINDOW


class Printing(AccessibleJourney, PrintJourney):
    def test_window(self):
        self.start_viewer()
        self.summon(WINDOW)
        self.check("print", self.shown(WINDOW))
        self.no_faults()


class Tools(AccessibleJourney):
    def begin(self):
        self.picture("a.png", "red")
        self.picture("b.png", "lime")
        self.process, self.viewer = self.open(self.pictures)
        self.shows(self.viewer, RED)

    def by_menu(self, *letters):
        """The context menu by its key, and rows of it by their letters."""
        before = self.top_windows()
        self.brought(lambda: self.key("shift+F10"), lambda: self.top_windows() > before, "the menu")
        self.key(*letters)

    def test_conversion(self):
        self.begin()
        self.key("f")
        top = self.shown("Quorvia")
        self.go_to(self.found(top, "list", "Pictures"))
        self.key("ctrl+a")

        def how():
            before = self.top_windows()
            self.brought(lambda: self.key("shift+F10"), lambda: self.top_windows() > before, "the menu")
            self.key("Down", "Down", "Right", "Down", "Return")
        preview = self.opened(how, "the preview")
        self.check("conversion", preview)
        self.no_faults()

    def test_second_page_of_the_editor(self):
        self.begin()
        top = self.opened(lambda: self.by_menu("t", "p"), "the editor")
        self.go_to(self.found(top, "combo box", ""))
        before = self.focused()
        self.key("alt+Down")
        self.key("End", "Up", "Return")
        self.check("editor, second page", self.shown("Playlist Editor"))
        self.no_faults()

    def scanners(self, *settings):
        drivers = self.home / "drivers"
        drivers.mkdir()
        (drivers / "dll.conf").write_text("test\n")
        (drivers / "test.conf").write_text("\n".join(("number_of_devices 2", "mode Gray", "depth 8",
                                                      "br_x 150.0", "br_y 150.0", "read-delay true",
                                                      "read-delay-duration 200000")) + "\n")
        self.environment["SANE_CONFIG_DIR"] = str(drivers)

    def test_scan(self):
        self.scanners()
        self.begin()
        top = self.opened(lambda: self.by_menu("t", "s"), "the scanners")
        self.check("scanners", top)
        progress = self.opened(lambda: self.key("Return"), "the progress")
        self.check("scan", progress)
        box = self.opened(lambda: self.key("Escape"), "the box")
        self.check("not scanned", box)
        self.closed(box)
        self.no_faults()

    def test_tool_that_is_not_there(self):
        self.start("/miRunNomalux", wait=False)
        self.check("not found", self.shown("Program Not Found"))
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
        self.check("update", self.shown("Quorvia"))
        self.no_faults()


if __name__ == "__main__":
    unittest.main()

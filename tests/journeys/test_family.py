"""The maker's pages, the other tools, the updater and the mail tool, by real keys and menus, on a desktop whose
programs write down what they were told."""

import sqlite3
import unittest

from harness import Journey, wait_until


class Family(Journey):
    def setUp(self):
        super().setUp()
        self.tools = self.home / "bin"
        self.tools.mkdir()
        self.environment["PATH"] = "%s:%s" % (self.tools, self.environment["PATH"])
        self.environment["XDG_CURRENT_DESKTOP"] = "none"

    def tool(self, name):
        """A program that writes its arguments down, one a line; gives its path."""
        path = self.tools / name
        told = self.home / (name + ".told")
        path.write_text("#!/bin/sh\nfor argument; do printf '%%s\\n' \"$argument\"; done > %s.part\nmv %s.part %s\n"
                        % (told, told, told))
        path.chmod(0o755)
        return path

    def told(self, name):
        path = self.home / (name + ".told")
        return wait_until(lambda: path.exists() and path.read_text().splitlines(), name + " to be started")

    def browser(self):
        """Pages open in a browser that writes their addresses down."""
        program = self.tool("browser")
        entries = self.home / "data" / "applications"
        entries.mkdir(parents=True)
        (entries / "browser.desktop").write_text(
            "[Desktop Entry]\nType=Application\nName=Browser\nExec=%s %%u\nMimeType=x-scheme-handler/https;\n" % program)
        (self.home / "config").mkdir(exist_ok=True)
        (self.home / "config" / "mimeapps.list").write_text(
            "[Default Applications]\nx-scheme-handler/https=browser.desktop\n")

    def publish(self, subkey, name, value, tree="machine/machine.db"):
        """Stores a text in a tree of the settings, as another tool of the family does; the program has run once."""
        with sqlite3.connect(self.home / tree) as store:
            store.execute("INSERT OR REPLACE INTO settings (key, name, type, value) VALUES (?, ?, 1, ?)",
                          ("Software\\Halvexa\\" + subkey, name, str(value)))

    def run_once(self):
        process, _ = self.open()
        self.send(process)
        self.ended(process)

    def test_a_page(self):
        self.browser()
        process, _ = self.open("/miHVXAImageGallery")
        self.assertRegex(self.told("browser")[0], r"^https://.*\.example/\?programname=Quorvia&version=.*&check=1$")
        self.send(process)
        self.ended(process)

    def test_a_tool_that_is_not_there(self):
        self.browser()
        process = self.start("/miRunNomalux", wait=False)
        box = self.window("Program Not Found")
        self.focus(box)
        self.key("Return")  # Yes
        self.assertIn("nomalux", self.told("browser")[0])
        self.send(process)
        self.ended(process)

    def test_a_tool_gets_the_image(self):
        picture = self.picture("two words.png", "red")
        self.run_once()
        self.publish("Common\\ProgramPaths", "Morphane", "/gone/morphane")  # stale: the next place is looked at
        self.publish("Common\\ComponentPaths", "Morphane", self.tool("morphane"))
        process, _ = self.open(picture, "/miRunMorphane")
        self.assertEqual(self.told("morphane"), [str(picture) + ">JPG"])
        self.send(process)
        self.ended(process)

    def test_the_question_before_an_update(self):
        self.run_once()
        self.publish("Common\\ComponentPaths", "AutoUpdate", self.tool("updater"))
        self.publish("Quorvia\\SettingsNet", "AutoUpdate", "0", "config/halvexa/user.db")  # nothing by itself
        process = self.start("/miAutoUpdate", wait=False)
        box = self.window("Quorvia$")
        self.focus(box)
        self.key("Escape")
        wait_until(lambda: "Finish: Form_Load: frmImageView" in self.log_text().split("Init:")[-1],
                   "the rest of the load step")
        self.assertFalse((self.home / "updater.told").exists())
        self.send(process)
        self.ended(process)

    def test_mail_by_the_tool_of_the_house(self):
        """With nothing installed but the program, and the desktop's composer."""
        self.tool("xdg-email")
        picture = self.picture("a b;c.jpg", "red")
        process, _ = self.open(picture)
        self.key("ctrl+e")
        lines = self.told("xdg-email")
        self.assertEqual(lines[:4], ["--utf8", "--subject", "Image (a b;c.jpg)", "--body"])
        self.assertEqual(lines[-2:], ["--attach", str(picture)])
        self.assertTrue(self.common("postrel", "Common\\ComponentPaths").endswith("/postrel"))
        self.send(process)
        self.ended(process)
        process = self.start("/uninstall", wait=False)
        self.ended(process)
        self.assertIsNone(self.common("postrel", "Common\\ComponentPaths"))


if __name__ == "__main__":
    unittest.main()

"""F1 and F2 ask, and open the pages of help in the program that the desktop has for such pages."""

import os
import pathlib
import subprocess
import unittest

from harness import PROGRAM, Journey, wait_until


class Help(Journey):
    def setUp(self):
        super().setUp()
        self.environment["XDG_CURRENT_DESKTOP"] = "none"
        self.told = self.home / "browser.told"
        browser = self.home / "browser"
        browser.write_text("#!/bin/sh\nprintf '%%s\\n' \"$@\" >> %s\n" % self.told)
        browser.chmod(0o755)
        entries = self.home / "data" / "applications"
        entries.mkdir(parents=True)
        (entries / "browser.desktop").write_text(
            "[Desktop Entry]\nType=Application\nName=Browser\nExec=%s %%f\nMimeType=text/html;\n" % browser)
        (self.home / "config").mkdir(exist_ok=True)
        (self.home / "config" / "mimeapps.list").write_text("[Default Applications]\ntext/html=browser.desktop\n")

    def begin(self):
        picture = self.picture("a.png", "red")
        return self.open(picture)

    def ask(self, window, key):
        """Presses the key and gives its box, with the keyboard."""
        self.focus(window)
        self.key(key)
        box = wait_until(lambda: [each for each in self.windows("Quorvia$") if each != window], "the box of " + key)[0]
        self.focus(box)
        return box

    def page_of(self, window, key):
        """The page that opens for the key."""
        before = len(self.pages())
        self.ask(window, key)
        self.key("Return")
        wait_until(lambda: len(self.pages()) > before, "the browser for " + key)
        wait_until(lambda: not [each for each in self.windows("Quorvia$") if each != window], "the end of the box")
        pages = self.pages()
        self.assertEqual(len(pages), before + 1)
        return pages[-1]

    def pages(self):
        """The pages that the browser was told so far."""
        text = self.told.read_text() if self.told.exists() else ""
        return [pathlib.Path(line) for line in text.split("\n")[:-1]]

    def check_pages(self, window, folder):
        for key, name, title in (("F1", "qo_faq_help.htm", "Help Documentation"), ("F2", "qo_shortcut.htm", "Shortcut Keys")):
            page = self.page_of(window, key)
            self.assertEqual(page, folder / "help" / name)
            self.assertIn("<title>Quorvia: %s</title>" % title, page.read_text())
            self.assertTrue((page.parent / "style.css").is_file())

    def test_the_pages_of_the_build(self):
        process, window = self.begin()
        self.check_pages(window, pathlib.Path(PROGRAM).parent / "data")
        self.send(process)
        self.ended(process)

    def test_the_pages_that_are_installed(self):
        """The program as an installation lays it out, in a place of its own."""
        build = pathlib.Path(PROGRAM).parent
        prefix = self.home / "prefix"
        subprocess.run(["cmake", "--install", build, "--prefix", prefix], check=True, timeout=60, stdout=subprocess.DEVNULL)
        share = prefix / "share" / "quorvia"
        images = sorted(os.listdir(share / "help" / "images"))
        self.assertEqual(images, sorted(os.listdir(build / "data" / "help" / "images")))
        self.assertGreaterEqual(len(images), 5)
        picture = self.picture("a.png", "red")
        process = subprocess.Popen([prefix / "bin" / "quorvia", picture], env=self.environment, cwd=self.home,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(self._end, process)
        window = self.window()
        self.focus(window)
        self.built(window)
        self.check_pages(window, share)
        self.send(process)
        self.ended(process)

    def test_no_page_without_a_yes(self):
        process, window = self.begin()
        self.ask(window, "F1")
        self.key("Escape")
        wait_until(lambda: not [each for each in self.windows("Quorvia$") if each != window], "the end of the box")
        self.page_of(window, "F2")  # what F1 had begun would be there before
        self.assertEqual([page.name for page in self.pages()], ["qo_shortcut.htm"])
        self.send(process)
        self.ended(process)


if __name__ == "__main__":
    unittest.main()

"""Pictures and text that come from other programs by the clipboard, and pictures that go to them."""

import os
import signal
import subprocess
import unittest

from harness import BLUE, GREEN, RED, Journey, wait_until

PREVIEW = "Clipboard Preview"


class ClipboardTest(Journey):

    def setUp(self):
        super().setUp()
        self.red = self.picture("red.png", "red")
        self.green = self.picture("green.png", "lime", "1600x1200")

    def offer(self, *arguments, data=b""):
        """Starts another program that owns the clipboard until it is ended."""
        owner = subprocess.Popen(["xclip", "-quiet", "-selection", "clipboard", *map(str, arguments)],
                                 env=self.environment, stdin=subprocess.PIPE, stdout=subprocess.DEVNULL,
                                 stderr=subprocess.DEVNULL)
        self.addCleanup(self._end, owner)
        owner.stdin.write(data)
        owner.stdin.close()
        wait_until(lambda: self.output("xclip", "-selection", "clipboard", "-o", "-t", "TARGETS"), "the other program's offer")
        return owner

    def offer_both(self, text, picture):
        owner = subprocess.Popen([os.environ["QUORVIA_CLIPBOARD_SOURCE"], text, str(picture)],
                                 env={**self.environment, "QT_QPA_PLATFORM": "xcb"})
        self.addCleanup(self._end, owner)
        self.window("Clipboard source")
        wait_until(lambda: "image/png" in self.output("xclip", "-selection", "clipboard", "-o", "-t", "TARGETS"),
                   "the other program's offer")

    def untitled(self):
        return self.root / "untitled.bmp"

    def size(self, path):
        return self.output("identify", "-format", "%wx%h", str(path))

    def test_a_picture_comes_in(self):
        process, window = self.open(self.red)
        self.offer("-t", "image/png", "-i", self.green)
        self.focus(window)
        self.key("ctrl+v")
        preview = self.window(PREVIEW)
        self.shows(preview, GREEN)
        self.focus(preview)
        self.key("alt+v", "s")
        wait_until(lambda: self.setting("ClipboardView") == "False", "the other view")
        self.shows(preview, GREEN)
        self.key("Return")
        wait_until(lambda: not self.windows(PREVIEW), "the end of the preview")
        self.shows(window, GREEN)
        wait_until(self.untitled().exists, "the file of the pasted picture")
        self.assertEqual(self.size(self.untitled()), "1600x1200")  # not as large as it was shown
        self.focus(window)
        self.key("ctrl+v")
        self.focus(self.window(PREVIEW))
        self.key("Escape")
        wait_until(lambda: not self.windows(PREVIEW), "the end of the preview")
        self.shows(window, GREEN)
        self.send(process)
        self.ended(process)

    def test_a_picture_goes_out(self):
        process, window = self.open(self.green)
        self.shows(window, GREEN)
        self.key("ctrl+c")
        target = self.home / "pasted.png"

        def arrived():
            with open(target, "wb") as file:
                subprocess.run(["xclip", "-selection", "clipboard", "-o", "-t", "image/png"], env=self.environment,
                               stdout=file, stderr=subprocess.DEVNULL, timeout=20, check=False)
            return self.size(target) == "1600x1200"
        wait_until(arrived, "the picture in the other program")
        self.assertEqual(self.output("convert", str(target), "-format", "%[hex:p{800,600}]", "info:")[:6], "00FF00")
        self.send(process)
        self.ended(process)

    def test_text_becomes_a_picture_and_wins(self):
        process, window = self.open(self.red)
        self.offer_both("Some words\nand more of them", self.green)
        self.focus(window)
        self.key("ctrl+v")
        preview = self.window(PREVIEW)
        self.focus(preview)
        wait_until(lambda: self.pixel(*self.centre(preview)) != GREEN, "the preview")
        self.key("Return")
        wait_until(self.untitled().exists, "the picture of the text")
        width, height = map(int, self.size(self.untitled()).split("x"))
        self.assertTrue(60 < width < 400 and 30 < height < 150, (width, height))
        colours = set(self.output("convert", str(self.untitled()), "-unique-colors", "txt:").split())
        self.assertFalse(colours & {"#00FF00", "lime"})
        self.assertTrue(colours & {"#000000", "black", "gray(0)"} and colours & {"#FFFFFF", "white", "gray(255)"}, colours)
        self.send(process)
        self.ended(process)

    def test_an_owner_that_dies_or_hangs(self):
        process, window = self.open(self.red)
        owner = self.offer("-t", "image/png", "-i", self.green)
        os.kill(owner.pid, signal.SIGSTOP)
        self.addCleanup(lambda: owner.poll() is None and os.kill(owner.pid, signal.SIGCONT))
        self.focus(window)
        self.key("ctrl+v")
        preview = self.window(PREVIEW)  # empty, sooner or later
        owner.kill()
        owner.wait()
        self.focus(preview)
        self.key("Escape")
        wait_until(lambda: not self.windows(PREVIEW), "the end of the preview")
        self.shows(window, RED)
        self.assertFalse(self.untitled().exists())
        self.focus(window)
        self.key("ctrl+v")  # nobody owns it now
        self.focus(self.window(PREVIEW))
        self.key("Escape")
        wait_until(lambda: not self.windows(PREVIEW), "the end of the preview")
        self.key("Right")
        self.shows(window, GREEN)
        self.send(process)
        self.ended(process)


if __name__ == "__main__":
    unittest.main()

"""The preferences by real keys and mouse: each page changed, accepted, cancelled; and the end of all settings."""

import time
import unittest

from harness import Journey, wait_until

TITLE = "Quorvia Preferences"
COLOUR = (200, 100, 50)
ASIDE = 150  # pixels from the middle of the window, where a narrow picture leaves the viewport's ground

# Pixels from the upper left corner of the preferences.
JPEG_TAB = 312, 15
LOAD_IMAGE = 60, 106
FULL_VIEW = 90, 49
FULL_AT_START = 60, 132
MORE_LUMINANCE = 383, 106
BETA = 60, 74
CLEAR, PURGE = (85, 198), (120, 238)


class Preferences(Journey):
    def begin(self):
        self.process, self.viewer = self.open(self.picture("narrow.png", "red", "60x600"))
        self.shows(self.viewer, (255, 0, 0))

    def summon(self):
        """Opens the preferences by the context menu."""
        self.menu(self.viewer, "n")
        self.dialog = self.window(TITLE)
        self.focus(self.dialog)

    def gone(self):
        wait_until(lambda: not self.windows(TITLE), "the preferences to close")
        self.focus(self.viewer)

    def ground(self):
        x, y = self.centre(self.viewer)
        return self.pixel(x + ASIDE, y)

    def end(self):
        self.send(self.process)
        self.ended(self.process)

    def choose_colour(self):
        """From the strip of tabs: the list, then the button of the colour."""
        self.key("Tab", "Tab", "space")
        chooser = self.window("Background Color")
        self.focus(chooser)
        self.key("alt+h", "ctrl+a")
        self.output("xdotool", "type", "--delay", "10", "#%02x%02x%02x" % COLOUR)
        self.key("Return")
        wait_until(lambda: not self.windows("Background Color"), "the end of the colour dialog")
        self.focus(self.dialog)

    def change_all_pages(self):
        self.choose_colour()
        self.press(self.dialog, LOAD_IMAGE)
        self.key("ctrl+Tab")
        self.choose(self.dialog, FULL_VIEW, "Down", "Return")
        self.press(self.dialog, FULL_AT_START)
        self.press(self.dialog, JPEG_TAB)
        self.press(self.dialog, MORE_LUMINANCE)
        self.key("Prior", "Tab", "Left")
        self.key("ctrl+Tab")
        self.press(self.dialog, BETA)

    def test_what_is_accepted_is_stored(self):
        self.begin()
        before = self.ground()
        self.assertNotEqual(before, COLOUR)
        self.summon()
        self.change_all_pages()
        self.assertIsNone(self.setting("cView"))
        self.key("Return")
        self.gone()
        wait_until(lambda: self.ground() == COLOUR, "the colour of the viewport")
        expected = {"cView": 0, "cFView": 1, "cSlide": 0, "cLoad": 1, "cFull": 1, "cLayout": 1,
                    "MainBackColor": 200 + 100 * 256 + 50 * 65536, "FullBackColor": 0, "cBorder": 1,
                    "JPEGSampling": 1, "JPEGLum": 30, "JPEGChrome": 19, "JPEGGray": 0, "imgAutoLoad": 0,
                    "DynamicLink": 1, "ShowBetaFeatures": 1}
        self.assertEqual({name: self.setting(name) for name in expected}, expected)
        self.end()
        self.begin()  # the next run has the colour, and fills the screen at its start
        wait_until(lambda: self.ground() == COLOUR, "the colour of the viewport")

    def hold(self, key, seconds=1.5):
        """Holds a key down; the display repeats it after 0.66 seconds."""
        self.output("xdotool", "keydown", key)
        time.sleep(seconds)
        self.output("xdotool", "keyup", key)

    def test_a_held_key_answers_no_question(self):
        self.begin()
        self.summon()
        self.key("ctrl+Prior")  # the last page
        self.press(self.dialog, BETA)
        self.key("Tab", "Tab")
        self.hold("Return")  # on the button that erases all settings
        self.assertIsNone(self.process.poll())
        box = self.window("Quorvia$")
        self.assertEqual(self.setting("ImageOpenCount"), 1)
        self.focus(box)
        self.hold("Escape")  # ends the box, and neither the window below it nor the program
        wait_until(lambda: not self.windows("Quorvia$"), "the end of the box")
        self.assertIsNone(self.process.poll())
        self.assertTrue(self.windows(TITLE))
        self.end()

    def test_what_is_cancelled_is_not(self):
        self.begin()
        before = self.ground()
        self.summon()
        self.change_all_pages()
        self.key("Escape")
        self.gone()
        self.assertEqual(self.ground(), before)
        for name in ("cView", "cFull", "MainBackColor", "JPEGLum", "imgAutoLoad", "ShowBetaFeatures"):
            self.assertIsNone(self.setting(name))
        self.summon()
        self.close_by_frame(self.dialog)
        self.gone()
        self.assertIsNone(self.setting("cView"))
        self.end()

    def answer_box(self, key):
        box = self.window("Quorvia$")
        self.focus(box)
        self.key(key)
        wait_until(lambda: self.process.poll() is not None or not self.windows("Quorvia$"), "the answer")

    def test_thumbnails_are_cleared_and_settings_purged(self):
        self.begin()
        cache = self.root / "Thumbs"
        for number in range(3):
            (cache / ("%d.thb" % number)).write_bytes(b"x")
        self.summon()
        self.key("ctrl+shift+Tab")
        self.press(self.dialog, CLEAR)
        self.answer_box("alt+n")
        self.focus(self.dialog)
        self.assertEqual(len(list(cache.glob("*.thb"))), 3)
        self.press(self.dialog, CLEAR)
        self.answer_box("alt+y")
        wait_until(lambda: not list(cache.glob("*.thb")), "the thumbnails to go")
        self.focus(self.dialog)
        self.press(self.dialog, PURGE)
        self.answer_box("Escape")
        self.assertIsNone(self.process.poll())
        self.assertEqual(self.setting("ImageOpenCount"), 1)
        self.focus(self.dialog)
        self.press(self.dialog, PURGE)
        self.answer_box("alt+y")
        self.ended(self.process)
        for name in ("ImageOpenCount", "SelectedPath", "MainWidth", "cView"):
            self.assertIsNone(self.setting(name))
        self.assertIsNotNone(self.common("Quorvia", "Common\\ProgramPaths"))


if __name__ == "__main__":
    unittest.main()

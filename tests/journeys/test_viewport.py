"""The viewport and the panes around it, by mouse: pan, zoom, splitters, tabs, the floating band, two starts."""

import time
import unittest

from harness import BLUE, CHROME, GREEN, Journey, RED, SCREEN, wait_until

TWIPS = 15  # to a pixel
STRIP = 51  # pixels of file bar and tab strip above the viewport
TOOLBAR = 41  # pixels of the toolbar and the rule above it
TABS = (45, 135, 215)  # where the tabs stand in their strip


class Viewport(Journey):
    def large(self):
        """Red on the left, green on the right, with a blue square in the middle of the right half."""
        path = self.pictures / "large.png"
        self.make("convert", "-size", "2000x1500", "xc:red", "-fill", "lime", "-draw", "rectangle 1000,0 1999,1499",
                  "-fill", "blue", "-draw", "rectangle 1450,700 1549,799", path)
        return path

    def shown(self, path, *commands):
        program = self.start(path, *commands)
        window = self.window()
        self.focus(window)
        self.move(window, 100, 80)
        self.resize(window, 900, 600)
        left, top, width, height = self.geometry(window)
        wait_until(lambda: self.pixel(left + width // 2, top + height - 4) == CHROME, "the toolbar")
        return program, window, (left, top, width, height - TOOLBAR)

    def drag(self, begin, end, held=None, let_go=True):
        """Drags the left button in steps, with the key `held` down."""
        if held:
            self.output("xdotool", "keydown", held)
        self.output("xdotool", "mousemove", *map(str, begin), "mousedown", "1")
        steps = 8
        for step in range(1, steps + 1):
            at = [str(a + (b - a) * step // steps) for a, b in zip(begin, end)]
            self.output("xdotool", "mousemove", *at)
            time.sleep(0.02)
        if let_go:
            self.let_go(held)

    def let_go(self, held=None):
        self.output("xdotool", "mouseup", "1")
        if held:
            self.output("xdotool", "keyup", held)

    def first_green(self, area, row):
        """The first column of the window at `area` in which its row `row` is green; None without one."""
        pixel = self.screen()
        left, top, width, _ = area
        return next((x for x in range(width) if pixel(left + x, top + row) == GREEN), None)

    def test_a_drag_pans_with_the_pointer(self):
        _, _, area = self.shown(self.large(), "/miActualSize")
        left, top = area[:2]
        wait_until(lambda: self.pixel(left + 200, top + 200) == RED, "the left half")
        self.assertIsNone(self.first_green(area, 200))
        self.drag((left + 800, top + 400), (left + 300, top + 300))
        wait_until(lambda: self.first_green(area, 200) == 500, "the border 500 pixels further to the left")
        self.drag((left + 300, top + 300), (left + 340, top + 300))
        wait_until(lambda: self.first_green(area, 200) == 540, "the border back by 40 pixels")

    def test_a_rectangle_zooms_and_a_click_leads_back(self):
        _, _, area = self.shown(self.large(), "/miActualSize")
        left, top = area[:2]
        wait_until(lambda: self.pixel(left + 200, top + 200) == RED, "the picture")
        self.drag((left + 850, top + 400), (left + 50, top + 100))  # 800 to the right, 300 down
        border = wait_until(lambda: self.first_green(area, 500), "the border")
        self.assertEqual(border, 200)
        corner = (left + border + 450 - 1, top + STRIP + 700 - 300 - 1)
        self.drag(corner, (corner[0] + 101, corner[1] + 101), held="ctrl", let_go=False)
        wait_until(lambda: self.pixel(corner[0] + 50, corner[1]) == RED, "the red frame")
        self.let_go("ctrl")
        middle = (left + 450, top + STRIP + 270)
        wait_until(lambda: self.pixel(*middle) == BLUE and self.pixel(middle[0] - 240, middle[1]) == BLUE,
                   "the square from edge to edge")
        self.click(*middle)
        wait_until(lambda: self.count(area, BLUE) <= 100, "the square at 100 %")

    def count(self, area, colour):
        """How many of every tenth pixel each way have the colour."""
        pixel = self.screen()
        left, top, width, height = area
        return sum(pixel(x, y) == colour for y in range(top, top + height, 10) for x in range(left, left + width, 10))

    def test_a_click_that_ends_a_pan_does_not_lead_back_and_a_plain_one_does(self):
        _, _, area = self.shown(self.large(), "/miActualSize", "/miZoomIn")
        left, top = area[:2]
        wait_until(lambda: self.pixel(left + 200, top + 200) == RED, "the picture")
        self.drag((left + 800, top + 300), (left + 300, top + 300))
        def near(column):
            return abs((self.first_green(area, 200) or 0) - column) <= 2  # it is smooth at 120 %
        wait_until(lambda: near(700), "the border of the picture at 120 %")
        time.sleep(0.3)
        self.assertTrue(near(700))
        self.click(left + 300, top + 300)
        # The bars keep their shares: 500 of 2400 - 900 + 18 become 368 of 2000 - 900 + 18.
        wait_until(lambda: near(1000 - 368), "100 %")

    def test_bars_scroll_and_the_wheel_does(self):
        _, _, area = self.shown(self.large(), "/miActualSize")
        left, top, width, height = area
        wait_until(lambda: self.pixel(left + 200, top + 200) == RED, "the picture")
        self.drag((left + 26, top + height - 9), (left + width - 30, top + height - 9))
        wait_until(lambda: self.pixel(left + 700, top + 200) == GREEN, "the right half")
        self.assertEqual(self.pixel(left + 400, top + 330), GREEN)
        self.output("xdotool", "mousemove", str(left + 400), str(top + 300), *["click", "5"] * 8)  # 480 pixels down
        row = STRIP + 750 - 480
        wait_until(lambda: any(self.pixel(left + x, top + row) == BLUE for x in range(300, 500, 40)), "the square")

    def test_tabs_are_kept_and_panes_placed(self):
        program, window, area = self.shown(self.large(), "/miInterfaceTabs")
        left, top, _, height = area
        for at, key in zip(TABS[1:] + TABS[:1], ("Information", "Filmstrip", "Image")):
            self.click(left + at, top + 33)
            wait_until(lambda key=key: self.setting("ActiveTabWindow") == key, "the tab " + key)
            if key != "Image":  # a pane stands below the picture
                wait_until(lambda: self.pixel(left + 450, top + height - 20) not in (RED, GREEN, BLUE), "the pane")
        self.click(left + TABS[2], top + 33)
        wait_until(lambda: self.setting("ActiveTabWindow") == "Filmstrip", "the filmstrip")
        self.send(program)
        self.ended(program)
        self.assertEqual(self.setting("ToggleInterface"), 0)
        self.start(self.pictures / "large.png")
        left, top, width, height = self.geometry(self.window())
        wait_until(lambda: self.pixel(left + width // 2, top + height - 60) == CHROME, "the filmstrip's pane again")

    def test_the_filmstrip_splitter_stops_at_both_limits(self):
        _, window, area = self.shown(self.large(), "/miInterfaceTabs", "/miViewFilmstrip")
        left, top, width, height = area
        middle = left + width // 2
        inside = height * TWIPS  # of pTop
        strip = self.setting("FilmStripHeight") or 2500

        def splitter(filmstrip):
            return top + height - (filmstrip + 45) // TWIPS

        self.drag((middle, splitter(strip)), (middle, top + height - 5))
        lowest = 1000 - 90
        wait_until(lambda: self.setting("FilmStripHeight") == lowest, "the lower limit")
        self.drag((middle, splitter(lowest)), (middle, top + 10))
        highest = inside - (STRIP * TWIPS + 100) - 90
        wait_until(lambda: abs((self.setting("FilmStripHeight") or 0) - highest) <= TWIPS, "the upper limit")
        self.drag((middle, splitter(highest)), (middle, top + 400))
        wait_until(lambda: lowest < self.setting("FilmStripHeight") < highest, "a place between")

    def test_the_list_band_is_sized_and_floated_and_comes_back(self):
        red = self.picture("red.png", "red")
        program, window, area = self.shown(red, "/miFileList")
        left, top, width, height = area
        before = self.setting("cLayoutFilesWidth")
        self.assertIsNone(before)
        self.drag((left + 243, top + 300), (left + 343, top + 300))
        self.drag((left + 60, top + 10), (left + 500, top + 200))
        band = wait_until(lambda: self.windows("Picture List"), "the floating band")[0]
        self.move(band, 700, 300)
        place = self.geometry(band)
        self.send(program)
        self.ended(program)
        self.assertEqual(self.setting("cLayoutFilesAlign"), 4)
        self.assertEqual(self.setting("cLayoutFiles"), -1)
        self.assertGreater(self.setting("cLayoutFilesWidth"), 300 * TWIPS)

        program = self.start()
        self.assertEqual(self.geometry(self.window())[2:], (900, 600))
        band = wait_until(lambda: self.windows("Picture List"), "the band")[0]
        wait_until(lambda: self.geometry(band) == place, "the band's old place %s" % (place,))
        self.send(program)
        self.ended(program)
        self.assertEqual(self.setting("cLayoutFilesAlign"), 4)

    def test_two_monitors(self):
        half = SCREEN[0] // 2
        for name, at in (("LEFT", 0), ("RIGHT", half)):
            self.output("xrandr", "--setmonitor", name, "%d/170x%d/210+%d+0" % (half, SCREEN[1], at),
                        "screen" if at == 0 else "none")
        self.assertIn("Monitors: 2", self.output("xrandr", "--listmonitors"))
        red = self.picture("red.png", "red")
        program, window, _ = self.shown(red)
        self.resize(window, 400, 300)
        self.move(window, half + 120, 200)
        place = self.geometry(window)
        self.send(program)
        self.ended(program)
        program = self.start(red)
        wait_until(lambda: self.geometry(self.window()) == place, "the place on the second monitor")
        self.send(program)
        self.ended(program)

        for name in ("LEFT", "RIGHT"):
            self.output("xrandr", "--delmonitor", name)
        self.output("xrandr", "--setmonitor", "ONLY", "%d/170x%d/210+0+0" % (half, SCREEN[1]), "screen")
        self.assertIn("Monitors: 1", self.output("xrandr", "--listmonitors"))
        self.start(red)
        left, _, width, _ = wait_until(lambda: self.geometry(self.window()), "the window")
        self.assertLess(left + width, half + 60)  # on the monitor that is left


if __name__ == "__main__":
    unittest.main()

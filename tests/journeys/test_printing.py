"""From the picture to the paper: what the printer gets is what the window showed."""

import unittest

from harness import BLUE, RED, wait_until
from printwindow import CELL, CONTROLS, DOTS, EFFECTS, PrintJourney, difference

YELLOW = (255, 255, 0)
PIXEL_DOTS = DOTS / 96  # of the paper, to a pixel of the preview at 100%


def is_ink(pixel):
    return sum(pixel) < 300 and max(pixel) < 128


def is_red(pixel):
    return all(abs(one - other) < 100 for one, other in zip(pixel, RED))


class PrintingTest(PrintJourney):

    def is_blank(self, paper, top, bottom):
        """Whether the paper is white between two hundredths of its height."""
        start, end = (paper.height * place // 100 for place in (top, bottom))
        return min(paper.part(0, start, paper.width, end - start).data) > 250

    def test_layout_title_and_footer(self):
        self.start_viewer()
        shown = self.open_print()
        plain, ticket = self.assert_printed(shown, "portrait")
        self.assertEqual((ticket["JOB_NAME"], ticket["DOCUMENT_FORMAT_SUPPLIED"], ticket["PRINT_COLOR_MODE"]),
                         ("quarters.png", "application/pdf", "color"))
        self.assertIn(ticket.get("COPIES"), (None, "1"))
        self.assertIn("x-dimension=21000 y-dimension=29700", ticket["MEDIA_COL"])
        self.assertTrue(self.is_blank(plain, 0, 30) and self.is_blank(plain, 70, 100))
        self.assertLess(plain.width, plain.height)

        self.open_print()
        shown = self.change("layout", "Right")
        self.assertGreater(shown.width, shown.height)
        paper, _ = self.assert_printed(shown, "landscape")
        self.assertEqual((paper.width, paper.height), (plain.height, plain.width))

        self.open_print()  # which lies, as it was left
        before = self.change("layout", "Left")
        self.write("title", "Four quarters")
        paper, ticket = self.assert_printed(self.settled(before.data), "a title")
        self.assertEqual(ticket["JOB_NAME"], "Four quarters")
        self.assertFalse(self.is_blank(paper, 0, 5))
        self.assert_differ(before, paper, "the preview without the title passes for the one with it")

        before = self.open_print()
        name = self.change("file name", "space")
        self.assertTrue(self.windows("Print Image: quarters.png"))
        name_paper, _ = self.assert_printed(name, "a footer with the name")
        self.assertFalse(self.is_blank(name_paper, 95, 100))
        self.assert_differ(before, name_paper, "the preview without the footer passes for the one with it")
        self.open_print()
        both = self.change("path", "space")
        both_paper, _ = self.assert_printed(both, "a footer with directory and name")
        self.assert_differ(name, both_paper, "the name passes for the whole path")
        self.open_print()
        directory = self.change("file name", "space")
        directory_paper, _ = self.assert_printed(directory, "a footer with the directory")
        self.assert_differ(both, directory_paper, "the whole path passes for the directory")
        self.end_viewer()

    def test_a_title_at_the_last_moment(self):
        self.start_viewer()
        before = self.open_print()
        self.type("Four quarters")
        paper = self.paper(self.print())  # at once: what was typed is on the paper
        left, top, right, bottom = paper.extent(is_ink)
        self.assertLessEqual(abs((left + right) / 2 - paper.width / 2), 4, "the middle of the title")
        self.assertLess(bottom, paper.height // 20)
        self.assert_differ(before, paper, "the title is not seen")
        self.end_viewer()

    def test_three_copies(self):
        self.start_viewer()
        shown = self.open_print()
        self.reach("copies")
        self.keys("space")
        self.answer("Printer Copies", 3)
        self.focus(self.dialog)
        _, ticket = self.assert_printed(shown, "three copies")
        self.assertEqual(ticket["COPIES"], "3")
        self.end_viewer()

    def test_each_effect(self):
        self.start_viewer()
        before = plain = self.open_print()
        self.leave()
        for name in EFFECTS:
            with self.subTest(name):
                self.open_print()
                shown = self.effect(name)
                paper, _ = self.assert_printed(shown, name)
                self.assert_differ(plain, paper, "the page without passes for the one with " + name)
                self.assert_differ(before, paper, "the page with another effect passes for the one with " + name)
                before = shown
        self.end_viewer()

    def test_all_effects(self):
        self.start_viewer()
        self.open_print()
        for name in EFFECTS:
            if name != "tile":
                without_tiles = self.effect(name)
        tiled = self.effect("tile")  # the last one: it covers the others
        paper, _ = self.assert_printed(tiled, "all effects")
        self.assert_differ(without_tiles, paper, "the page without tiles passes for the one with them")
        self.open_print()
        for name in EFFECTS:
            if name != "tile":
                without_tiles = self.effect(name)
        self.assert_printed(without_tiles, "all effects but the tiles")
        self.end_viewer()

    def test_alignments(self):
        self.start_viewer()
        centred = before = self.open_print()
        self.leave()
        for keys, name in ((("Down",), "top centre"), (("Down",), "top left"), (("Up", "Up", "Up"), "natural centre")):
            self.open_print()
            if name == "natural centre":  # from the first to the last one
                self.reach("alignment")
                self.keys("Up", "Up", "Up")
                shown = self.settled(before.data)
                self.assertEqual(difference(shown, centred)[0], 0)  # this picture fits
            else:
                shown = self.change("alignment", *keys)
            paper, _ = self.assert_printed(shown, name)
            self.assert_differ(before, paper, "the alignment before passes for " + name)
            before = shown
        self.end_viewer()

    def test_a_drawn_rectangle(self):
        self.start_viewer()
        before = self.open_print()
        left, top = self.corner
        self.output("xdotool", "mousemove", str(left + 200), str(top + 300), "mousedown", "1",
                    "mousemove", str(left + 150), str(top + 200), "mousemove", str(left + 40), str(top + 60))
        # Its frame is red while the button is down.
        wait_until(lambda: is_red(self.pixel(left + 120, top + 60)), "the frame")
        self.output("xdotool", "mouseup", "1", "mousemove", "2", "2")
        self.place = CONTROLS.index("preview")
        shown = self.settled(before.data)
        for near, far, colour in (((42, 62), (118, 178), RED), ((122, 62), (198, 178), BLUE),
                                  ((122, 182), (198, 298), YELLOW)):
            for place in (near, far):
                self.assertEqual(shown.pixel(*place), colour, place)
        for place in ((37, 100), (203, 100), (100, 57), (100, 303)):
            self.assertEqual(shown.pixel(*place), (255, 255, 255), place)
        paper, _ = self.assert_printed(shown, "the drawn rectangle")
        self.assert_differ(before, paper, "the page without the rectangle passes for the one with it")
        self.end_viewer()

    def test_both_bars(self):
        self.start_viewer()
        whole = self.open_print()
        self.reach("zoom")
        ground = self.box()[2]
        self.keys("Down", "Down")

        def zoomed():
            screen, place, colour = self.box()
            return (screen, place) if colour != ground else None
        # The upper right corner is a bar's now, as high as the page's part.
        screen, (bar, top, thickness, height) = wait_until(zoomed, "the bars")
        row = top + height // 4  # where the page is white
        right = next(x for x in range(bar - 2, 0, -1) if screen.pixel(x, row) != ground) + 1
        left = next(x for x in range(right - 1, 0, -1) if screen.pixel(x, row) != (255, 255, 255)) + 1
        start = next(y for y in range(top + 2, row) if screen.pixel(right - 2, y) != ground)
        self.assertEqual(start - top, 23)  # the margin of the paper less two steps
        self.assertTrue(33 <= bar + thickness - right <= 40, "the margin of the paper, to a step")
        shown = screen.part(left, start, right - left, top + height - start)
        self.reach("preview")
        self.keys("Down")
        wait_until(lambda: self.pixel(right - 2, start - 1) == (255, 255, 255), "the page to move")
        paper = self.paper(self.print())
        self.assert_agree(whole, paper, "at 50%")
        width, depth = round(shown.width * PIXEL_DOTS), round(shown.height * PIXEL_DOTS)
        self.assert_agree(shown, paper.part(paper.width - width, 0, width, depth), "at 100%", 2 * CELL)
        self.assert_differ(shown, paper.part(paper.width - width - 16, 0, width, depth), "1% aside passes",
                           2 * CELL)
        self.end_viewer()

    # --- the font

    def title_height(self, shown):
        _, top, _, bottom = shown.part(0, 0, shown.width, shown.height // 5).extent(is_ink)
        return bottom + 1 - top

    def test_the_font(self):
        self.start_viewer()
        untitled = self.open_print()
        self.write("title", "HHH")
        before = self.settled(untitled.data)
        self.reach("font")
        self.keys("space")
        self.focus(self.window("Font"))
        self.keys("alt+s", "ctrl+a")
        self.type("36")
        self.keys("Escape")
        wait_until(lambda: not self.windows("Font"), "the end of the dialog")
        self.focus(self.dialog)
        self.assertEqual(self.settled().data, before.data)

        self.keys("space")
        self.focus(self.window("Font"))
        self.keys("alt+s", "ctrl+a")
        self.type("36")
        self.keys("Return")
        wait_until(lambda: not self.windows("Font"), "the end of the dialog")
        self.focus(self.dialog)
        shown = self.settled(before.data)
        self.keys("space")
        self.focus(self.window("Font"))
        self.keys("alt+f", "Return")  # in the list of fonts, with nothing changed
        wait_until(lambda: not self.windows("Font"), "the end of the dialog")
        self.focus(self.dialog)
        self.assertEqual(self.settled().data, shown.data)
        paper, _ = self.assert_printed(shown, "a larger font")
        self.assert_differ(before, paper, "the smaller title passes for the larger one")
        small, large = self.title_height(before), self.title_height(shown)
        self.assertTrue(5 <= small <= 7 and 16 <= large <= 19, (small, large))  # 8.7 and 26.2 points
        on_paper = self.title_height(paper) / paper.height
        self.assertLess(abs(on_paper - large / shown.height), 0.005)
        self.assertEqual(self.setting("PrintFontSize", "Print Settings"), "36")
        self.end_viewer()


if __name__ == "__main__":
    unittest.main()

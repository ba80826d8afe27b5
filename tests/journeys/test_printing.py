"""One page from the picture to the paper, on a print server of the journey's own."""

import unittest

from harness import BLUE, RED, Journey, wait_until
from printing import PrintServer

WINDOW = "Print Image"
TWIPS_PER_PIXEL = 15
ZOOM = 0.5  # of the preview at first


class PrintingTest(Journey):

    def setUp(self):
        super().setUp()
        self.server = PrintServer()
        self.addCleanup(self.server.close)
        self.environment.update(self.server.environment())
        self.halves = self.pictures / "halves.png"
        self.make("convert", "-size", "120x200", "xc:red", "xc:blue", "+append", self.halves)

    def open_print(self):
        process, window = self.open(self.halves)
        self.key("ctrl+p")
        dialog = self.window(WINDOW)
        self.focus(dialog)
        return process, dialog

    def accept(self, dialog):
        """A click on "Print", in the lower left corner."""
        self.press(dialog, (37, self.geometry(dialog)[3] - 27))

    def printed(self):
        return wait_until(self.server.documents, "the printed document")[-1]

    @staticmethod
    def extent(pixel, colour, left, top, width, height):
        """Left, top, width, height of what has about that colour within an area; None when nothing has."""
        def has(x, y):
            return all(abs(one - other) < 100 for one, other in zip(pixel(x, y), colour))
        places = [(x, y) for y in range(top, top + height) for x in range(left, left + width) if has(x, y)]
        if not places:
            return None
        columns, rows = [x for x, _ in places], [y for _, y in places]
        return min(columns), min(rows), max(columns) - min(columns) + 1, max(rows) - min(rows) + 1

    def page_pixel(self, document):
        """The page at 72 dots to the inch as a function from x, y to (red, green, blue), and its size."""
        page = str(self.server.page(document))
        size = tuple(map(int, self.output("identify", "-format", "%w %h", page).split()))
        plain = self.home / "page.rgb"
        self.make("convert", page, "-depth", "8", "rgb:" + str(plain))
        data = plain.read_bytes()
        return (lambda x, y: tuple(data[(y * size[0] + x) * 3:(y * size[0] + x) * 3 + 3])), size

    def assert_near(self, one, other, tolerance, what):
        self.assertTrue(abs(one - other) <= tolerance, "%s: %s, %s" % (what, one, other))

    def test_paper_and_preview_agree(self):
        self.server.add_queue("Keeper")
        process, dialog = self.open_print()
        area = self.geometry(dialog)
        wait_until(lambda: self.extent(self.screen(), RED, *area), "the picture in the preview")
        shown = {colour: self.extent(self.screen(), colour, *area) for colour in (RED, BLUE)}
        self.accept(dialog)
        wait_until(lambda: not self.windows(WINDOW), "the end of the window")
        document = self.printed()
        self.assertEqual(self.server.ticket(document)[:2], ("Keeper", 1))
        pixel, size = self.page_pixel(document)
        self.assertEqual(size, (595, 842))
        paper = {colour: self.extent(pixel, colour, 0, 0, *size) for colour in (RED, BLUE)}
        for colour in (RED, BLUE):
            for side in (2, 3):  # both in twips
                self.assert_near(shown[colour][side] * TWIPS_PER_PIXEL / ZOOM, paper[colour][side] * 20, 60, "a side")
        for side in (0, 1):  # what lies between them
            self.assert_near((shown[BLUE][side] - shown[RED][side]) * TWIPS_PER_PIXEL / ZOOM,
                             (paper[BLUE][side] - paper[RED][side]) * 20, 60, "the distance")
        self.assert_near(paper[BLUE][0], size[0] / 2, 2, "the middle of the page")
        self.send(process)
        self.ended(process)
        self.assertFalse([line for line in self.log_lines() if "rinted" in line])

    def test_a_title(self):
        self.server.add_queue("Keeper")
        process, dialog = self.open_print()
        self.output("xdotool", "type", "--delay", "4", "Two halves")
        self.accept(dialog)  # at once: what was typed is on the paper
        document = self.printed()
        words = self.output("pdftotext", str(document), "-")
        self.assertEqual(words.strip(), "")  # the page is one picture
        pixel, size = self.page_pixel(document)
        head = [(x, y) for y in range(20, 80) for x in range(size[0]) if sum(pixel(x, y)) < 300]
        self.assertTrue(head, "no title on the paper")
        self.assert_near((min(head)[0] + max(head)[0]) / 2, size[0] / 2, 4, "the middle of the title")
        self.send(process)
        self.ended(process)

    def test_a_queue_that_rejects(self):
        self.server.add_queue("Keeper")
        process, dialog = self.open_print()
        self.server.ask("cupsreject", "Keeper")
        self.accept(dialog)
        wait_until(lambda: not self.windows(WINDOW), "the end of the window")
        wait_until(lambda: [line for line in self.log_lines() if line.startswith("Not printed: Keeper: ")], "the log's line")
        self.assertFalse(self.server.documents())
        self.send(process)
        self.ended(process)

    def test_without_a_printer(self):
        process, window = self.open(self.halves)
        before = self.top_windows()
        self.key("ctrl+p")
        wait_until(lambda: self.top_windows() > before, "the message")
        self.assertFalse(self.windows(WINDOW))
        self.key("Escape")
        wait_until(lambda: self.top_windows() == before, "the end of the message")
        self.send(process)
        self.ended(process)


if __name__ == "__main__":
    unittest.main()

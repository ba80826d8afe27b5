"""What the journeys about printing share: the print window by keys, its preview, and the page that the printer got."""

import subprocess

from harness import PATIENCE, SCREEN, Journey, wait_until
from printing import IppPrinter, PrintServer

WINDOW = "Print Image"
QUEUE = "Loopback"

# The way of the tabulator. A group of options is one place, at the chosen one.
CONTROLS = ("title", "title align", "file name", "path", "layout", "alignment", "left", "top", "width", "height",
            "font", "effects", "zoom", "preview", "print", "close", "copies")
EFFECTS = ("shadow", "light frame", "frame", "circle", "square", "tile", "trail")  # from top to bottom

SIZE = 980, 640  # of the window: a page that lies finds room at 50%
MARGIN = 13  # pixels between the preview's box and the window's right and upper edge
DOTS = 144  # to the inch, of a page that is read back: three to a pixel of the preview at 50%
PAPER_MARGIN = 55  # of those dots
CELL = 4  # pixels of the preview at 50%: 1.1% of a page's width
# What the mean of a cell may differ. One pixel's half makes 32 at the hardest edge, a missing thin line 48.
TOLERANCE = 36
# For telling two pages apart: a thin line makes 95 of its cells, half a pixel at the hardest edge 64.
FINE_CELL = 2


class Picture:
    """Pixels in rows, three bytes each."""

    def __init__(self, width, height, data):
        assert len(data) == width * height * 3
        self.width, self.height, self.data = width, height, data

    def pixel(self, x, y):
        at = (y * self.width + x) * 3
        return tuple(self.data[at:at + 3])

    def part(self, left, top, width, height):
        rows = (self.data[((top + y) * self.width + left) * 3:][:width * 3] for y in range(height))
        return Picture(width, height, b"".join(rows))

    def cells(self, columns, rows):
        """The means of its cells."""
        done = subprocess.run(
            ["convert", "-size", "%dx%d" % (self.width, self.height), "-depth", "8", "rgb:-",
             "-scale", "%dx%d!" % (columns, rows), "rgb:-"],
            input=self.data, stdout=subprocess.PIPE, check=True, timeout=PATIENCE)
        return Picture(columns, rows, done.stdout)

    def extent(self, is_wanted):
        """Left, top, right, bottom (the last ones within) of the pixels that are wanted; None without any."""
        places = [(x, y) for y in range(self.height) for x in range(self.width) if is_wanted(self.pixel(x, y))]
        if not places:
            return None
        columns, rows = zip(*places)
        return min(columns), min(rows), max(columns), max(rows)


def read_ppm(path):
    kind, size, most, data = path.read_bytes().split(b"\n", 3)
    assert (kind, most) == (b"P6", b"255")
    return Picture(*map(int, size.split()), data)


def difference(one, other, cell=CELL):
    """How much the worst cell of two pictures of the same thing differs, and where: x and y in hundredths."""
    columns, rows = one.width // cell, one.height // cell
    pairs = zip(one.cells(columns, rows).data, other.cells(columns, rows).data)
    worst, at = max((abs(a - b), index // 3) for index, (a, b) in enumerate(pairs))
    return worst, (at % columns * 100 // columns, at // columns * 100 // rows)


class PrintJourney(Journey):
    """A queue that leads to a printer by IPP, and a picture of four colours."""

    def setUp(self):
        super().setUp()
        self.printer = IppPrinter()
        self.addCleanup(self.printer.close)
        self.server = PrintServer()
        self.addCleanup(self.server.close)
        self.environment.update(self.server.environment())
        self.quarters = self.pictures / "quarters.png"
        self.make("convert", "-size", "150x120", "(", "xc:red", "xc:blue", "+append", ")",
                  "(", "xc:lime", "xc:yellow", "+append", ")", "-append", self.quarters)

    def start_viewer(self, picture=None):
        """The program with a picture, and the queue to print it on."""
        self.server.add_ipp_queue(QUEUE, self.printer.device)
        self.process, self.viewer = self.open(picture or self.quarters)

    def end_viewer(self):
        self.send(self.process)
        self.ended(self.process)

    # --- the window

    def open_print(self):
        """Opens the print window and waits for its page."""
        self.dialog = self.summon(WINDOW)
        self.resize(self.dialog, *SIZE)
        self.focus(self.dialog)
        self.place = 0
        return self.settled()

    def summon(self, title):
        """The id of the window of that title, which Ctrl+P brings."""
        def comes():
            # A key that arrives while the last window still ends is lost.
            self.focus(self.viewer)
            self.output("xdotool", "mousemove", "2", "2", "key", "ctrl+p")
            try:
                return wait_until(lambda: self.windows(title), "the window", 3)
            except AssertionError:
                return None
        return wait_until(comes, "the window " + title)[0]

    def keys(self, *names):
        self.output("xdotool", "key", "--delay", "20", *names)

    def type(self, text):
        self.output("xdotool", "type", "--delay", "8", text)

    def reach(self, control):
        """Goes to a control by the tabulator."""
        steps = CONTROLS.index(control) - self.place
        self.place += steps
        if steps:
            self.keys(*["Tab" if steps > 0 else "shift+Tab"] * abs(steps))

    def change(self, control, *keys):
        """Presses keys in a control and waits for the page that comes of it."""
        before = self.preview().data
        self.reach(control)
        self.keys(*keys)
        return self.settled(before)

    def write(self, control, text):
        """Types a text over what stands in a box."""
        self.reach(control)
        self.keys("ctrl+a")
        self.type(text)

    def effect(self, name):
        """Switches a decoration."""
        self.reach("effects")
        before, windows = self.preview().data, self.top_windows()
        self.keys("space")
        wait_until(lambda: self.top_windows() > windows, "the effects")
        self.keys(*["Down"] * (EFFECTS.index(name) + 1), "Return")
        return self.settled(before)

    def leave(self):
        self.keys("Escape")
        self.gone()

    def gone(self):
        wait_until(lambda: not self.windows(WINDOW), "the end of the window")

    # --- the page on the screen

    def box(self):
        """The preview's box in the window: the screen, left, top, width, height, and the box's own colour."""
        left, top, width, _ = self.geometry(self.dialog)
        screen = Picture(*SCREEN, self.screen_bytes())
        right, top = left + width - MARGIN - 1, top + MARGIN
        inside = right - 2, top + 2  # not on its frame, which tells of the focus
        ground = screen.pixel(*inside)
        start = next(x for x in range(right - 2, 0, -1) if screen.pixel(x, inside[1]) != ground) + 1
        end = next(y for y in range(top + 2, SCREEN[1]) if screen.pixel(inside[0], y) != ground)
        return screen, (start, top, right + 1 - start, end - top), ground

    def preview(self):
        """The page as the window shows it, all of it."""
        screen, (left, top, width, height), ground = self.box()
        row, column = top + height // 2, left + width // 2
        across = [x for x in range(left + 2, left + width - 2) if screen.pixel(x, row) != ground]
        down = [y for y in range(top + 2, top + height - 2) if screen.pixel(column, y) != ground]
        if not across or not down:
            return Picture(0, 0, b"")
        self.corner = across[0], down[0]
        return screen.part(across[0], down[0], across[-1] + 1 - across[0], down[-1] + 1 - down[0])

    def settled(self, before=b""):
        """The preview, once it shows something else than `before` and stays."""
        last = [before]

        def stays():
            shown = self.preview()
            stands = shown.data not in (before, b"") and shown.data == last[0]
            last[0] = shown.data
            return shown if stands else None
        return wait_until(stays, "a preview that stays")

    # --- the page on the paper

    def print(self):
        """Prints, waits for the end of the window, and gives the document that the printer got."""
        count = len(self.printer.documents())
        self.reach("print")
        self.keys("space")
        self.gone()
        return wait_until(lambda: self.printer.documents()[count:], "the printed document")[0]

    def paper(self, document):
        """The printed page without its margin, which is blank."""
        target = document.with_suffix("")
        self.make("pdftoppm", "-singlefile", "-r", DOTS, document, target)
        whole = read_ppm(target.with_suffix(".ppm"))
        inner = whole.width - 2 * PAPER_MARGIN, whole.height - 2 * PAPER_MARGIN
        for strip in ((0, 0, whole.width, PAPER_MARGIN - 1),
                      (0, whole.height - PAPER_MARGIN + 1, whole.width, PAPER_MARGIN - 1),
                      (0, 0, PAPER_MARGIN - 1, whole.height),
                      (whole.width - PAPER_MARGIN + 1, 0, PAPER_MARGIN - 1, whole.height)):
            self.assertEqual(set(whole.part(*strip).data), {255}, "the margin %s" % (strip,))
        return whole.part(PAPER_MARGIN, PAPER_MARGIN, *inner)

    def assert_agree(self, shown, paper, what, cell=CELL):
        worst, at = difference(shown, paper, cell)
        self.assertLessEqual(worst, TOLERANCE, "%s: preview and paper differ by %d at %s" % (what, worst, at))

    def assert_differ(self, shown, paper, what, cell=FINE_CELL):
        worst, _ = difference(shown, paper, cell)
        self.assertGreater(worst, 2 * TOLERANCE, what)

    def assert_printed(self, shown, what):
        """Prints, and compares the paper with what was shown. The paper and its job's attributes."""
        document = self.print()
        paper = self.paper(document)
        self.assert_agree(shown, paper, what)
        return paper, self.printer.ticket(document)

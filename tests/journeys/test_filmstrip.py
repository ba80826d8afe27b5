"""The filmstrip, the information panel and the side bar, by real keys and mouse."""

import os
import signal
import time
import unittest

from harness import BLUE, Journey, wait_until

CELL = 4 / 3  # width over height
TOOLBAR = 45  # pixels below the strip
STRIP = 2500 / 15  # its height with its margins, and without a setting
MARGIN = 3  # pixels around it


class FilmstripTest(Journey):

    @staticmethod
    def colour(number):
        """A colour that no other picture of the folder comes near."""
        return (number % 7 * 40 + 10, number // 7 % 6 * 45 + 10, number // 42 * 40 + 10)

    def many(self, count):
        """Writes so many pictures, each of a colour of its own, in the order of their names."""
        words = []
        for number in range(count):
            words += ["(", "-size", "640x480", "xc:rgb(%d,%d,%d)" % self.colour(number),
                      "-write", self.pictures / ("%03d.png" % number), "+delete", ")"]
        self.make("convert", *words, "-size", "1x1", "xc:red", "null:")

    def open_strip(self, count):
        self.many(count)
        process = self.start(self.pictures)
        window = self.window()
        self.focus(window)
        self.built(window)
        self.key("3")
        return process, window

    def strip(self, window):
        """Left, top, width and height of the painted strip above its scroll bar."""
        left, top, width, height = self.geometry(window)
        return left + MARGIN, top + height - TOOLBAR - STRIP + MARGIN, width - 2 * MARGIN, STRIP - 2 * MARGIN - 17

    def cell(self, window, column, row=0, rows=1):
        """The middle of a cell of the strip, which stands at its beginning."""
        left, top, _, height = self.strip(window)
        return round(left + (column + 0.5) * height / rows * CELL), round(top + (row + 0.5) * height / rows)

    def painted(self, at):
        """The number of the picture whose thumbnail is painted there; None for none."""
        pixel = self.pixel(*at)
        for number in range(250):
            if all(abs(a - b) <= 12 for a, b in zip(pixel, self.colour(number))):
                return number
        return None

    def wait_painted(self, at, number):
        wait_until(lambda: self.painted(at) == number, "picture %d at %s, where %s is" % (number, at, self.pixel(*at)))

    def wait_selected(self, window, column):
        """Waits until the frame of a cell in the only row is that of a selected one."""
        x, y = self.cell(window, column)
        upper = round(y - self.strip(window)[3] / 2)

        def marked():
            screen = self.screen()
            return any(screen(x, at) == BLUE for at in range(upper - 6, upper + 6))
        wait_until(marked, "the mark of the selected cell")

    def test_a_strip_of_250(self):
        process, window = self.open_strip(250)
        for column in (0, 1, 4):
            self.wait_painted(self.cell(window, column), column)
        x, y = self.cell(window, 2)

        self.output("xdotool", "mousemove", str(x), str(y), "click", "5", "click", "5", "click", "5")
        wait_until(lambda: (self.painted((x, y)) or 0) > 2, "the strip to scroll")
        time.sleep(0.5)
        number = self.painted((x, y))
        self.click(x, y)
        self.shows(window, self.colour(number))
        self.key("Right")
        self.shows(window, self.colour(number + 1))

        self.output("xdotool", "mousemove", str(x), str(y), "click", "3")
        wait_until(lambda: self.top_windows() > 1, "the menu of the image")
        self.key("Down", "Down", "Down", "Down", "Return")  # two rows
        wait_until(lambda: self.setting("FilmStripRows") == 2, "two rows")
        self.shows(window, self.colour(number + 1))  # the image stays
        self.menu(window, "v", "r", "3")
        wait_until(lambda: self.setting("FilmStripRows") == 3, "three rows")
        self.key("Escape")
        self.ended(process)

    def test_rows_and_selection(self):
        process, window = self.open_strip(60)
        self.wait_selected(window, 0)
        for column in (1, 2):
            self.key("Right")
            self.shows(window, self.colour(column))
            self.wait_selected(window, column)
        for rows in (2, 3):
            self.menu(window, "v", "r", str(rows))
            for number in (0, 1, rows, rows + 1):
                at = self.cell(window, number // rows, number % rows, rows)
                self.wait_painted(at, number)
        self.menu(window, "v", "r", "1")
        self.wait_painted(self.cell(window, 3), 3)
        self.send(process)
        self.ended(process)

        process = self.start(self.pictures)
        window = self.window()
        self.wait_painted(self.cell(window, 3), 3)  # tab and rows of the last run
        self.send(process)
        self.ended(process)

    def test_the_strip_is_dragged(self):
        process, window = self.open_strip(60)
        x, y = self.cell(window, 4)
        self.wait_painted((x, y), 4)
        self.wait_painted(self.cell(window, 1), 1)
        self.output("xdotool", "mousemove", str(x), str(y), "mousedown", "1")
        for step in range(1, 11):
            self.output("xdotool", "mousemove", str(x - 30 * step), str(y))
        time.sleep(0.3)
        self.output("xdotool", "mouseup", "1")
        self.wait_painted((x - 300, y), 4)
        self.shows(window, self.colour(0))  # a drag is no click
        self.click(x - 300, y)
        self.shows(window, self.colour(4))
        self.send(process)
        self.ended(process)

    def descriptions(self):
        return sorted(file.read_text() for file in (self.root / "Description").iterdir())

    @staticmethod
    def arrow(window_geometry, direction):
        """The toolbar's arrow to the following (1) or former (-1) picture: it takes no focus, and waits for no save."""
        left, top, width, height = window_geometry
        return str(left + width // 2 - 164 + 17 * direction), str(top + height - 23)

    def open_description(self):
        """Starts the program with the information panel and enters the field of the description."""
        process = self.start(self.pictures)
        window = self.window()
        self.focus(window)
        self.built(window)
        self.key("2")
        left, top, width, height = self.geometry(window)
        field = (left + width - 100, top + height - TOOLBAR - 60)
        wait_until(lambda: self.pixel(*field) == (255, 255, 255), "the field of the description")
        self.click(*field)
        return process, window

    def test_a_description_is_kept(self):
        self.many(3)
        process, window = self.open_description()
        following = self.arrow(self.geometry(window), 1)
        self.output("xdotool", "type", "--delay", "5", "a red mornin")
        typed = time.monotonic()
        self.output("xdotool", "key", "g", "mousemove", *following, "click", "1")
        clicked = time.monotonic() - typed
        self.shows(window, self.colour(1))
        self.assertLess(clicked, 0.5, "the machine is too busy to click within the delay of the save")
        self.assertEqual(self.descriptions(), ["a red morning\n"])
        self.close_by_frame(window)
        self.ended(process)

        process, window = self.open_description()
        self.output("xdotool", "key", "End")  # behind the text, all of which was selected
        self.output("xdotool", "type", "--delay", "5", ", again")
        wait_until(lambda: self.descriptions() == ["a red morning, again\n"], "the save")
        self.send(process, signal.SIGKILL)
        self.ended(process, -signal.SIGKILL)
        self.assertEqual(self.descriptions(), ["a red morning, again\n"])

    def test_the_mouse_on_a_description(self):
        for case in ("enteringByTheMiddleButtonPastesOverAll", "aDragEndsWhenAnotherImageComes"):
            self.run_in_the_display(os.environ["QUORVIA_MOUSE_TEST"], case)

    def test_what_waits_is_saved_at_the_end(self):
        self.many(1)
        for number in (signal.SIGTERM, signal.SIGHUP):
            process, _ = self.open_description()
            self.output("xdotool", "type", "--delay", "5", number.name)
            self.send(process, number)
            self.ended(process)
            self.assertEqual(self.descriptions(), [number.name + "\n"])

    def test_the_side_bar(self):
        self.many(1)
        process = self.start(self.pictures)
        window = self.window()
        self.focus(window)
        self.built(window)
        left, top, width, height = self.geometry(window)
        at = (left + width - 12, top + height // 2)
        before = self.pixel(*at)
        self.key("k")
        wait_until(lambda: self.pixel(*at) != before, "the side bar")

        def rows():
            """Whether the bar has letters from its head to far below it."""
            screen = self.screen()
            return sum(any(screen(x, y) == (255, 255, 255) for x in range(at[0] - 220, at[0]))
                       for y in range(top, top + 440)) > 60
        wait_until(rows, "the rows of the bar")
        self.shows(window, self.colour(0))
        self.key("k")
        wait_until(lambda: self.pixel(*at) == before, "the bar to go")
        self.send(process)
        self.ended(process)


if __name__ == "__main__":
    unittest.main()

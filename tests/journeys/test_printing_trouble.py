"""Printing where something is missing, wrong or gone: the viewer goes on, and the log says what happened."""

import unittest

from harness import wait_until
from printwindow import QUEUE, WINDOW, PrintJourney


class PrintingTroubleTest(PrintJourney):

    def said(self, start):
        return [line for line in self.log_lines() if line.startswith(start)]

    def print_in_vain(self):
        self.reach("print")
        self.keys("space")
        self.gone()

    def is_alive(self):
        """The window opens and closes again."""
        self.open_print()
        self.leave()

    def test_a_queue_that_rejects(self):
        self.start_viewer()
        self.open_print()
        self.server.ask("cupsreject", QUEUE)
        self.print_in_vain()
        wait_until(lambda: self.said("Not printed: %s: " % QUEUE), "the log's line")
        self.assertFalse(self.printer.documents())
        self.is_alive()
        self.end_viewer()

    def test_a_printer_that_vanishes(self):
        self.start_viewer()
        self.open_print()
        self.printer.vanish()
        self.print_in_vain()
        # The print server has the page, and waits for the printer.
        wait_until(lambda: self.server.ask("lpstat", "-o", QUEUE).startswith(QUEUE + "-1"), "the waiting job")
        self.assertFalse(self.said("Not printed"))
        self.assertFalse(self.printer.documents())
        self.is_alive()
        self.end_viewer()

    def test_a_print_server_that_vanishes(self):
        self.start_viewer()
        self.open_print()
        self.server.vanish()
        self.print_in_vain()
        wait_until(lambda: self.said("Not printed: %s: " % QUEUE), "the log's line")
        self.assertFalse(self.printer.documents())
        self.message_comes()
        self.end_viewer()

    def message_comes(self):
        """Instead of the print window comes the message that there is no printer."""
        message = self.summon("Quorvia$")
        self.assertFalse(self.windows(WINDOW))
        self.focus(message)
        self.keys("Escape")
        wait_until(lambda: not self.windows("Quorvia$"), "the end of the message")

    def test_without_a_printer(self):
        self.process, self.viewer = self.open(self.quarters)
        self.message_comes()
        self.assertFalse(self.said("Not printed"))
        self.end_viewer()

    def test_wrong_texts(self):
        self.start_viewer()
        before = self.open_print()
        self.reach("copies")
        for text in ("abc", "-3", "99999999999"):
            self.keys("space")
            self.answer("Printer Copies", text)
            self.focus(self.dialog)
        self.assertEqual(self.said("Not a number of copies: "), ["Not a number of copies: abc"])
        shown = self.change("alignment", *["Down"] * 4)  # as the boxes have it
        self.write("left", "100")
        moved = self.settled(shown.data)
        self.write("left", "abc")  # which is 0
        again = self.settled(moved.data)
        self.assertEqual(again.data, shown.data)
        self.write("width", "abc")  # and so is this: no picture
        empty = self.settled(shown.data)
        self.assertEqual(set(empty.data), {255})
        self.write("width", "1e99")
        self.write("height", "-1e99")
        self.write("width", "300")
        self.write("height", "240")
        self.write("top", "-50")
        shown = self.settled(before.data)
        _, ticket = self.assert_printed(shown, "wrong texts")
        self.assertIn(ticket.get("COPIES"), (None, "1"))
        self.end_viewer()


if __name__ == "__main__":
    unittest.main()

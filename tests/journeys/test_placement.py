"""Secondary windows under a real window manager: it alone makes windows large and small, and takes its time."""

import os
import unittest

from harness import Journey

PROGRAM = os.environ["QUORVIA_PLACEMENT_TEST"]


class PlacementTest(Journey):

    def test_a_maximised_window_keeps_its_usual_place(self):
        self.run_in_the_display(PROGRAM, "maximisedKeepsTheUsualPlace")

    def test_a_minimised_window_keeps_its_usual_place(self):
        self.run_in_the_display(PROGRAM, "minimisedKeepsTheUsualPlace")

    def test_a_window_comes_back_where_the_manager_had_put_it(self):
        self.run_in_the_display(PROGRAM, "aShownWindowComesBack")


if __name__ == "__main__":
    unittest.main()

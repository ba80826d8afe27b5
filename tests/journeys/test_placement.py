"""Secondary windows under a real window manager: it alone makes windows large and small, and takes its time."""

import os
import subprocess
import unittest

from harness import Journey

PROGRAM = os.environ["QUORVIA_PLACEMENT_TEST"]


class PlacementTest(Journey):

    def run_in_the_display(self, case):
        """Runs one case of the test program in the journey's X server."""
        done = subprocess.run([PROGRAM, case], env={**self.environment, "QT_QPA_PLATFORM": "xcb"}, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=60, check=False)
        self.assertEqual(done.returncode, 0, done.stdout)
        self.assertIn("PASS   : TestWindowPlacement::%s()" % case, done.stdout)

    def test_a_maximised_window_keeps_its_usual_place(self):
        self.run_in_the_display("maximisedKeepsTheUsualPlace")

    def test_a_minimised_window_keeps_its_usual_place(self):
        self.run_in_the_display("minimisedKeepsTheUsualPlace")

    def test_a_window_comes_back_where_the_manager_had_put_it(self):
        self.run_in_the_display("aShownWindowComesBack")


if __name__ == "__main__":
    unittest.main()

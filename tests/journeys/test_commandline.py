"""What the command line can carry."""

import subprocess
import unittest

from harness import GREEN, Journey, PROGRAM, RED, wait_until


class CommandLine(Journey):
    def answer(self, *arguments):
        return subprocess.run([PROGRAM, *arguments], env=self.environment, text=True, timeout=20, check=False,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT)

    def test_version_and_help_answer_on_the_output(self):
        version = self.answer("--version")
        self.assertEqual(version.returncode, 0)
        self.assertRegex(version.stdout, r"^Quorvia \d+\.\d+\.\d+\n$")
        usage = self.answer("--help")
        self.assertEqual(usage.returncode, 0)
        self.assertTrue(usage.stdout.startswith("Usage: quorvia"))
        self.assertFalse(self.log_path().exists())

    def test_install_publishes_and_ends(self):
        program = self.start("/install", wait=False)
        self.ended(program)
        self.assertEqual(self.log_lines(), ["Init: Form_Load: frmImageView"])
        self.assertEqual(self.common("Quorvia", "Common\\ProgramPaths"), PROGRAM)
        self.assertTrue(self.common("Quorvia", "Common\\ProgramFileSupport").startswith("*.bmp;*.dib;*.gif;"))
        self.assertIn("?app=Quorvia", self.common("Quorvia", "Web Sites"))

    def test_install_in_other_letters_is_an_unknown_command(self):
        self.start("/Install")
        self.window()

    def test_uninstall_takes_the_settings_away(self):
        program = self.start(self.picture("red.png", "red"))
        self.shows(self.window(), RED)
        self.send(program)
        self.ended(program)
        (self.root / "playlist.qol").write_text("left over")
        self.assertIsNotNone(self.setting("MainWidth"))
        before = self.log_text()
        self.ended(self.start("/uninstall", wait=False))
        self.assertIsNone(self.setting("MainWidth"))
        self.assertIsNone(self.setting("ImageOpenCount"))
        self.assertIsNone(self.common("Quorvia", "Common\\ProgramPaths"))
        self.assertFalse((self.root / "playlist.qol").exists())
        self.assertEqual(self.log_text(), before, "no window was loaded")

    def test_hide_leaves_the_window_hidden_and_still_loads(self):
        self.picture("a.png", "red")
        program = self.start(self.pictures, "/miHide")
        self.assertEqual(self.windows(), [])
        self.assertEqual(self.setting("ImageOpenCount"), 1)
        self.assertIsNone(program.poll())
        self.send(program)
        self.ended(program)

    def test_hide_alone_still_loads_the_first_image(self):
        self.picture("a.png", "red")
        self.ended_after_start(self.pictures / "a.png")
        self.start("/miHide")
        self.assertEqual(self.windows(), [])
        self.assertEqual(self.setting("ImageOpenCount"), 2)

    def ended_after_start(self, path):
        program = self.start(path)
        self.window()
        self.send(program)
        self.ended(program)

    def test_commands_run_in_order_after_the_path(self):
        self.picture("a.png", "red")
        self.picture("b.png", "lime")
        self.start(self.pictures, "/miNext", "/noSuchTool")
        self.shows(self.window(), GREEN)

    def test_a_message_is_shown(self):
        program = self.start("/miMsg_Done", wait=False)
        self.window("Quorvia$")
        self.key("Return")
        wait_until(lambda: self.log_lines()[-1:] == ["Finish: Form_Load: frmImageView"], "the end of the load step")
        self.assertIsNone(program.poll())

    def test_exit_ends_after_the_load(self):
        self.ended(self.start(self.picture("red.png", "red"), "/miExit", wait=False))
        self.assertIsNotNone(self.setting("MainWidth"))

    def test_a_path_with_blanks_needs_no_quotes(self):
        path = self.picture("two words here.png", "red")
        self.start(*str(path).split(" "))
        self.shows(self.window(), RED)

    def test_a_relative_path_counts_from_the_working_directory(self):
        self.picture("red.png", "red")
        self.start("pictures/red.png")
        self.shows(self.window(), RED)

    def test_neither_file_nor_directory_is_a_plain_start(self):
        self.picture("a.png", "red")
        self.ended_after_start(self.pictures / "a.png")
        self.start(self.home / "nothing.png")
        self.shows(self.window(), RED)
        self.assertEqual(self.windows("File Opening Error"), [])

    def test_a_second_instance_starts_without_the_stored_place(self):
        path = self.picture("red.png", "red")
        program = self.start(path)
        window = self.window()
        self.resize(window, 400, 300)
        self.move(window, 700, 420)
        self.send(program)
        self.ended(program)

        first = self.start(path)
        stored = self.geometry(self.window())
        second = self.start(path)
        other = wait_until(lambda: [w for w in self.windows() if w != self.windows()[0]] if
                           len(self.windows()) == 2 else None, "two windows")
        places = [self.geometry(window) for window in self.windows()]
        self.assertEqual(len(other), 1)
        self.assertIn(stored, places)
        self.assertEqual([place[2:] for place in places], [(400, 300)] * 2)
        self.assertNotEqual(places[0][:2], places[1][:2])
        self.send(first)
        self.ended(first)
        left = self.setting("MainLeft")
        self.send(second)
        self.ended(second)
        self.assertNotEqual(self.setting("MainLeft"), left, "the last one to close overwrites the place")


if __name__ == "__main__":
    unittest.main()

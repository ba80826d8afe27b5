"""The arithmetic of bench/compare: what is counted, how it is set beside ours, and what becomes of those who fail."""
import argparse
import os
import subprocess
import sys
import tempfile
import time
import unittest

BENCH = os.environ['QUORVIA_BENCH']
sys.path.insert(0, BENCH)

import comparison  # noqa: E402
from comparison_table import OURS, Results, behind, cell  # noqa: E402


class Named:
    """What stands for a viewer where only its name matters."""

    def __init__(self, name):
        self.name = name


def results_of(numbers):
    """Results with `numbers`: {(viewer, case): what viewer_run printed}."""
    results = Results()
    for (viewer, case), text in numbers.items():
        results.add(viewer, case, comparison.Run(text))
    return results


class Numbers(unittest.TestCase):
    def test_runs_add_up(self):
        results = results_of({(OURS, 'png'): 'first 100\nlast 250.5\nfirst 300\n'})
        results.add(OURS, 'png', comparison.Run('first 120\n'))
        self.assertEqual(results.of(OURS, 'png', 'first'), [100, 300, 120])
        self.assertEqual(results.median(OURS, 'png', 'first'), 120)
        self.assertEqual(results.median(OURS, 'png', 'last'), 250.5)
        self.assertIsNone(results.median(OURS, 'tif', 'first'))
        self.assertIsNone(results.median('other', 'png', 'first'))

    def test_cells(self):
        results = results_of({(OURS, 'png'): 'first 100\nfirst 120\nfirst 90\nmemory 2048',
                              ('other', 'png'): 'first 250\nfirst 50\nmemory 1024', ('third', 'tif'): 'first 7'})
        rows = [
            (OURS, 'first', 'ms', 1.0, 0, '100 ms (90 to 120)'),
            ('other', 'first', 'ms', 1.0, 0, '150 ms (50 to 250), **1.50**'),
            ('other', 'memory', 'MB', 1 / 1024, 1, '1.0 MB (1.0 to 1.0), **0.50**'),
            ('third', 'first', 'ms', 1.0, 0, 'none'),
        ]
        for viewer, name, unit, scale, digits, text in rows:
            with self.subTest(viewer=viewer, name=name):
                self.assertEqual(cell(results, viewer, 'png', name, unit, scale, digits), text)
        self.assertEqual(cell(results, 'third', 'tif', 'first', 'ms'), '7 ms (7 to 7)')  # none of ours, no ratio

    def test_behind(self):
        results = results_of({
            (OURS, 'png'): 'first 100\nlast 100\nmemory 100\npeak 100', (OURS, 'walk'): 'step 10\nmemory 50\npeak 80',
            (OURS, 'hold'): 'rate 4',
            ('near', 'png'): 'first 90\nlast 100\nmemory 101', ('near', 'walk'): 'step 11\nmemory 50\npeak 60',
            ('near', 'hold'): 'rate 5', ('far', 'png'): 'first 50', ('far', 'hold'): 'rate 10',
        })
        viewers = [Named(name) for name in (OURS, 'near', 'far')]
        self.assertEqual(behind(results, viewers, ['png', 'walk', 'hold']), [
            '- PNG, 24 MP, first picture: far 0.50, near 0.90',
            '- Walk, pictures a second: far 2.50, near 1.25',
            '- Walk, peak of memory: near 0.75',
        ])
        self.assertEqual(behind(results_of({('far', 'png'): 'first 50'}), viewers, ['png']), [])


class Files(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name

    def write(self, name, text):
        path = os.path.join(self.folder, name)
        with open(path, 'w', encoding='utf-8') as file:
            file.write(text)
        return path

    def viewer(self, name='other', **entry):
        options = argparse.Namespace(build=self.folder, work=self.folder)
        viewer = comparison.Viewer(name, {'command': name, **entry}, options)
        self.addCleanup(viewer.end)
        return viewer

    def program(self, text):
        """Makes `text`, lines for the shell, what measures; the options that lead to it."""
        os.makedirs(os.path.join(self.folder, 'bench'))
        path = self.write('bench/viewer_run', '#!/bin/sh\n' + text)
        os.chmod(path, 0o755)
        return argparse.Namespace(build=self.folder, work=self.folder, pictures=self.folder, steps=36, runs=2)

    def test_entries(self):
        path = self.write('conf', f'[{OURS}]\ncommand = %b/x %f\n[there]\npackage = p\ncommand = sh -c "%f"\n'
                                  '[gone]\npackage = q\ncommand = no-such-program-here %f\n'
                                  '[odd]\npackage = r\ncommand = sh\nunfit = it has no window\n')
        present, absent = comparison.entries(path, [])
        self.assertEqual(list(present), [OURS, 'there'])
        self.assertEqual(absent, ['gone: left out, not installed (package q)', 'odd: left out, it has no window'])
        present, absent = comparison.entries(path, ['there'])
        self.assertEqual((list(present), absent), (['there'], []))
        with self.assertRaisesRegex(KeyError, 'ther, goen'):
            comparison.entries(path, ['ther', 'goen', OURS])

    def test_the_viewers_of_the_house_can_be_read(self):
        present, absent = comparison.entries(os.path.join(BENCH, 'viewers.conf'), [])
        self.assertIn(OURS, present)
        self.assertGreater(len(present) + len(absent), 10)

    def test_a_failing_setup_leaves_one_viewer_out(self):
        viewers = [self.viewer(setup='true'), self.viewer('odd', setup='true\nexit 3')]
        bad = viewers[1]
        absent = []
        comparison.set_up(viewers, absent)
        self.assertEqual(len(viewers), 1)
        self.assertRegex(absent[0], '^odd: left out, its setup failed: .* 3')
        self.assertIsNotNone(bad.bus.returncode)  # its bus has ended
        self.assertIsNone(viewers[0].bus.poll())

    def test_what_a_run_printed_is_read(self):
        options = self.program('echo first 12.5; echo "$4" >"$HOME/words"; exit 1')
        run = comparison.call(options, self.viewer(), ['open', '15'], 'see %f', '/a b.png', 20)
        self.assertEqual(run.numbers, {'first': [12.5]})
        with open(os.path.join(self.folder, 'homes/other/words'), encoding='utf-8') as file:
            self.assertEqual(file.read(), 'see\n')

    def test_an_error_of_what_measures_is_raised(self):
        options = self.program('echo cannot read it >&2; exit 2')
        with self.assertRaisesRegex(comparison.MeasuringError, 'other.* 2: cannot read it'):
            comparison.run_case(options, self.viewer(), '2mp', False)

    def test_a_run_that_does_not_end_is_ended_with_all_of_it(self):
        options = self.program('sleep 600 & echo $! >"$HOME/child"; sleep 600')  # longer than this test may take
        with self.assertRaises(subprocess.TimeoutExpired):
            comparison.call(options, self.viewer(), ['open', '15'], 'see %f', '/a.png', 1)
        with open(os.path.join(self.folder, 'homes/other/child'), encoding='utf-8') as file:
            child = int(file.read())
        for _ in range(100):
            try:
                with open(f'/proc/{child}/stat', encoding='utf-8') as file:
                    if file.read().rpartition(')')[2].split()[0] == 'Z':
                        return
            except FileNotFoundError:
                return
            time.sleep(0.05)
        self.fail('what it had started goes on')

    def test_measure_warms_up_and_asks_nobody_again_who_failed(self):
        asked = []
        answers = {'good': 'first 10', 'blind': 'memory 5'}

        def run_case(_, viewer, case, warmup):
            asked.append((viewer.name, case, warmup))
            if viewer.name == 'stuck':
                raise subprocess.TimeoutExpired('x', 120)
            return comparison.Run(answers[viewer.name])

        original, comparison.run_case = comparison.run_case, run_case
        self.addCleanup(setattr, comparison, 'run_case', original)
        results, absent = Results(), []
        viewers = [Named(name) for name in ('good', 'blind', 'stuck')]
        comparison.measure(argparse.Namespace(runs=2), viewers, ['png'], results, absent)
        self.assertEqual(asked, [('good', 'png', True), ('blind', 'png', True), ('stuck', 'png', True),
                                 ('good', 'png', False), ('good', 'png', False)])
        self.assertEqual(results.numbers, {('good', 'png', 'first'): [10, 10]})
        self.assertEqual(absent, ['stuck: left out of png, took longer than 120 s'])

    def test_options_that_cannot_be(self):
        for words in (['--steps', '39'], ['--steps', '0'], ['--cases', 'gif'], ['--viewers', 'fee']):
            with self.subTest(words=words):
                done = subprocess.run([sys.executable, '-B', os.path.join(BENCH, 'comparison.py'), '--pictures', self.folder,
                                       '--build', self.folder, '--work', self.folder, *words],
                                      stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, timeout=60, check=False)
                self.assertEqual(done.returncode, 2, done.stderr)
                self.assertIn(words[1] if words[0] != '--steps' else 'steps: 1 to 38', done.stderr)


if __name__ == '__main__':
    unittest.main()

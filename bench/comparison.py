"""The rounds of bench/compare and its table: which viewers are there, one run after the other, medians and ratios.
Each run is one call of bench/viewer_run, which does the timing."""
import argparse
import configparser
import os
import platform
import shlex
import shutil
import signal
import subprocess
import sys
import time

from comparison_table import CASES, OURS, WALKS, Results, behind, print_tables

PATIENCE = 15  # seconds for a first picture
SETUP_PATIENCE = 60  # seconds for a line of a viewer's setup
MOST_STEPS = 38  # from the second of the walk's forty pictures to its last; past it a step would not be recognised


class MeasuringError(Exception):
    """What measures failed, not what is measured."""


class Viewer:
    """An entry of viewers.conf with a home of its own and a message bus in it."""

    def __init__(self, name, entry, options):
        self.name = name
        self.entry = entry
        self.command = entry['command']
        self.walk = entry.get('walk', self.command)
        self.key = entry.get('next', 'Right')
        self.fields = {'b': options.build}
        self.home = os.path.join(options.work, 'homes', name)
        self.environment = self.make_environment()
        self.bus = None

    def set_up(self):
        """Starts the bus and runs the lines of setup; subprocess.SubprocessError when one of them fails."""
        self.bus = subprocess.Popen(
            ['dbus-daemon', '--session', '--nofork', '--print-address'], env=self.environment,
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        self.environment['DBUS_SESSION_BUS_ADDRESS'] = self.bus.stdout.readline().strip()
        for line in self.entry.get('setup', '').strip().splitlines():
            subprocess.run(['sh', '-c', line], env=self.environment, check=True, cwd=self.home, timeout=SETUP_PATIENCE)

    def make_environment(self):
        """What the stage has, with our own home."""
        os.makedirs(os.path.join(self.home, 'run'), mode=0o700)
        for key, text in self.entry.items():
            if key.startswith('file '):
                path = os.path.join(self.home, key[len('file '):])
                os.makedirs(os.path.dirname(path), exist_ok=True)
                with open(path, 'w', encoding='utf-8') as file:
                    file.write(text.strip() + '\n')
        return dict(os.environ, HOME=self.home, XDG_RUNTIME_DIR=os.path.join(self.home, 'run'),
                    QUORVIA_ROOT=os.path.join(self.home, 'root'),
                    HALVEXA_MACHINE_STORE=os.path.join(self.home, 'machine.db'), LC_ALL='C.UTF-8')

    def words(self, line, path):
        """The words of a command line, with %f the picture, %d its folder and %b what was built."""
        fields = dict(self.fields, f=path, d=os.path.dirname(path))
        words = []
        for word in shlex.split(line):
            for letter, value in fields.items():
                word = word.replace('%' + letter, value)
            words.append(word)
        return words

    def end(self):
        if self.bus is None:
            return
        self.bus.send_signal(signal.SIGTERM)
        self.bus.wait()


class Run:
    """What one call of viewer_run printed: lists of numbers by name; empty when no picture came."""

    def __init__(self, text):
        self.numbers = {}
        for line in text.splitlines():
            name, number = line.split()
            self.numbers.setdefault(name, []).append(float(number))

    def get(self, name):
        return self.numbers.get(name, [])


def installed(command):
    return shutil.which(shlex.split(command)[0]) is not None


def entries(path, wanted):
    """The viewers of viewers.conf: those that are there, and lines about the others. KeyError when one of the wanted
    names is not in it."""
    config = configparser.RawConfigParser(delimiters=('=',))
    config.optionxform = str  # paths keep their capitals
    config.read(path, encoding='utf-8')
    unknown = [name for name in wanted if name not in config]
    if unknown:
        raise KeyError(', '.join(unknown))
    present, absent = {}, []
    for name in config.sections():
        entry = config[name]
        if wanted and name not in wanted:
            continue
        if 'unfit' in entry:
            absent.append(f'{name}: left out, {entry["unfit"]}')
        elif name != OURS and not installed(entry['command']):
            absent.append(f'{name}: left out, not installed (package {entry["package"]})')
        else:
            present[name] = entry
    return present, absent


def set_up(viewers, absent):
    """Makes the viewers ready; takes those that cannot be out of the list, with a line in `absent` about each."""
    for viewer in list(viewers):
        try:
            viewer.set_up()
        except subprocess.SubprocessError as error:
            viewer.end()
            viewers.remove(viewer)
            absent.append(f'{viewer.name}: left out, its setup failed: {error}')


def end_session(leader):
    """Ends all that is left of the session that process `leader` began."""
    for name in filter(str.isdigit, os.listdir('/proc')):
        try:
            if os.getsid(int(name)) == leader:
                os.kill(int(name), signal.SIGKILL)
        except (ProcessLookupError, PermissionError):
            pass


def call(options, viewer, arguments, line, path, seconds):
    """One run, with all ended that it began. MeasuringError when it could not measure, subprocess.TimeoutExpired when it
    took longer than `seconds`."""
    command = [os.path.join(options.build, 'bench', 'viewer_run'), os.path.join(options.work, 'Xvfb_screen0'),
               *arguments, *viewer.words(line, path)]
    with open(os.path.join(options.work, 'noise'), 'w+', encoding='utf-8', errors='replace') as noise:
        with subprocess.Popen(command, env=viewer.environment, cwd=viewer.home, stdout=subprocess.PIPE,
                              stderr=noise, text=True, start_new_session=True) as process:
            try:
                text, _ = process.communicate(timeout=seconds)
            finally:
                end_session(process.pid)
        noise.seek(0)
        if process.returncode not in (0, 1):
            raise MeasuringError(f'viewer_run with {viewer.name} ended with {process.returncode}: {noise.read().strip()}')
    return Run(text)


def run_case(options, viewer, case, warmup):
    """One run of a case; to warm up, a walk has three steps and the key is held for a second."""
    path = os.path.join(options.pictures, 'walk', '00.jpg')
    if case == 'walk':
        steps = min(3, options.steps) if warmup else options.steps
        return call(options, viewer, ['walk', viewer.key, str(steps), '1200'], viewer.walk, path, 900)
    if case == 'hold':
        return call(options, viewer, ['hold', viewer.key, '1' if warmup else '4'], viewer.walk, path, 120)
    path = os.path.join(options.pictures, CASES[case][1])
    return call(options, viewer, ['open', str(PATIENCE)], viewer.command, path, 120)


def read_once(options):
    """Brings the pictures into the cache of files."""
    for folder, _, names in os.walk(options.pictures):
        if os.path.basename(folder).startswith('alone-') or os.path.basename(folder) == 'walk':
            for name in names:
                with open(os.path.join(folder, name), 'rb') as file:
                    while file.read(1 << 24):
                        pass


def measure(options, viewers, cases, results, absent):
    """All rounds, viewers in turn within each, after one that does not count. A viewer that fails a case is not asked
    again for it; about one that did not come to an end there is a line in `absent`."""
    for case in cases:
        rounds = 1 + {'walk': 1, 'hold': 2}.get(case, options.runs)
        wanted = {'walk': 'step', 'hold': 'rate'}.get(case, 'first')
        failed = set()
        for number in range(rounds):
            for viewer in viewers:
                if viewer.name in failed:
                    continue
                began = time.time()
                try:
                    run = run_case(options, viewer, case, warmup=number == 0)
                except subprocess.TimeoutExpired as error:
                    run = Run('')
                    absent.append(f'{viewer.name}: left out of {case}, took longer than {error.timeout:g} s')
                if not run.get(wanted):
                    failed.add(viewer.name)
                elif number > 0:
                    results.add(viewer.name, case, run)
                values = ' '.join(f'{value:g}' for value in run.get(wanted)[:8]) or 'no picture'
                print(f'{case} {number + 1}/{rounds} {viewer.name}: {values} ({time.time() - began:.1f} s)',
                      file=sys.stderr, flush=True)


def picture_of(options, name):
    subprocess.run(['import', '-window', 'root', '-resize', '50%', os.path.join(options.show, name + '.png')], check=True)


def show(options, viewers, cases):
    """A picture of the screen of every viewer, for the walk one more after the key."""
    for viewer in viewers:
        for case in cases:
            name = f'{viewer.name}-{case}'
            line = viewer.walk if case in WALKS else viewer.command
            path = os.path.join(options.pictures, 'walk/00.jpg' if case in WALKS else CASES[case][1])
            process = subprocess.Popen(viewer.words(line, path), env=viewer.environment, stdout=subprocess.DEVNULL,
                                       stderr=subprocess.DEVNULL, cwd=viewer.home)
            time.sleep(4)
            picture_of(options, name)
            if case in WALKS:
                for _ in range(2):
                    subprocess.run(['xdotool', 'key', viewer.key], check=True)
                    time.sleep(2)
                picture_of(options, name + '-after')
            process.terminate()
            process.wait()


def version_of(viewer):
    if viewer.name == OURS:
        return 'built here'
    done = subprocess.run(['dpkg-query', '-W', '-f', '${Version}', viewer.entry['package']], stdout=subprocess.PIPE,
                          stderr=subprocess.DEVNULL, text=True, check=False)
    return done.stdout or 'of unknown version'


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    for name in ('pictures', 'build', 'work'):
        parser.add_argument('--' + name, required=True)
    parser.add_argument('--runs', type=int, default=5)
    parser.add_argument('--steps', type=int, default=36)
    parser.add_argument('--viewers', default='')
    parser.add_argument('--cases', default=','.join([*CASES, *WALKS]))
    parser.add_argument('--show', default='')
    options = parser.parse_args()
    cases = options.cases.split(',')
    wanted = [name for name in options.viewers.split(',') if name]
    if wanted and OURS not in wanted and not options.show:
        wanted.append(OURS)
    unknown = [case for case in cases if case not in CASES and case not in WALKS]
    if unknown:
        parser.error('no such case: ' + ', '.join(unknown))
    if not 1 <= options.steps <= MOST_STEPS:
        parser.error(f'steps: 1 to {MOST_STEPS}')
    conf = os.path.join(os.path.dirname(os.path.abspath(__file__)), 'viewers.conf')
    try:
        present, absent = entries(conf, wanted)
    except KeyError as error:
        parser.error(f'no such viewer in {conf}: {error.args[0]}')
    read_once(options)
    viewers = [Viewer(name, entry, options) for name, entry in present.items()]
    results = Results()
    failure = ''
    signal.signal(signal.SIGTERM, signal.default_int_handler)
    try:
        set_up(viewers, absent)
        if options.show:
            os.makedirs(options.show, exist_ok=True)
            show(options, viewers, cases)
            return
        measure(options, viewers, cases, results, absent)
    except KeyboardInterrupt:
        failure = 'Broken off'
    except MeasuringError as error:
        failure = str(error)
    finally:
        for viewer in viewers:
            viewer.end()
    if failure:
        print(f'{failure}; this is what was measured until then.\n')
    print(f'{time.strftime("%Y-%m-%d %H:%M")}, {os.cpu_count()} cores, load {os.getloadavg()[0]:.1f}, '
          f'Linux {platform.release()}, {options.runs} rounds. '
          'Median (least to most), **in bold** how many times ours.')
    print('\n' + ', '.join(f'{viewer.name} {version_of(viewer)}' for viewer in viewers) + '.')
    print_tables(results, viewers, cases)
    print('\n### Where another one is better (theirs / ours)\n')
    print('\n'.join(behind(results, viewers, cases)) or 'Nowhere.')
    if absent:
        print('\n### Left out\n')
        print('\n'.join('- ' + line for line in absent))
    if failure:
        sys.exit(failure)


if __name__ == '__main__':
    main()

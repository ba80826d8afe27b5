"""The rounds of bench/compare and its table: which viewers are there, one run after the other, medians and ratios.
Each run is one call of bench/viewer_run, which does the timing."""
import argparse
import configparser
import os
import platform
import shlex
import shutil
import signal
import statistics
import subprocess
import sys
import time

OURS = 'quorvia'
CASES = {
    '2mp': ('JPEG, 2 MP', 'alone-2mp-jpg/2mp.jpg'),
    '24mp': ('JPEG, 24 MP', 'alone-24mp-jpg/24mp.jpg'),
    '100mp': ('JPEG, 100 MP', 'alone-100mp-jpg/100mp.jpg'),
    'png': ('PNG, 24 MP', 'alone-24mp-png/24mp.png'),
    'tif': ('TIFF, 24 MP, uncompressed', 'alone-24mp-tif/24mp.tif'),
    'deflate': ('TIFF, 24 MP, deflate', 'alone-24mp-deflate-tif/24mp-deflate.tif'),
}
WALKS = ('walk', 'hold')
PATIENCE = 15  # seconds for a first picture


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
        self.bus = subprocess.Popen(
            ['dbus-daemon', '--session', '--nofork', '--print-address'], env=self.environment,
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        self.environment['DBUS_SESSION_BUS_ADDRESS'] = self.bus.stdout.readline().strip()
        for line in entry.get('setup', '').strip().splitlines():
            subprocess.run(['sh', '-c', line], env=self.environment, check=True, cwd=self.home)

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


class Results:
    """All numbers of all runs, by viewer, case and name."""

    def __init__(self):
        self.numbers = {}

    def add(self, viewer, case, run):
        for name, values in run.numbers.items():
            self.numbers.setdefault((viewer, case, name), []).extend(values)

    def of(self, viewer, case, name):
        return self.numbers.get((viewer, case, name), [])

    def median(self, viewer, case, name):
        """None when there are no numbers."""
        values = self.of(viewer, case, name)
        return statistics.median(values) if values else None


def installed(command):
    return shutil.which(shlex.split(command)[0]) is not None


def entries(path, wanted):
    """The viewers of viewers.conf: those that are there, and lines about the others."""
    config = configparser.RawConfigParser(delimiters=('=',))
    config.optionxform = str  # paths keep their capitals
    config.read(path, encoding='utf-8')
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


def call(options, viewer, arguments, line, path, seconds):
    """One run; its standard error stays silent unless it tells that no picture came."""
    command = [os.path.join(options.build, 'bench', 'viewer_run'), os.path.join(options.work, 'Xvfb_screen0'),
               *arguments, *viewer.words(line, path)]
    with open(os.path.join(options.work, 'noise'), 'w', encoding='utf-8') as noise:
        done = subprocess.run(command, env=viewer.environment, cwd=viewer.home, stdout=subprocess.PIPE,
                              stderr=noise, text=True, timeout=seconds, check=False)
    return Run(done.stdout)


def run_case(options, viewer, case):
    if case == 'walk':
        path = os.path.join(options.pictures, 'walk', '00.jpg')
        return call(options, viewer, ['walk', viewer.key, str(options.steps), '1200'], viewer.walk, path, 900)
    if case == 'hold':
        path = os.path.join(options.pictures, 'walk', '00.jpg')
        return call(options, viewer, ['hold', viewer.key, '4'], viewer.walk, path, 120)
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


def measure(options, viewers, cases, results):
    """All rounds, viewers in turn within each. A viewer that fails a case is not asked again for it."""
    for case in cases:
        rounds = {'walk': 1, 'hold': 2}.get(case, options.runs)
        warmups = 1 if case in CASES else 0
        failed = set()
        for number in range(rounds + warmups):
            for viewer in viewers:
                if viewer.name in failed:
                    continue
                began = time.time()
                run = run_case(options, viewer, case)
                wanted = {'walk': 'step', 'hold': 'rate'}.get(case, 'first')
                if not run.get(wanted):
                    failed.add(viewer.name)
                elif number >= warmups:
                    results.add(viewer.name, case, run)
                values = ' '.join(f'{value:g}' for value in run.get(wanted)[:8]) or 'no picture'
                print(f'{case} {number + 1}/{rounds + warmups} {viewer.name}: {values} ({time.time() - began:.1f} s)',
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


def spread(values, digits=0):
    return f'{min(values):.{digits}f} to {max(values):.{digits}f}'


def cell(results, viewer, case, name, unit, scale=1.0, digits=0):
    """Median, least and most, and the ratio to ours."""
    values = [value * scale for value in results.of(viewer, case, name)]
    if not values:
        return 'none'
    text = f'{statistics.median(values):.{digits}f} {unit} ({spread(values, digits)})'
    ours = results.median(OURS, case, name)
    if viewer != OURS and ours:
        text += f', **{statistics.median(values) / (ours * scale):.2f}**'
    return text


def table(heads, rows):
    lines = ['| ' + ' | '.join(heads) + ' |', '|' + '---|' * len(heads)]
    return '\n'.join(lines + ['| ' + ' | '.join(row) + ' |' for row in rows])


def print_tables(results, viewers, cases):
    names = [viewer.name for viewer in viewers]
    pictures = [case for case in cases if case in CASES]
    titles = [CASES[case][0] for case in pictures]
    sections = [
        ('From the start to the first picture', 'first', 'ms', 1.0),
        ('Until the picture did not change any more', 'last', 'ms', 1.0),
        ('Memory while the picture stands (PSS)', 'memory', 'MB', 1 / 1024),
        ('Peak of resident memory', 'peak', 'MB', 1 / 1024),
    ]
    for title, name, unit, scale in sections if pictures else []:
        print(f'\n### {title}\n')
        print(table([''] + titles, [[viewer] + [cell(results, viewer, case, name, unit, scale) for case in pictures]
                                    for viewer in names]))
    if any(case in cases for case in WALKS):
        print('\n### The next picture in a folder of 24 MP JPEGs\n')
        print(table(['', 'from key to picture', 'key held, pictures a second', 'memory after the walk (PSS)', 'peak'],
                    [[viewer, cell(results, viewer, 'walk', 'step', 'ms', digits=1),
                      cell(results, viewer, 'hold', 'rate', '/s', digits=1),
                      cell(results, viewer, 'walk', 'memory', 'MB', 1 / 1024),
                      cell(results, viewer, 'walk', 'peak', 'MB', 1 / 1024)] for viewer in names]))


def behind(results, viewers, cases):
    """A line for each number in which another one is better than ours."""
    lines = []
    kinds = [(case, name, title, False) for case in cases if case in CASES
             for name, title in (('first', 'first picture'), ('last', 'picture at rest'), ('memory', 'memory'),
                                 ('peak', 'peak of memory'))]
    kinds += [('walk', 'step', 'next picture', False), ('hold', 'rate', 'pictures a second', True),
              ('walk', 'memory', 'memory', False)]
    for case, name, title, more_is_better in kinds:
        ours = results.median(OURS, case, name)
        if not ours:
            continue
        ratios = {}
        for viewer in viewers:
            theirs = results.median(viewer.name, case, name)
            if viewer.name != OURS and theirs and (theirs > ours if more_is_better else theirs < ours):
                ratios[viewer.name] = theirs / ours
        if ratios:
            said = ', '.join(f'{viewer} {ratio:.2f}' for viewer, ratio in
                             sorted(ratios.items(), key=lambda item: item[1], reverse=more_is_better))
            lines.append(f'- {CASES[case][0] if case in CASES else "Walk"}, {title}: {said}')
    return lines


def version_of(package):
    done = subprocess.run(['dpkg-query', '-W', '-f', '${Version}', package], stdout=subprocess.PIPE,
                          stderr=subprocess.DEVNULL, text=True, check=False)
    return done.stdout or 'built here'


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    for name in ('pictures', 'build', 'work'):
        parser.add_argument('--' + name, required=True)
    parser.add_argument('--runs', type=int, default=5)
    parser.add_argument('--steps', type=int, default=40)
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
    conf = os.path.join(os.path.dirname(os.path.abspath(__file__)), 'viewers.conf')
    present, absent = entries(conf, wanted)
    read_once(options)
    viewers = []
    results = Results()
    signal.signal(signal.SIGTERM, signal.default_int_handler)
    try:
        for name, entry in present.items():
            viewers.append(Viewer(name, entry, options))
        if options.show:
            os.makedirs(options.show, exist_ok=True)
            show(options, viewers, cases)
            return
        measure(options, viewers, cases, results)
    except KeyboardInterrupt:
        print('Broken off; this is what was measured until then.\n')
    finally:
        for viewer in viewers:
            viewer.end()
    print(f'{time.strftime("%Y-%m-%d %H:%M")}, {os.cpu_count()} cores, load {os.getloadavg()[0]:.1f}, '
          f'Linux {platform.release()}, {options.runs} rounds. '
          'Median (least to most), **in bold** how many times ours.')
    print('\n' + ', '.join(f'{viewer.name} {version_of(viewer.entry.get("package", OURS))}' for viewer in viewers) + '.')
    print_tables(results, viewers, cases)
    print('\n### Where another one is better (theirs / ours)\n')
    print('\n'.join(behind(results, viewers, cases)) or 'Nowhere.')
    if absent:
        print('\n### Left out\n')
        print('\n'.join('- ' + line for line in absent))


if __name__ == '__main__':
    main()

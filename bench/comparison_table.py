"""What bench/comparison.py measured, and the tables that it prints: medians, ratios, and where others are better."""
import statistics

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
              ('walk', 'memory', 'memory', False), ('walk', 'peak', 'peak of memory', False)]
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

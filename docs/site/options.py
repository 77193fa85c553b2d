# SPDX-License-Identifier: MIT
"""The pages of the programs' options, from what their --help says."""
import re
import subprocess


def help_of(program, *words):
    return subprocess.run([program, *words, '--help'], check=True, stdout=subprocess.PIPE,
                          universal_newlines=True).stdout


class Help(object):
    """The parts of a --help: what the program does, entries by heading, and the text behind."""
    COLUMN = 30  # where descriptions begin; those of long entries in the next line

    def __init__(self, text):
        self.purpose, self.entries, self.rest = [], {}, []
        heading, lines = None, text.splitlines()
        for i, line in enumerate(lines):
            title = re.match(r'(Positionals|Options):$', line)
            if title:
                heading = self.entries.setdefault(title[1], [])
            elif heading is not None and not line:
                heading = None
            elif heading is None:
                (self.rest if self.entries else self.purpose).append(line)
            elif line.startswith(' ' * self.COLUMN):
                heading[-1][1] = line.strip()
            elif lines[i + 1].startswith(' ' * self.COLUMN):
                heading.append([line.strip(), ''])
            else:
                heading.append([line[:self.COLUMN].strip(), line[self.COLUMN:]])


def escaped(text):
    text = re.sub(r'(?<![\w-])(--?[a-z][\w-]*(?:=\w+)?|[A-Z_]{4,}|docs/\w+\.md|%\d+d|<\w+>|'
                  r'[\w.]*#+[\w.]*|\$F4|sys\.\w+(?:\[[^]]*\])?|render\(frame\))', r'``\1``', text)
    text = re.sub(r'``docs/(\w+)\.md``', r':doc:`/guides/\1`', text)
    return re.sub(r'(?<!`)\*(?!`)', r'\\*', text)


def entries(program, listed):
    parts = []
    for head, text in listed:
        words = re.sub(r' (Excludes|Needs):.*', '', head)
        limits = re.search(r' in \[(.*?)\]', words)
        choices = re.search(r':\{(.*?)\}', words)
        words = re.sub(r':\S* in \[.*?\]|:\{.*?\}|(?<=\d):\S+', '', words)
        words = re.sub(r'\bTEXT\b|\bUINT\b|\bFLOAT\b', metavariable, words).replace('REQUIRED', '')
        notes = [escaped(text.strip()) + ('' if text.rstrip().endswith('.') else '.')]
        if choices:
            notes.append('One of %s.' % ', '.join('``%s``' % c for c in choices[1].split(',')))
        if limits:
            notes.append('From %s to %s.' % tuple(limits[1].split(' - ')))
        for word, phrase in ('Excludes', 'Not together with'), ('Needs', 'Only with'):
            found = re.search(word + r': ((?:--[\w-]+ ?)+)', head)
            if found:
                notes.append('%s %s.' % (phrase, ', '.join('``%s``' % o for o in found[1].split())))
        if 'REQUIRED' in head:
            notes.append('Required.')
        names = re.sub(r',(?=-)', ', ', ' '.join(words.split()))
        parts.append('.. option:: %s\n\n   %s' % (names, ' '.join(notes)))
    return '\n\n'.join(parts)


def metavariable(match):
    return {'TEXT': 'TEXT', 'UINT': 'N', 'FLOAT': 'NUMBER'}[match[0]]


def exit_codes(lines):
    """The table in the lines, which end with it."""
    rows = []
    for line in lines:
        found = re.match(r' +(\d+)  (.*)', line)
        if found:
            rows.append([found[1], found[2]])
        elif rows and line.strip():
            rows[-1][1] += ' ' + line.strip()
    return '.. list-table::\n   :header-rows: 1\n\n   * - Exit code\n     - Meaning\n' + '\n'.join(
        '   * - %s\n     - %s' % (code, escaped(text)) for code, text in rows)


def write_quilhost(program, folder):
    found = Help(help_of(program))
    at = next(i for i, line in enumerate(found.rest) if line.startswith('Exit codes'))
    paragraphs = '\n'.join(found.rest[:at]).strip()
    (folder / 'quilhost_options.rst').write_text('\n\n'.join([
        'Options of quilhost\n===================', found.purpose[0], '.. code-block:: console\n\n'
        '   $ quilhost [options] [SCENE.obj|.gltf|.glb] [-- script arguments]',
        escaped(paragraphs), '.. program:: quilhost', 'Options\n-------',
        entries('quilhost', found.entries['Options']),
        'Exit codes\n----------', exit_codes(found.rest[at + 1:])]) + '\n')


def write_quilfarm(program, folder):
    text = help_of(program)
    commands = re.findall(r'^  (\w+)   +\S', text, re.M)
    codes = ' '.join(text[text.index('Exit codes:'):].split()).partition(':')[2]
    codes = re.sub(r' (\d) ', r' \1  ', codes)  # as quilhost writes them
    parts = ['Options of quilfarm\n===================',
             'Renders frame ranges and large stills in tasks; see :doc:`/guides/farm`.',
             '.. code-block:: console\n\n   $ quilfarm COMMAND [options]']
    for command in commands:
        found = Help(help_of(program, command))
        purpose, _, usage = found.purpose[0].partition('quilfarm %s [' % command)
        parts += ['quilfarm %s\n%s' % (command, '-' * (9 + len(command))),
                  escaped(purpose.strip().rstrip('.')) + '.',
                  '.. code-block:: console\n\n   $ quilfarm %s %s' % (
                      command, '[' + usage if usage else found.purpose[1].split(command + ' ')[1])]
        parts += ['.. program:: quilfarm %s' % command,
                  entries('quilfarm ' + command, found.entries.get('Options', []))]
        if any(found.rest):
            parts.append(escaped('\n'.join(found.rest).strip()))
    parts += ['Exit codes\n----------', exit_codes(re.findall(r' \d  .*?(?=;|\.|$)', codes)),
              codes.partition('. ')[2]]
    (folder / 'quilfarm_options.rst').write_text('\n\n'.join(parts) + '\n')

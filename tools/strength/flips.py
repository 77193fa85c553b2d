# SPDX-License-Identifier: MIT
"""The operators of the tree that can be flipped, in a random order that is the same each time."""

import collections
import hashlib
import re
import subprocess

SEED = 'quil'
FOLDERS = ('runtime/', 'wrappers/', 'module/', 'companion/', 'host/', 'devhost/')
FLIPS = {'<': '<=', '<=': '<', '>': '>=', '>=': '>', '==': '!=', '!=': '==', '&&': '||',
         '||': '&&', '+': '-', '-': '+', '*': '/', '/': '*', '+=': '-=', '-=': '+=',
         'and': 'or', 'or': 'and'}
# With the blanks that the layout puts round those with two sides.
OPERATOR = {'.cpp': r'(?<= )(<=|>=|==|!=|&&|\|\||\+=|-=|[<>+*/-])(?=\s)',
            '.py': r'(?<= )(<=|>=|==|!=|and|or|\+=|-=|[<>+*/-])(?=\s)'}
OPERATOR['.h'] = OPERATOR['.cpp']
# What is no code, or decides nothing when it runs.
SKIPPED = {'.cpp': r'//[^\n]*|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])+\'|^#(?:\\\n|[^\n])*'
                   r'|static_assert\((?:[^;])*;|^template <[^\n]*',
           '.py': r'#[^\n]*|"""(?:.|\n)*?"""|\'(?:\\.|[^\'\\\n])*\'|"(?:\\.|[^"\\\n])*"'}
SKIPPED['.h'] = SKIPPED['.cpp']


class Flip(collections.namedtuple('Flip', 'name file sound start end new')):
    kind = 'flip'
    group = 'flips'

    def planted(self, text):
        if text != self.sound:
            raise SystemExit('%s is not what the flips were found in' % self.file)
        return text[:self.start] + self.new + text[self.end:]


def flips_of(file, text):
    """All flips of a file, with the text that decides about their place in the order: what else
    changes in the tree does not change which ones are chosen."""
    suffix = file[file.rindex('.'):]
    hidden = re.sub(SKIPPED[suffix], lambda found: re.sub(r'\S', 'x', found.group()), text,
                    flags=re.MULTILINE)
    times = collections.Counter()
    for found in re.finditer(OPERATOR[suffix], hidden):
        begin = text.rfind('\n', 0, found.start()) + 1
        line = text[begin:text.find('\n', begin)]
        marked = line[:found.start() - begin] + '[%s]' % found.group() + line[found.end() - begin:]
        marked = marked.strip()
        times[marked] += 1
        name = '`%s` for `%s`' % (FLIPS[found.group()], marked)
        name += ' (%d)' % times[marked] if times[marked] > 1 else ''
        yield Flip(name, file, text, found.start(), found.end(), FLIPS[found.group()])


def find(root):
    listed = subprocess.run(['git', 'ls-files', *FOLDERS], cwd=root, check=True,
                            stdout=subprocess.PIPE, text=True).stdout.splitlines()
    found = []
    for file in listed:
        if file.endswith(tuple(OPERATOR)):
            found += flips_of(file, (root / file).read_text())
    order = {flip: hashlib.sha256((SEED + flip.file + flip.name).encode()).digest()
             for flip in found}
    return sorted(found, key=order.get)

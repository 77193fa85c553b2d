# SPDX-License-Identifier: MIT
"""The pages of the documentation's reference: they have each member of both modules once, and what
they say of None is what a call with it does, on a host that does nothing."""
import collections
import os
import re
import shutil
import subprocess
import sys
import tempfile

import calls
import rows
from calls import attempt
from goods import Goods, OpenQuil, OpenQuilRender

BUILDER = os.path.join(rows.TESTS, os.pardir, 'docs', 'site', 'build.py')
MODULE = re.compile(r'^\.\. py:(?:current)?module:: (OpenQuil(?:Render)?)$', re.MULTILINE)
ENTRY = re.compile(r'\.\. py:(class|data|\w*method|property|attribute):: ([\w.]+).*\n'
                   r'( *:noindex:)?')
NONE = re.compile(r'\bNone (is an? [^.\n]*|is False|raises \w+)')
OWN = '__module__ __doc__ _native_class _registered __swig_destroy__'.split()


def entries(folder):
    """Module, class and member of each entry, its text, and whether it is indexed."""
    for path, _, names in os.walk(folder):
        for name in names:
            with open(os.path.join(path, name)) as page:
                text = page.read()
            for module in MODULE.findall(text)[:1]:
                for entry in entries_of(module, text):
                    yield entry


def entries_of(module, text):
    owner, found = None, list(ENTRY.finditer(text))
    for entry, behind in zip(found, found[1:] + [None]):
        kind, name, is_second = entry.groups()
        scope, _, member = name.rpartition('.')
        if kind == 'class':
            owner = member
        elif kind != 'data':
            scope, member = scope or owner, '__init__' if member == owner else member
        yield '.'.join(filter(None, (module, scope, member))), \
            text[entry.end():behind and behind.start()], not is_second


def members():
    """What the modules have, but for what Python concludes from something else."""
    for module in OpenQuil, OpenQuilRender:
        for name in module.__all__:
            value = getattr(module, name)
            yield '%s.%s' % (module.__name__, name)
            for member, kind in vars(value).items() if isinstance(value, type) else ():
                is_alias = member != '__div__' and vars(value).get('__div__') is kind
                is_made = member == '__init__' and hasattr(module._native, 'new_' + name)
                if member not in OWN and not is_alias and (
                        is_made or member == '__disown__' or not member.startswith('__')
                        or type(kind).__name__ == 'Method'):
                    yield '%s.%s.%s' % (module.__name__, name, member)


def wrong_names(folder):
    found = collections.Counter(name for name, _, indexed in entries(folder) if indexed)
    expected = collections.Counter(members())
    return ['%s stands %d times in the pages, and %d times in the module' % (
        name, found[name], expected[name]) for name in set(found) | set(expected)
        if found[name] != expected[name]]


def what_happens(row, types, position, goods):
    arguments = [goods.keep(declared).value for declared in types]
    arguments[position] = None
    result, error = attempt(row.function, arguments)
    if type(error) is TypeError and 'Expected a String' in str(error):
        return 'is an empty text, then TypeError'
    if type(error) in (TypeError, ValueError):
        return 'raises %s' % type(error).__name__
    return 'is False' if types[position].startswith('bool') else 'is a null pointer'


def wrong_claims(folder):
    """What None does otherwise than the pages of OpenQuilRender say."""
    claims = collections.defaultdict(list)  # by row, for each overload
    for name, text, _ in entries(folder):
        module, owner, member = (name + '..').split('.')[:3]
        row = 'new_' + owner if member == '__init__' else '%s_%s' % (owner, member)
        claims[row].append(NONE.findall(text))
    goods, checked = Goods(), 0
    for row in rows.read_rows():
        for (_, _, types), said in zip(row.cases, claims[re.sub('_set$', '', row.name)]):
            for i, effect in enumerate(said, len(types) - len(said)):
                checked += 1
                done = what_happens(row, types, i, goods)
                if done != effect:
                    yield '%s, argument %d: None %s; the page says that it %s' % (
                        row.name, i + 1, done, effect)
    if checked < 450:
        yield 'only %d arguments were checked' % checked


def main():
    if '--journal' in sys.argv:
        folder = sys.argv[-1]
        return '\n'.join(wrong_names(folder) + list(wrong_claims(folder))) or 0
    folder = tempfile.mkdtemp()
    try:
        subprocess.check_call([os.environ['PYTHON3'], BUILDER, rows.BUILD, '--reference', folder])
        return calls.supervise(__file__, [folder], True)
    finally:
        shutil.rmtree(folder)


if __name__ == '__main__':
    sys.exit(main())

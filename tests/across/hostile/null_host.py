# SPDX-License-Identifier: MIT
"""Writes the source of a host that does nothing: every member that the module calls by its name
returns zero, or an empty object where the result is a class. Preloaded over the development host it
lets calls with null objects, stray pointers and the addresses of Python objects come back. Also
writes the names of the rows whose members are replaced."""
import argparse
import glob
import json
import re
import subprocess
import sys

CLASS_RESULT = re.compile(r'(?!ZGL)Z[A-Z][A-Za-z0-9]+$')
PREAMBLE = '''\
#include <type_traits>
%s
namespace {
/// A handle without a default constructor is empty when all its bytes are zero.
template <class T>
T nothing() {
    if constexpr (std::is_default_constructible_v<T>) {
        return T();
    } else {
        alignas(T) char room[sizeof(T)] = {};
        return *reinterpret_cast<T *>(room);
    }
}
} // namespace
// Member functions stand at even addresses: odd values in member pointers are virtual functions.
#define MEMBER(number, symbol, T) \\
    __attribute__((visibility("default"), aligned(16))) T member##number() __asm__(symbol); \\
    T member##number() { return nothing<T>(); }
'''


def symbols(option, library):
    listing = subprocess.check_output(['nm', '-D', option, library], text=True)
    return {line.split()[-1].split('@')[0] for line in listing.splitlines() if ' _Z' in line}


def demangled(names):
    return subprocess.run(['c++filt'], input='\n'.join(names), text=True, check=True,
                          stdout=subprocess.PIPE).stdout.splitlines()


def returned(result):
    """A type that is returned in the same way."""
    if CLASS_RESULT.match(result):
        return result
    return 'double' if result in ('float', 'double') else 'void *'


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    for name in 'module', 'host', 'description', 'headers', 'output', 'rows':
        parser.add_argument('--' + name, required=True)
    options = parser.parse_args()
    with open(options.description) as text:
        functions = json.load(text)['functions']
    rows = {}
    for row in functions:
        if row['kind'] in ('static', 'method'):
            member = 'operator=' if row['member'] == 'assign' else row['member']
            rows['%s::%s' % (row['class'], member)] = row

    headers = sorted(glob.glob(options.headers + '/*/Z*.h'))
    declarations = ''.join(open(header).read() for header in headers)
    lines, replaced = [], set()
    shared = sorted(symbols('--undefined-only', options.module) &
                    symbols('--defined-only', options.host))
    for symbol, name in zip(shared, demangled(shared)):
        row = rows.get(name.split('(')[0])
        if row:
            results = {o['declaration'].split('(')[0] for o in row['overloads']}
            assert len(results) == 1, row
            lines.append('MEMBER(%d, "%s", %s)' % (len(lines), symbol, returned(results.pop())))
            # An object whose members are virtual has to be there to find them.
            body, = re.findall(r'^class OPENQUIL_API %s\b[^;]*{.*?^};' % row['class'],
                               declarations, re.DOTALL | re.MULTILINE)
            if not re.search(r'virtual [^;(]*\b%s\(' % row['member'], body):
                replaced.add(row['name'])
    assert replaced, 'no member found'
    with open(options.output, 'w') as text:
        text.write(PREAMBLE % '\n'.join('#include "%s"' % header for header in headers))
        text.write('\n'.join(lines) + '\n')
    with open(options.rows, 'w') as text:
        text.write('\n'.join(sorted(replaced)) + '\n')


if __name__ == '__main__':
    sys.exit(main())

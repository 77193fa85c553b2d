# SPDX-License-Identifier: MIT
"""Writes the host operations that the module's objects use and the second host's do not have:
calling one ends the process with its name."""
import re
import subprocess
import sys

output, objects = sys.argv[1], sys.argv[2:]


def symbols(option):
    listing = subprocess.check_output(['nm', option] + objects, text=True)
    return {line.split()[-1] for line in listing.splitlines() if ' _Z' in line}


missing = sorted(symbols('--undefined-only') - symbols('--defined-only'))
names = subprocess.check_output(['c++filt'], input='\n'.join(missing), text=True).splitlines()
with open(output, 'w') as text:
    text.write('#include <stdio.h>\n#include <stdlib.h>\n')
    for symbol, name in zip(missing, names):
        if re.match(r'([ZT]|RV_)\w+(::|<)', name):
            text.write('void absent%s(void) __asm__("%s");\n'
                       '__attribute__((aligned(16))) void absent%s(void) {\n'
                       '    fputs("not in this host: %s\\n", stderr);\n    abort();\n}\n'
                       % (symbol, symbol, symbol, name))

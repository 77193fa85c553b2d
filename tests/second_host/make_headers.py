# SPDX-License-Identifier: MIT
"""Writes headers of the host interface with other private parts: what is declared is the same by
construction, what lies behind it is not."""
import pathlib
import re
import sys

host, layouts, output = map(pathlib.Path, sys.argv[1:])
PRIVATE = re.compile(r'^  private:\n.*?(?=^};)', re.DOTALL | re.MULTILINE)

for layout in sorted(layouts.glob('*/*.h')):
    name = layout.relative_to(layouts)
    private = '  private:\n' + layout.read_text()
    text, count = PRIVATE.subn(lambda _: private, (host / name).read_text())
    assert count == 1, '%s has %d private parts' % (name, count)
    (output / name).parent.mkdir(parents=True, exist_ok=True)
    (output / name).write_text(text)

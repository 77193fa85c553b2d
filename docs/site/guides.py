# SPDX-License-Identifier: MIT
"""The programs and commands in the guides, and running them as they are printed.

A fenced block is a file when the last thing in backticks before it is a file's name; a block of
Python that is none is a script of its own. Blocks of shell are run in the order of the page, each
with exit code 0 or what a comment in it says ("# exit code 4"). A block of text right behind one is
what it prints. `<!-- picture: FILE, what it shows -->` stands for a picture that they wrote."""
import collections
import os
import pathlib
import re
import subprocess

ROOT = pathlib.Path(__file__).resolve().parents[2]
BLOCK = re.compile(r'(?:`([\w.-]+\.\w+)`[^`]*)?^```(\w+)\n(.*?)^```\n', re.DOTALL | re.MULTILINE)
PICTURE = re.compile(r'^<!-- picture: (\S+), (.*) -->$', re.MULTILINE)
SCENE = 'examples/scenes/layers.gltf'

Step = collections.namedtuple('Step', 'command code expected')


def steps(text, folder):
    """Writes the files of a page into the folder, and yields what is to be run meanwhile."""
    blocks = list(BLOCK.finditer(text))
    for i, block in enumerate(blocks):
        name, language, content = block.groups()
        if language == 'sh':
            behind = blocks[i + 1] if i + 1 < len(blocks) else None
            shown = behind and behind[2] == 'text' and not text[block.end():behind.start()].strip()
            code = re.search(r'# exit code (\d+)', content)
            yield Step(content, int(code[1]) if code else 0, behind[3] if shown else None)
        elif name:
            (folder / name).write_text(content, encoding='utf-8')
        elif language == 'python':
            (folder / 'block.py').write_text(content, encoding='utf-8')
            yield Step('quilhost %s --python block.py' % SCENE, 0, None)


def run(page, folder, programs, limit=None):
    """Runs a page in the folder with the programs of a folder. Returns what differs from the page,
    as texts."""
    folder = pathlib.Path(folder)
    if not (folder / 'examples').exists():
        (folder / 'examples').symlink_to(ROOT / 'examples')
    environment = dict(os.environ, LC_ALL='C.UTF-8',
                       PATH='%s:%s' % (programs, os.environ['PATH']))
    text, faults = pathlib.Path(page).read_text(encoding='utf-8'), []
    for step in steps(text, folder):
        end = subprocess.run(['sh', '-ec', step.command], cwd=folder, env=environment,
                             stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                             stderr=subprocess.PIPE, universal_newlines=True, timeout=limit)
        if end.returncode != step.code:
            faults.append('%s: exit code %d\n%s' % (step.command, end.returncode, end.stderr))
        elif step.expected is not None and end.stdout != step.expected:
            faults.append('%s prints\n%s' % (step.command, end.stdout))
    faults += ['there is no picture %s' % name for name, _ in PICTURE.findall(text)
               if not (folder / name).is_file()]
    return faults

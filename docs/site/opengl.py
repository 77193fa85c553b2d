# SPDX-License-Identifier: MIT
"""The pages of the OpenGL function table: its functions by what brings them, the extensions that
scripts can ask for, the tokens, and what of it Mesa's software driver has, which is asked."""
import json
import os
import re
import subprocess

from reference import ROOT, annotation, indented, is_opengl
# Found by what the line above put into the search path.
from headers import split_list
from signatures import split_declaration

PROBE = '''
import json
from OpenQuilRender import *
gl = ZHardwareRenderer.theRenderer().glFunctionTable()
def text(name):
    found, end = gl.glGetString(name), 0
    while found is not None and found[end]:
        end += 1
    return found.read(0, end) if end else ''
there = dict(globals())
print json.dumps({'version': text(ZGL_VERSION), 'extensions': text(ZGL_EXTENSIONS).split(),
                  'has': [name for name in there if name.startswith('kZGLext_')
                          and gl.extensionExists(there[name])]})
'''


class Driver(object):
    """The software driver, as the development host's own functions tell it."""

    def __init__(self, quilhost):
        environment = dict(os.environ, LIBGL_ALWAYS_SOFTWARE='1', GALLIUM_DRIVER='llvmpipe')
        said = subprocess.run([quilhost, '--quiet', '--python-expr', PROBE], env=environment,
                              check=True, stdout=subprocess.PIPE, universal_newlines=True).stdout
        found = json.loads(said)
        self.version = found['version']  # empty where there is no OpenGL
        self.release = tuple(map(int, re.findall(r'\d+', self.version)[:2]))
        self.extensions = {name[3:] for name in found['extensions']}
        self.answers = set(found['has'])  # what extensionExists says

    def has(self, source):
        release = re.match(r'VERSION_(\d)_(\d)$', source)
        if release:
            return tuple(map(int, release.groups())) <= self.release
        return source in self.extensions


def sources():
    """What brings each member, in the order of the list."""
    found = {}
    for line in (ROOT / 'host/render/gl_functions.def').read_text().splitlines():
        match = re.match(r'(GL|GL_AS|GL_WITH_OUTCOME)\((.*)\)$', line)
        if match:
            fields = split_list(match[2])
            since = fields[match[1] == 'GL_AS']
            member = fields[{'GL': 2, 'GL_AS': 3, 'GL_WITH_OUTCOME': 1}[match[1]]]
            found[member] = since
    return found


def readable(source):
    return re.sub(r'VERSION_(\d)_(\d)$', r'OpenGL \1.\2', source)


GROUPS = [('core', 'Functions of OpenGL 1.1', r'VERSION_1_1$'),
          ('later', 'Later releases of OpenGL', 'VERSION_'),
          ('arb', 'ARB extensions', 'ARB_'), ('ext', 'EXT extensions', 'EXT_'),
          ('vendors', 'Extensions of vendors', '')]
INTRO = '''
.. py:currentmodule:: OpenQuilRender

A script calls OpenGL through the table of the hardware renderer:

.. code-block:: python

   from OpenQuilRender import *

   gl = ZHardwareRenderer.theRenderer().glFunctionTable()
   gl.glClearColor(0.1, 0.2, 0.3, 1)
   gl.glClear(ZGL_COLOR_BUFFER_BIT)

The {count} functions are methods of :py:class:`~OpenQuilRender.ZGLFunctionTable`, named as in
OpenGL; the tokens have ``ZGL_`` for ``GL_`` and are listed in :doc:`constants`.

- **Numbers** (``ZGLenum``, ``ZGLint``, ``ZGLfloat`` and the like) are plain numbers. None raises
  TypeError, and what the type cannot hold OverflowError.
- **Memory** is a buffer of :py:mod:`OpenQuil`, ``memory`` one of any numbers. None is a null
  pointer, as OpenGL wants it for memory that is to be set up, say.
- What the driver does not have does nothing and records an error for ``glGetError``.

Whether the **software driver** has a function was asked when these pages were built. It is Mesa's,
*{version}*.

Functions
---------

.. list-table::
   :header-rows: 1

   * - What brings them
     - Functions
     - Software driver
{rows}

.. toctree::
   :hidden:

{pages}

Extensions
----------

What :py:meth:`~OpenQuilRender.ZGLFunctionTable.extensionExists` can be asked for. A driver that has
any of what is in the second column has it.

.. list-table::
   :header-rows: 1
   :class: wide

   * - Constant
     - Brought by
     - Software driver
{extensions}
'''


def write_opengl(companion, linker, driver, folder):
    (folder / 'opengl').mkdir(parents=True, exist_ok=True)
    functions = {f['member']: f
                 for f in companion.module.classes['ZGLFunctionTable'].functions
                 if is_opengl(f)}
    brought = sources()
    by_source = {}
    for member in functions:
        by_source.setdefault(brought[member], []).append(member)
    rows, left = [], dict(by_source)
    for page, title, pattern in GROUPS:
        chosen = sorted(source for source in left if re.match(pattern, source))
        parts = ['%s\n%s' % (title, '=' * len(title)), HEAD]
        for source in chosen:
            members = left.pop(source)
            has = driver.has(source)
            parts.append(section(companion, linker, functions, source, members, has))
            rows.append('   * - :ref:`%s <gl-%s>`\n     - %d\n     - %s' % (
                readable(source), source, len(members), 'yes' if has else 'no'))
        (folder / 'opengl' / (page + '.rst')).write_text('\n\n'.join(parts) + '\n')
    text = 'OpenGL\n======\n' + INTRO.format(
        count=len(functions), version=driver.version, rows='\n'.join(rows),
        pages='\n'.join('   opengl/' + page for page, _, _ in GROUPS),
        extensions='\n'.join(extension_rows(companion, driver)))
    (folder / 'opengl.rst').write_text(text)


HEAD = 'Methods of :py:class:`~OpenQuilRender.ZGLFunctionTable`; :doc:`/reference/opengl` tells ' \
    'how to call them, and what None does.\n\n.. py:currentmodule:: OpenQuilRender'


def section(companion, linker, functions, source, members, has):
    title = readable(source)
    parts = ['.. _gl-%s:\n\n%s\n%s' % (source, title, '-' * len(title)),
             'The software driver %s.' % (
                 'has %s' % ('it' if len(members) == 1 else 'all of them') if has
                 else 'does **not** have %s' % ('it' if len(members) == 1 else 'them'))]
    entries = []
    for member in sorted(members):
        function = functions[member]
        signature, = companion.signatures.signatures(function)
        natives = split_declaration(function['overloads'][0]['declaration'])[1]
        shown = ', '.join('%s: %s' % (p.name, parameter_type(native, p.python))
                          for p, native in zip(signature.parameters, natives))
        text = companion.signatures.text(function).split('. ', 1)
        entry = text[0].split(' of ')[0]
        notes = ['Calls the driver\'s ``%s``.' % entry] if entry != member else []
        notes += [linker.prose(text[1], 'ZGLFunctionTable')] if len(text) > 1 else []
        result = annotation(signature.result)
        entries.append('.. py:method:: ZGLFunctionTable.%s(%s)%s\n   :nocontentsentry:\n\n%s' % (
            member, shown, '' if result == 'None' else ' -> ' + result, indented(' '.join(notes))))
    return '\n\n'.join(parts) + '\n\n.. container:: compact\n\n' + indented('\n\n'.join(entries))


def parameter_type(native, python):
    if '*' in native or '&' in native:
        found = annotation(python).replace('OpenQuil.', '')
        return 'memory | None' if found == 'object' else found
    return native.replace(' const', '')


def extension_rows(companion, driver):
    text = (ROOT / 'host/render/gl_extensions.def').read_text()
    brought = dict(re.findall(r'^GL_EXTENSION\((\w+), "(.*)"\)', text, re.M))
    for name in companion.module.constants:
        if not name.startswith('kZGLext_'):
            continue
        by = brought.get(name[len('kZGLext_'):], '').split()
        yield '   * - .. py:data:: %s\n          :value: %s\n' \
            '          :nocontentsentry:\n     - %s\n     - %s' % (
                name, companion.values[name], ', '.join(map(readable, by)) or 'nothing',
                'yes' if name in driver.answers else 'no')


TOKENS_HEAD = '''Constants
=========

The constants of a class are on its page, by their enumeration:

{classes}

OpenGL's tokens stand here, all in the module :py:mod:`OpenQuilRender`; the constants of
extensions are in :doc:`opengl`. ``gl.glEnable(ZGL_LIGHTING)`` is OpenGL's
``glEnable(GL_LIGHTING)``.

.. py:currentmodule:: OpenQuilRender
'''


def write_constants(generators, folder):
    render = generators[-1]
    with_constants = [':py:class:`~%s.%s`' % (g.module.name, target.name) for g in generators
                      for target in g.module.classes.values() if target.constants]
    groups = {}
    for name in render.module.constants:
        if name.startswith('ZGL_'):
            letter = name[4].upper()
            groups.setdefault('0 to 9' if letter.isdigit() else letter, []).append(name)
    parts = [TOKENS_HEAD.format(classes=', '.join(with_constants) + '.')]
    for letter, names in sorted(groups.items()):
        entries = ['.. py:data:: %s\n   :value: 0x%04X\n   :nocontentsentry:' % (
            name, render.values[name] & 0xFFFFFFFF) for name in sorted(names)]
        parts.append('%s\n%s\n\n.. container:: tokens\n\n%s' % (
            letter, '-' * len(letter), indented('\n\n'.join(entries))))
    (folder / 'constants.rst').write_text('\n\n'.join(parts) + '\n')

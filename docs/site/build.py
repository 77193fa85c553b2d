# SPDX-License-Identifier: MIT
"""Makes the sources of the documentation's site and has Sphinx build it.

Usage: build.py BUILD_DIR [--reference FOLDER]

The sources go to BUILD_DIR/docs/source, the site to BUILD_DIR/docs/html. The programs of the guides
and examples are run for their pictures. With --reference only the reference's sources are written,
into the folder."""
import argparse
import ast
import json
import os
import pathlib
import re
import shutil
import subprocess
import tempfile

import guides
from opengl import Driver, write_constants, write_opengl
from options import write_quilfarm, write_quilhost
from reference import ROOT, Linker, companions, status_codes, write_classes

HERE = pathlib.Path(__file__).resolve().parent
# Pages about the project, by where they are in the site; the others of docs/ are guides.
PROJECT = {'README.md': 'project/readme.md', 'ARCHITECTURE.md': 'project/architecture.md',
           'CONTRIBUTING.md': 'project/contributing.md', 'CHANGELOG.md': 'project/changelog.md',
           'docs/performance.md': 'project/performance.md',
           'docs/reliability.md': 'project/reliability.md',
           'docs/test_strength.md': 'project/test_strength.md'}
# The examples with their pictures: how these are rendered.
BUNNY = '/usr/share/glmark2/models/bunny.obj'
EXAMPLES = {
    'raytrace.py': BUNNY + ' --output {picture}',
    'depth_fog.py': BUNNY + ' --output {picture}',
    'layers.py': 'examples/scenes/layers.gltf --layer hero --output {picture}',
    'swatch_sheet.py': 'examples/scenes/materials.obj -- {picture} 160',
    'read_geometry.py': None,
    'hardware_frame.py': BUNNY + ' --renderer hardware --output {picture}',
    'gl_scene.py': None,
    'gl_mesh.py': BUNNY + ' -- {picture} examples/scenes/tile_pattern.png',
    'gl_program.py': BUNNY + ' -- {picture}',
}


def version():
    return re.search(r'project\(OpenQuilRender VERSION ([\d.]+)',
                     (ROOT / 'CMakeLists.txt').read_text())[1]


class Pages(object):
    """The written pages, moved to their places in the site, with their links and pictures, and with
    what only the site has, `<!-- site: TEXT -->`."""

    def __init__(self, source):
        self.source = source
        self.places = dict(PROJECT)
        for path in sorted((ROOT / 'docs').glob('*.md')):
            self.places.setdefault('docs/' + path.name, 'guides/' + path.name)
        for path in (ROOT / 'examples').rglob('*'):
            if path.suffix in ('.py', '.cpp'):
                name = str(path.relative_to(ROOT))
                self.places[name] = name + '.md'
        self.places['docs'] = 'index.md'
        self.places['examples/plugin'] = 'examples/plugin/sample_plugin.cpp.md'
        self.places['examples/scenes/layers.layers.json'] = 'guides/layers.md'
        self.places['LICENSE'] = 'project/license.md'

    def write(self):
        for origin, place in self.places.items():
            if origin.endswith('.md'):
                text = (ROOT / origin).read_text(encoding='utf-8')
                self.put(place, self.completed(self.linked(text, origin, place)))
            elif (ROOT / origin).is_file() and not origin.endswith('.json'):
                self.put(place, self.listing(origin))

    def put(self, place, text):
        path = self.source / place
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding='utf-8')

    def linked(self, text, origin, place):
        """Links between files become links between pages; those by a page's name have its title."""
        def moved(match):
            target, _, anchor = match[2].partition('#')
            name = os.path.normpath(os.path.join(os.path.dirname(origin), target))
            if name not in self.places:
                raise SystemExit('docs: %s links to %s, which has no page' % (origin, name))
            there = os.path.relpath(self.places[name], os.path.dirname(place))
            shown = '' if match[1].endswith('.md') else match[1]
            return '[%s](%s%s)' % (shown, there, anchor and '#' + anchor)
        return re.sub(r'\[([^]]*)\]\((?!https?:|#)([^)\s]+)\)', moved, text)

    @staticmethod
    def completed(text):
        text = re.sub(r'^<!-- site: (.*) -->$', r'\1', text, flags=re.MULTILINE)
        return guides.PICTURE.sub(lambda found: '```{figure} /pictures/%s\n:alt: %s\n\n%s\n```' % (
            found[1], json.dumps(found[2]), found[2]), text)

    def listing(self, origin):
        """The page of an example, or of another file that is shown whole."""
        name = os.path.basename(origin)
        if origin == 'LICENSE':
            title, text, language = 'License', '', 'text'
        else:
            text, language = '', {'.py': 'python', '.cpp': 'cpp'}[os.path.splitext(name)[1]]
            title = name
        if EXAMPLES.get(name):
            text = '```{image} /pictures/%s.png\n:alt: what %s makes\n```\n\n' % (name[:-3], name)
        code = re.sub(r'^(#|//) SPDX-.*\n', '', (ROOT / origin).read_text(encoding='utf-8'))
        return '# %s\n\n%s````%s\n%s````\n' % (title, text, language, code)


def render_pictures(build, folder):
    """The pictures of the examples and of the guides."""
    folder.mkdir(parents=True, exist_ok=True)
    environment = dict(os.environ, LIBGL_ALWAYS_SOFTWARE='1')
    for name, arguments in EXAMPLES.items():
        if arguments:
            picture = folder / (name[:-3] + '.png')
            subprocess.run([str(build / 'bin/quilhost'), '--quiet', '--python', 'examples/' + name,
                            '--resolution', '640', '400',
                            *arguments.format(picture=picture).split()],
                           cwd=ROOT, env=environment, check=True, stdout=subprocess.DEVNULL)
    for page in sorted((ROOT / 'docs').glob('*.md')):
        wanted = guides.PICTURE.findall(page.read_text(encoding='utf-8'))
        if wanted:
            with tempfile.TemporaryDirectory() as work:
                faults = guides.run(page, work, build / 'bin')
                if faults:
                    raise SystemExit('docs: %s: %s' % (page.name, '\n'.join(faults)))
                for name, _ in wanted:
                    shutil.copy(os.path.join(work, name), folder)


def write_stub_pages(build, folder):
    """The pages of the program's own modules, from their stubs."""
    for module in 'quilhost', 'quilhost_testing':
        tree = ast.parse((build / 'python' / (module + '.pyi')).read_text())
        parts = ['Module %s\n%s' % (module, '=' * (7 + len(module))),
                 '.. py:module:: ' + module, ast.get_docstring(tree)]
        parts += [stub_entry(node) for node in tree.body
                  if isinstance(node, (ast.FunctionDef, ast.ClassDef))]
        (folder / (module + '.rst')).write_text('\n\n'.join(parts) + '\n')


def stub_entry(node, kind='function', indent=''):
    text = re.sub(r'`([^`]+)`', r'``\1``', ast.get_docstring(node))
    if isinstance(node, ast.ClassDef):
        bases = ', '.join(ast.unparse(base) for base in node.bases)
        head, inner = '.. py:class:: %s' % node.name, [text, 'Derived from ``%s``.' % bases]
        inner += [stub_entry(member, 'method') for member in node.body
                  if isinstance(member, ast.FunctionDef)]
    else:
        arguments = [argument for argument in node.args.args if argument.arg != 'self']
        node.args.args = arguments
        head = '.. py:%s:: %s(%s) -> %s' % (kind, node.name, ast.unparse(node.args),
                                            ast.unparse(node.returns))
        inner = [text]
    body = '\n\n'.join(inner).replace('\n', '\n   ')
    return '%s\n\n   %s' % (head.replace('Text', 'unicode'), body)


def development_host(generators, linker):
    """Where the reference speaks of the development host."""
    rows = []
    for companion in generators:
        for target in companion.module.classes.values():
            found = companion.header_classes[target.name]
            texts = [('', found.doc)]
            for function in target.functions:
                texts.append((function['member'], companion.signatures.text(function)))
            texts += [(name, companion.member_text(target, name)) for name in target.getters]
            for member, text in texts:
                said = [s for s in re.split(r'(?<=[.])\s+', ' '.join(text.split()))
                        if 'development host' in s]
                name = '.'.join(filter(None, [target.name, member]))
                if said:
                    rows.append('   * - :py:obj:`%s <%s.%s>`\n     - %s' % (
                        name, companion.module.name, name,
                        linker.prose(' '.join(said), target.name)))
    return DEVELOPMENT_HOST + '\n'.join(rows) + '\n'


DEVELOPMENT_HOST = '''The development host, by function
=================================

What the reference says of the development host, function by function;
:doc:`/guides/development_host` has the whole.

.. list-table::
   :class: overview

'''


def write_reference(build, source, driver):
    """The generated pages."""
    folder = source / 'reference'
    generators = companions(build, version())
    linker = Linker(generators)
    folder.mkdir(parents=True)
    write_classes(generators, linker, folder)
    write_opengl(generators[-1], linker, driver, folder)
    write_constants(generators, folder)
    write_stub_pages(build, folder)
    write_quilhost(str(build / 'bin/quilhost'), folder)
    write_quilfarm(str(build / 'bin/quilfarm'), folder)
    text = (HERE / 'arguments.rst').read_text().format(status_codes=status_codes())
    (folder / 'arguments.rst').write_text(text)
    (folder / 'development_host.rst').write_text(development_host(generators, linker))


def complete_theme(static):
    """Debian's theme takes a style sheet from a web server's folder, and its script another one as
    a module, which browsers forbid for local files: both become part of the site."""
    styles, script = static / 'styles/furo.css', static / 'scripts/furo.js'
    normal = pathlib.Path('/usr/share/javascript/normalize.css/normalize.css').read_text()
    styles.write_text(re.sub(r'@import url\(/javascript/normalize.css/normalize.css\);',
                             lambda _: normal, styles.read_text()))
    part = (static / 'scripts/gumshoe-patched.js').read_text()
    part = part.replace('if (isAtBottom()', 'if (item && isAtBottom()')  # a page has no headings
    script.write_text(re.sub(r'^import Gumshoe from .*', lambda _: part, script.read_text()))


def main():
    parser = argparse.ArgumentParser(description=__doc__.split('\n\n')[0])
    parser.add_argument('build', type=pathlib.Path)
    parser.add_argument('--reference', type=pathlib.Path, metavar='FOLDER')
    options = parser.parse_args()
    build = options.build.resolve()
    driver = Driver(str(build / 'bin/quilhost'))
    if options.reference:
        return write_reference(build, options.reference, driver)
    if not driver.version:
        raise SystemExit('docs: OpenGL is not available, so what the driver has is not known')
    source = build / 'docs/source'
    shutil.rmtree(source, ignore_errors=True)
    write_reference(build, source, driver)
    Pages(source).write()
    render_pictures(build, source / 'pictures')
    shutil.copy(HERE / 'index.md', source)
    shutil.copytree(HERE / '_static', source / '_static')
    html = build / 'docs/html'
    shutil.rmtree(html, ignore_errors=True)
    subprocess.run(['sphinx-build', '-n', '-W', '--keep-going', '-q', '-j', 'auto', '-b', 'html',
                    '-c', str(HERE), '-d', str(build / 'docs/doctrees'),
                    '-D', 'release=' + version(), str(source), str(html)], check=True)
    complete_theme(html / '_static')
    print('The documentation is in %s' % (html / 'index.html'))


if __name__ == '__main__':
    main()

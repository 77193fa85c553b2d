# SPDX-License-Identifier: MIT
"""Makes the sources of the documentation's site and has Sphinx build it.

Usage: build.py BUILD_DIR [--reference FOLDER]

The sources go to BUILD_DIR/docs/source, the site to BUILD_DIR/docs/html. The programs of the guides
and examples are run for their pictures. With --reference only the reference's sources are written,
into the folder."""
import argparse
import pathlib
import re
import shutil
import subprocess

from development_host import write_development_host
from opengl import Driver, write_constants, write_opengl
from options import write_quilfarm, write_quilhost
from own_modules import write_own_modules
from pictures import render_pictures
from reference import ROOT, Linker, companions, status_codes, write_classes
from written import Pages

HERE = pathlib.Path(__file__).resolve().parent


def version():
    return re.search(r'project\(OpenQuilRender VERSION ([\d.]+)',
                     (ROOT / 'CMakeLists.txt').read_text())[1]


def write_reference(build, source, driver):
    """The generated pages."""
    folder = source / 'reference'
    generators = companions(build, version())
    linker = Linker(generators)
    folder.mkdir(parents=True)
    write_classes(generators, linker, folder)
    write_opengl(generators[-1], linker, driver, folder)
    write_constants(generators, folder)
    write_own_modules(build, folder)
    write_quilhost(str(build / 'bin/quilhost'), folder)
    write_quilfarm(str(build / 'bin/quilfarm'), folder)
    text = (HERE / 'arguments.rst').read_text().format(status_codes=status_codes())
    (folder / 'arguments.rst').write_text(text)
    write_development_host(generators, linker, folder)


def complete_theme(static):
    """Debian's theme takes a style sheet from a web server's folder, and its script another one as
    a module, which browsers forbid for local files: both become part of the site. It has dark
    colours for those who click for them only; the browser's wish is added."""
    styles, script = static / 'styles/furo.css', static / 'scripts/furo.js'
    normal = pathlib.Path('/usr/share/javascript/normalize.css/normalize.css').read_text()
    text = re.sub(r'@import url\(/javascript/normalize.css/normalize.css\);', lambda _: normal,
                  styles.read_text())
    colors = re.search(r'body\[data-theme="dark"\] \{(.*?)\}', text, re.DOTALL)[1]
    styles.write_text('%s\n@media not print { @media (prefers-color-scheme: dark) {\n'
                      'body:not([data-theme="light"]) {%s} } }\n' % (text, colors))
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
    html, made = build / 'docs/html', build / 'docs/html.made'
    shutil.rmtree(made, ignore_errors=True)
    subprocess.run(['sphinx-build', '-n', '-W', '--keep-going', '-q', '-j', 'auto', '-b', 'html',
                    '-c', str(HERE), '-d', str(build / 'docs/doctrees'),
                    '-D', 'release=' + version(), str(source), str(made)], check=True)
    complete_theme(made / '_static')
    shutil.rmtree(html, ignore_errors=True)  # only when there is another one
    made.rename(html)
    print('The documentation is in %s' % (html / 'index.html'))


if __name__ == '__main__':
    main()

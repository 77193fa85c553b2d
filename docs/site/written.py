# SPDX-License-Identifier: MIT
"""What is written by hand, in the folder docs and elsewhere, as pages of the site."""
import json
import os
import re

import guides
from guides import ROOT
from pictures import EXAMPLES

# Pages about the project, by where they are in the site; the others of docs/ are guides.
PROJECT = {'README.md': 'project/readme.md', 'ARCHITECTURE.md': 'project/architecture.md',
           'CONTRIBUTING.md': 'project/contributing.md', 'CHANGELOG.md': 'project/changelog.md',
           'docs/performance.md': 'project/performance.md',
           'docs/reliability.md': 'project/reliability.md',
           'docs/test_strength.md': 'project/test_strength.md'}


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

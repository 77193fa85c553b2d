# SPDX-License-Identifier: MIT
"""Sphinx's settings for the site."""
import re

from docutils import nodes
from sphinx import addnodes
from sphinx.transforms import SphinxTransform

project = 'OpenQuilRender'
copyright = 'the OpenQuilRender developers'
extensions = ['myst_parser']
html_theme = 'furo'
html_title = 'OpenQuilRender'
html_static_path = ['_static']
html_css_files = ['site.css']
html_copy_source = False
html_use_index = False  # the search has it all
html_show_search_summary = False  # read from pages, which browsers forbid for local files
html_show_sphinx = False
html_last_updated_fmt = None
myst_heading_anchors = 3
myst_enable_extensions = ['colon_fence']
add_module_names = False
python_use_unqualified_type_names = True
toc_object_entries_show_parents = 'hide'
highlight_language = 'none'
smartquotes = False  # there are options in the prose
pygments_style = 'friendly'
pygments_dark_style = 'monokai'
nitpicky = True
# Types of Python itself, and OpenGL's numbers.
nitpick_ignore_regex = [('py:class', r'ZGL\w+|int|float|bool|str|unicode|object|memory|bytearray|'
                                     r'Iterator|List|Tuple|Dict|None'),
                        ('py:obj', 'None')]
suppress_warnings = ['myst.header']


class Names(SphinxTransform):
    """In guides, what is written as code and names something of the reference refers to it."""
    default_priority = 400
    NAME = re.compile(r'((?:OpenQuil|OpenQuilRender)\.)?((?:Z|RV_)\w+|\w+Buffer|Frames|Swatches|'
                      r'NodeTypes|Viewports|PictureTest)(\.\w+)?(\(\))?$')
    OPTION = re.compile(r'--[a-z][\w-]*(?= |$)')

    def apply(self, **_):
        if not self.env.docname.startswith(('guides/', 'index')):
            return
        for node in list(self.document.findall(nodes.literal)):
            match = self.NAME.match(node.astext())
            option = self.OPTION.match(node.astext())
            if isinstance(node.parent, (addnodes.pending_xref, nodes.reference, nodes.title)):
                continue
            if match:
                self.refer(node, refdomain='py', reftype='obj' if match[3] else 'class',
                           refspecific=True, reftarget=match[2] + (match[3] or ''))
            elif option:
                self.refer(node, refdomain='std', reftype='option', reftarget=option[0],
                           **{'std:program': 'quilhost'})

    def refer(self, node, **attributes):
        reference = addnodes.pending_xref('', refwarn=False, refexplicit=True, by_name=True,
                                          refdoc=self.env.docname, **attributes)
        node.replace_self(reference)
        reference += node


def quiet(app, env, node, contnode):
    """What is written as code need not be in the reference."""
    return contnode if node.get('by_name') else None


def setup(app):
    app.add_transform(Names)
    app.connect('missing-reference', quiet)
    return {'parallel_read_safe': True}

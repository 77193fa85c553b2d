# SPDX-License-Identifier: MIT
"""The pages of quilhost's own modules, from their stubs."""
import ast
import re


def write_own_modules(build, folder):
    for module in 'quilhost', 'quilhost_testing':
        tree = ast.parse((build / 'python' / (module + '.pyi')).read_text())
        parts = ['Module %s\n%s' % (module, '=' * (7 + len(module))),
                 '.. py:module:: ' + module, ast.get_docstring(tree)]
        parts += [stub_entry(node) for node in tree.body
                  if isinstance(node, (ast.FunctionDef, ast.ClassDef))]
        (folder / (module + '.rst')).write_text('\n\n'.join(parts) + '\n')


def stub_entry(node, kind='function'):
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

# SPDX-License-Identifier: MIT
"""Writes the companion module of one native module: the proxy classes (NAME.py, Python 2.7) and
their types (NAME.pyi). Everything comes from the wrapper tables, as describe.cpp prints them, and
from the comments of the host's headers; there is no list of functions here.

In the folder of extensions, headers document what only scripts have, and CLASS.py is a piece of
class body that goes into the class. Its functions replace the generated ones of the same name;
their documentation is added to that of the replaced ones."""

import argparse
import ast
import json
import pathlib
import re
import textwrap

from headers import find_declarations, read_aliases, read_headers
from signatures import (Signatures, Types, is_borrowed, mangled, optional_target,
                        split_declaration, wrapped)

# What is said of all that are made alike.
DISOWNING = '''Passes the native object to the host, which keeps this instance alive
from now on. Returns a weak proxy of the instance.'''
KEPT_BUFFER = '''A buffer that is set here belongs to this object's proxy, which keeps it, until
another one is set or the proxy dies; then it is its own owner again.'''
DIVISIONS = {'__div__': '__truediv__', '__idiv__': '__itruediv__', '__rdiv__': '__rtruediv__'}


class ProxyClass(object):
    """One class, as the rows tell it."""

    def __init__(self, name, type_name):
        self.name = name
        self.type_name = type_name  # mangled
        self.constructor = self.destructor = self.disown = None
        self.functions = []
        self.getters = {}  # data members, in row order
        self.setters = {}
        self.constants = []  # enumerators

    def specials(self):
        return {function['member'] for function in self.functions
                if function['member'].startswith('__')}


class Module(object):
    """A native module's description."""

    def __init__(self, name, path):
        self.name = name
        self.native = '_' + name
        data = json.loads(pathlib.Path(path).read_text())
        self.bases = {entry['mangled']: entry['bases'] for entry in data['types']}
        self.classes = {}
        for function in data['functions']:
            if function['kind'] == 'register':
                self.add_class(function)
        for function in data['functions']:
            if function['class'] in self.classes:
                self.add(function, self.classes[function['class']])
        self.constants = []  # those that belong to no class
        for constant in data['constants']:
            owner = self.owner(constant['name'])
            target = owner.constants if owner else self.constants
            target.append(constant['name'][len(owner.name) + 1:] if owner else constant['name'])

    def add_class(self, function):
        name = function['class']
        self.classes[name] = ProxyClass(name, self.type_name(name))

    def type_name(self, class_name):
        """The mangled name of a class's type. A class XyzBuffer that is no type itself stands for
        the pointers to the native type "xyz", or to the type Xyz or ZXyz inside a
        class."""
        words = re.sub(r'Buffer$', '', class_name)
        words = re.sub(r'(?<!^)([A-Z])', r' \1', words).lower().replace(' pointer', ' *')
        item = re.sub(r'Buffer$', '', class_name)
        nested = [name for name in self.bases if name.endswith(('__' + item, '__Z' + item))]
        for name in [mangled(class_name), mangled(words)] + nested:
            if name in self.bases:
                return name
        raise SystemExit('%s: no type of the class %s' % (self.name, class_name))

    def add(self, function, target):
        kind = function['kind']
        if kind in ('static', 'method'):
            target.functions.append(function)
        elif kind == 'getter':
            target.getters[function['member']] = function
        elif kind == 'setter':
            target.setters[function['member']] = function
        elif kind in ('constructor', 'destructor', 'disown'):
            setattr(target, kind, function)

    def owner(self, constant):
        """The class that a constant's name begins with: the longest, where several do."""
        found = [name for name in self.classes if constant.startswith(name + '_')]
        return self.classes[max(found, key=len)] if found else None


class Generator(object):
    def __init__(self, module, version, used_modules, header_classes, aliases, extensions):
        self.module = module
        self.version = version
        self.used_modules = used_modules
        self.header_classes = header_classes
        self.extensions = extensions
        self.class_names = {}  # mangled -> how generated code names the proxy class
        for used in used_modules:
            for used_class in used.classes.values():
                self.add_name(used_class, '%s.%s' % (used.name, used_class.name))
        for own in module.classes.values():
            self.add_name(own, own.name)
        enumerations = {enumeration.name for found in header_classes.values()
                        for enumeration in found.enumerations}
        self.signatures = Signatures(
            Types(self.class_names, enumerations, aliases), header_classes)

    def add_name(self, target, shown):
        self.class_names[target.type_name] = shown
        scope, nested, name = target.type_name.partition('__')
        if nested:  # declarations are compared without scopes
            self.class_names[mangled(name)] = shown

    # What both outputs need

    def base_names(self, target):
        """The nearest proxied base classes."""
        all_bases = [base for base in self.module.bases.get(target.type_name, [])
                     if base in self.class_names]
        nearest = [base for base in all_bases
                   if not any(base in self.module.bases.get(other, []) for other in all_bases)]
        return [self.class_names[base] for base in nearest]

    def ordered_classes(self):
        """The classes, bases before those derived from them."""
        return sorted(self.module.classes.values(),
                      key=lambda target: len(self.module.bases.get(target.type_name, [])))

    def extension(self, target):
        path = self.extensions / (target.name + '.py')
        return path.read_text() if path.exists() else ''

    def extended_names(self, target):
        """What the class's extension defines."""
        names = set()
        for node in ast.parse(self.extension(target)).body:
            if isinstance(node, ast.FunctionDef):
                names.add(node.name)
            elif isinstance(node, ast.Assign):
                names.update(name.id for name in node.targets)
        return names

    def extension_properties(self, target):
        """Name and type of the properties of the class's extension, which type comments tell."""
        for node in ast.parse(self.extension(target), type_comments=True).body:
            if isinstance(node, ast.FunctionDef) and node.type_comment:
                yield node.name, node.type_comment.partition('-> ')[2]

    def member_type(self, getter):
        return split_declaration(getter['overloads'][0]['declaration'])[0]

    def is_embedded(self, getter):
        """True for a data member that is an object of a proxied class: it is read by reference."""
        native = self.member_type(getter)
        target = re.sub(r'\s*\*$', '', native)
        found = self.class_names.get(mangled(target), '')
        return native.endswith('*') and found.split('.')[-1] == target

    def is_text(self, getter):
        return self.member_type(getter) == 'ZString *' and '_p_ZString' in self.class_names

    def member_python_type(self, target, getter):
        found = self.signatures.types.result(self.member_type(getter),
                                             self.member_text(target, getter['member']))
        return optional_target(found) or found if self.is_embedded(getter) else found

    # The proxy classes

    def proxies(self):
        blocks = [self.module_head()]
        blocks += ['%s = %s.%s\n' % (name, '_native', name) for name in self.module.constants]
        blocks += [self.proxy_class(target) for target in self.ordered_classes()]
        return '\n'.join(blocks)

    def module_head(self):
        imports = ['import %s as _native' % self.module.native]
        imports += ['import %s' % used.name for used in self.used_modules]
        imports.append('import openquil_proxy as _proxy')
        names = list(self.module.classes) + self.module.constants
        exported = textwrap.fill(', '.join(repr(name) for name in names), 96,
                                 initial_indent='    ', subsequent_indent='    ')
        return ('# -*- coding: utf-8 -*-\n'
                '"""The classes of the native module %s, with their documentation.\n\n'
                'Generated from the module\'s own tables."""\n\n'
                '%s\n\n__version__ = %r\n__all__ = [\n%s,\n]\n' % (
                    self.module.native, '\n'.join(imports), self.version, exported))

    def proxy_class(self, target):
        replaced = self.extended_names(target)
        bases = ', '.join(self.base_names(target)) or '_proxy.Proxy'
        parts = [docstring(self.class_text(target)), '_native_class = %r' % target.name]
        if target.constants:
            parts.append('\n'.join('%s = _native.%s_%s' % (name, target.name, name)
                                   for name in target.constants))
        parts.append(self.constructor(target))
        if target.destructor:
            parts.append('__swig_destroy__ = _native.' + target.destructor['name'])
        if target.disown:
            parts.append(self.disown(target))
        parts += [self.function(target, function) for function in target.functions
                  if function['member'] not in replaced]
        parts += [self.property(target, name) for name in target.getters]
        parts += self.derived_specials(target)
        if self.extension(target):
            parts.append(self.documented_extension(target))
        return '\nclass %s(%s):\n%s\n\n\n_native.%s_swigregister(_proxy.install(%s))\n' % (
            target.name, bases, indented('\n\n'.join(parts)), target.name, target.name)

    def class_text(self, target):
        """The header's text about the class and its enumerations."""
        found = self.header_classes.get(target.name)
        if not found:
            raise SystemExit('%s: no header describes the class %s' % (self.module.name,
                                                                       target.name))
        text = found.doc
        for enumeration in found.enumerations:
            listed = [(name, doc) for name, doc in enumeration.enumerators
                      if name in target.constants]
            if listed:
                text += '\n\n%s: %s' % (enumeration.name, enumeration.doc)
                for name, doc in listed:
                    text += '\n' + textwrap.fill('%s: %s' % (name, doc) if doc else name, 92,
                                                 initial_indent='    ', subsequent_indent=' ' * 8)
        return text

    def constructor(self, target):
        if not target.constructor:
            return ('def __init__(self, *args, **kwargs):\n'
                    '    """Not for scripts: objects of this class come from the host."""\n'
                    '    raise AttributeError("No constructor defined")')
        if target.disown:
            call = '_native.%s_swiginit(self, _native.%s(%%s))' % (target.name,
                                                                   target.constructor['name'])
            # The native object calls the methods of this instance only where a class has its own.
            instance = 'None if type(self) is %s else self' % target.name
            text = '%s()\n\n%s' % (target.name, self.signatures.text(target.constructor))
            body = docstring(text) + '\n' + wrapped(call % instance)
            return 'def __init__(self):\n' + indented(body)
        text = self.signatures.documentation(target.constructor, target.name)
        return '__init__ = ' + self.method(
            '__init__', target.constructor, True, text,
            {'init': '_native.%s_swiginit' % target.name})

    def method(self, name, function, has_object, text, options):
        """A callable that goes to the native function without a frame. One that has no overloads
        names its parameters."""
        signatures = self.signatures.signatures(function)
        names = ['self'] if has_object else []
        if len(signatures) > 1:
            names.append('*args')
        else:
            names += [parameter.name for parameter in signatures[0].parameters]
            defaults = [parameter.default for parameter in signatures[0].parameters
                        if parameter.default is not None]
            if defaults:
                options = dict(options, defaults='(%s,)' % ', '.join(defaults))
        parts = ['_native.' + function['name'], repr(name), repr(', '.join(names)),
                 docstring(text)]
        parts += ['%s=%s' % option for option in sorted(options.items())]
        return '_proxy.Method(\n%s)' % indented(',\n'.join(parts))

    def function(self, target, function):
        member = function['member']
        text = self.signatures.documentation(function, member)
        if function['kind'] == 'static':
            made = self.method(member, function, False, text, {})
            return '%s = staticmethod(%s)' % (member, made)
        options = {}
        if is_borrowed(function):
            options['part'] = True
        if target.disown:
            options['checks_this'] = True  # raises where __init__ was forgotten
        return '%s = %s' % (member, self.method(member, function, True, text, options))

    def disown(self, target):
        return 'def __disown__(self):\n%s\n    return _proxy.disown(_native.%s, self)' % (
            indented(docstring(DISOWNING)), target.disown['name'])

    def property(self, target, name):
        getter, setter = target.getters[name], target.setters.get(name)
        get, set = '_native.' + getter['name'], setter and '_native.' + setter['name']
        kind = 'PartProperty' if is_borrowed(getter) else 'Property'
        if setter and self.is_text(getter):
            set = '_proxy.text_setter(%s, %s)' % (set, self.class_names['_p_ZString'])
        shown = self.signatures.types.shown(self.member_type(getter),
                                            self.member_python_type(target, getter))
        text = '%s: %s\n\n%s' % (name, shown, self.member_text(target, name))
        if is_borrowed(getter) and not self.is_embedded(getter):
            set = '_proxy.pointer_setter(%s, %r)' % (set, name)
            text += '\n\n' + KEPT_BUFFER
        lines = ['%s,' % accessor for accessor in (get, set) if accessor]
        lines.append('doc=%s)' % docstring(text))
        return '%s = _proxy.%s(\n%s' % (name, kind, indented('\n'.join(lines)))

    def member_text(self, target, name):
        declarations = find_declarations(self.header_classes, target.name, name)
        return declarations[0].doc if declarations else ''

    def derived_specials(self, target):
        """What Python 2 does not conclude from the special methods that there are."""
        specials = target.specials()
        parts = ['%s = %s' % (future, present) for present, future in DIVISIONS.items()
                 if present in specials and future not in specials]
        if '__eq__' in specials and '__ne__' not in specials:
            parts.append('def __ne__(self, other):\n'
                         '    """The opposite of ==."""\n'
                         '    equal = self.__eq__(other)\n'
                         '    return equal if equal is NotImplemented else not equal')
        if '__eq__' in specials and '__hash__' not in specials:
            parts.append('__hash__ = None  # the value may change')
        return parts

    def documented_extension(self, target):
        """The extension's text, with documentation for the functions that replace native ones."""
        functions = {function['member']: function for function in target.functions}
        lines = self.extension(target).rstrip().split('\n')
        for node in reversed(ast.parse(self.extension(target)).body):
            if isinstance(node, ast.FunctionDef) and node.name in functions:
                text = self.signatures.documentation(functions[node.name], node.name)
                own_text = ast.get_docstring(node)
                first, last = node.body[0].lineno - 1, node.body[0].end_lineno
                if own_text:
                    text += '\n\n' + own_text
                lines[first:last if own_text else first] = indented(docstring(text)).split('\n')
        return '\n'.join(lines)

    # The types

    def stubs(self):
        blocks = ['from typing import (Any, Iterable, Iterator, List, Optional, Text, Union,\n'
                  '                    overload)\n']
        blocks[0] += ''.join('import %s\n' % used.name for used in self.used_modules)
        blocks[0] += 'from openquil_proxy import Proxy\n'
        blocks.append('__version__: str\n')
        if self.module.constants:
            blocks.append(''.join('%s: int\n' % name for name in self.module.constants))
        blocks += [self.stub_class(target) for target in self.ordered_classes()]
        return '\n'.join(blocks)

    def stub_class(self, target):
        lines = [docstring(self.class_text(target))]
        lines += ['%s: int' % name for name in target.constants]
        if target.disown:
            lines.append('def __init__(self) -> None: ...')
            lines.append('def __disown__(self) -> %s: ...' % target.name)
        elif target.constructor:
            lines += self.stub_function(target.constructor, '__init__')
        for function in target.functions:
            lines += self.stub_function(function, function['member'])
        for name in target.getters:
            lines += self.stub_property(target, name)
        for name, result in self.extension_properties(target):
            lines += ['@property', 'def %s(self) -> %s: ...' % (name, result)]
        specials = target.specials()
        for present, future in DIVISIONS.items():
            if present in specials and future not in specials:
                lines += self.stub_function(
                    next(f for f in target.functions if f['member'] == present), future)
        bases = ', '.join(self.base_names(target)) or 'Proxy'
        return 'class %s(%s):\n%s\n' % (target.name, bases, indented('\n'.join(lines) or '...'))

    def stub_function(self, function, name):
        signatures = self.signatures.signatures(function)
        if name == '__getitem__' and signatures[0].parameters[0].python == 'Any':
            return self.stub_subscript(function, signatures[0].result)
        lines = []
        for signature in signatures:
            if len(signatures) > 1:
                lines.append('@overload')
            if function['kind'] == 'static':
                lines.append('@staticmethod')
            parameters = signature.typed_parameters()
            if function['kind'] != 'static':
                parameters.insert(0, 'self')
            result = 'None' if name == '__init__' else signature.result
            # Editors show the text of the first overload.
            text = self.signatures.text(function) if signature is signatures[0] else ''
            lines.append('def %s(%s) -> %s:%s' % (name, ', '.join(parameters), result,
                                                  stub_body(text)))
        return lines

    def stub_subscript(self, function, item):
        """What takes any object has items and slices; a slice is a list, of bytes a str."""
        return ['@overload',
                'def __getitem__(self, index: int) -> %s:%s' % (
                    item, stub_body(self.signatures.text(function))),
                '@overload', 'def __getitem__(self, index: slice) -> Any: ...']

    def stub_property(self, target, name):
        getter = target.getters[name]
        python = self.member_python_type(target, getter)
        lines = ['@property', 'def %s(self) -> %s:%s' % (
            name, python, stub_body(self.member_text(target, name)))]
        if name in target.setters:
            given = 'Union[%s, Text]' % python if self.is_text(getter) else python
            lines += ['@%s.setter' % name, 'def %s(self, value: %s) -> None: ...' % (name, given)]
        return lines


def docstring(text):
    return '"""%s"""' % text.strip().replace('\\', '\\\\').replace('"""', '\\"\\"\\"')


def stub_body(text):
    return '\n' + indented(docstring(text)) if text else ' ...'


def indented(text):
    return textwrap.indent(text, '    ')


def named_module(text):
    name, _, path = text.partition('=')
    return Module(name, path)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split('\n\n')[0])
    parser.add_argument('--module', type=named_module, required=True, metavar='NAME=DESCRIPTION')
    parser.add_argument('--version', required=True)
    parser.add_argument('--uses', type=named_module, action='append', default=[],
                        metavar='NAME=DESCRIPTION', help='a module whose classes this one uses')
    parser.add_argument('--headers', type=pathlib.Path, required=True, help='the host\'s headers')
    parser.add_argument('--extensions', type=pathlib.Path, required=True)
    parser.add_argument('--output', type=pathlib.Path, required=True)
    arguments = parser.parse_args()
    generator = Generator(arguments.module, arguments.version, arguments.uses,
                          read_headers([arguments.headers, arguments.extensions]),
                          read_aliases([arguments.headers]), arguments.extensions)
    name = arguments.module.name
    arguments.output.mkdir(parents=True, exist_ok=True)
    (arguments.output / (name + '.py')).write_text(generator.proxies(), encoding='utf-8')
    (arguments.output / (name + '.pyi')).write_text(generator.stubs(), encoding='utf-8')


if __name__ == '__main__':
    main()

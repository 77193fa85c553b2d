# SPDX-License-Identifier: MIT
"""The pages of the classes, in reStructuredText: from the wrapper tables and the comments of the
host's headers, by way of what also makes the proxy classes and stubs."""
import ast
import json
import pathlib
import re
import sys
import textwrap

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / 'companion'))
from generate import DISOWNING, KEPT_BUFFER, Generator, Module  # noqa: E402
from headers import read_aliases, read_headers  # noqa: E402
from signatures import is_borrowed, optional_target, split_declaration  # noqa: E402

from arguments import Arguments  # noqa: E402

# The host's names and general texts.
STATUS_CODES = dict(re.findall(r'^ +\{"(k\w+)", "(.*)"\},$',
                               (ROOT / 'devhost/api/core/ZStatus.cpp').read_text(), re.M))


class Companion(Generator):
    """What the proxies of one module are made of, with the values of the constants."""

    def __init__(self, name, part, build, version, uses=()):
        folder = ROOT / 'companion' / 'extensions' / part
        path = build / 'companion' / (part + '.json')
        super().__init__(Module(name, path), version, list(uses),
                         read_headers([ROOT / 'host', folder]), read_aliases([ROOT / 'host']),
                         folder)
        self.values = {entry['name']: entry['value']
                       for entry in json.loads(path.read_text())['constants']}
        self.arguments = Arguments(self.signatures.types)

    def documented_text(self, target, member):
        """What the class's extension says of a member."""
        for node in ast.parse(self.extension(target)).body:
            if isinstance(node, ast.FunctionDef) and node.name == member:
                return ast.get_docstring(node) or ''
        return ''


def is_opengl(function):
    """Whether the function is one of the driver's, which have pages of their own."""
    return function['class'] == 'ZGLFunctionTable' and function['member'].startswith('gl')


def companions(build, version):
    core = Companion('OpenQuil', 'core', build, version)
    return [core, Companion('OpenQuilRender', 'render', build, version, [core.module])]


def indented(text):
    return textwrap.indent(text, '   ')


# ---- text -----------------------------------------------------------------------------------

def escaped(text):
    return re.sub(r'(?<=\w)_(?!\w)', r'\\_', re.sub(r'([\\*|`])', r'\\\1', text))


class Linker(object):
    """Turns the prose of comments into markup, with what it names as references."""
    # What stands between backticks; else an option, or a name with what may follow it.
    WORD = re.compile(r'``?([^`]+)``?|((?<!\w)--[a-z]+(?:-[a-z]+)*|'
                      r'(?<![\w.])[A-Za-z]\w*(?:(?:\.|::)\w+)?)(\(\))?')

    def __init__(self, generators):
        self.homes = {}  # class -> module
        self.members = {}  # class -> names
        self.constants = {}  # name -> classes
        self.enumerations = {}  # class -> names
        for generator in generators:
            for target in generator.module.classes.values():
                self.homes[target.name] = generator.module.name
                self.members[target.name] = {f['member'] for f in target.functions} | set(
                    target.getters) | {name for name, _ in generator.extension_properties(target)}
                for constant in target.constants:
                    self.constants.setdefault(constant, []).append(target.name)
                self.enumerations[target.name] = {
                    e.name for e in generator.header_classes[target.name].enumerations
                    if any(name in target.constants for name, _ in e.enumerators)}

    def target(self, text, owner, is_call):
        """The markup for a name, or None for what is none."""
        if text.startswith('--'):
            return ':option:`%s <quilhost %s>`' % (text, text)
        scope, _, member = text.replace('::', '.').rpartition('.')
        if not scope and member in self.homes:
            return ':py:class:`~%s.%s`' % (self.homes[member], member)
        if not scope and member in STATUS_CODES:
            return ':ref:`%s <status-codes>`' % member
        if not scope and member in self.constants:
            owners = self.constants[member]
            chosen = owner if owner in owners else owners[0] if len(owners) == 1 else None
            return chosen and self.reference(chosen, member, member)
        scope = scope or owner
        if scope in self.enumerations and member in self.enumerations[scope]:
            return self.enumeration(scope, member)
        named = is_call or re.search('[a-z][A-Z]', member) or '.' in text
        if scope in self.members and named and member in self.members[scope]:
            return self.reference(scope, member, text.replace('::', '.') + '()' * is_call)
        return None

    def reference(self, scope, member, shown):
        return ':py:obj:`%s <%s.%s.%s>`' % (shown, self.homes[scope], scope, member)

    @staticmethod
    def enumeration(scope, name):
        return ':ref:`%s <%s.%s>`' % (name, scope, name)

    def prose(self, text, owner, parameters=()):
        """Of the class `owner`; parameters of the function are no members."""
        paragraphs = [' '.join(part.split()) for part in re.split(r'\n\s*\n', text.strip())]
        return '\n\n'.join(self.paragraph(part, owner, parameters) for part in paragraphs if part)

    def paragraph(self, text, owner, parameters):
        pieces, at = [], 0
        for match in self.WORD.finditer(text):
            literal, word, call = match.groups()
            name = (literal or word).replace('()', '')
            is_call = bool(call) or (literal or '').endswith('()')
            target = '' if name in parameters else self.target(name, owner, is_call)
            if not target and not literal:
                continue
            pieces += [escaped(text[at:match.start()]), self.bounded(
                target or '``%s``' % literal, text, match.start(), match.end())]
            at = match.end()
        return ''.join(pieces) + escaped(text[at:])

    @staticmethod
    def bounded(markup, text, start, end):
        """Inline markup has to stand apart from words."""
        before = '' if start == 0 or text[start - 1] in ' \'"([{<-/:' else '\\ '
        after = '' if end == len(text) or text[end] in ' \'")]}>-/:.,;!?' else '\\ '
        return before + markup + after

    def python_type(self, text):
        """A Python type of the stubs."""
        union = re.fullmatch(r'Union\[(.*)\]', text)
        if union:
            return ' or '.join(self.python_type(part) for part in union[1].split(', '))
        if optional_target(text):
            return self.python_type(optional_target(text)) + ' or None'
        name = text.split('.')[-1]
        if name in self.homes:
            return ':py:class:`~%s.%s`' % (self.homes[name], name)
        words = {'Text': 'text', 'List[Text]': 'list of texts', 'Iterable[Any]': 'any sequence',
                 'Any': 'any object'}
        return words.get(text, text)


def annotation(python):
    """A result's type for a signature."""
    python = re.sub(r'Optional\[(.*)\]', r'\1 | None', python)
    return re.sub(r'\bText\b', 'unicode', python).replace('Any', 'object')


# ---- pages ----------------------------------------------------------------------------------

class ClassPage(object):
    """The page of one class."""

    def __init__(self, companion, target, linker):
        self.companion, self.target, self.linker = companion, target, linker
        self.functions = [f for f in target.functions if not is_opengl(f)]

    def write(self):
        name, module = self.target.name, self.companion.module.name
        head = '%s\n%s\n\n.. code-block:: python\n\n   from %s import %s\n\n' % (
            name, '=' * len(name), module, name)
        bases = self.companion.base_names(self.target)
        body = [self.linker.prose(self.class_doc(), name), self.ownership()]
        if bases:
            body.append('Derived from %s.' % ', '.join(map(self.linker.python_type, bases)))
        if len(self.functions) < len(self.target.functions):
            body.append('Its OpenGL functions are listed in :doc:`/reference/opengl`.')
        body += self.constructors()
        statics = [f for f in self.functions if f['kind'] == 'static']
        methods = [f for f in self.functions if f['kind'] == 'method']
        specials = [f for f in methods if f['member'].startswith('__')]
        plain = [f for f in methods if f not in specials]
        properties = [self.property(member) for member in self.target.getters]
        properties += [self.extension_property(*found)
                       for found in self.companion.extension_properties(self.target)]
        for title, parts in [('Data', properties), ('Functions', map(self.function, statics)),
                             ('Methods', map(self.function, plain)),
                             ('Operators and protocols', map(self.function, specials))]:
            parts = list(parts)
            if parts:
                body += ['.. rubric:: %s' % title] + parts
        body += self.constants()
        return '%s.. py:module:: %s\n   :noindex:\n\n.. py:class:: %s\n\n%s\n' % (
            head, module, name, indented('\n\n'.join(filter(None, body))))

    def class_doc(self):
        return self.companion.header_classes[self.target.name].doc

    def ownership(self):
        if not self.target.constructor:
            made = 'Scripts do not make objects of this class; the host hands them out.'
        elif self.target.disown:
            made = 'Scripts derive their own class from it.'
        elif not self.target.destructor:
            made = 'An object that a script makes is not destroyed with its proxy.'
        else:
            return ''
        return '*Ownership:* %s See :ref:`ownership`.' % made

    # Members

    def constructors(self):
        constructor = self.target.constructor
        if not constructor:
            return []
        if self.target.disown:
            text = self.linker.prose(self.companion.signatures.text(constructor), self.target.name)
            return ['.. rubric:: Construction', '.. py:method:: %s()\n\n%s' % (
                self.target.name, indented(text)),
                    '.. py:method:: __disown__()\n\n' + indented(DISOWNING)]
        return ['.. rubric:: Construction', self.function(constructor)]

    def constants(self):
        target, parts, left = self.target, [], list(self.target.constants)
        header = self.companion.header_classes[target.name]
        for enumeration in header.enumerations:
            listed = [(name, doc) for name, doc in enumeration.enumerators if name in left]
            if listed:
                parts.append('.. _%s.%s:\n\n.. rubric:: %s' % (target.name, enumeration.name,
                                                               enumeration.name))
                parts.append(self.linker.prose(enumeration.doc, target.name))
                parts.append(self.values(listed))
                left = [name for name in left if name not in dict(listed)]
        if left:
            parts += ['.. rubric:: Constants', self.values([(name, '') for name in left])]
        return parts

    def values(self, listed):
        lines = []
        for name, doc in listed:
            value = self.companion.values['%s_%s' % (self.target.name, name)]
            lines.append('.. py:attribute:: %s\n   :value: %s\n   :nocontentsentry:\n\n%s' % (
                name, value, indented(self.linker.prose(doc, self.target.name))))
        return '.. container:: constants\n\n' + indented('\n\n'.join(lines))

    def function(self, function):
        member = function['member'] or '__init__'
        kind = 'staticmethod' if function['kind'] == 'static' else 'method'
        signatures = self.companion.signatures.signatures(function)
        texts = self.texts(function)
        parts = []
        for i, (signature, overload) in enumerate(zip(signatures, function['overloads'])):
            is_made = member == '__init__'
            result = '' if is_made else ' -> ' + annotation(signature.result)
            shown = ', '.join(p.name if p.default is None else '%s=%s' % (p.name, p.default)
                              for p in signature.parameters)
            body = [self.linker.prose(texts[i], self.target.name,
                                      {parameter.name for parameter in signature.parameters}),
                    self.parameters(function, overload, signature),
                    self.facts(function, overload, signature)]
            options = '   :noindex:\n' if i else ''
            parts.append('.. py:%s:: %s(%s)%s\n%s\n%s' % (
                kind, self.target.name if is_made else member, shown, result, options,
                indented('\n\n'.join(filter(None, body)))))
        return '\n\n'.join(parts)

    def texts(self, function):
        """What there is to say of each overload; what is said of all is said at the first."""
        signatures = self.companion.signatures
        found = (signatures.declaration_of(function, overload)
                 for overload in function['overloads'])
        texts = [declaration.doc if declaration else '' for declaration in found]
        if not texts[0] or len(texts) == 1:
            texts[0] = signatures.text(function)
        own = self.companion.documented_text(self.target, function['member'])
        if own:
            texts[0] += '\n\n' + own
        return [text if text and text not in texts[:i] else self.usual_text(function, overload)
                for i, (text, overload) in enumerate(zip(texts, function['overloads']))]

    def usual_text(self, function, overload):
        """What constructors do that headers say nothing of."""
        natives = self.natives(function, overload)
        if function['kind'] == 'constructor' and natives == ['PyObject *']:
            return 'Makes an object from any sequence of its items.'
        if function['kind'] == 'constructor' and natives == [self.target.name + ' const &']:
            return 'Makes a copy.'
        return ''

    def natives(self, function, overload):
        count = overload['max'] - (function['kind'] == 'method')
        return split_declaration(overload['declaration'])[1][:count]

    def parameters(self, function, overload, signature):
        rows = []
        natives = self.natives(function, overload)
        for i, parameter in enumerate(signature.parameters):
            effect = self.companion.arguments.effect(
                function, overload, i, lambda o: self.natives(function, o))
            rows.append('   * - ``%s``\n     - %s\n     - None %s' % (
                parameter.name, self.native_type(natives[i], parameter.python), effect))
        if not rows:
            return ''
        return '.. container:: arguments\n\n' + indented(
            '.. list-table::\n\n' + '\n'.join(rows))

    def native_type(self, native, python):
        scope, _, name = re.sub(r' const\b|[&* ]', '', native).rpartition('::')
        if '*' not in native and scope in self.linker.enumerations and (
                python == 'int' and name in self.linker.enumerations[scope]):
            return self.linker.enumeration(scope, name)
        return self.linker.python_type(python)

    def facts(self, function, overload, signature):
        """What the declared type tells of result and errors."""
        result, natives = split_declaration(overload['declaration'])
        facts = []
        native = self.native_type(result, signature.result)
        if native.startswith(':ref:'):
            facts.append('Returns a %s.' % native)
        is_object = signature.result.split('[')[-1].rstrip(']').split('.')[-1] in self.linker.homes
        if is_object and function['kind'] != 'constructor':
            if is_borrowed(function) and result.endswith(('*', '&')):
                facts.append('The result is lent: it is a part of this object, or the host\'s.')
            elif result.endswith(('*', '&')):
                facts.append('The result is lent: it belongs to the host.')
            else:
                facts.append('The result is the script\'s own copy.')
        if result == 'ZStatus' or 'ZStatus *' in natives:
            facts.append('Raises ``RuntimeError`` with the :ref:`status <status-codes>` where it '
                         'fails.')
        return '.. container:: facts\n\n   ' + ' '.join(facts) if facts else ''

    def property(self, member):
        companion, target = self.companion, self.target
        getter, setter = target.getters[member], target.setters.get(member)
        python = companion.member_python_type(target, getter)
        native = companion.member_type(getter)
        facts = []
        found = self.native_type(native, python)
        if found.startswith(':ref:'):
            facts.append('It is a %s.' % found)
        if setter:
            embedded = companion.is_embedded(getter)
            effect = companion.arguments.effect(
                setter, setter['overloads'][0], 0,
                lambda o: split_declaration(o['declaration'])[1], is_embedded=embedded)
            if companion.is_text(getter):
                facts.append('It can be set to a text.')
            facts.append('As a new value, None %s.' % effect)
        else:
            facts.append('It cannot be set.')
        if is_borrowed(getter) and not companion.is_embedded(getter):
            facts.append(' '.join(KEPT_BUFFER.split()))
        return self.property_entry(member, python, companion.member_text(target, member), facts)

    def extension_property(self, member, python):
        return self.property_entry(member, python,
                                   self.companion.documented_text(self.target, member),
                                   ['It cannot be set.'])

    def property_entry(self, member, python, text, facts):
        return '.. py:property:: %s\n   :type: %s\n\n%s\n\n   .. container:: facts\n\n      %s' % (
            member, annotation(python), indented(self.linker.prose(text, self.target.name)),
            ' '.join(facts))


def write_classes(generators, linker, folder):
    """A page for each class, and one for each module that lists them."""
    for companion in generators:
        module = companion.module.name
        (folder / module).mkdir(parents=True, exist_ok=True)
        rows = []
        for target in companion.module.classes.values():
            text = ClassPage(companion, target, linker).write()
            (folder / module / (target.name + '.rst')).write_text(text, encoding='utf-8')
            sentence = re.split(r'(?<=[.:])\s', companion.header_classes[target.name].doc)[0]
            sentence = re.sub(r':$', '.', sentence)
            rows.append('   * - :py:class:`%s`\n     - %s' % (
                target.name, linker.prose(sentence, target.name).replace('\n', ' ')))
        title = 'Classes of %s' % module
        (folder / (module + '.rst')).write_text(
            '%s\n%s\n\n.. py:module:: %s\n\n%s\n\n.. list-table::\n   :class: overview\n\n%s\n\n'
            '.. toctree::\n   :hidden:\n\n%s\n' % (
                title, '=' * len(title), module, MODULE_TEXTS[module], '\n'.join(rows),
                ''.join('   %s/%s\n' % (module, name) for name in companion.module.classes)),
            encoding='utf-8')


def status_codes():
    """The rows of a table of them."""
    return '\n'.join('   * - %s\n     - %s' % entry for entry in STATUS_CODES.items())


MODULE_TEXTS = {
    'OpenQuil': 'What render scripts work with: nodes of the scene, vectors, matrices and colours, '
                'arrays, images, and memory for the host to read and write. '
                ':doc:`arguments` tells what all functions have in common.',
    'OpenQuilRender': 'The render programming interface: render view, callbacks, settings and '
                      'layers, software-render utilities, hardware renderer and OpenGL. '
                      ':doc:`arguments` tells what all functions have in common.',
}

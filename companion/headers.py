# SPDX-License-Identifier: MIT
"""Reads the documentation of the host's headers: the `///` comments before classes, members,
enumerations and enumerators, and the names of parameters. It knows as much C++ as these headers
use."""

import re


class Class(object):
    def __init__(self, name, template_parameter, bases, doc):
        self.name = name
        self.template_parameter = template_parameter  # or None
        self.bases = bases  # (name, template argument or None)
        self.doc = doc
        self.members = {}  # name -> [Declaration], in header order
        self.enumerations = []


class Enumeration(object):
    def __init__(self, name, doc):
        self.name = name
        self.doc = doc
        self.enumerators = []  # (name, doc)


class Declaration(object):
    def __init__(self, name, doc, parameters):
        self.name = name
        self.doc = doc
        self.parameters = parameters  # [Parameter]; None for a data member


class Parameter(object):
    def __init__(self, type, name, default):
        self.type = type
        self.name = name
        self.default = default


def normal_type(text):
    """A type in one spelling: blanks normalised, `const T &` as `T const &`, scopes and a constant
    value's const left out."""
    text = re.sub(r'\s+', ' ', text.strip())
    text = re.sub(r'\b(?!std::)\w+::', '', text)
    text = re.sub(r'\bunsigned(?! (?:char|short|int|long))\b', 'unsigned int', text)
    text = re.sub(r'^const ((?:unsigned |signed )*[\w:<>]+)', r'\1 const', text)
    text = re.sub(r'\s*([*&\[\]])\s*', r'\1', text)
    return re.sub(r'\s*const$', '', text)


def split_list(text, separator=','):
    """Splits at separators that stand outside all brackets."""
    parts, depth, start = [], 0, 0
    for i, character in enumerate(text):
        if character in '([{<':
            depth += 1
        elif character in ')]}>':
            depth -= 1
        elif character == separator and depth == 0:
            parts.append(text[start:i].strip())
            start = i + 1
    parts.append(text[start:].strip())
    return [part for part in parts if part]


def parse_parameter(text):
    pieces = split_list(text, '=')
    default = pieces[1] if len(pieces) > 1 else None
    match = re.match(r'(.*[\s*&])(\w+)((?:\[\w*\])*)$', pieces[0], re.DOTALL)
    if not match or match.group(2) in ('int', 'const', 'double', 'float', 'char', 'long', 'short'):
        return Parameter(pieces[0], '', default)
    return Parameter(match.group(1).strip() + match.group(3), match.group(2), default)


SPECIFIERS = r'^(?:(?:virtual|static|explicit|constexpr|inline|mutable|extern)\b|\[\[[^\]]*\]\])\s*'


def parse_declaration(text, doc):
    """The declaration of a function or data member; None for anything else."""
    text = re.sub(r'^template\s*<[^>]*>\s*', '', text.strip())
    while re.match(SPECIFIERS, text):
        text = re.sub(SPECIFIERS, '', text)
    if re.match(r'(friend|using|typedef|static_assert)\b', text):
        return None
    match = re.match(r'(?:.*?[\s*&])??(operator\s*(?:\(\)|[^\s(]+)|~?\w+)\s*\(', text, re.DOTALL)
    if not match:
        name = re.search(r'(\w+)\s*(?:\[\w*\]\s*)*(?:=.*|\{.*)?$', text, re.DOTALL)
        return Declaration(name.group(1), doc, None) if name else None
    inside = text[match.end():closing(text, match.end() - 1)]
    name = re.sub(r'\s+', ' ' if 'bool' in match.group(1) else '', match.group(1))
    return Declaration(name, doc, [parse_parameter(part) for part in split_list(inside)])


def closing(text, opening):
    """The position of the bracket that closes the one at `opening`."""
    depth = 0
    for i in range(opening, len(text)):
        if text[i] in '([{':
            depth += 1
        elif text[i] in ')]}':
            depth -= 1
            if depth == 0:
                return i
    raise ValueError('unbalanced brackets: ' + text[opening:opening + 60])


class Reader(object):
    """Walks one header and adds what it finds to `classes`."""

    def __init__(self, text, classes):
        self.text = text
        self.at = 0
        self.classes = classes
        self.scopes = []  # a Class, or None for namespaces and the like
        self.doc = []

    def read(self):
        while self.skip_blanks():
            self.read_item()

    def skip_blanks(self):
        """Moves to the next item, collecting documentation; false at the end."""
        while True:
            match = re.compile(r'\s*').match(self.text, self.at)
            self.at = match.end()
            if self.text.startswith('///', self.at):
                self.doc.append(self.rest_of_line()[3:].strip())
            elif self.text.startswith('//', self.at):
                self.rest_of_line()
            elif self.text.startswith('#', self.at):
                while self.rest_of_line().endswith('\\'):
                    pass
            else:
                return self.at < len(self.text)

    def rest_of_line(self):
        end = self.text.find('\n', self.at)
        end = len(self.text) if end < 0 else end
        line = self.text[self.at:end]
        self.at = end + 1
        return line

    def take_doc(self):
        doc, self.doc = '\n'.join(self.doc).strip(), []
        return doc

    def read_item(self):
        if self.text[self.at] in '};':
            if self.text[self.at] == '}':
                self.scopes.pop()
            self.at += 1
            return
        access = re.compile(r'(public|protected|private)\s*:').match(self.text, self.at)
        if access:
            self.at = access.end()
            return
        start = self.at
        end = self.end_of_head()
        head = self.text[start:end].strip()
        doc = self.take_doc()
        if self.text[end] == ';':
            self.at = end + 1
            self.add_member(head, doc)
        else:
            self.open_braces(head, doc, end)

    def end_of_head(self):
        """The position of the `;` or `{` that ends the declaration here."""
        i = self.at
        while self.text[i] not in ';{':
            i = closing(self.text, i) + 1 if self.text[i] in '([' else i + 1
        return i

    def open_braces(self, head, doc, brace):
        plain = re.sub(r'^template\s*<[^>]*>\s*', '', head)
        enumeration = re.match(r'enum(?:\s+class)?\s*(\w*)', plain)
        class_head = re.match(r'(?:class|struct)\s+(?:OPENQUIL_API\s+)?(\w+)(?:\s+final)?\s*'
                              r'(?::\s*(.*))?$', plain, re.DOTALL)
        if enumeration:
            end = closing(self.text, brace)
            self.add_enumeration(enumeration.group(1), doc, self.text[brace + 1:end])
            self.at = end + 1
        elif class_head:
            bases = [re.match(r'(?:public\s+)?(\w+)(?:<(.*)>)?', base).groups()
                     for base in split_list(class_head.group(2) or '')]
            template = re.match(r'template\s*<(?:class|typename)\s+(\w+)>', head)
            name = class_head.group(1)
            if name not in self.classes:
                self.classes[name] = Class(name, template and template.group(1), bases, doc)
            self.scopes.append(self.classes[name])
            self.at = brace + 1
        elif re.match(r'(namespace|extern)\b', plain):
            self.scopes.append(None)
            self.at = brace + 1
        else:  # a function's body or an initialiser
            self.at = closing(self.text, brace) + 1
            self.add_member(head, doc)

    def add_enumeration(self, name, doc, body):
        enumeration = Enumeration(name, doc)
        pending = []
        for line in body.split('\n'):
            if line.startswith('#'):
                continue
            line, _, comment = line.partition('//')
            trailing = comment.startswith('/<')
            if comment.startswith('/') and not trailing:
                pending.append(comment[1:].strip())
            for part in filter(None, re.split(r'\s*,\s*', line.strip())):
                enumerator = re.match(r'\w+', part).group()
                text = comment[2:].strip() if trailing else ' '.join(pending)
                enumeration.enumerators.append((enumerator, text))
                pending = []
        if self.scopes and self.scopes[-1]:
            self.scopes[-1].enumerations.append(enumeration)

    def add_member(self, head, doc):
        if not self.scopes or not self.scopes[-1]:
            return
        # The initialisers of a constructor and what follows a parameter list are not of interest.
        declaration = parse_declaration(head, doc)
        if declaration:
            self.scopes[-1].members.setdefault(declaration.name, []).append(declaration)


def expand_lists(text, folders):
    """Included lists: their lines become declarations."""
    def lines_of(include):
        for folder in folders:
            path = folder.parent / include.group(1)
            if path.exists():
                lines = path.read_text(encoding='utf-8').splitlines()
                return '\n'.join(filter(None, map(declaration_of_line, lines)))
        return ''
    return re.sub(r'^#include "([^"]+\.def)"$', lines_of, text, flags=re.MULTILINE)


def declaration_of_line(line):
    """A documented declaration from `GL(since, result, member, (type) parameter, ...)` and its
    variants, an enumerator from `GL_EXTENSION(name, "what brings it")`; None for other lines."""
    match = re.match(r'GL_EXTENSION\((\w+),', line)
    if match:
        return 'kZGLext_%s,' % match.group(1)
    match = re.match(r'(GL|GL_AS|GL_WITH_OUTCOME)\((.*)\)$', line)
    if not match:
        return None
    kind, fields = match.group(1), split_list(match.group(2))
    entry = fields.pop(0) if kind == 'GL_AS' else None
    since = fields.pop(0)
    result = 'bool' if kind == 'GL_WITH_OUTCOME' else fields.pop(0)
    member = fields.pop(0)
    source = re.sub(r'VERSION_(\d)_(\d)$', r'OpenGL \1.\2', since)
    doc = '%s of %s.' % (entry or member, source if source != since else 'GL_' + since)
    if kind == 'GL_WITH_OUTCOME':
        doc += ' True when it succeeded.'
    if result.endswith('*'):
        doc += ' Null when it failed.'
    parameters = ', '.join(re.sub(r'^\((.*)\) *', r'\1 ', field) for field in fields)
    return '/// %s\n%s %s(%s);' % (doc, result, member, parameters)


def read_headers(folders):
    """All documented classes below the folders, by name. A class that comes again gets the further
    members."""
    classes = {}
    for path in [path for folder in folders for path in sorted(folder.rglob('*.h'))]:
        try:
            text = expand_lists(path.read_text(encoding='utf-8'), folders)
            Reader(text, classes).read()
        except (ValueError, IndexError) as error:
            raise SystemExit('%s: cannot be read as a header: %s' % (path, error))
    return classes


def read_aliases(folders):
    """What the names of types outside classes stand for, enumerations as int."""
    texts = [path.read_text(encoding='utf-8') for folder in folders for path in folder.rglob('*.h')]
    aliases = dict(match for text in texts
                   for match in re.findall(r'^using (\w+) = ([\w: ]+);', text, re.MULTILINE))
    aliases.update((name, 'int') for text in texts
                   for name in re.findall(r'^enum (\w+)', text, re.MULTILINE))
    return aliases


def find_declarations(classes, class_name, member):
    """The declarations of a member, in the class or else in its bases."""
    found = classes.get(class_name)
    if not found:
        return []
    if member in found.members:
        return found.members[member]
    for name, argument in found.bases:
        # A base's constructors serve the derived class under the base's name.
        inherited = find_declarations(classes, name, name if member == class_name else member)
        if inherited:
            parameter = name in classes and classes[name].template_parameter
            return [specialised(declaration, parameter, argument) for declaration in inherited]
    return []


def specialised(declaration, template_parameter, argument):
    """The declaration with the template's parameter replaced by its argument."""
    if not argument or declaration.parameters is None:
        return declaration
    return Declaration(declaration.name, declaration.doc, [
        Parameter(re.sub(r'\b%s\b' % template_parameter, argument, parameter.type),
                  parameter.name, parameter.default)
        for parameter in declaration.parameters])

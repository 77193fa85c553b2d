# SPDX-License-Identifier: MIT
"""What Python sees of native functions: parameter names, Python types and documentation, put
together from a module's description and the host's headers."""

import re
import textwrap

from headers import find_declarations, normal_type, split_list

INTEGER = re.compile(r'(?:unsigned|signed) char|(?:unsigned ?|signed ?)?(?:short|int|long)?|'
                     r'std::ptrdiff_t')
RESERVED = set('and as assert break class continue def del elif else except exec finally for from '
               'global if import in is lambda not or pass print raise return try while with yield '
               'None self'.split())

# Where the documentation of special methods is found in C++ ...
OPERATORS = {
    '__add__': 'operator+', '__sub__': 'operator-', '__mul__': 'operator*', '__div__': 'operator/',
    '__xor__': 'operator^', '__neg__': 'operator-', '__iadd__': 'operator+=',
    '__isub__': 'operator-=', '__imul__': 'operator*=', '__idiv__': 'operator/=',
    '__eq__': 'operator==', '__ne__': 'operator!=', '__lt__': 'operator<', '__le__': 'operator<=',
    '__gt__': 'operator>', '__ge__': 'operator>=', '__call__': 'operator()', '__len__': 'length',
    '__rmul__': 'operator*', '__truediv__': 'operator/', 'assign': 'operator=',
}
# Classes whose pointer objects have another one chained behind them, and so stand for it.
STANDS_FOR = {'RV_PIXEL': 'OpenQuil.PixelBuffer', 'RV_AOV': 'OpenQuil.LayerBuffer'}

# ... and what Python itself says about them: parameter names, result and meaning.
SPECIAL_METHODS = {
    '__getitem__': (['index'], None, 'Returns the element at the index; negative ones count from '
                                     'the end. Raises IndexError when there is none.'),
    '__setitem__': (['index', 'value'], None, 'Replaces the element at the index; negative ones '
                                              'count from the end. Raises IndexError when there '
                                              'is none.'),
    '__delitem__': (['index'], None, 'Takes out the element at the index.'),
    '__contains__': (['value'], 'bool', 'True when the value is one of the elements.'),
    '__iter__': ([], 'Iterator[Any]', 'Iterates over the elements.'),
    '__len__': ([], 'int', 'Returns the number of elements.'),
    '__str__': ([], 'str', 'Returns the value as text.'),
    '__unicode__': ([], 'Text', 'Returns the value as text.'),
    '__repr__': ([], 'str', 'Returns the class and the value as text.'),
    '__hash__': ([], 'int', 'Returns a number that equal objects share.'),
    '__nonzero__': ([], 'bool', 'The truth value.'),
    '__eq__': (['other'], 'bool', 'True when both are equal.'),
    '__ne__': (['other'], 'bool', 'True when they differ.'),
    '__int__': ([], 'int', 'Returns the value as an integer.'),
    '__float__': ([], 'float', 'Returns the value as a number.'),
}


class Types(object):
    """Python types of native types. `classes` tells how to name the proxy class of a type, which
    is given by its mangled name; `enumerations` are the names of all enumerations, `aliases` what
    other names of types stand for."""

    def __init__(self, classes, enumerations, aliases):
        self.classes = classes
        self.enumerations = enumerations
        self.aliases = aliases

    def bare(self, native):
        return normal_type(re.sub(r'\w+', lambda name: self.aliases.get(name.group(), name.group()),
                                  native))

    def shown(self, native, python):
        bare = normal_type(native)
        return bare if bare in self.enumerations else python

    def parameter(self, native):
        bare = self.bare(native)
        if bare in ('ZString', 'ZString&', 'ZString const&'):
            return 'Text'
        if bare == 'NameList':
            return 'List[Text]'
        python = self.common(bare) or self.pointer(bare)
        target = optional_target(python)
        return 'Union[%s, %s, None]' % (target, STANDS_FOR[target]) if target in STANDS_FOR \
            else python

    def result(self, native, doc=''):
        """A pointer is always there where the documentation does not speak of null."""
        python = self.optional_result(native)
        never_null = doc and not re.search(r'\bnull\b', doc, re.IGNORECASE)
        return optional_target(python) or python if never_null else python

    def optional_result(self, native):
        bare = self.bare(native)
        if bare in ('void', 'ZStatus'):
            return 'None'
        if bare == 'ZString':
            return 'Text'
        return self.common(bare) or self.pointer(bare)

    def common(self, bare):
        value = re.sub(r'( const)?&$', '', bare) if bare.endswith('const&') else bare
        if value == 'bool':
            return 'bool'
        if value in ('float', 'double'):
            return 'float'
        if value and INTEGER.fullmatch(value) or value in self.enumerations:
            return 'int'
        if re.fullmatch(r'char|char( const)?\*', bare):
            return 'str'
        return None

    def object_default(self, native, expression):
        """A default of a class, from the header's expression: "Class(numbers)" as it is, the name
        of a constant as an object without arguments. None for other types."""
        found = self.classes.get(mangled(re.sub(r'( const)?&$', '', normal_type(native))))
        if not native.endswith('&') or not found or found.endswith('.ZString'):
            return None
        match = re.fullmatch(r'\w+\((.*)\)', expression or '')
        return '%s(%s)' % (found, re.sub(r'(?<=\d)f\b', '', match.group(1)) if match else '')

    def pointer(self, bare):
        target = re.sub(r' const\b', '', bare)
        is_pointer = target.endswith('*')
        target = target[:-1] if target[-1] in '*&' else target
        found = self.classes.get(mangled(target))
        if not found:
            return 'Any'
        return 'Optional[%s]' % found if is_pointer else found


def optional_target(python):
    """What is optional, or None where nothing is."""
    match = re.fullmatch(r'Optional\[(.*)\]', python)
    return match and match.group(1)


def mangled(target):
    """The mangled name of the type `target *`."""
    depth = target.count('*') + 1
    return '_p' * depth + '_' + target.rstrip('*').strip().replace(' ', '_').replace('::', '__')


def wrapped(line):
    """A long line of code, broken behind commas."""
    held = line.replace(' ', '\0').replace(',\0', ', ')
    return textwrap.fill(held, 92, subsequent_indent=' ' * 8, break_long_words=False,
                         break_on_hyphens=False).replace('\0', ' ')


def is_borrowed(function):
    """True when what a method or data member yields may be a part of the object."""
    result = split_declaration(function['overloads'][0]['declaration'])[0]
    target = re.sub(r'\bconst\b|[*&\s]', '', result)
    return function['kind'] in ('method', 'getter') and result.endswith(('*', '&')) and \
        target not in ('char', 'void', 'PyObject')


class Parameter(object):
    def __init__(self, name, python, shown, default):
        self.name = name
        self.python = python
        self.shown = shown  # the type for readers: enumerations by their name
        self.default = default  # Python source, or None


class Signature(object):
    """One overload of a function, without its object."""

    def __init__(self, parameters, result, shown_result):
        self.parameters = parameters
        self.result = result
        self.shown_result = shown_result

    def typed_parameters(self):
        return [typed(p.name, p.python, p.default) for p in self.parameters]

    def shown_parameters(self):
        return [typed(p.name, p.shown, p.default) for p in self.parameters]


def typed(name, python, default):
    return '%s: %s' % (name, python) + ('' if default is None else ' = ' + default)


def split_declaration(declaration):
    """The result and parameter types of "R(A, B) const"."""
    opening, closing = declaration.index('('), declaration.rindex(')')
    return declaration[:opening].strip(), split_list(declaration[opening + 1:closing])


def parameter_types(natives):
    """Types to compare: a hidden status left out, a constant reference as the value."""
    types = [re.sub(r' const&$', '', normal_type(native)) for native in natives]
    return types[:-1] if types and types[-1] == 'ZStatus*' else types


def default_source(native, value):
    bare = normal_type(native)
    if bare.endswith('*'):
        return 'None'
    if 'ZString' in bare:
        return "''"
    if bare.startswith('bool'):
        return 'True' if value else 'False'
    if bare.startswith(('float', 'double')):
        return repr(float(value))
    return str(int(value))


class Signatures(object):
    """Signatures and documentation of a module's functions."""

    def __init__(self, types, header_classes):
        self.types = types
        self.header_classes = header_classes

    def declarations(self, class_name, member):
        """The header's declarations of a member, special methods by their operator."""
        for name in (member, OPERATORS.get(member)):
            found = name and find_declarations(self.header_classes, class_name, name)
            if found:
                return found
        return []

    def declaration_of(self, function, overload):
        """The header's declaration of one overload, or None."""
        wanted = parameter_types(split_declaration(overload['declaration'])[1])
        candidates = [declaration for declaration in self.declarations(
                          function['class'], function['member'] or function['class'])
                      if declaration.parameters is not None]
        fitting = []
        for declaration in candidates:
            parameters = declaration.parameters
            types = parameter_types([parameter.type for parameter in parameters])
            if types[:len(wanted)] == wanted and all(
                    parameter.default for parameter in parameters[len(wanted):]):
                fitting.append((len(types), declaration))
        if fitting:
            return min(fitting, key=lambda pair: pair[0])[1]
        # Types may be spelled in another way, but of overloads only the types tell which one it is.
        same_count = [declaration for declaration in candidates
                      if len(declaration.parameters) == len(wanted)]
        names = {tuple(p.name for p in declaration.parameters) for declaration in same_count}
        return same_count[0] if len(names) == 1 and len(function['overloads']) == 1 else None

    def signature(self, function, overload):
        result, natives = split_declaration(overload['declaration'])
        has_object = function['kind'] == 'method'
        count = overload['max'] - has_object
        first_default = overload['min'] - has_object
        declaration = self.declaration_of(function, overload)
        names = [p.name for p in declaration.parameters] if declaration else []
        python_result = self.types.result(result, declaration.doc if declaration else '')
        if function['member'] in SPECIAL_METHODS:
            special_names, special_result, _ = SPECIAL_METHODS[function['member']]
            names = names or special_names
            python_result = special_result or python_result
        elif not names and count == 1:
            names = ['items' if natives[0] == 'PyObject *' else
                     'other' if function['kind'] == 'constructor' else 'value']
        parameters = []
        for i, native in enumerate(natives[:count]):
            name = names[i] if i < len(names) and names[i] else 'argument%d' % (i + 1)
            default = None
            if i >= first_default:
                expression = declaration and declaration.parameters[i].default
                default = (self.types.object_default(native, expression) or
                           default_source(native, overload['defaults'][i - first_default]))
            python = self.types.parameter(native)
            if function['kind'] == 'constructor' and native == 'PyObject *':
                python = 'Iterable[Any]'
            parameters.append(Parameter(name + '_' if name in RESERVED else name, python,
                                        self.types.shown(native, python), default))
        return Signature(parameters, python_result, self.types.shown(result, python_result))

    def signatures(self, function):
        return [self.signature(function, overload) for overload in function['overloads']]

    def text(self, function):
        """What the header says about a function, overloads one behind the other."""
        member = function['member'] or function['class']
        matched = [self.declaration_of(function, overload) for overload in function['overloads']]
        declarations = [d for d in matched if d] or self.declarations(function['class'], member)
        docs = []
        for declaration in declarations:
            if declaration.doc and declaration.doc not in docs:
                docs.append(declaration.doc)
        if any(split_declaration(overload['declaration'])[1] == ['PyObject *'] and not declaration
               for overload, declaration in zip(function['overloads'], matched)
               if function['kind'] == 'constructor' and len(matched) > 1):
            docs.append('`items` may be any sequence.')
        if not docs and member in SPECIAL_METHODS:
            docs = [textwrap.fill(SPECIAL_METHODS[member][2], 92)]
        if not docs and function['kind'] == 'constructor':  # the one that C++ provides
            docs = ['Makes an object with the default values.']
        return '\n\n'.join(docs)

    def documentation(self, function, name):
        """The signature lines and the header's text."""
        lines = []
        for signature in self.signatures(function):
            result = '' if function['kind'] == 'constructor' else ' -> ' + signature.shown_result
            line = '%s(%s)%s' % (name, ', '.join(signature.shown_parameters()), result)
            lines.append(wrapped(line))
        return re.sub(r'\bText\b', 'unicode', '\n'.join(lines)) + '\n\n' + self.text(function)

# SPDX-License-Identifier: MIT
"""What None does where a function takes it: that follows from the declared type of each parameter,
and for overloaded functions from which overload None chooses."""
import re

# What None does, by the kind of parameter.
EFFECTS = {
    'number': 'raises TypeError',
    'truth': 'is False',
    'text': 'is an empty text, then TypeError',
    'list': 'raises TypeError',
    'pointer': 'is a null pointer',
    'reference': 'raises ValueError',
    'object': 'raises TypeError',
    'comparison': 'is not equal',
}
TEXTS = 'ZString', 'ZString&', 'ZString const&'
# Which of them an overload must have in the place of None to be chosen by it.
TAKES_NONE = 'pointer', 'reference', 'object', 'comparison'


def target(native):
    """What a pointer or reference goes to."""
    return re.sub(r'\bconst\b|[&* ]', '', native)


class Arguments(object):
    """The effects, by the types of `signatures`."""

    def __init__(self, types):
        self.types = types

    def kind(self, native):
        if native == 'PyObject *':
            return 'object'
        bare = self.types.bare(native)
        if bare in TEXTS:
            return 'text'
        if bare == 'NameList':
            return 'list'
        common = self.types.common(bare)
        if common in ('int', 'float'):
            return 'number'
        if common == 'bool':
            return 'truth'
        is_function = native.endswith('FnPtr')
        return 'pointer' if bare.endswith('*') or is_function else 'reference'

    def chosen(self, function, overload, position, natives_of):
        """The overload that is called when None stands at the position of one."""
        natives = natives_of(overload)
        able = [other for other in function['overloads']
                if other['min'] <= overload['max'] <= other['max']]
        for other in able[:-1]:
            if all(self.kind(a) in TAKES_NONE if i == position else self.takes_the_same(a, b)
                   for i, (a, b) in enumerate(zip(natives_of(other), natives))):
                return other
        return able[-1]

    def takes_the_same(self, one, other):
        kind = self.kind(one)
        return kind == self.kind(other) and (kind not in ('pointer', 'reference')
                                             or target(one) == target(other))

    def effect(self, function, overload, position, natives_of, is_embedded=False):
        """What None does as the parameter at the position, the object not counted."""
        if is_embedded:
            return EFFECTS['reference']
        chosen = self.chosen(function, overload, position, natives_of)
        kind = self.kind(natives_of(chosen)[position])
        if kind == 'object' and function['member'] in ('__eq__', '__ne__'):
            kind = 'comparison'
        if kind == 'object' and 'PointerBuffer' in function['class'] and position == 1 and (
                function['member'] in ('set', '__setitem__')):
            kind = 'pointer'
        return EFFECTS[kind]

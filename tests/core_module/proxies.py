# SPDX-License-Identifier: MIT
"""Bare proxy classes for every class of a native module, without the companion layer."""


def _method(native):
    return lambda self, *arguments: native(self, *arguments)


def _initialiser(module, name):
    def initialise(self, *arguments):
        getattr(module, name + '_swiginit')(self, getattr(module, 'new_' + name)(*arguments))
    return initialise


def make_proxies(module):
    """Registers a proxy class for each class of the module; returns them by name."""
    suffix = '_swigregister'
    proxies = {}
    for name in [n[:-len(suffix)] for n in dir(module) if n.endswith(suffix)]:
        members = {n[len(name) + 1:]: getattr(module, n) for n in dir(module)
                   if n.startswith(name + '_') and '_swig' not in n}
        body = {}
        for member, native in members.items():
            if member.endswith('_get') and member[:-4] + '_set' in members:
                setter = members[member[:-4] + '_set']
                body[member[:-4]] = property(_method(native), _method(setter))
            elif callable(native):
                body[member] = _method(native)
        if hasattr(module, 'new_' + name):
            body['__init__'] = _initialiser(module, name)
        if hasattr(module, 'delete_' + name):
            body['__swig_destroy__'] = staticmethod(getattr(module, 'delete_' + name))
        proxies[name] = type(name, (object,), body)
        getattr(module, name + suffix)(proxies[name])
    return proxies

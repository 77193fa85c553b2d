# SPDX-License-Identifier: MIT
"""What all proxy classes have in common.

A proxy instance carries its native object in the instance attribute "this". Proxies that wrap a
result are made without __init__."""

import weakref

from _openquil_proxy import Method, PartProperty, Property, install  # noqa: F401


class _MissingThis(object):
    """Found instead of "this" where an instance has none: its __init__ did not call the base's."""

    def __get__(self, instance, owner):
        if instance is None:
            return self
        raise RuntimeError("'self' uninitialized, maybe you forgot to call %s.__init__."
                           % owner._native_class)


class Proxy(object):
    """The base of all proxy classes."""

    _native_class = 'Proxy'
    this = _MissingThis()

    @property
    def thisown(self):
        """True when Python destroys the native object together with its last proxy."""
        return self.this.own()

    @thisown.setter
    def thisown(self, value):
        self.this.own(value)

    def __repr__(self):
        name = '%s.%s' % (type(self).__module__, type(self).__name__)
        if 'this' not in self.__dict__:
            return '<%s; not initialised>' % name
        # The pointer object shows its type between quotation marks, and is the address as a number.
        return "<%s; proxy of native '%s' at 0x%x>" % (
            name, repr(self.this).split("'")[1], int(self.this))


def text_setter(native_set, text_class):
    """The setter of a native string, which also takes Python's strings."""
    def set(self, value):
        native_set(self, text_class(value) if isinstance(value, basestring) else value)
    return set


class _Loan(object):
    """A buffer that belongs to a native object; once it does no more, it is its own owner again."""

    def __init__(self, buffer):
        self.buffer = buffer

    def __del__(self):
        getattr(self.buffer, 'this', self.buffer).acquire()


def pointer_setter(native_set, name):
    """The setter of a pointer to numbers, which takes over the ownership of a buffer. Native
    objects do not free it: this one's proxy, or that of what it lies in, keeps it and gives it
    back."""
    def set(self, value):
        pointer = getattr(value, 'this', value)
        owned = hasattr(pointer, 'own') and pointer.own()
        native_set(self, value)
        whole = self
        while '_whole' in whole.__dict__:
            whole = whole._whole
        kept = whole.__dict__.setdefault('_kept', {})
        kept[int(self.this), name] = _Loan(value) if owned else value
    return set


def address(proxy):
    """The address of the native object, 0 for None."""
    return 0 if proxy is None else int(proxy.this)


def disown(native_disown, proxy):
    """Passes a director's native object to the host, which keeps the Python instance alive from
    now on. Returns a weak proxy, so that the caller's reference does not count."""
    proxy.this.disown()
    native_disown(proxy)
    return weakref.proxy(proxy)

# SPDX-License-Identifier: MIT
# The host knows only the native objects of the registered callbacks; the instances whose methods
# these call are kept here, by the native address.
_registered = {}

@staticmethod
def addCallback(callback, priority):
    """The Python instance is kept alive until it is removed."""
    address = _proxy.address(callback)
    _native.ZRenderCallback_addCallback(callback, priority)
    ZRenderCallback._registered[address] = callback

@staticmethod
def removeCallback(callback):
    address = _proxy.address(callback)
    _native.ZRenderCallback_removeCallback(callback)
    ZRenderCallback._registered.pop(address, None)

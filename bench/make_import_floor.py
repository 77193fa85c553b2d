# SPDX-License-Identifier: MIT
"""Writes the source of an extension module that has the rows and constants of _OpenQuilRender,
refers to the same symbols of the host and does nothing else: the least that importing such a module
can cost. Runs under Python 2.7."""
import ctypes
import subprocess
import sys

import _OpenQuilRender


class MethodDef(ctypes.Structure):
    _fields_ = [("name", ctypes.c_char_p), ("function", ctypes.c_void_p),
                ("flags", ctypes.c_int), ("doc", ctypes.c_char_p)]


class BuiltinFunction(ctypes.Structure):
    _fields_ = [("references", ctypes.c_ssize_t), ("type", ctypes.c_void_p),
                ("method", ctypes.POINTER(MethodDef))]


def flags(function):
    return BuiltinFunction.from_address(id(function)).method.contents.flags


def host_symbols():
    """The C++ names that the module takes from the host; the compiler's library versions its
    own."""
    listing = subprocess.check_output(["nm", "-D", "--undefined-only", _OpenQuilRender.__file__])
    names = [line.split()[-1] for line in listing.splitlines()]
    return [name for name in names if name.startswith("_Z") and "@" not in name]


SOURCE = """// The rows and constants of _OpenQuilRender, installed by hand.
#include <Python.h>

// Bound when the module is loaded, as the calls of its functions would be.
%s
__attribute__((used)) static const void *const host_symbols[] = {
%s
    nullptr};

static PyObject *nothing(PyObject *, PyObject *) { Py_RETURN_NONE; }

static PyMethodDef methods[] = {
%s
    {nullptr, nullptr, 0, nullptr}};

static const struct {
    const char *name;
    long value;
} constants[] = {
%s
};

extern "C" __attribute__((visibility("default"))) void init_import_floor() {
    PyObject *module = Py_InitModule("_import_floor", methods);
    if (!module)
        return;
    for (const auto &constant : constants)
        if (PyModule_AddIntConstant(module, constant.name, constant.value) < 0)
            return;
}
"""


def main(path):
    members = sorted(vars(_OpenQuilRender).items())
    rows = ['    {"%s", nothing, %d, nullptr},' % (name, flags(value))
            for name, value in members if isinstance(value, type(len))]
    constants = ['    {"%s", %dl},' % (name, value)
                 for name, value in members if type(value) is int]
    symbols = list(enumerate(host_symbols()))
    declarations = ['extern "C" char host_%d asm("%s");' % symbol for symbol in symbols]
    addresses = ["    &host_%d," % number for number, _ in symbols]
    with open(path, "w") as output:
        output.write(SOURCE % tuple("\n".join(part) for part in
                                    (declarations, addresses, rows, constants)))


if __name__ == "__main__":
    main(sys.argv[1])

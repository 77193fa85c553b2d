# SPDX-License-Identifier: MIT
"""What the tests of the built module share: the module itself, found beside the host program or on
the search path, native layouts, and pointer objects of any type, made without the host."""
import csv
import ctypes
import os
import subprocess
import unittest

for _name in os.environ.get('IMPORT_FIRST', '').split():
    __import__(_name)

import _OpenQuilRender as module

FOLDER = os.path.dirname(os.path.abspath(__file__))
NOARGS, O, VARARGS = 4, 8, 1


class TypeInfo(ctypes.Structure):
    _fields_ = [('name', ctypes.c_char_p), ('readable', ctypes.c_char_p),
                ('dcast', ctypes.c_void_p), ('cast', ctypes.c_void_p),
                ('clientdata', ctypes.c_void_p), ('owndata', ctypes.c_int)]


class ModuleInfo(ctypes.Structure):
    pass


ModuleInfo._fields_ = [('types', ctypes.POINTER(ctypes.POINTER(TypeInfo))),
                       ('size', ctypes.c_size_t), ('next', ctypes.POINTER(ModuleInfo))]


class PointerObject(ctypes.Structure):
    _fields_ = [('refcount', ctypes.c_ssize_t), ('type', ctypes.c_void_p),
                ('ptr', ctypes.c_void_p), ('ty', ctypes.POINTER(TypeInfo)),
                ('own', ctypes.c_int), ('next', ctypes.c_void_p)]


class MethodDef(ctypes.Structure):
    _fields_ = [('name', ctypes.c_char_p), ('function', ctypes.c_void_p),
                ('flags', ctypes.c_int), ('doc', ctypes.c_char_p)]


class BuiltinFunction(ctypes.Structure):
    _fields_ = [('refcount', ctypes.c_ssize_t), ('type', ctypes.c_void_p),
                ('definition', ctypes.POINTER(MethodDef))]


def ring():
    """The modules of the interpreter's type ring."""
    import swig_runtime_data4
    as_pointer = ctypes.pythonapi.PyCObject_AsVoidPtr
    as_pointer.restype, as_pointer.argtypes = ctypes.c_void_p, [ctypes.py_object]
    head = ModuleInfo.from_address(as_pointer(swig_runtime_data4.type_pointer))
    modules, current = [head], head.next.contents
    while ctypes.addressof(current) != ctypes.addressof(head):
        modules.append(current)
        current = current.next.contents
    return modules


def type_records():
    """Mangled names and records of all types that modules of the ring know."""
    return dict((m.types[i].contents.name, m.types[i]) for m in ring() for i in range(m.size))


def mangled(class_name):
    return '_p_' + class_name.replace(' ', '_').replace('::', '__')


def definition(function):
    return BuiltinFunction.from_address(id(function)).definition.contents


def pointer(class_name, address):
    """A borrowed pointer object of the type "class_name *"."""
    made = module.new_RV_PIXEL()
    layout = PointerObject.from_address(id(made))
    layout.ptr, layout.own = address, 0
    layout.ty = type_records()[mangled(class_name)]
    return made


room = ctypes.create_string_buffer(4096)  # stands in for objects that no call ever reaches


def placeholder(class_name):
    return pointer(class_name, ctypes.addressof(room))


class Test(unittest.TestCase):
    def assert_raises(self, error, text, function, *arguments):
        """The exact text."""
        with self.assertRaises(error) as caught:
            function(*arguments)
        self.assertEqual(str(caught.exception), text)


_pending = ctypes.pythonapi.PyErr_Occurred


def call(function, *arguments):
    """The result, and the text of the TypeError that the call left pending beside it, or None. The
    string arguments of host operations are the one place where both come together."""
    pending = _pending
    try:
        result = function(*arguments)
        pending()
    except TypeError as error:
        return result, str(error)
    return result, None


def run(code, *options):
    """Runs statements in another process of the running program, the host or the interpreter, which
    finds the module and these tests; returns its exit status, output and errors. Options are the
    program's."""
    program = os.readlink('/proc/self/exe')
    option = '--python-expr' if os.path.basename(program) == 'quilhost' else '-c'
    folders = os.path.dirname(os.path.abspath(module.__file__)), FOLDER
    child = subprocess.Popen([program] + list(options) + [option, code], stdout=subprocess.PIPE,
                             stderr=subprocess.PIPE,
                             env=dict(os.environ, PYTHONPATH=':'.join(folders)))
    output, errors = child.communicate()
    return child.returncode, output, errors


def table(name):
    """The lines of a table beside the tests."""
    with open(os.path.join(FOLDER, name), 'rb') as lines:
        return list(csv.reader((line for line in lines if line[:1] != '#'), delimiter='\t'))


def rows():
    """Every function of the table: name, flag, least and most arguments, declared types."""
    for name, flag, least, most, types in table('rows.tsv'):
        yield name, globals()[flag], int(least), int(most), types.split('; ') if types else []

// SPDX-License-Identifier: MIT
#pragma once

// What a wrapped class knows of its proxy class: how to build an instance around a pointer object
// and how to destroy a native object that Python owns. A type has one proxy class in the whole
// process: where several interpreters register theirs, the last one's serves them all.

#include <Python.h>

struct SwigPyClientData {
    PyObject *klass;   ///< the proxy class
    PyObject *newraw;  ///< its "__new__", or null for a classic class
    PyObject *newargs; ///< (klass,) where newraw is set, else klass itself
    PyObject *destroy; ///< its "__swig_destroy__", or null
    int delargs;       ///< 1: call destroy through the interpreter with a fresh pointer object
    int implicitconv;  ///< set while an implicit conversion through klass runs
};

/// Client data for a proxy class, never freed; null for a null class, and with an exception set
/// when memory is short. A class whose attributes cannot be looked up is one that lacks them.
SwigPyClientData *SwigPyClientData_New(PyObject *klass);

/// Drops the references at teardown, but for the one to the class. Null `newargs` are the mark of
/// that; `destroy` stays as it was, and is the class's to keep.
void SwigPyClientData_Release(SwigPyClientData *data);

/// The callable that destroys native objects (a new reference), or null; no exception is left.
/// Owned objects may outlive the teardown: then it is the class's attribute, if that is still the
/// callable that it was.
PyObject *SwigPyClientData_Destructor(const SwigPyClientData *data);

/// An instance of the proxy class that holds `pointer_object` as its "this", made without running
/// "__init__"; null when it could not be made.
PyObject *SWIG_Python_NewShadowInstance(SwigPyClientData *data, PyObject *pointer_object);

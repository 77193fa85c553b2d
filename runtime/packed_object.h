// SPDX-License-Identifier: MIT
#pragma once

// The interpreter object that holds a copy of a small block of bytes, for native values that are
// not plain pointers (member-function pointers, for instance).

#include "runtime/type_registry.h"

struct SwigPyPacked {
    PyObject_HEAD void *pack; ///< heap copy of the bytes
    swig_type_info *ty;       ///< the type of the value
    size_t size;              ///< in bytes
};

/// The type object, made ready on first use; null with an exception set when that fails.
PyTypeObject *SwigPyPacked_type();

/// True for packed objects of any module that carries a copy of the runtime.
bool SwigPyPacked_Check(PyObject *object);

/// A new object with a copy of `size` bytes; null when memory is short.
PyObject *SwigPyPacked_New(const void *bytes, size_t size, swig_type_info *type);

// SPDX-License-Identifier: MIT
#pragma once

// What the type objects of the binding have in common.

#include <Python.h>

namespace binding {

/// What the runtime's types say of themselves.
inline constexpr char kPointerDoc[] = "Swig object carries a C/C++ instance pointer";

/// A type of that name whose objects have `size` bytes; the slots are the caller's to fill.
constexpr PyTypeObject static_type(const char *name, Py_ssize_t size, const char *doc = nullptr) {
    PyTypeObject type{};
    type.ob_refcnt = 1;
    type.ob_type = &PyType_Type;
    type.tp_name = name;
    type.tp_basicsize = size;
    type.tp_getattro = PyObject_GenericGetAttr;
    type.tp_flags = Py_TPFLAGS_DEFAULT;
    type.tp_doc = doc;
    return type;
}

/// Prepares a type for use, where that was not done yet; itself, or null with an exception set when
/// memory is short.
PyTypeObject *ready(PyTypeObject &type);

} // namespace binding

// SPDX-License-Identifier: MIT
#pragma once

// The interpreter object that holds one native pointer. A proxy instance keeps it as its "this".

#include "runtime/type_registry.h"

struct SwigPyObject {
    PyObject_HEAD void *ptr; ///< the native object
    swig_type_info *ty;      ///< its type record
    int own;                 ///< 1 when dropping this object destroys the native one
    PyObject *next;          ///< further pointer object of the same proxy instance, or null
};

/// The type object, made ready on first use; null with an exception set when that fails.
PyTypeObject *SwigPyObject_type();

namespace binding {

/// The type object's storage, for comparisons only.
extern PyTypeObject pointer_object_type;

/// The type object of the last other module that a pointer object came from, or null. Most host
/// objects are made by the core module.
extern PyTypeObject *other_pointer_object_type;

/// True for a pointer object of exactly that type, the usual argument, which needs no conversion.
[[gnu::always_inline]] inline bool is_bare_pointer(PyObject *object, const swig_type_info *type) {
    const PyTypeObject *kind = Py_TYPE(object);
    return (kind == &pointer_object_type || kind == other_pointer_object_type) &&
           reinterpret_cast<SwigPyObject *>(object)->ty == type;
}

} // namespace binding

/// True for pointer objects of this module and, by the type's name, of any other module that
/// carries a copy of the runtime. A Python class of that name is none.
bool SwigPyObject_Check(PyObject *object);

/// A new pointer object; null when memory is short.
PyObject *SwigPyObject_New(void *pointer, swig_type_info *type, int own);

/// Stores `next` (a new reference is taken) as the following pointer object of the chain.
/// Null, with no exception set, when `next` is not a pointer object.
PyObject *SwigPyObject_append(PyObject *self, PyObject *next);

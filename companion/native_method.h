// SPDX-License-Identifier: MIT
#pragma once

// What the proxy classes have for methods: callables that go straight to a flat function of a
// native module, without a frame of the interpreter. To scripts they are functions: they bind to
// instances, take named arguments and defaults, have a documentation and a signature that inspect
// and help() read.

#include <Python.h>

namespace companion {

/// The type, made ready; null with an exception set. Its constructor is
///     Method(function, name, parameters, doc, defaults=(), part=False, checks_this=False,
///     init=None)
/// `function` is the flat function. `parameters` are names between ", ", the object's first, or
/// "*args" at the end for those of overloads; the last ones have the defaults. With `part`, what it
/// returns may lie inside the object. With `checks_this`, an instance without "this" raises. With
/// `init`, the class's "swiginit", it is the constructor: `function` is called without the
/// instance, which then gets what it returns.
PyTypeObject *method_type();

bool is_native_method(const PyObject *object);

/// What calling the method object does.
PyObject *call_native_method(PyObject *method, PyObject *arguments, PyObject *named);

/// Constructs an instance by the method, its class's constructor; false with an exception set.
bool construct(PyObject *method, PyObject *instance, PyObject *arguments, PyObject *named);

} // namespace companion

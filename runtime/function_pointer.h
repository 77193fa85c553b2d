// SPDX-License-Identifier: MIT
#pragma once

// Native function pointers in Python values. A Python callable is never turned into one: only what
// native code handed out as a function pointer is accepted.

#include "runtime/type_registry.h"

/// Finds the function pointer of type `type` that `object` stands for. A built-in function may
/// carry one in its documentation, behind the marker "swig_ptr: ": either "NULL", or the pointer's
/// own bytes and the name of a type that converts. Anything else is converted as a pointer object.
/// Returns a result code; no exception is left pending.
int SWIG_Python_ConvertFunctionPtr(PyObject *object, void **pointer, swig_type_info *type);

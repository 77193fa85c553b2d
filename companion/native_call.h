// SPDX-License-Identifier: MIT
#pragma once

// Calls of flat functions without the interpreter's detour.

#include <Python.h>

namespace companion {

/// Calls a built-in with what its flags want: a tuple, one object, or null. A profile function is
/// told as the interpreter tells it. What the function leaves pending beside its result (it goes on
/// with an empty text where it got none) is raised.
PyObject *call_native(PyObject *function, PyObject *argument);

} // namespace companion

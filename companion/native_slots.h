// SPDX-License-Identifier: MIT
#pragma once

// Short ways from operators to the native methods of a class.

#include <Python.h>

namespace companion {

/// install(cls) gives a class, which it returns, whose special methods are native ones slots that
/// call them directly, for construction, items, len() and the arithmetic that has no reflected
/// method. A subclass, and a class whose special method a script replaces, gets the interpreter's
/// own slots from it.
PyObject *install_slots(PyObject *self, PyObject *klass);

} // namespace companion

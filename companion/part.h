// SPDX-License-Identifier: MIT
#pragma once

// Borrowed objects that may lie inside other native objects.

#include <Python.h>

namespace companion {

/// Makes the proxy of a part keep the proxy of the whole, which may keep what belongs to both, and
/// the whole's pointer object, which keeps the memory even where a script takes it away from its
/// proxy. Takes the reference to `result` over and returns it; null, with an exception set, when
/// memory is short. What is no proxy stays as it is.
PyObject *keep_whole(PyObject *whole, PyObject *result);

} // namespace companion

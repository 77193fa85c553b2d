// SPDX-License-Identifier: MIT
#pragma once

// Calls of flat functions without the interpreter's detour.

#include <Python.h>

namespace companion {

inline PyObject *call_unseen(PyObject *function, PyObject *argument) {
    return PyCFunction_GET_FUNCTION(function)(PyCFunction_GET_SELF(function), argument);
}

/// The same, told to a profile function as the interpreter tells it.
PyObject *call_seen(PyThreadState *state, PyObject *function, PyObject *argument);

/// Calls a built-in with what its flags want: a tuple, one object, or null. What it leaves pending
/// beside its result (a native function goes on with an empty text where it got none) is raised.
inline PyObject *call_native(PyObject *function, PyObject *argument) {
    PyThreadState *state = PyThreadState_GET();
    PyObject *result =
        state->use_tracing ? call_seen(state, function, argument) : call_unseen(function, argument);
    if (result && state->curexc_type) [[unlikely]]
        Py_CLEAR(result);
    return result;
}

} // namespace companion

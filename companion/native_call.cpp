// SPDX-License-Identifier: MIT
#include "companion/native_call.h"

namespace companion {
namespace {

/// Tells the profile function, which is not itself profiled; false with its exception set. Profile
/// functions rely on a frame, and there is none where the host calls a callback's own method.
bool tell(PyThreadState *state, int event, PyObject *function) {
    if (!state->c_profilefunc || state->tracing || !state->frame)
        return true;
    ++state->tracing;
    state->use_tracing = 0;
    const int failed = state->c_profilefunc(state->c_profileobj, state->frame, event, function);
    state->use_tracing = state->c_tracefunc || state->c_profilefunc;
    --state->tracing;
    return !failed;
}

} // namespace

PyObject *call_seen(PyThreadState *state, PyObject *function, PyObject *argument) {
    if (!tell(state, PyTrace_C_CALL, function))
        return nullptr;
    PyObject *result = call_unseen(function, argument);
    if (result) {
        if (!tell(state, PyTrace_C_RETURN, function))
            Py_CLEAR(result);
        return result;
    }
    PyObject *type, *value, *traceback;
    PyErr_Fetch(&type, &value, &traceback);
    if (tell(state, PyTrace_C_EXCEPTION, function)) {
        PyErr_Restore(type, value, traceback);
        return nullptr;
    }
    Py_XDECREF(type);
    Py_XDECREF(value);
    Py_XDECREF(traceback);
    return nullptr;
}

} // namespace companion

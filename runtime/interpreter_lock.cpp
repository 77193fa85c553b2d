// SPDX-License-Identifier: MIT
#include "runtime/interpreter_lock.h"

#include <Python.h>
#include <pythread.h>

bool has_interpreter_lock() {
    // The state that runs may be another thread's and go away at any moment: who does not know
    // better compares its address only.
    PyThreadState *const own = PyGILState_GetThisThreadState();
    PyThreadState *const running = _PyThreadState_Current;
    if (!own || !running || own == running) [[likely]]
        return own && running;
    // A thread has one more state in each further interpreter that it runs; there its number tells.
    PyInterpreterState *const latest = PyInterpreterState_Head();
    return latest && PyInterpreterState_Next(latest) &&
           running->thread_id == PyThread_get_thread_ident();
}

// SPDX-License-Identifier: MIT
#include "devhost/process/InterpreterGate.h"

#include "host/base/TpythonLock.h"

#include <pythread.h>

#include <chrono>
#include <thread>

namespace devhost {
namespace {
std::atomic<bool> closed{false};
std::atomic<int> entering{0}; ///< threads that passed and are not among the lock's holders yet
} // namespace

// A thread that does not have the lock must not look into the state that runs, which may go away at
// any moment: the address has to do.
bool runsUsualState() {
    PyThreadState *const usual = PyGILState_GetThisThreadState();
    return usual && usual == _PyThreadState_Current;
}

// Only their contents tell whose the states of further interpreters are.
bool runsFurtherState() {
    PyInterpreterState *const latest = PyInterpreterState_Head();
    PyThreadState *const current = _PyThreadState_Current;
    return latest && PyInterpreterState_Next(latest) && current &&
           current->thread_id == PyThread_get_thread_ident();
}

bool runsInterpreter() {
    if (runsUsualState())
        return true;
    if (!passGate())
        return false;
    const bool runs = runsFurtherState();
    passedGate();
    return runs;
}

bool passGate() {
    // Announced before looking: who closes the gate sees either this thread or its refusal.
    ++entering;
    if (!closed && Py_IsInitialized())
        return true;
    --entering;
    return false;
}

void passedGate() {
    --entering;
}

void endInterpreter() {
    closed = true;
    PyThreadState *const state = PyEval_SaveThread();
    // In this order: threads leave the first count only after they entered the second.
    while (entering || TpythonLock::fsCapturedCount)
        std::this_thread::sleep_for(std::chrono::microseconds(100));
    PyEval_RestoreThread(state);
    Py_Finalize();
    closed = false;
}

} // namespace devhost

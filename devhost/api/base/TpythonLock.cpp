#include "host/base/TpythonLock.h"

#include "devhost/process/InterpreterGate.h"
#include "host/base/TpythonObjectWithLock.h"

#include <pythread.h>
#include <unistd.h>

__thread TpythonThread tPythonThread;
bool pythonMainThreadIsLocked = false;
std::atomic<int> TpythonLock::fsCapturedCount{0};
wchar_t sPythonObjectCharConvertBuffer[kPythonObjectCharConvertBufferSize];

namespace {

/// Remembers the state that this thread runs the interpreter with, when it does.
bool remember(PyThreadState *state, bool runs) {
    tPythonThread = {state, PyThread_get_thread_ident()};
    return runs;
}

/// True when this thread runs the interpreter under its usual state. A thread that does not have
/// the lock must not look into the state that runs, which may go away at any moment: the address
/// has to do.
bool runs_usual_state() {
    PyThreadState *const usual = PyGILState_GetThisThreadState();
    return remember(usual, usual && usual == _PyThreadState_Current);
}

/// The same under another state: this thread's in a further interpreter. Only their contents tell
/// whose such states are.
bool runs_further_state() {
    PyInterpreterState *const latest = PyInterpreterState_Head();
    PyThreadState *const current = _PyThreadState_Current;
    return latest && PyInterpreterState_Next(latest) && current &&
           current->thread_id == PyThread_get_thread_ident() && remember(current, true);
}

bool is_main_thread() {
    return gettid() == getpid();
}

} // namespace

void TpythonLock::initLock(TpythonLockingInfo info) {
    // A thread that has the lock keeps it to the interpreter's very end, gate or not.
    if (info == kPythonDontLock || captured_ || runs_usual_state() || !devhost::passGate())
        return;
    if (runs_further_state())
        return devhost::passedGate();
    state_ = PyGILState_Ensure();
    tPythonThread = {_PyThreadState_Current, PyThread_get_thread_ident()};
    captured_ = true;
    ++fsCapturedCount;
    devhost::passedGate();
    if (is_main_thread() && !pythonMainThreadIsLocked)
        pythonMainThreadIsLocked = markedMainThread_ = true;
}

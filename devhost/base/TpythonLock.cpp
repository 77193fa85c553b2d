#include "host/base/TpythonLock.h"
#include "devhost/base/InterpreterGate.h"
#include "host/base/TpythonObjectWithLock.h"

#include <pythread.h>
#include <unistd.h>

__thread TpythonThread tPythonThread;
bool pythonMainThreadIsLocked = false;
std::atomic<int> TpythonLock::fsCapturedCount{0};
wchar_t sPythonObjectCharConvertBuffer[kPythonObjectCharConvertBufferSize];

namespace {

bool has_several_interpreters() {
    return PyInterpreterState_Next(PyInterpreterState_Head());
}

/// True when this thread runs the interpreter, under whichever of its states. A thread that does
/// not have the lock must not look into the state that runs, which may go away at any moment; with
/// one interpreter it has only one state to compare the address with. In further interpreters the
/// thread has states that only tell by their contents whose they are.
bool this_thread_has_lock() {
    PyThreadState *const current = _PyThreadState_Current;
    PyThreadState *const usual = PyGILState_GetThisThreadState();
    const long ident = PyThread_get_thread_ident();
    const bool held = current && (current == usual ||
                                  (has_several_interpreters() && current->thread_id == ident));
    tPythonThread = {held ? current : usual, ident};
    return held;
}

bool is_main_thread() {
    return gettid() == getpid();
}

} // namespace

void TpythonLock::initLock(TpythonLockingInfo info) {
    // A thread that has the lock keeps it to the interpreter's very end, gate or not.
    if (info == kPythonDontLock || fCaptured || this_thread_has_lock() || !devhost::passGate())
        return;
    fState = PyGILState_Ensure();
    tPythonThread = {_PyThreadState_Current, PyThread_get_thread_ident()};
    fCaptured = true;
    ++fsCapturedCount;
    devhost::passedGate();
    if (is_main_thread() && !pythonMainThreadIsLocked)
        pythonMainThreadIsLocked = fMarkedMainThread = true;
}

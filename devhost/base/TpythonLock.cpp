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

/// Compares addresses only: a thread that does not have the lock must not look into the state that
/// runs.
bool this_thread_has_lock() {
    tPythonThread = {PyGILState_GetThisThreadState(), PyThread_get_thread_ident()};
    return tPythonThread.state && tPythonThread.state == _PyThreadState_Current;
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

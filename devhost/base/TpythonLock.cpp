#include "host/base/TpythonLock.h"
#include "host/base/TpythonObjectWithLock.h"

#include <unistd.h>

bool pythonMainThreadIsLocked = false;
std::atomic<int> TpythonLock::fsCapturedCount{0};
wchar_t sPythonObjectCharConvertBuffer[kPythonObjectCharConvertBufferSize];

namespace {

/// Compares addresses only: the current state belongs to whichever thread has the lock and may go
/// away at any moment, so a thread that does not have the lock must not look inside it.
bool this_thread_has_lock() {
    PyThreadState *current = _PyThreadState_Current;
    return current && current == PyGILState_GetThisThreadState();
}

bool is_main_thread() {
    return gettid() == getpid();
}

} // namespace

void TpythonLock::initLock(TpythonLockingInfo info) {
    if (info == kPythonDontLock || fCaptured || !Py_IsInitialized() || this_thread_has_lock())
        return;
    fState = PyGILState_Ensure();
    fCaptured = true;
    ++fsCapturedCount;
    if (is_main_thread() && !pythonMainThreadIsLocked)
        pythonMainThreadIsLocked = fMarkedMainThread = true;
}

#include "host/base/TpythonLock.h"

#include "devhost/process/InterpreterGate.h"
#include "host/base/TpythonObjectWithLock.h"

#include <unistd.h>

bool pythonMainThreadIsLocked = false;
std::atomic<int> TpythonLock::fsCapturedCount{0};
wchar_t sPythonObjectCharConvertBuffer[kPythonObjectCharConvertBufferSize];

namespace {

bool isMainThread() {
    return gettid() == getpid();
}

} // namespace

void TpythonLock::initLock(TpythonLockingInfo info) {
    // A thread that has the lock keeps it to the interpreter's very end, gate or not.
    if (info == kPythonDontLock || captured_ || devhost::runsUsualState() || !devhost::passGate())
        return;
    if (devhost::runsFurtherState())
        return devhost::passedGate();
    state_ = PyGILState_Ensure();
    captured_ = true;
    ++fsCapturedCount;
    devhost::passedGate();
    if (isMainThread() && !pythonMainThreadIsLocked)
        pythonMainThreadIsLocked = markedMainThread_ = true;
}

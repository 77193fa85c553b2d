// SPDX-License-Identifier: MIT
// The holder of the interpreter lock, as the development host fills it in.
//
// Holders nest: a wrapper is called with the lock, and takes holders of its own around reference
// changes and reads of text. What a new holder does depends on the thread it is made on:
//
//   the thread ...                                    the holder
//   has the lock, under its usual thread state        captures nothing: PyGILState_Ensure would
//                                                     count up and down to no effect
//   has it under the state of a further interpreter   captures nothing: PyGILState_Ensure knows
//                                                     usual states only, and would wait for ever
//   does not have it                                  captures: PyGILState_Ensure waits for the
//                                                     lock, and makes a state for a host thread
//                                                     that was never in the interpreter
//   does not have it, and the interpreter is ending   captures nothing: the gate refuses
//
// A holder that captured nothing releases nothing, so holders end in the reverse order of captures
// without any count. The last line is what a late thread sees: its holder looks like any other, and
// whoever must know whether there is an interpreter to touch asks afterwards (runsInterpreter here,
// has_interpreter_lock in the binding). fsCapturedCount counts the holders of the third line; the
// end of the interpreter waits until it is zero.

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

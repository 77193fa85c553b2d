#include "devhost/process/InterpreterGate.h"

#include "host/base/TpythonLock.h"

#include <chrono>
#include <thread>

namespace devhost {
namespace {
std::atomic<bool> closed{false};
std::atomic<int> entering{0}; ///< threads that passed and are not among the lock's holders yet
} // namespace

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

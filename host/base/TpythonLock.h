// SPDX-License-Identifier: MIT
#pragma once

// The host's holder of the interpreter lock.

#include "host/base/HostApi.h"

#include <Python.h>

#include <atomic>

/// How TpythonLock::initLock is to take the interpreter lock.
enum TpythonLockingInfo {
    kPythonDontLock = 0, ///< leave the lock alone
    kPythonTryLock = 1,  ///< take the lock unless the interpreter is not running
    kPythonLock = 2      ///< take the lock, where there is an interpreter to enter
};

/// True while a holder that runs on the main thread has captured the interpreter lock.
extern OPENQUIL_API bool pythonMainThreadIsLocked;

/// Holds the interpreter lock for the length of a block. A holder captures the lock only where its
/// thread does not have it yet; a holder that captured nothing releases nothing.
class OPENQUIL_API TpythonLock {
  public:
    explicit TpythonLock(TpythonLockingInfo info) { initLock(info); }
    ~TpythonLock() {
        if (!captured_)
            return;
        if (markedMainThread_)
            pythonMainThreadIsLocked = false;
        PyGILState_Release(state_);
        --fsCapturedCount;
    }
    TpythonLock(const TpythonLock &) = delete;
    TpythonLock &operator=(const TpythonLock &) = delete;

    /// Captures the lock if this thread does not have it.
    void initLock(TpythonLockingInfo info);

    /// Number of holders that have the lock captured at this moment, on all threads.
    static std::atomic<int> fsCapturedCount;

  private:
    bool markedMainThread_ = false;
    bool captured_ = false;
    PyGILState_STATE state_ = PyGILState_UNLOCKED;
};

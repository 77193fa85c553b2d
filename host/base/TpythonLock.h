#pragma once

#include "host/base/HostApi.h"

#include <Python.h>
#include <atomic>

/// How TpythonLock::initLock is to take the interpreter lock.
enum TpythonLockingInfo {
    kPythonDontLock = 0, ///< leave the lock alone
    kPythonTryLock = 1,  ///< take the lock unless the interpreter is not running
    kPythonLock = 2      ///< take the lock; the interpreter is known to run
};

/// True while a holder that runs on the main thread has captured the interpreter lock.
extern OPENQUIL_API bool pythonMainThreadIsLocked;

/// Holds the interpreter lock for the length of a block. A holder captures the lock only where its
/// thread does not have it yet; a holder that captured nothing releases nothing.
class OPENQUIL_API TpythonLock {
  public:
    explicit TpythonLock(TpythonLockingInfo info) { initLock(info); }
    ~TpythonLock() { release(); }
    TpythonLock(const TpythonLock &) = delete;
    TpythonLock &operator=(const TpythonLock &) = delete;

    void initLock(TpythonLockingInfo info);

    /// Number of holders that have the lock captured at this moment, on all threads.
    static std::atomic<int> fsCapturedCount;

  private:
    void release() {
        if (!fCaptured)
            return;
        if (fMarkedMainThread)
            pythonMainThreadIsLocked = false;
        PyGILState_Release(fState);
        --fsCapturedCount;
    }

    bool fMarkedMainThread = false;
    bool fCaptured = false;
    PyGILState_STATE fState = PyGILState_UNLOCKED;
};

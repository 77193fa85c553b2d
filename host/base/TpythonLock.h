#pragma once

#include "host/base/HostApi.h"

#include <Python.h>

#include <atomic>

/// How TpythonLock::initLock is to take the interpreter lock.
enum TpythonLockingInfo {
    kPythonDontLock = 0, ///< leave the lock alone
    kPythonTryLock = 1,  ///< take the lock unless the interpreter is not running
    kPythonLock = 2      ///< take the lock; isHeld tells whether there was an interpreter to enter
};

/// What the lock remembers of this thread: see TpythonLock::isHeld.
struct TpythonThread {
    PyThreadState *state; ///< the interpreter's state of this thread when it was last looked up
    long ident;           ///< the interpreter's number for this thread
};

extern OPENQUIL_API __thread TpythonThread tPythonThread __attribute__((tls_model("initial-exec")));

/// True while a holder that runs on the main thread has captured the interpreter lock.
extern OPENQUIL_API bool pythonMainThreadIsLocked;

/// Holds the interpreter lock for the length of a block. A holder captures the lock only where its
/// thread does not have it yet; a holder that captured nothing releases nothing.
class OPENQUIL_API TpythonLock {
  public:
    explicit TpythonLock(TpythonLockingInfo info) {
        if (!isHeld()) [[unlikely]]
            initLock(info);
    }
    ~TpythonLock() { release(); }
    TpythonLock(const TpythonLock &) = delete;
    TpythonLock &operator=(const TpythonLock &) = delete;

    /// Captures the lock if this thread does not have it.
    void initLock(TpythonLockingInfo info);

    /// True when this thread is known to have the lock. The state that runs may belong to another
    /// thread and go away at any moment, so it is looked into only when it is the one that this
    /// thread saw last; its thread then tells whether the address was given to another since.
    static bool isHeld() {
        PyThreadState *current = _PyThreadState_Current;
        return current && current == tPythonThread.state &&
               current->thread_id == tPythonThread.ident;
    }

    /// Number of holders that have the lock captured at this moment, on all threads.
    static std::atomic<int> fsCapturedCount;

  private:
    void release() {
        if (!captured_)
            return;
        if (markedMainThread_)
            pythonMainThreadIsLocked = false;
        // The interpreter may give this thread's state to the next one that comes.
        tPythonThread.state = nullptr;
        PyGILState_Release(state_);
        --fsCapturedCount;
    }

    bool markedMainThread_ = false;
    bool captured_ = false;
    PyGILState_STATE state_ = PyGILState_UNLOCKED;
};

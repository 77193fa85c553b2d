// SPDX-License-Identifier: MIT
#pragma once

// Ends a process that does not come to its end, and says how far it had come.

#include "host/base/TpythonLock.h"

#include <frameobject.h>

#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <thread>

namespace threadtest {

constexpr unsigned kThreads = 16;

/// How far one host thread has come.
struct Progress {
    std::atomic<const char *> kind{nullptr};
    std::atomic<unsigned> made{0};
    std::atomic<bool> inside{false};
};
inline std::array<Progress, kThreads> progress;

/// A number that the environment may set, for the long forms of the tests.
inline unsigned amount(const char *name, unsigned otherwise) {
    const char *text = std::getenv(name);
    return text ? static_cast<unsigned>(std::atoi(text)) : otherwise;
}

/// Aborts with a report unless it is destroyed within its limit.
class Watchdog {
  public:
    explicit Watchdog(std::chrono::milliseconds limit)
        : thread_([this, limit] {
              std::unique_lock lock(mutex_);
              if (over_.wait_for(lock, limit, [this] { return isOver_; }))
                  return;
              report();
              std::abort();
          }) {}
    ~Watchdog() {
        {
            const std::lock_guard lock(mutex_);
            isOver_ = true;
        }
        over_.notify_one();
        thread_.join();
    }

  private:
    /// Without the interpreter lock, which a stuck thread may have.
    static void report() {
        std::fprintf(stderr, "watchdog: stuck; %d holders have the lock captured, main %d\n",
                     TpythonLock::fsCapturedCount.load(), pythonMainThreadIsLocked);
        for (const Progress &each : progress)
            if (const char *kind = each.kind)
                std::fprintf(stderr, "watchdog: %s: %u calls made%s\n", kind, each.made.load(),
                             each.inside ? ", inside one" : "");
        PyInterpreterState *interpreter = PyInterpreterState_Head();
        PyThreadState *state = interpreter ? PyInterpreterState_ThreadHead(interpreter) : nullptr;
        for (; state; state = PyThreadState_Next(state)) {
            std::fprintf(stderr, "watchdog: thread %lx%s", state->thread_id,
                         state == _PyThreadState_Current ? " has the lock" : "");
            for (PyFrameObject *frame = state->frame; frame; frame = frame->f_back)
                std::fprintf(stderr, " < %s:%d", PyString_AS_STRING(frame->f_code->co_name),
                             PyFrame_GetLineNumber(frame));
            std::fputs("\n", stderr);
        }
    }

    std::mutex mutex_;
    std::condition_variable over_;
    bool isOver_ = false;
    std::thread thread_;
};

} // namespace threadtest

// SPDX-License-Identifier: MIT
#pragma once

// The embedded Python interpreter and the user's script in it.

#include "devhost/app/CommandLine.h"

struct _ts; // NOLINT(bugprone-reserved-identifier): the interpreter's name for a thread state

namespace quilhost {

/// How a piece of script code ended.
struct ScriptEnd {
    enum Kind { kDone, kExited, kFailed, kInterrupted } kind = kDone;
    /// The code to end the process with, unless kDone.
    int exitCode = 0;
};

/// Starts the interpreter and ends it. Everything happens on the main thread, which has the
/// interpreter lock except within a NativeSection.
class Script {
  public:
    explicit Script(const Options &options);
    ~Script();
    Script(const Script &) = delete;
    Script &operator=(const Script &) = delete;

    /// Runs the script's file or expression. sys.exit(0) is a normal end.
    ScriptEnd run();
    /// True when the script has defined a function render(frame).
    bool definesRender() const;
    ScriptEnd render(int frame);

    /// True when a callback reported KeyboardInterrupt.
    static bool wasInterrupted();
    /// Script exceptions reported by callbacks.
    static unsigned reportedErrors();

  private:
    const Options &options_;
};

/// Gives the interpreter lock away while native code runs.
class NativeSection {
  public:
    NativeSection();
    ~NativeSection();
    NativeSection(const NativeSection &) = delete;
    NativeSection &operator=(const NativeSection &) = delete;

  private:
    _ts *state_;
};

} // namespace quilhost

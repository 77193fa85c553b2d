// SPDX-License-Identifier: MIT
#pragma once

// What the process says when a fatal signal ends it: which signal, in which native function, and
// where in which script. All of it is written by the signal's handler, which calls nothing that
// could wait for a lock or ask for memory.

#include "devhost/util/SafeText.h"

namespace devhost {

/// Adds what is known of an address to the text; false where nothing is.
using ExplainAddress = bool (*)(SafeText &text, uintptr_t address);

/// From now on SIGSEGV, SIGBUS, SIGFPE, SIGILL and SIGABRT are reported on what is the standard
/// error output now, and then end the process as they always do; `last` is called before that.
/// Signals that have a handler, as a sanitizer's, keep it. Gives this thread an AlternateStack.
void startCrashReports(ExplainAddress explain, void (*last)() noexcept);

/// Room for the handler on a thread whose own stack may be used up, as long as it lives there.
class AlternateStack {
  public:
    AlternateStack();
    ~AlternateStack();
    AlternateStack(const AlternateStack &) = delete;
    AlternateStack &operator=(const AlternateStack &) = delete;

  private:
    void *memory_;
};

} // namespace devhost

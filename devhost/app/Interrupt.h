// SPDX-License-Identifier: MIT
#pragma once

// The signals that interrupt or end the program.

#include <csignal>

namespace quilhost {

/// As long as it lives, SIGINT stops the software renderer and what else looks for it. The signals
/// that end a program take half-written files with them; a file that grows too large fails to be
/// written. Signals that whoever started the program ignores stay ignored.
class SignalScope {
  public:
    SignalScope();
    ~SignalScope();
    SignalScope(const SignalScope &) = delete;

  private:
    struct Earlier {
        int signal;
        struct sigaction action;
    };
    Earlier earlier_[4];
};

/// Interrupts while native code runs beside an interpreter: as long as it lives, SIGINT stops the
/// renderer and raises KeyboardInterrupt in the next script code. Afterwards the interpreter's own
/// handling is back.
class InterruptScope {
  public:
    InterruptScope();
    ~InterruptScope();
    InterruptScope(const InterruptScope &) = delete;

  private:
    struct sigaction earlier_;
};

/// Within a SignalScope, for the start of the interpreter: it takes SIGINT over. One that comes
/// before it is ready to raise KeyboardInterrupt stops the renderer, as within a SignalScope.
class InterruptHandover {
  public:
    InterruptHandover();
    ~InterruptHandover();
    InterruptHandover(const InterruptHandover &) = delete;

  private:
    sigset_t earlier_;
};

} // namespace quilhost

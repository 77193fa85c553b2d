// SPDX-License-Identifier: MIT
#pragma once

// The signals that interrupt or end the program.

#include "devhost/app/Errors.h"

#include <csignal>

namespace quilhost {

/// As long as it lives, SIGINT and SIGTERM stop the software renderer and what else looks for it.
/// SIGHUP ends the program and takes half-written files with it; a file that grows too large fails
/// to be written. Signals that whoever started the program ignores stay ignored.
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

/// Interrupts while native code runs beside an interpreter: as long as it lives, SIGINT and SIGTERM
/// stop the renderer as well as the next script code, as the interpreter handles them. Afterwards
/// the interpreter's own handling is back.
class InterruptScope {
  public:
    InterruptScope();
    ~InterruptScope();
    InterruptScope(const InterruptScope &) = delete;

  private:
    struct sigaction earlier_[2];
};

/// Within a SignalScope, for the start of the interpreter: it takes SIGINT and SIGTERM over. One
/// that comes before it is ready to raise an exception stops the renderer, as within a SignalScope.
class InterruptHandover {
  public:
    InterruptHandover();
    ~InterruptHandover();
    InterruptHandover(const InterruptHandover &) = delete;

  private:
    sigset_t earlier_;
};

/// What the signal does as long as there is no interpreter.
void stopEverything(int signal);

/// How the program ends after an interrupt: by the latest signal's code.
ExitCode interruptCode();

} // namespace quilhost

#pragma once

// The interrupt key while native code runs.

#include <csignal>

namespace quilhost {

/// While it lives, SIGINT stops the software renderer and, when the interpreter runs, raises
/// KeyboardInterrupt in the next script code. Afterwards the earlier handling is back.
class InterruptScope {
  public:
    explicit InterruptScope(bool withInterpreter);
    ~InterruptScope();
    InterruptScope(const InterruptScope &) = delete;
    InterruptScope &operator=(const InterruptScope &) = delete;

  private:
    struct sigaction earlier_;
};

} // namespace quilhost

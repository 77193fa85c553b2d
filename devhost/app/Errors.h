// SPDX-License-Identifier: MIT
#pragma once

// How the program ends.

#include <stdexcept>
#include <string>

namespace quilhost {

enum ExitCode {
    kOk = 0,
    kScriptError = 1,
    kUsageError = 2,
    kRenderError = 3,
    kCallbackError = 4,
    kLeaked = 5,
    kInterrupted = 130,
    kTerminated = 143
};

/// Ends the program with one line on standard error.
class Failure : public std::runtime_error {
  public:
    Failure(ExitCode code, const std::string &line) : std::runtime_error(line), code_(code) {}
    ExitCode code() const { return code_; }

  private:
    ExitCode code_;
};

} // namespace quilhost

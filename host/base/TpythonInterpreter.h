// SPDX-License-Identifier: MIT
#pragma once

#include "host/base/HostApi.h"

/// The host's own interpreter object: where failures inside script callbacks are reported.
class OPENQUIL_API TpythonInterpreter {
  public:
    TpythonInterpreter();

    /// The one instance, or null until something needs it.
    static TpythonInterpreter *fsInterpreter;

    /// Writes the pending exception and its traceback to the script's standard error and clears
    /// it. SystemExit is reported like any other exception: a callback does not end the host.
    /// The caller holds the interpreter lock.
    void catchAndReportException();
};

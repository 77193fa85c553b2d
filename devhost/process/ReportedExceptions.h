// SPDX-License-Identifier: MIT
#pragma once

// What TpythonInterpreter::catchAndReportException has seen.

#include "host/base/HostApi.h"

namespace devhost {

/// Number of exceptions reported so far in this process.
OPENQUIL_API unsigned reportedExceptions();

/// True once a reported exception was KeyboardInterrupt.
OPENQUIL_API bool interruptReported();

/// From now on scripts end because the program does: a SystemExit is not worth a report.
OPENQUIL_API void expectExits();

} // namespace devhost

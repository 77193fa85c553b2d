#pragma once

// Which threads may still enter the interpreter while it ends.

#include "host/base/HostApi.h"

namespace devhost {

/// Lets a thread on its way to the interpreter lock through, unless there is no interpreter or it
/// is about to end. Passed threads must call passedGate when they count as holders of the lock.
bool passGate();
void passedGate();

/// Ends the interpreter. The caller has its lock, without a TpythonLock. Calls of other threads
/// that are inside finish first, however long they take; later ones find no interpreter: their
/// TpythonLock captures nothing.
OPENQUIL_API void endInterpreter();

} // namespace devhost

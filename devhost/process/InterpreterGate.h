#pragma once

// Which threads are in the interpreter, and which may still enter it while it ends.

#include "host/base/HostApi.h"

namespace devhost {

/// True when this thread has the interpreter lock, under whichever of its thread states. After a
/// TpythonLock it tells whether there was an interpreter to enter.
OPENQUIL_API bool runsInterpreter();

/// True when this thread runs the interpreter under its usual state, its first one.
bool runsUsualState();
/// True when it runs under another: its state in a further interpreter. The caller has passed the
/// gate, so that the interpreters do not end meanwhile.
bool runsFurtherState();

/// Lets a thread on its way to the interpreter lock through, unless there is no interpreter or it
/// is about to end. Passed threads must call passedGate when they count as holders of the lock.
bool passGate();
void passedGate();

/// Ends the interpreter. The caller has its lock, without a TpythonLock. Calls of other threads
/// that are inside finish first, however long they take; later ones find no interpreter: their
/// TpythonLock captures nothing.
OPENQUIL_API void endInterpreter();

} // namespace devhost

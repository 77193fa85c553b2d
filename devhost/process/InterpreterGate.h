// SPDX-License-Identifier: MIT
#pragma once

// Which threads are in the interpreter, and which may still enter it while it ends.
//
// Python 2.7 has no safe way to ask for its lock once Py_Finalize has begun: the thread states are
// gone, and a thread that waits in PyGILState_Ensure then touches freed memory. Host threads cannot
// be told to stay away, so they pass a gate first:
//
//   gate     a thread that comes            endInterpreter
//   open     passes, is counted             -
//   closing  is refused                     waits until nobody is between gate and lock, then until
//                                           nobody holds the lock
//   closed   is refused                     Py_Finalize; then the gate is open to the next
//                                           interpreter
//
// A thread announces itself (++entering) before it looks at the gate, and endInterpreter closes the
// gate before it looks at the announcements. Both are sequentially consistent, as in Dekker's
// algorithm: of the two, at least one sees the other. A passed thread enters the count of holders
// before it leaves the count of those on their way, so waiting for the two in that order misses
// nobody. Waiting is polling: it happens once in a process, and needs no more.

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

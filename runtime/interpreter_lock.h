// SPDX-License-Identifier: MIT
#pragma once

// Whether this thread may touch the interpreter.

/// True when this thread has the interpreter lock. After a TpythonLock it tells whether there was
/// an interpreter to enter: threads of the host may come when it has ended.
bool has_interpreter_lock();

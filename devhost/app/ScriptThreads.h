// SPDX-License-Identifier: MIT
#pragma once

// The threads that scripts start.

namespace quilhost {

/// From now on every thread that a script starts has what the host needs to look into it: room to
/// report a crash. Called with the interpreter's lock, before a script runs.
void watchScriptThreads();

} // namespace quilhost

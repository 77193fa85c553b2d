// SPDX-License-Identifier: MIT
#pragma once

// The Python stack of a thread, written by a signal handler.

namespace devhost {

/// Writes file, line and function of each frame of the calling thread, the innermost first; where
/// it has none, those of the interpreter's first thread.
void writePythonStack(int descriptor);

} // namespace devhost

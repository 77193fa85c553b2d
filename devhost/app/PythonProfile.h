// SPDX-License-Identifier: MIT
#pragma once

// Calls of Python functions, and of the native modules' functions by scripts, on the timeline. The
// interpreter tells of them; the modules know nothing of it.

namespace quilhost {

/// The calls of the calling thread, which has the interpreter's lock, are noted from now on, where
/// the timeline runs.
void profileThread();

} // namespace quilhost

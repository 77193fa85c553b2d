// SPDX-License-Identifier: MIT
#pragma once

// A picture that the host renders itself.

#include "host/core/ZStatus.h"

#include <string>

namespace quilhost {

/// Renders the scene as the session says, by its renderer and with the registered callbacks, into a
/// file. Where the caller has the interpreter lock, it is given away meanwhile. Nothing is written
/// when the session is cancelled, or a callback was interrupted.
ZStatus renderInterruptibly(const std::string &file, bool hasInterpreterLock);

/// Stops what threads of a script render still, and waits for it. Called when the interpreter has
/// ended, so that none begins anew.
void endRenders();

} // namespace quilhost

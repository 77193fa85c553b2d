// SPDX-License-Identifier: MIT
#pragma once

// Work over a range of numbers on the threads of the render.

#include "host/base/HostApi.h"

#include <cstddef>
#include <functional>

namespace devhost {

/// How many threads can be started just now, up to `count`: systems and containers have limits.
size_t startableThreads(size_t count);

/// Calls work(begin, end) for blocks that together make up 0 to count, on several threads and on
/// the calling one, and waits for all. `work` must not touch the interpreter.
OPENQUIL_API void forBlocks(size_t count, size_t blockSize,
                            const std::function<void(size_t begin, size_t end)> &work);

} // namespace devhost

// SPDX-License-Identifier: MIT
#pragma once

// Native memory that scripts made. It is known to the host as well, so that a pointer object tells
// how long its block is however it came about, and only our own blocks are freed. Like everything
// that pointer objects do, this runs under the interpreter lock.

#include <cstddef>

namespace binding {

/// A block of zeros, with a few more behind its end so that a text in it always ends; null with an
/// exception set when memory is short.
void *make_block(size_t count, size_t item_size);

/// Frees a block, or leaves it to its views; false, and nothing done, for any other address.
bool free_block(void *address);

} // namespace binding

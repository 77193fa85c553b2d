#pragma once

// Native memory that scripts made. Blocks are known by their first address, so that a pointer
// object tells how long its block is however it came about, and only our own blocks are freed.
// Like everything that pointer objects do, this runs under the interpreter lock.

#include <cstddef>
#include <optional>

namespace binding {

/// A block of zeros, with a few more behind its end so that a text in it always ends; null with an
/// exception set when memory is short.
void *make_block(size_t count, size_t item_size);

/// Frees a block; false, and nothing done, for any other address.
bool free_block(void *address);

/// The number of bytes of the block that begins at the address; none for any other address.
std::optional<size_t> block_size(const void *address);

} // namespace binding

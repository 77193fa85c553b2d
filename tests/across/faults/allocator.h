// SPDX-License-Identifier: MIT
#pragma once

// The process's allocator, replaced by one that can be told to fail. The interpreter gets no memory
// for its pools, so that each of its allocations is one of malloc's and none hides another.

namespace allocator {

/// Lets the nth allocation of this thread fail from now on, and all later ones if `persistent`.
void fail_at(long nth, bool persistent);
/// Ends that; returns how many allocations there were.
long disarm();
/// Blocks that are allocated and not freed, of the whole process.
long live();

} // namespace allocator

#pragma once

// The process's allocators, replaced by ones that can be told to fail. Every allocation that the
// interpreter makes is one of its own: there are no pools, so none hides another.

namespace allocator {

/// Lets the nth allocation of this thread fail from now on, and all later ones if `persistent`.
void fail_at(long nth, bool persistent);
/// Ends that; returns how many allocations there were.
long disarm();
/// Blocks that are allocated and not freed, of the whole process.
long live();

} // namespace allocator

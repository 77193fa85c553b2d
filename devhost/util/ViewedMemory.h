// SPDX-License-Identifier: MIT
#pragma once

// Memory that scripts see through views, which keep it: who would free or move it meanwhile leaves
// it to them. A view is of memory that begins at an address. May be used from several threads.

#include "host/base/HostApi.h"

namespace devhost {

/// Counts one more view of the memory. Throws std::bad_alloc.
OPENQUIL_API void beginView(const void *address);
/// Counts one view less; the last one frees memory that was left to it.
OPENQUIL_API void endView(const void *address) noexcept;

OPENQUIL_API bool isViewed(const void *address) noexcept;

/// Leaves memory to its views: the last one calls release(owner). False, and nothing done, where
/// there are none.
OPENQUIL_API bool leaveToViews(const void *address, void *owner, void (*release)(void *)) noexcept;

/// Deletes what owns the memory, now or when the last view of it ends.
template <class Owner>
void deleteUnlessViewed(const void *address, Owner *owner) noexcept {
    const auto release = [](void *left) { delete static_cast<Owner *>(left); };
    if (!leaveToViews(address, owner, release))
        delete owner;
}

} // namespace devhost

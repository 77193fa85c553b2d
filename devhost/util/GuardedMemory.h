// SPDX-License-Identifier: MIT
#pragma once

// Memory that scripts get pointers into, between pages that cannot be touched. It ends right before
// such a page, and when it is taken back its own pages are closed for good: whoever steps outside,
// or comes back later, stops there, and is told whose memory it was. All that is done only where
// the guard is on; otherwise memory is ordinary.

#include "devhost/util/SafeText.h"
#include "host/base/HostApi.h"

#include <atomic>
#include <cstdint>
#include <new>
#include <vector>

namespace devhost {

/// On from now on. Called before anything is lent.
OPENQUIL_API void startGuard();
OPENQUIL_API extern std::atomic<bool> guardIsOn;

/// Zeros between guard pages; `what` says in the report whose memory it is, and stays. Null where
/// the guard is off or the system has no more pages to guard: the caller takes ordinary memory.
OPENQUIL_API void *openGuarded(size_t bytes, size_t alignment, const char *what);
/// Takes memory back; `when` says in the report how that came. False for memory that is not
/// guarded.
OPENQUIL_API bool closeGuarded(const void *address, const char *when) noexcept;

/// Adds whose memory is at an address, or right beside it; false where nobody's is. For handlers of
/// signals.
OPENQUIL_API bool explainAddress(SafeText &text, uintptr_t address);

/// Gives containers guarded memory, where the guard is on.
template <class T, const char *what>
struct LentAllocator {
    using value_type = T;
    template <class Other>
    struct rebind {
        using other = LentAllocator<Other, what>;
    };
    LentAllocator() = default;
    template <class Other>
    explicit LentAllocator(const LentAllocator<Other, what> &) {}

    T *allocate(size_t count) {
        void *const guarded =
            guardIsOn ? openGuarded(count * sizeof(T), alignof(T), what) : nullptr;
        return static_cast<T *>(guarded ? guarded : ::operator new(count * sizeof(T)));
    }
    void deallocate(T *address, size_t) noexcept {
        if (!guardIsOn || !closeGuarded(address, "the host took it back"))
            ::operator delete(address);
    }
    bool operator==(const LentAllocator &) const = default;
};

template <class T, const char *what>
using LentVector = std::vector<T, LentAllocator<T, what>>;

} // namespace devhost

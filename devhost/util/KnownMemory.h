// SPDX-License-Identifier: MIT
#pragma once

// Blocks of memory that scripts get pointers into and whose size is known, so that reading or
// writing beyond them can be refused. May be used from several threads.

#include "host/base/HostApi.h"

#include <cstddef>
#include <optional>

namespace devhost {

/// Notes a block until it is forgotten. Throws std::bad_alloc.
OPENQUIL_API void knowMemory(const void *address, size_t bytes);
OPENQUIL_API void forgetMemory(const void *address) noexcept;

/// The number of bytes from the address to the end of the block that it lies in; none where no
/// known block is.
OPENQUIL_API std::optional<size_t> knownBytes(const void *address);

/// True when so many bytes of memory at the address are known not to be there.
inline bool isTooShort(const void *address, size_t bytes) {
    const auto known = knownBytes(address);
    return known && *known < bytes;
}

/// A block that is known as long as it lives.
class KnownMemory {
  public:
    KnownMemory(const void *address, size_t bytes) : address_(address) {
        knowMemory(address, bytes);
    }
    ~KnownMemory() { forgetMemory(address_); }
    KnownMemory(const KnownMemory &) = delete;
    KnownMemory &operator=(const KnownMemory &) = delete;

  private:
    const void *address_;
};

} // namespace devhost

// SPDX-License-Identifier: MIT
#include "devhost/util/KnownMemory.h"

#include <map>
#include <mutex>

namespace devhost {
namespace {

struct KnownBlocks {
    std::mutex mutex;
    std::map<const char *, size_t> sizes; // by the first address
};

KnownBlocks &knownBlocks() {
    // Never destroyed: memory is given back until the process has ended.
    static auto *const instance = new KnownBlocks;
    return *instance;
}

} // namespace

void knowMemory(const void *address, size_t bytes) {
    if (!address)
        return;
    const std::lock_guard lock(knownBlocks().mutex);
    knownBlocks().sizes[static_cast<const char *>(address)] = bytes;
}

void forgetMemory(const void *address) noexcept {
    const std::lock_guard lock(knownBlocks().mutex);
    knownBlocks().sizes.erase(static_cast<const char *>(address));
}

std::optional<size_t> knownBytes(const void *address) {
    const auto *const wanted = static_cast<const char *>(address);
    const std::lock_guard lock(knownBlocks().mutex);
    auto block = knownBlocks().sizes.upper_bound(wanted);
    if (block == knownBlocks().sizes.begin())
        return {};
    --block;
    const auto offset = static_cast<size_t>(wanted - block->first);
    if (offset != 0 && offset >= block->second)
        return {};
    return block->second - offset;
}

} // namespace devhost

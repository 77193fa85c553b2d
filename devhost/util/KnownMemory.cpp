// SPDX-License-Identifier: MIT
#include "devhost/util/KnownMemory.h"

#include <atomic>
#include <map>
#include <mutex>

namespace devhost {
namespace {

struct KnownBlocks {
    std::mutex mutex;
    std::map<const char *, size_t> sizes; // by the first address
    std::atomic<unsigned long> changes = 1;
};

/// What a thread asked last: scripts read one buffer item by item.
struct LastAnswer {
    const void *address;
    unsigned long changes; // that it knew of
    std::optional<size_t> bytes;
};
thread_local LastAnswer lastAnswer;

KnownBlocks &knownBlocks() {
    // Never destroyed: memory is given back until the process has ended.
    static auto *const instance = new KnownBlocks;
    return *instance;
}

/// With the mutex locked.
std::optional<size_t> lookUp(const char *address) {
    auto block = knownBlocks().sizes.upper_bound(address);
    if (block == knownBlocks().sizes.begin())
        return {};
    --block;
    const auto offset = static_cast<size_t>(address - block->first);
    if (offset != 0 && offset >= block->second)
        return {};
    return block->second - offset;
}

} // namespace

void knowMemory(const void *address, size_t bytes) {
    if (!address)
        return;
    const std::lock_guard lock(knownBlocks().mutex);
    ++knownBlocks().changes;
    knownBlocks().sizes[static_cast<const char *>(address)] = bytes;
}

void forgetMemory(const void *address) noexcept {
    const std::lock_guard lock(knownBlocks().mutex);
    ++knownBlocks().changes;
    knownBlocks().sizes.erase(static_cast<const char *>(address));
}

std::optional<size_t> knownBytes(const void *address) {
    LastAnswer &last = lastAnswer;
    if (last.address != address || last.changes != knownBlocks().changes) {
        const std::lock_guard lock(knownBlocks().mutex);
        last = {address, knownBlocks().changes, lookUp(static_cast<const char *>(address))};
    }
    return last.bytes;
}

} // namespace devhost

// SPDX-License-Identifier: MIT
#include "devhost/core_module/blocks.h"

#include "devhost/util/KnownMemory.h"

#include <Python.h>

#include <cstdint>
#include <cstdlib>
#include <new>
#include <unordered_set>

namespace binding {

namespace {

/// The longest item: that many zeros are behind every block.
constexpr size_t kGuard = 16;

std::unordered_set<const void *> &blocks() {
    // Never destroyed: pointer objects may be dropped after the process began to end.
    static auto *const addresses = new std::unordered_set<const void *>;
    return *addresses;
}

} // namespace

void *make_block(size_t count, size_t item_size) {
    const bool too_long = count > (PTRDIFF_MAX - kGuard) / item_size;
    void *address = too_long ? nullptr : std::calloc(count * item_size + kGuard, 1);
    try {
        if (!address)
            throw std::bad_alloc();
        blocks().insert(address);
        devhost::knowMemory(address, count * item_size);
    } catch (const std::bad_alloc &) {
        blocks().erase(address);
        std::free(address);
        PyErr_NoMemory();
        return nullptr;
    }
    return address;
}

bool free_block(void *address) {
    if (!blocks().erase(address))
        return false;
    devhost::forgetMemory(address);
    std::free(address);
    return true;
}

} // namespace binding

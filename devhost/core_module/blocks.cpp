// SPDX-License-Identifier: MIT
#include "devhost/core_module/blocks.h"

#include "devhost/util/GuardedMemory.h"
#include "devhost/util/KnownMemory.h"
#include "devhost/util/ViewedMemory.h"

#include <Python.h>

#include <algorithm>
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

constexpr char kBuffer[] = "a buffer that a script made";

/// Only texts have an end behind the guarded ones.
void *zeros(size_t size, size_t item_size) {
    void *const guarded = devhost::openGuarded(item_size == 1 ? size + 1 : size,
                                               std::min(item_size, kGuard), kBuffer);
    return guarded ? guarded : std::calloc(size + kGuard, 1);
}

void release(void *address) {
    if (!devhost::closeGuarded(address, "the buffer was deleted"))
        std::free(address);
}

} // namespace

void *make_block(size_t count, size_t item_size) {
    const bool too_long = count > (PTRDIFF_MAX - kGuard) / item_size;
    void *address = too_long ? nullptr : zeros(count * item_size, item_size);
    try {
        if (!address)
            throw std::bad_alloc();
        blocks().insert(address);
        devhost::knowMemory(address, count * item_size);
    } catch (const std::bad_alloc &) {
        blocks().erase(address);
        release(address);
        PyErr_NoMemory();
        return nullptr;
    }
    return address;
}

bool free_block(void *address) {
    if (!blocks().erase(address))
        return false;
    devhost::forgetMemory(address);
    if (!devhost::leaveToViews(address, address, release))
        release(address);
    return true;
}

} // namespace binding

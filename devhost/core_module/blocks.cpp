#include "devhost/core_module/blocks.h"

#include <Python.h>

#include <cstdint>
#include <cstdlib>
#include <unordered_map>

namespace binding {

namespace {

/// The longest item: that many zeros are behind every block.
constexpr size_t kGuard = 16;

std::unordered_map<const void *, size_t> &blocks() {
    // Never destroyed: pointer objects may be dropped after the process began to end.
    static auto *const sizes = new std::unordered_map<const void *, size_t>;
    return *sizes;
}

} // namespace

void *make_block(size_t count, size_t item_size) {
    const bool too_long = count > (PTRDIFF_MAX - kGuard) / item_size;
    void *address = too_long ? nullptr : std::calloc(count * item_size + kGuard, 1);
    if (!address) {
        PyErr_NoMemory();
        return nullptr;
    }
    blocks()[address] = count * item_size;
    return address;
}

bool free_block(void *address) {
    if (!blocks().erase(address))
        return false;
    std::free(address);
    return true;
}

std::optional<size_t> block_size(const void *address) {
    const auto found = blocks().find(address);
    return found == blocks().end() ? std::nullopt : std::optional(found->second);
}

} // namespace binding

// SPDX-License-Identifier: MIT
#include "devhost/util/ViewedMemory.h"

#include <atomic>
#include <mutex>
#include <unordered_map>

namespace devhost {
namespace {

struct Viewed {
    size_t views = 0;
    void *owner = nullptr; // of memory that was left to its views
    void (*release)(void *) = nullptr;
};

struct Table {
    std::mutex mutex;
    std::unordered_map<const void *, Viewed> viewed;
};

/// How much is viewed. Arrays ask at each change, and mostly it is nothing; then there need not be
/// a table either, which memory may be too short for.
constinit std::atomic<size_t> viewedCount = 0;

Table &table() {
    // Never destroyed: views may end after the process began to end.
    static auto *const instance = new Table;
    return *instance;
}

} // namespace

void beginView(const void *address) {
    if (!address)
        return;
    const std::lock_guard lock(table().mutex);
    ++table().viewed[address].views;
    viewedCount = table().viewed.size();
}

void endView(const void *address) noexcept {
    if (viewedCount == 0)
        return;
    Viewed ended;
    {
        const std::lock_guard lock(table().mutex);
        const auto found = table().viewed.find(address);
        if (found == table().viewed.end() || --found->second.views > 0)
            return;
        ended = found->second;
        table().viewed.erase(found);
        viewedCount = table().viewed.size();
    }
    if (ended.release)
        ended.release(ended.owner);
}

bool isViewed(const void *address) noexcept {
    if (viewedCount == 0)
        return false;
    const std::lock_guard lock(table().mutex);
    return table().viewed.contains(address);
}

bool leaveToViews(const void *address, void *owner, void (*release)(void *)) noexcept {
    if (viewedCount == 0)
        return false;
    const std::lock_guard lock(table().mutex);
    const auto found = table().viewed.find(address);
    if (found == table().viewed.end())
        return false;
    found->second.owner = owner;
    found->second.release = release;
    return true;
}

} // namespace devhost

#include "devhost/process/ObjectCensus.h"

#include "host/base/TobjectCount.h"

#include <atomic>
#include <mutex>

namespace {

/// Class names are string literals, of which every library has its own copy: hence by text.
struct Census {
    std::mutex mutex;
    std::map<std::string_view, long> counts;
};

std::atomic<bool> counting{false};

Census &census() {
    // Never destroyed: objects are deleted until the process has ended.
    static auto *const instance = new Census;
    return *instance;
}

} // namespace

namespace devhost {

void startObjectCensus() {
    counting = true;
}

std::map<std::string_view, long> objectCensus() {
    const std::lock_guard lock(census().mutex);
    return census().counts;
}

} // namespace devhost

void tCountObject(const char *className, int change) {
    if (!counting.load(std::memory_order_relaxed)) [[likely]]
        return;
    const std::lock_guard lock(census().mutex);
    census().counts[className] += change;
}

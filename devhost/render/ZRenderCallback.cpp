#include "host/render/ZRenderCallback.h"

#include "devhost/render/RenderCallbacks.h"
#include "devhost/render/RenderSession.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <mutex>
#include <vector>

namespace {

struct Registration {
    ZRenderCallback *callback;
    int priority;
};

struct Registry {
    std::mutex mutex;
    std::vector<Registration> entries; // in calling order

    void remove(ZRenderCallback *callback) {
        std::erase_if(entries, [&](const Registration &e) { return e.callback == callback; });
    }
    bool contains(ZRenderCallback *callback) {
        const std::lock_guard lock(mutex);
        return std::any_of(entries.begin(), entries.end(),
                           [&](const Registration &e) { return e.callback == callback; });
    }
};

Registry &registry() {
    // Never destroyed: scripts may drop their callbacks while the process exits.
    static auto *const instance = new Registry;
    return *instance;
}

void report(const char *callback, const char *what) {
    auto &session = devhost::renderSession();
    ++session.callbackErrors;
    if (session.onCallbackError)
        session.onCallbackError(callback, what);
    else
        std::fprintf(stderr, "%s failed: %s\n", callback, what);
}

template <class Data>
void runCallbacks(const char *name, bool (ZRenderCallback::*member)(const Data &),
                  const Data &data) {
    std::vector<Registration> snapshot;
    {
        const std::lock_guard lock(registry().mutex);
        snapshot = registry().entries;
    }
    for (const auto &entry : snapshot) {
        // An earlier callback may have unregistered, or even deleted, this one.
        if (!registry().contains(entry.callback))
            continue;
        try {
            (entry.callback->*member)(data);
        } catch (const std::exception &error) {
            report(name, error.what());
        } catch (...) {
            report(name, "unknown exception");
        }
    }
}

} // namespace

namespace devhost {

bool hasRenderCallbacks() {
    const std::lock_guard lock(registry().mutex);
    return !registry().entries.empty();
}

void runShadowCastCallbacks(const ZRenderShadowData &data) {
    runCallbacks("shadowCastCallback", &ZRenderCallback::shadowCastCallback, data);
}
void runRenderCallbacks(const ZRenderData &data) {
    runCallbacks("renderCallback", &ZRenderCallback::renderCallback, data);
}
void runPostProcessCallbacks(const ZRenderData &data) {
    runCallbacks("postProcessCallback", &ZRenderCallback::postProcessCallback, data);
}

} // namespace devhost

ZRenderCallback::ZRenderCallback() = default;
ZRenderCallback::~ZRenderCallback() {
    removeCallback(this);
}

bool ZRenderCallback::shadowCastCallback(ZRenderShadowData const &) {
    return false;
}
bool ZRenderCallback::renderCallback(ZRenderData const &) {
    return false;
}
bool ZRenderCallback::postProcessCallback(ZRenderData const &) {
    return false;
}

void ZRenderCallback::addCallback(ZRenderCallback *callback, int priority) {
    if (!callback)
        return;
    auto &all = registry();
    const std::lock_guard lock(all.mutex);
    all.remove(callback);
    const auto after =
        std::find_if(all.entries.begin(), all.entries.end(),
                     [&](const Registration &entry) { return entry.priority > priority; });
    all.entries.insert(after, {callback, priority});
}

void ZRenderCallback::removeCallback(ZRenderCallback *callback) {
    auto &all = registry();
    const std::lock_guard lock(all.mutex);
    all.remove(callback);
}

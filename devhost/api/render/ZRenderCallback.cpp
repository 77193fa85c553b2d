// SPDX-License-Identifier: MIT
#include "host/render/ZRenderCallback.h"

#include "devhost/session/CallbackRegistry.h"
#include "devhost/session/RenderCallbacks.h"
#include "devhost/util/GuardedMemory.h"
#include "devhost/util/Terminal.h"

#include <memory>

namespace {

auto &renderCallbacks() {
    return devhost::callbackRegistry<ZRenderCallback>();
}

} // namespace

namespace devhost {

void reportCallbackError(const char *callback, const char *what) {
    auto &session = renderSession();
    ++session.callbackErrors;
    if (session.onCallbackError)
        session.onCallbackError(callback, what);
    else
        tell(std::string(callback) + " failed: " + what);
}

bool hasRenderCallbacks() {
    return !renderCallbacks().isEmpty();
}

namespace {

constexpr char kRecord[] = "the record that a render callback is given (data)";

/// Calls with a record of the callback's own: scripts can write to them.
template <class Record, class Call>
void withOwn(const Record &data, Call call) {
    void *const guarded = openGuarded(sizeof(Record), alignof(Record), kRecord);
    if (!guarded) {
        Record own = data;
        return call(own);
    }
    constexpr auto close = [](Record *record) {
        record->~Record();
        closeGuarded(record, "the callback had returned");
    };
    const std::unique_ptr<Record, decltype(close)> own(new (guarded) Record(data));
    call(*own);
}

} // namespace

void runShadowCastCallbacks(const ZRenderShadowData &data) {
    renderCallbacks().run("shadowCastCallback", [&](ZRenderCallback &callback) {
        withOwn(data, [&](auto &own) { callback.shadowCastCallback(own); });
    });
}
void runRenderCallbacks(const ZRenderData &data) {
    renderCallbacks().run("renderCallback", [&](ZRenderCallback &callback) {
        withOwn(data, [&](auto &own) { callback.renderCallback(own); });
    });
}
void runPostProcessCallbacks(const ZRenderData &data) {
    renderCallbacks().run("postProcessCallback", [&](ZRenderCallback &callback) {
        withOwn(data, [&](auto &own) { callback.postProcessCallback(own); });
    });
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
    renderCallbacks().add(callback, priority);
}
void ZRenderCallback::removeCallback(ZRenderCallback *callback) {
    renderCallbacks().remove(callback);
}

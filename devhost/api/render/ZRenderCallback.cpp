// SPDX-License-Identifier: MIT
#include "host/render/ZRenderCallback.h"

#include "devhost/session/CallbackRegistry.h"
#include "devhost/session/RenderCallbacks.h"
#include "devhost/util/Terminal.h"

namespace {

auto &registry() {
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
    return !registry().isEmpty();
}

// Each callback gets a record of its own: scripts can write to them.
void runShadowCastCallbacks(const ZRenderShadowData &data) {
    registry().run("shadowCastCallback", [&](ZRenderCallback &callback) {
        ZRenderShadowData own = data;
        callback.shadowCastCallback(own);
    });
}
void runRenderCallbacks(const ZRenderData &data) {
    registry().run("renderCallback", [&](ZRenderCallback &callback) {
        ZRenderData own = data;
        callback.renderCallback(own);
    });
}
void runPostProcessCallbacks(const ZRenderData &data) {
    registry().run("postProcessCallback", [&](ZRenderCallback &callback) {
        ZRenderData own = data;
        callback.postProcessCallback(own);
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
    registry().add(callback, priority);
}
void ZRenderCallback::removeCallback(ZRenderCallback *callback) {
    registry().remove(callback);
}

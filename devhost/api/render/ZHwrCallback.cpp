// SPDX-License-Identifier: MIT
#include "host/render/ZHwrCallback.h"

#include "devhost/session/CallbackRegistry.h"
#include "devhost/session/DeviceCallbacks.h"

namespace {

auto &deviceCallbacks() {
    return devhost::callbackRegistry<ZHwrCallback>();
}

} // namespace

namespace devhost {

void runDeviceNewCallbacks() {
    deviceCallbacks().run("deviceNew", [](ZHwrCallback &callback) { callback.deviceNew(); });
}
void runDeviceLostCallbacks() {
    deviceCallbacks().run("deviceLost", [](ZHwrCallback &callback) { callback.deviceLost(); });
}
void runDeviceResetCallbacks() {
    deviceCallbacks().run("deviceReset", [](ZHwrCallback &callback) { callback.deviceReset(); });
}
void runDeviceDeletedCallbacks() {
    deviceCallbacks().run("deviceDeleted",
                          [](ZHwrCallback &callback) { callback.deviceDeleted(); });
}

} // namespace devhost

ZHwrCallback::ZHwrCallback() = default;
ZHwrCallback::~ZHwrCallback() {
    removeCallback(this);
}

void ZHwrCallback::deviceNew() {}
void ZHwrCallback::deviceLost() {}
void ZHwrCallback::deviceReset() {}
void ZHwrCallback::deviceDeleted() {}

void ZHwrCallback::addCallback(ZHwrCallback *callback, int priority) {
    deviceCallbacks().add(callback, priority);
}
void ZHwrCallback::removeCallback(ZHwrCallback *callback) {
    deviceCallbacks().remove(callback);
}

// SPDX-License-Identifier: MIT
#pragma once

// The hardware renderer's side of the registered device callbacks.

#include "host/base/HostApi.h"

namespace devhost {

// Each calls one member of all registered callbacks, in their order, on the calling thread. Native
// exceptions end with the callback that threw them and are reported through the render session.
OPENQUIL_API void runDeviceNewCallbacks();
OPENQUIL_API void runDeviceLostCallbacks();
OPENQUIL_API void runDeviceResetCallbacks();
OPENQUIL_API void runDeviceDeletedCallbacks();

} // namespace devhost

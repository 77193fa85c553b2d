// SPDX-License-Identifier: MIT
#pragma once

// Notifications about the device that the hardware renderer draws with.

#include "host/base/HostApi.h"

/// The base of device callbacks: native code derives from it and registers an instance to learn
/// when what it keeps on the device has to be made, dropped and made again. An instance of the base
/// class does nothing when it is told.
class OPENQUIL_API ZHwrCallback {
  public:
    /// Makes a callback that is not registered yet.
    ZHwrCallback();
    /// Unregisters the callback.
    virtual ~ZHwrCallback();

    /// Called when a device has been made. Its resource context is current.
    virtual void deviceNew();
    /// Called before the device loses its buffers, because their size is about to change.
    virtual void deviceLost();
    /// Called when the device has new buffers. Its resource context is current.
    virtual void deviceReset();
    /// Called before the device is deleted, with everything that was made on it.
    virtual void deviceDeleted();

    /// Registers a callback. Callbacks with a lower priority number are called first, and those
    /// with the same number in the order of registration. Registering again changes the number.
    /// The callback must live until it is removed.
    static void addCallback(ZHwrCallback *callback, int priority = 0);
    /// Unregisters a callback; one that is not registered is ignored.
    static void removeCallback(ZHwrCallback *callback);
};

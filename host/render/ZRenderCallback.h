// SPDX-License-Identifier: MIT
#pragma once

// Code that the host's software renderer calls while it renders.

#include "host/base/HostApi.h"
#include "host/render/ZRenderData.h"
#include "host/render/ZRenderShadowData.h"

/// The base of render callbacks: derive from it, override what you need and register an instance
/// with addCallback. The software renderer, and no other, calls all registered callbacks at three
/// points of every frame, on the thread that renders. A callback that fails is reported; the render
/// goes on.
class OPENQUIL_API ZRenderCallback {
  public:
    /// Makes a callback that is not registered yet.
    ZRenderCallback();
    /// Unregisters the callback.
    virtual ~ZRenderCallback();

    /// Called once per shadow-casting light when its shadow maps have been made. Return true when
    /// the data was changed. The base class returns false.
    virtual bool shadowCastCallback(ZRenderShadowData const &data);
    /// Called when the image has been rendered. Return true when the pixels were changed. The base
    /// class returns false.
    virtual bool renderCallback(ZRenderData const &data);
    /// Called after post-processing, before the image is written. Return true when the pixels were
    /// changed. The base class returns false.
    virtual bool postProcessCallback(ZRenderData const &data);

    /// Registers a callback. Callbacks with a lower priority number are called first, and those
    /// with the same number in the order of registration. Registering again changes the number.
    /// The callback must live until it is removed.
    static void addCallback(ZRenderCallback *callback, int priority = 0);
    /// Unregisters a callback; one that is not registered is ignored.
    static void removeCallback(ZRenderCallback *callback);
};

// SPDX-License-Identifier: MIT
#pragma once

// The renderers that a shading node supports.

#include "host/base/HostApi.h"

class ZString;

/// The renderers that a shading node supports: the host's standard ones, and others by name and
/// version.
class OPENQUIL_API ZRenderProfile {
  public:
    /// The host's own renderers.
    enum ZStandardRenderer : int {
        /// The software renderer.
        kQuilSoftware = 0,
        /// Drawing with OpenGL.
        kQuilOpenGL = 1,
        /// Drawing with Direct3D.
        kQuilD3D = 2
    };

    /// Makes a profile without renderers.
    ZRenderProfile();
    /// Destroys the profile.
    ~ZRenderProfile();
    ZRenderProfile(ZRenderProfile const &) = delete;
    ZRenderProfile &operator=(ZRenderProfile const &) = delete;

    /// Returns the number of different renderers in the profile.
    unsigned int numberOfRenderers() const;
    /// Adds a standard renderer, unless it is there already or is none of them.
    void addRenderer(ZStandardRenderer renderer);
    /// Adds a renderer of some name and version, unless it is there already or the name is empty.
    void addRenderer(ZString const &name, float version);
    /// True when the standard renderer is in the profile.
    bool hasRenderer(ZStandardRenderer renderer) const;
    /// True when the renderer of exactly this name and version is in the profile.
    bool hasRenderer(ZString const &name, float version) const;

  private:
    struct Entries;
    Entries *entries_;
};

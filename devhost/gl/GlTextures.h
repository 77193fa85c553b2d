// SPDX-License-Identifier: MIT
#pragma once

// Images as textures of OpenGL.

#include "devhost/scene/SceneGraph.h"
#include "host/core/ZStatus.h"

#include <memory>

namespace devhost {

/// Binds an image to the current texture unit. It is uploaded on first use, and its texture goes
/// some time after the image is gone. Fails with kFailure when there is no OpenGL for this thread,
/// or the image is larger than it can hold, and with kInsufficientMemory.
ZStatus bindGlTexture(const std::shared_ptr<const Pixels> &pixels);

} // namespace devhost

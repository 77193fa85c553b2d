// SPDX-License-Identifier: MIT
#pragma once

// Swatches of shading nodes, by the name of their generator.

#include "host/base/HostApi.h"
#include "host/core/ZImage.h"
#include "host/core/ZObject.h"
#include "host/core/ZStatus.h"
#include "host/core/ZStringArray.h"
#include "host/render/ZSwatchRenderBase.h"
#include "host/render/ZSwatchRenderRegister.h"

#include <memory>
#include <string>

namespace devhost {

/// The host's own generator, registered from the start: a ball of the material or texture.
inline constexpr char kMaterialBall[] = "materialBall";

/// The registered generators in the order of their names.
OPENQUIL_API ZStringArray swatchGenerators();

/// The creator registered under a name. Fails with kNotFound when there is none.
OPENQUIL_API ZStatus findSwatchGenerator(const ZString &name, ZSwatchRenderCreatorFnPtr &creator);

/// Begins a node's swatch. Fails with kNotFound when there is no such generator, and with
/// kInvalidParameter when the resolution is not 1 to 4096 or the generator cannot show the node.
OPENQUIL_API ZStatus beginSwatch(const ZString &generator, const ZObject &node, int resolution,
                                 std::unique_ptr<ZSwatchRenderBase> &swatch);

/// Renders a node's swatch into an image. Fails as beginSwatch does, and with kFailure when swatch
/// rendering is switched off or the swatch was cancelled; the image then keeps its contents.
OPENQUIL_API ZStatus renderSwatch(const ZString &generator, const ZObject &node, int resolution,
                                  ZImage &image, int quality = 1);

} // namespace devhost

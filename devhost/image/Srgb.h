// SPDX-License-Identifier: MIT
#pragma once

// The sRGB curve between light, which is what is calculated with, and the codes of 8-bit pictures.

#include "host/base/HostApi.h"

#include <cstddef>
#include <vector>

namespace devhost {

/// The code, 0 to 1, of an amount of light, which is clamped to 0 to 1; not-a-number becomes 0.
OPENQUIL_API float srgbCode(float light);
/// The amount of light, 0 to 1, that a code stands for.
OPENQUIL_API float srgbLight(float code);
/// As above, for the codes 0 to 255.
OPENQUIL_API float lightOfByte(unsigned char code);

/// The code of an amount of light, rounded to 0 to 255.
OPENQUIL_API unsigned char srgbByte(float light);

/// A pixel as 8-bit pictures hold it: sRGB codes, not multiplied by the opacity. `pixel` is light
/// multiplied by the opacity, and the opacity.
OPENQUIL_API void toDisplay(const float pixel[4], unsigned char rgba[4]);
/// The light that such a pixel stands for.
OPENQUIL_API void fromDisplay(const unsigned char rgba[4], float pixel[4]);
/// toDisplay for all pixels.
OPENQUIL_API std::vector<unsigned char> displayBytes(const std::vector<float> &pixels);

} // namespace devhost

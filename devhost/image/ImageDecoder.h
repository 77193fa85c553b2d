// SPDX-License-Identifier: MIT
#pragma once

// Decoding of image files in memory. Damaged ones are told of; none ends the process, and the size
// that a file claims is looked at before memory is taken.

#include "devhost/scene/SceneGraph.h"
#include "host/base/HostApi.h"

#include <span>
#include <stdexcept>

namespace devhost {

using ImageBytes = std::span<const unsigned char>;

/// The most pixels that a file of so many bytes is believed to hold: any file may hold 8192 x 8192,
/// and more, up to kMaximumPixels, only where its bytes are not far fewer than the image's.
OPENQUIL_API size_t mostPixels(size_t fileBytes);

/// What makes a file unusable; the text says why.
struct OPENQUIL_API BadImage : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Decodes an image (PNG, JPEG, BMP, TGA, PSD) to its bytes as they are, whatever the file says of
/// their gamma. Throws BadImage when the file is damaged or its size is not plausible.
OPENQUIL_API Pixels decodeImage(ImageBytes file);

// The decoders by format.
Pixels decodePng(ImageBytes file);
Pixels decodeJpeg(ImageBytes file);
Pixels decodeBmpTgaPsd(ImageBytes file);

/// Black pixels for the image in a file. Throws BadImage when the size is not plausible.
Pixels makePixels(size_t width, size_t height, ImageBytes file);

} // namespace devhost

// SPDX-License-Identifier: MIT
#pragma once

// The picture in the render view, and how it gets into a file.

#include "host/base/HostApi.h"
#include "host/core/ZStatus.h"
#include "host/render/ZRenderView.h"

#include <string>
#include <vector>

namespace devhost {

struct Frame;

/// One extra layer of a picture: `channels` values for each pixel.
struct PictureLayer {
    std::string name;
    unsigned channels = 0;
    std::vector<float> values;
};

/// Rows from the bottom up. Colours are not multiplied by the opacity.
struct Picture {
    unsigned width = 0, height = 0;
    std::vector<RV_PIXEL> pixels;
    std::vector<PictureLayer> layers;
    /// True when the colours are light rather than sRGB codes.
    bool isHdr = false;
};

/// True for file names that writePicture knows a format for: .png and .exr.
OPENQUIL_API bool isPictureFileName(const std::string &path);

// Both write by the extension of the path. PNG files hold sRGB codes, not multiplied by the
// opacity, and no extra layers; OpenEXR files hold light, multiplied by the opacity, as the
// session's kind of floats, and extra layers as they are. The file appears when it is complete, or
// stays as it was.

OPENQUIL_API ZStatus writePicture(const Picture &picture, const std::string &path);

/// Writes a frame of any renderer. A PNG file shows the whole image, clear outside the
/// rendered region; an OpenEXR file has the region as its data window, and the depths, if there are
/// any, as the channel Z.
OPENQUIL_API ZStatus writeFrame(const Frame &frame, const std::string &path);

/// Renders the session's frame and writes it. Fails with kInvalidParameter, before it renders, when
/// there is no format for the file's name.
OPENQUIL_API ZStatus renderToFile(const std::string &path);

/// Draws a viewport, as renderViewport does, and writes it as a PNG file where the path is not
/// empty.
OPENQUIL_API ZStatus renderViewportToFile(const std::string &renderer, unsigned width,
                                          unsigned height, const std::string &path);

/// True when depths are written to a file of that name.
OPENQUIL_API bool holdsDepth(const std::string &path);

/// The last picture of the render view; empty before the first.
OPENQUIL_API const Picture &viewPicture();
/// True between the start and the end of a picture.
OPENQUIL_API bool viewIsOpen();
/// Closes the picture without writing it.
OPENQUIL_API void abandonView();

} // namespace devhost

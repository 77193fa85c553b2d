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
    /// True when the colours are linear light rather than as displayed.
    bool isHdr = false;
};

/// True for file names that writePicture knows a format for: .png and .exr.
OPENQUIL_API bool isPictureFileName(const std::string &path);

/// Writes a picture by the extension of the path. PNG files hold the colours only, clamped to 0..1,
/// those of linear pictures with the sRGB curve; OpenEXR files hold all values as they are. The
/// file appears when it is complete, or stays as it was.
OPENQUIL_API ZStatus writePicture(const Picture &picture, const std::string &path);

/// Writes a frame of the software renderer; an OpenEXR file gets its depths as the channel Z.
OPENQUIL_API ZStatus writeFrame(const Frame &frame, const std::string &path);

/// The last picture of the render view; empty before the first.
OPENQUIL_API const Picture &viewPicture();
/// True between the start and the end of a picture.
OPENQUIL_API bool viewIsOpen();
/// Closes the picture without writing it.
OPENQUIL_API void abandonView();

} // namespace devhost

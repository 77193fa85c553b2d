// SPDX-License-Identifier: MIT
#include "devhost/image/ImageIo.h"
#include "devhost/session/ViewportRequest.h"
#include "host/core/ZImage.h"

#include <algorithm>

namespace {

/// A pixel of an image as four bytes, from its one to four channels.
void expand(const unsigned char *channels, unsigned count, unsigned char *rgba) {
    const bool isGrey = count < 3;
    for (unsigned i = 0; i < 3; ++i)
        rgba[i] = channels[isGrey ? 0 : i];
    rgba[3] = count % 2 ? 255 : channels[count - 1];
}

} // namespace

ZRenderTarget::ZRenderTarget(Request &request) : request_(request) {}

unsigned int ZRenderTarget::width() const {
    return request_.image.width;
}

unsigned int ZRenderTarget::height() const {
    return request_.image.height;
}

ZStatus ZRenderTarget::makeTargetCurrent() const {
    if (!request_.gl)
        return {ZStatus::kFailure, "the target is not drawn with OpenGL"};
    request_.gl->bind();
    return {};
}

ZStatus ZRenderTarget::writeColorBuffer(ZImage const &image, short x, short y,
                                        bool writeDepth) const {
    unsigned width = 0, height = 0, depthWidth = 0, depthHeight = 0;
    image.getSize(width, height);
    image.getDepthMapSize(depthWidth, depthHeight);
    if (!width || !height)
        return {ZStatus::kInvalidParameter, "the image is empty"};
    if (writeDepth && (depthWidth != width || depthHeight != height))
        return {ZStatus::kInvalidParameter, "the image has no depth map of its own size"};

    devhost::ViewportImage &target = request_.image;
    if (request_.gl)
        request_.gl->textures().read(target, request_.projection);
    const long left = std::max<long>(x, 0), right = std::min<long>(long(width) + x, target.width);
    const long bottom = std::max<long>(y, 0), top = std::min<long>(long(height) + y, target.height);
    const unsigned channels = image.channels();
    for (long row = bottom; row < top; ++row)
        for (long column = left; column < right; ++column) {
            const size_t from = size_t(row - y) * width + size_t(column - x);
            const size_t to = size_t(row) * target.width + size_t(column);
            unsigned char converted[4];
            const unsigned char *bytes = converted;
            if (image.pixels())
                bytes = image.pixels() + from * channels;
            else
                std::transform(image.floatPixels() + from * channels,
                               image.floatPixels() + (from + 1) * channels, converted,
                               devhost::toByte);
            expand(bytes, channels, &target.rgba[to * 4]);
            if (writeDepth)
                target.depth[to] = image.depthMap()[from];
        }
    if (request_.gl)
        request_.gl->textures().write(target, request_.projection);
    return {};
}

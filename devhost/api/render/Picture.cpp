// SPDX-License-Identifier: MIT
#include "devhost/api/render/Picture.h"

#include "devhost/image/ImageIo.h"
#include "devhost/image/Srgb.h"
#include "devhost/raytrace/SoftwareRenderer.h"
#include "devhost/session/FrameRenderer.h"
#include "devhost/session/RenderSession.h"
#include "devhost/session/Viewport.h"
#include "devhost/util/FileName.h"
#include "devhost/util/Guarded.h"
#include "devhost/util/Timeline.h"
#include "devhost/util/Version.h"

#include <algorithm>

namespace devhost {
namespace {

static_assert(sizeof(RV_PIXEL) == 4 * sizeof(float));

bool isExr(const std::string &path) {
    return lowerExtension(path) == ".exr";
}

/// The customary names of one to four channels; numbers where there are more.
std::vector<std::string> channelNames(const PictureLayer &layer) {
    switch (layer.channels) {
    case 1:
        return {"Y"};
    case 2:
        return {"X", "Y"};
    case 3:
        return {"R", "G", "B"};
    case 4:
        return {"R", "G", "B", "A"};
    }
    std::vector<std::string> names;
    for (unsigned i = 0; i < layer.channels; ++i)
        names.push_back(std::to_string(i));
    return names;
}

/// What the file tells about the render, `renderer` being the part of the host that made it.
ExrHeader aboutRender(const std::string &renderer) {
    const RenderSession &session = renderSession();
    const NodeId camera = scene().id(session.camera);
    ExrHeader header;
    header.pixelAspectRatio = session.settings.pixelAspectRatio;
    header.numbers = {{"frame", float(session.frame)}, {"exposure", session.exposure}};
    header.texts = {{"camera", scene().path(camera == kNoNode ? scene().findCamera() : camera)},
                    {"renderer", std::string("OpenQuilRender ") + version() + " " + renderer}};
    return header;
}

ImageLayer colors(const std::vector<float> &pixels) {
    return {"", {"R", "G", "B", "A"}, pixels.data(), !renderSession().exrFloats};
}

/// The pixels of the render view as EXR files hold them.
std::vector<float> lightOf(const Picture &picture) {
    std::vector<float> result;
    result.reserve(picture.pixels.size() * 4);
    for (const RV_PIXEL &pixel : picture.pixels) {
        for (const float color : {pixel.r, pixel.g, pixel.b})
            result.push_back((picture.isHdr ? color : srgbLight(color)) * pixel.a);
        result.push_back(pixel.a);
    }
    return result;
}

std::vector<unsigned char> bytesOf(const Picture &picture) {
    std::vector<unsigned char> result;
    result.reserve(picture.pixels.size() * 4);
    for (const RV_PIXEL &pixel : picture.pixels) {
        for (const float color : {pixel.r, pixel.g, pixel.b})
            result.push_back(picture.isHdr ? srgbByte(color) : toByte(color));
        result.push_back(toByte(pixel.a));
    }
    return result;
}

/// The frame's pixels at their place in an image that is clear elsewhere.
std::vector<unsigned char> wholeImage(const Frame &frame) {
    const ZRenderData &data = frame.data;
    const std::vector<unsigned char> region = displayBytes(frame.pixels);
    if (data.xsize == data.resX && data.ysize == data.resY)
        return region;
    std::vector<unsigned char> result(size_t(data.resX) * data.resY * 4);
    const size_t row = size_t(data.xsize) * 4;
    for (size_t y = 0; y < data.ysize; ++y)
        std::copy_n(&region[y * row], row,
                    &result[((data.bottom + y) * data.resX + data.left) * 4]);
    return result;
}

ZStatus noFormat(const std::string &path) {
    return {ZStatus::kInvalidParameter,
            ("'" + path + "' is neither a .png nor a .exr file").c_str()};
}

} // namespace

bool isPictureFileName(const std::string &path) {
    return isExr(path) || lowerExtension(path) == ".png";
}

bool holdsDepth(const std::string &path) {
    return isExr(path);
}

ZStatus writePicture(const Picture &picture, const std::string &path) {
    const Stage stage("write");
    if (!isPictureFileName(path))
        return noFormat(path);
    if (!isExr(path))
        return writePng(path, picture.width, picture.height, bytesOf(picture).data());
    const std::vector<float> pixels = lightOf(picture);
    std::vector<ImageLayer> layers{colors(pixels)};
    for (const auto &layer : picture.layers)
        layers.push_back({layer.name, channelNames(layer), layer.values.data()});
    return writeExr(path, picture.width, picture.height, layers, aboutRender("render view"));
}

ZStatus writeFrame(const Frame &frame, const std::string &path) {
    const Stage stage("write");
    const ZRenderData &data = frame.data;
    if (!isExr(path))
        return writePng(path, data.resX, data.resY, wholeImage(frame).data());
    ExrHeader header = aboutRender(frame.renderer);
    header.imageWidth = data.resX;
    header.imageHeight = data.resY;
    header.left = data.left;
    header.bottom = data.bottom;
    std::vector<ImageLayer> layers{colors(frame.pixels)};
    // The channel Z without a layer's name is where programs look for depths.
    if (!frame.depth.empty())
        layers.push_back({"", {"Z"}, frame.depth.data()});
    return writeExr(path, data.xsize, data.ysize, layers, header);
}

ZStatus renderViewportToFile(const std::string &renderer, unsigned width, unsigned height,
                             const std::string &path) {
    return guarded([&] {
        ViewportImage image;
        ZStatus status = renderViewport(renderer, width, height, 1, image);
        if (!status.error() && !path.empty())
            status = writePng(path, width, height, image.rgba.data());
        return status;
    });
}

ZStatus renderToFile(const std::string &path) {
    if (!isPictureFileName(path))
        return noFormat(path);
    return guarded([&] {
        const RenderStateScope rendering(renderSession().isBatch ? ZRenderUtil::kBatchRender
                                                                 : ZRenderUtil::kInteractiveRender);
        Frame frame;
        const ZStatus status = renderSessionFrame(frame, holdsDepth(path));
        return status.error() || renderSession().cancelled ? status : writeFrame(frame, path);
    });
}

} // namespace devhost

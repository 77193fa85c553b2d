#include "devhost/image/Picture.h"

#include "devhost/image/ImageIo.h"
#include "devhost/raytrace/SoftwareRenderer.h"
#include "devhost/util/FileName.h"

#include <cmath>
#include <filesystem>

namespace devhost {
namespace {

static_assert(sizeof(RV_PIXEL) == 4 * sizeof(float));

bool isExr(const std::string &path) {
    return lowerExtension(path) == ".exr";
}

float displayed(float linear) {
    return linear <= 0.0031308f ? linear * 12.92f : 1.055f * std::pow(linear, 1 / 2.4f) - 0.055f;
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

} // namespace

bool isPictureFileName(const std::string &path) {
    return isExr(path) || lowerExtension(path) == ".png";
}

ZStatus writePicture(const Picture &picture, const std::string &path) {
    if (!isPictureFileName(path))
        return {ZStatus::kInvalidParameter,
                ("'" + path + "' is neither a .png nor a .exr file").c_str()};
    const auto *colors = reinterpret_cast<const float *>(picture.pixels.data());
    if (isExr(path)) {
        std::vector<ImageLayer> layers{{"", {"R", "G", "B", "A"}, colors}};
        for (const auto &layer : picture.layers)
            layers.push_back({layer.name, channelNames(layer), layer.values.data()});
        return writeExr(path, picture.width, picture.height, layers);
    }
    std::vector<unsigned char> bytes(picture.pixels.size() * 4);
    for (size_t i = 0; i < bytes.size(); ++i) {
        const bool isColor = i % 4 != 3;
        bytes[i] = toByte(picture.isHdr && isColor ? displayed(colors[i]) : colors[i]);
    }
    return writePng(path, picture.width, picture.height, bytes.data());
}

ZStatus writeFrame(const Frame &frame, const std::string &path) {
    const unsigned width = frame.data.xsize, height = frame.data.ysize;
    if (!isExr(path))
        return writePng(path, width, height, frame.rgba.data());
    const std::vector<float> colors = toFloats(frame.rgba.data(), frame.rgba.size());
    // The channel Z without a layer's name is where programs look for depths.
    return writeExr(path, width, height,
                    {{"", {"R", "G", "B", "A"}, colors.data()}, {"", {"Z"}, frame.depth.data()}});
}

} // namespace devhost

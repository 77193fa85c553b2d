// Decoding and sampling of texture images.
#include "devhost/image/TextureImage.h"

#include "host/core/ZImage.h"

#include <tiny_gltf.h>

#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace devhost {

namespace fs = std::filesystem;

std::string resolveFile(const std::string &name) {
    if (name.empty())
        return {};
    std::error_code ignored;
    for (const fs::path &base : {fs::path(scene().folder()), fs::current_path(ignored)}) {
        const fs::path candidate = (base / name).lexically_normal();
        if (fs::is_regular_file(candidate, ignored))
            return candidate.string();
    }
    return {};
}

std::shared_ptr<const Pixels> decodeImage(const unsigned char *bytes, size_t count) {
    tinygltf::Image image;
    std::string error, warning;
    if (count > size_t(INT32_MAX) ||
        !tinygltf::LoadImageData(&image, 0, &error, &warning, 0, 0, bytes, int(count), nullptr) ||
        image.width <= 0 || image.height <= 0 || image.component != 4)
        return nullptr;
    auto pixels = std::make_shared<Pixels>();
    pixels->width = unsigned(image.width);
    pixels->height = unsigned(image.height);
    if (image.bits == 16) { // keep the high bytes
        for (size_t at = 1; at < image.image.size(); at += 2)
            pixels->rgba.push_back(image.image[at]);
    } else {
        pixels->rgba = std::move(image.image);
    }
    return pixels->rgba.size() == size_t(4) * pixels->width * pixels->height ? pixels : nullptr;
}

namespace {

/// What the decoders above do not know (OpenEXR) goes through the host's own image class.
std::shared_ptr<const Pixels> readThroughImage(const std::string &fileName) {
    ZImage image;
    unsigned width = 0, height = 0;
    if (!image.readFromFile(ZString(fileName.c_str())) || !image.getSize(width, height))
        return nullptr;
    auto pixels = std::make_shared<Pixels>();
    pixels->width = width;
    pixels->height = height;
    const size_t row = size_t(4) * width;
    pixels->rgba.resize(row * height);
    for (unsigned y = 0; y < height; ++y) { // the image class puts row 0 at the bottom
        unsigned char *target = &pixels->rgba[row * (height - 1 - y)];
        if (const unsigned char *bytes = image.pixels()) {
            std::memcpy(target, bytes + row * y, row);
        } else if (const float *floats = image.floatPixels()) {
            for (size_t at = 0; at < row; ++at) {
                const float value = floats[row * y + at];
                target[at] = value > 0 ? (unsigned char)(std::min(value, 1.0f) * 255 + 0.5f) : 0;
            }
        } else {
            return nullptr;
        }
    }
    return pixels;
}

} // namespace

ZStatus readImage(const std::string &fileName, std::shared_ptr<const Pixels> &pixels) {
    const std::string path = resolveFile(fileName);
    if (path.empty())
        return ZStatus(ZStatus::kNotFound, ("image file not found: " + fileName).c_str());
    std::ifstream file(path, std::ios::binary);
    const std::vector<unsigned char> bytes{std::istreambuf_iterator<char>(file), {}};
    pixels = decodeImage(bytes.data(), bytes.size());
    if (!pixels)
        pixels = readThroughImage(path);
    if (!pixels)
        return ZStatus(ZStatus::kFailure, ("cannot read the image: " + path).c_str());
    return ZStatus();
}

ZStatus texturePixels(NodeId id, std::shared_ptr<const Pixels> &pixels, const Scene &from) {
    const Node *node = from.node(id);
    if (!node || !node->texture())
        return ZStatus(ZStatus::kInvalidParameter, "the node is not a texture");
    pixels = node->texture()->pixels;
    if (pixels)
        return ZStatus();
    const ZStatus status = readImage(node->texture()->fileName, pixels);
    if (status) // reading on demand is no change of the scene
        const_cast<Texture *>(node->texture())->pixels = pixels;
    return status;
}

void sampleImage(const Pixels &pixels, double u, double v, double rgba[4]) {
    const auto place = [](double coordinate, unsigned size, unsigned &low, unsigned &high) {
        if (!std::isfinite(coordinate))
            coordinate = 0;
        double at = (coordinate - std::floor(coordinate)) * size - 0.5;
        if (at < 0)
            at += size;
        low = unsigned(at) % size;
        high = (low + 1) % size;
        return at - std::floor(at);
    };
    unsigned x0, x1, y0, y1;
    const double fx = place(u, pixels.width, x0, x1);
    const double fy = place(1 - v, pixels.height, y0, y1);
    const auto pixel = [&pixels](unsigned x, unsigned y) {
        return &pixels.rgba[(size_t(y) * pixels.width + x) * 4];
    };
    const unsigned char *p[4] = {pixel(x0, y0), pixel(x1, y0), pixel(x0, y1), pixel(x1, y1)};
    for (int k = 0; k < 4; ++k) {
        const double top = p[0][k] + (double(p[1][k]) - p[0][k]) * fx;
        const double bottom = p[2][k] + (double(p[3][k]) - p[2][k]) * fx;
        rgba[k] = (top + (bottom - top) * fy) / 255;
    }
}

} // namespace devhost

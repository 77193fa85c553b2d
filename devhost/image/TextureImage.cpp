// SPDX-License-Identifier: MIT
// Decoding and sampling of texture images.
#include "devhost/image/TextureImage.h"

#include "devhost/image/ImageDecoder.h"
#include "devhost/image/ImageIo.h"
#include "devhost/image/Srgb.h"
#include "devhost/util/Guarded.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <new>

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

namespace {

/// High dynamic range is lost: textures have eight bits. Nor are their colours multiplied by the
/// opacity, as those of OpenEXR files are.
ZStatus readExrImage(const std::string &path, size_t fileBytes,
                     std::shared_ptr<const Pixels> &pixels) {
    auto image = std::make_shared<Pixels>();
    std::vector<float> values;
    if (const ZStatus status =
            readExr(path, image->width, image->height, values, "", mostPixels(fileBytes));
        status.error())
        return status;
    image->rgba.resize(values.size());
    const size_t row = size_t(4) * image->width;
    for (size_t y = 0; y < image->height; ++y) // the file's reader puts row 0 at the bottom
        for (size_t x = 0; x < row; x += 4) {
            const float *const from = &values[row * y + x];
            unsigned char *const to = &image->rgba[row * (image->height - 1 - y) + x];
            const float opacity = from[3] > 0 ? std::min(from[3], 1.0f) : 1;
            for (size_t channel = 0; channel < 3; ++channel)
                to[channel] = srgbByte(from[channel] / opacity);
            to[3] = toByte(from[3]);
        }
    pixels = std::move(image);
    return ZStatus();
}

/// Throws BadImage, but for OpenEXR.
ZStatus decode(const std::string &path, std::shared_ptr<const Pixels> &pixels) {
    if (imageFileFormat(path) == ImageFile::kExr)
        return readExrImage(path, fs::file_size(path), pixels);
    std::ifstream file(path, std::ios::binary);
    const std::vector<unsigned char> bytes{std::istreambuf_iterator<char>(file), {}};
    pixels = std::make_shared<const Pixels>(decodeImage(bytes));
    return ZStatus();
}

ZStatus read(const std::string &path, std::shared_ptr<const Pixels> &pixels) try {
    return decode(path, pixels);
} catch (const BadImage &bad) {
    return ZStatus(ZStatus::kFailure,
                   ("cannot read the image: " + path + ": " + bad.what()).c_str());
}

} // namespace

ZStatus readImage(const std::string &fileName, std::shared_ptr<const Pixels> &pixels) {
    const std::string path = resolveFile(fileName);
    if (path.empty())
        return ZStatus(ZStatus::kNotFound, ("image file not found: " + fileName).c_str());
    return guarded([&] { return read(path, pixels); });
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

std::string whyUnreadable(const Texture &texture) try {
    const std::string text = "the image cannot be read";
    const std::string path = resolveFile(texture.fileName);
    if (path.empty() && !texture.fileName.empty())
        return "the image is not there";
    if (path.empty())
        return texture.damage.empty() ? text : text + ": " + texture.damage;
    std::shared_ptr<const Pixels> pixels;
    decode(path, pixels);
    return text;
} catch (const BadImage &bad) {
    return std::string("the image cannot be read: ") + bad.what();
} catch (const std::bad_alloc &) {
    return "there is not enough memory for the image";
}

namespace {

/// The pixel of a row that stands for a place beside it.
unsigned wrapped(double place, unsigned size, Texture::Wrap wrap) {
    if (wrap == Texture::kClamped)
        return unsigned(std::clamp(place, 0.0, size - 1.0));
    const double period = wrap == Texture::kMirrored ? 2.0 * size : size;
    const double inside = place - std::floor(place / period) * period;
    return unsigned(inside < size ? inside : period - 1 - inside) % size;
}

/// The two pixels of a row that a coordinate lies between; the share of the second one.
double between(double coordinate, unsigned size, Texture::Wrap wrap, bool smooth, unsigned &low,
               unsigned &high) {
    const double place = std::isfinite(coordinate) ? coordinate * size - (smooth ? 0.5 : 0) : 0;
    low = wrapped(std::floor(place), size, wrap);
    high = smooth ? wrapped(std::floor(place) + 1, size, wrap) : low;
    return smooth ? place - std::floor(place) : 0;
}

} // namespace

void sampleImage(const Pixels &pixels, double u, double v, double rgba[4], const Texture &how) {
    unsigned x0, x1, y0, y1;
    const double fx = between(u, pixels.width, how.wrapU, how.smooth, x0, x1);
    // Rows count from the top.
    const double fy = between(1 - v, pixels.height, how.wrapV, how.smooth, y0, y1);
    const auto pixel = [&pixels](unsigned x, unsigned y) {
        return &pixels.rgba[(size_t(y) * pixels.width + x) * 4];
    };
    const unsigned char *p[4] = {pixel(x0, y0), pixel(x1, y0), pixel(x0, y1), pixel(x1, y1)};
    for (int k = 0; k < 4; ++k) {
        const auto value = [&](int corner) -> double {
            return k == 3 ? p[corner][k] / 255.0 : lightOfByte(p[corner][k]);
        };
        const double top = value(0) + (value(1) - value(0)) * fx;
        const double bottom = value(2) + (value(3) - value(2)) * fx;
        rgba[k] = top + (bottom - top) * fy;
    }
}

} // namespace devhost

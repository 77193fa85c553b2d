// SPDX-License-Identifier: MIT
// A picture in memory, with files to read it from and write it to.
#include "host/core/ZImage.h"

#include "devhost/image/ImageIo.h"
#include "devhost/util/Guarded.h"
#include "devhost/util/GuardedMemory.h"
#include "devhost/util/Hidden.h"
#include "devhost/util/Statuses.h"
#include "host/core/ZStatus.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <span>
#include <utility>
#include <vector>

using devhost::contents;
using devhost::guarded;
using devhost::invalid;

namespace {

constexpr unsigned kMaximumChannels = 4;

bool tooMany(std::size_t width, std::size_t height) {
    return width * height > devhost::kMaximumPixels;
}

ZStatus noPixels() {
    return ZStatus(ZStatus::kFailure, "the image has no pixels");
}

template <class Values>
void flipRows(Values &values, std::size_t rowLength) {
    const std::size_t rows = rowLength ? values.size() / rowLength : 0;
    for (std::size_t row = 0; row < rows / 2; ++row)
        std::swap_ranges(values.begin() + row * rowLength, values.begin() + (row + 1) * rowLength,
                         values.begin() + (rows - 1 - row) * rowLength);
}

/// Scales along one axis with a tent as wide as the larger of the old and the new pixel, so that
/// enlarging interpolates and shrinking averages. Samples lie `step` values apart.
void resample(const float *from, std::size_t oldCount, float *to, std::size_t newCount,
              std::size_t step) {
    const double ratio = static_cast<double>(oldCount) / static_cast<double>(newCount);
    const double radius = std::max(ratio, 1.0);
    for (std::size_t i = 0; i < newCount; ++i) {
        const double middle = (static_cast<double>(i) + 0.5) * ratio - 0.5;
        const auto first = static_cast<long>(std::ceil(middle - radius));
        const auto last = static_cast<long>(std::floor(middle + radius));
        double sum = 0, weights = 0;
        for (long k = first; k <= last; ++k) {
            const double weight = radius - std::abs(static_cast<double>(k) - middle);
            const long inside = std::clamp(k, 0L, static_cast<long>(oldCount) - 1);
            sum += weight * from[static_cast<std::size_t>(inside) * step];
            weights += weight;
        }
        to[i * step] = static_cast<float>(sum / weights);
    }
}

std::vector<float> scaledAcross(std::span<const float> pixels, std::size_t oldWidth,
                                std::size_t width, std::size_t rows, std::size_t channels) {
    std::vector<float> result(width * rows * channels);
    for (std::size_t row = 0; row < rows; ++row)
        for (std::size_t c = 0; c < channels; ++c)
            resample(&pixels[row * oldWidth * channels + c], oldWidth,
                     &result[row * width * channels + c], width, channels);
    return result;
}

std::vector<float> scaledUp(std::span<const float> pixels, std::size_t oldHeight,
                            std::size_t height, std::size_t rowLength) {
    std::vector<float> result(rowLength * height);
    for (std::size_t column = 0; column < rowLength; ++column)
        resample(&pixels[column], oldHeight, &result[column], height, rowLength);
    return result;
}

/// In the order that makes the smaller picture in between, which is then no larger than the larger
/// one of the old and the new.
std::vector<float> scaled(std::span<const float> pixels, std::size_t oldWidth,
                          std::size_t oldHeight, std::size_t width, std::size_t height,
                          std::size_t channels) {
    if (width * oldHeight <= oldWidth * height)
        return scaledUp(scaledAcross(pixels, oldWidth, width, oldHeight, channels), oldHeight,
                        height, width * channels);
    return scaledAcross(scaledUp(pixels, oldHeight, height, oldWidth * channels), oldWidth, width,
                        height, channels);
}

/// Spreads 1 to 4 channels to four: grey fills the colours, an absent opacity is one.
std::vector<float> asRgba(std::span<const float> pixels, unsigned channels) {
    std::vector<float> rgba;
    rgba.reserve(pixels.size() / channels * 4);
    for (std::size_t i = 0; i < pixels.size(); i += channels) {
        const float *p = &pixels[i];
        const bool grey = channels < 3;
        const bool opaque = channels % 2 == 1;
        rgba.insert(rgba.end(), {p[0], grey ? p[0] : p[1], grey ? p[0] : p[2],
                                 opaque ? 1.0f : p[channels - 1]});
    }
    return rgba;
}

} // namespace

struct ZImage::Contents {
    static constexpr char kPixels[] = "the pixels of an image";
    static constexpr char kDepths[] = "the depth map of an image";
    devhost::LentVector<unsigned char, kPixels> bytes;
    devhost::LentVector<float, kPixels> floats;
    devhost::LentVector<float, kDepths> depths;
    unsigned width = 0;
    unsigned height = 0;
    unsigned channels = 0;
    unsigned depthWidth = 0;
    unsigned depthHeight = 0;
    ZPixelType type = kUnknown;
};

ZImage::ZImage() noexcept : contents_(nullptr) {}

ZImage::ZImage(const ZImage &other) : contents_(devhost::copied(other.contents_)) {}

ZImage::ZImage(ZImage &&other) noexcept : contents_(std::exchange(other.contents_, nullptr)) {}

ZImage::~ZImage() {
    delete contents_;
}

ZImage &ZImage::operator=(const ZImage &other) {
    return *this = ZImage(other);
}

ZImage &ZImage::operator=(ZImage &&other) noexcept {
    std::swap(contents_, other.contents_);
    return *this;
}

ZStatus ZImage::create(unsigned width, unsigned height, unsigned channels, ZPixelType type) {
    if (width == 0 || height == 0)
        return invalid("an image needs a width and a height");
    if (channels == 0 || channels > kMaximumChannels)
        return invalid("an image has 1 to 4 channels");
    if (type != kByte && type != kFloat)
        return invalid("the pixel type is not known");
    if (tooMany(width, height))
        return ZStatus::kInsufficientMemory;
    return guarded([&] {
        const std::size_t count = std::size_t{width} * height * channels;
        auto fresh = std::make_unique<Contents>();
        fresh->bytes.resize(type == kByte ? count : 0);
        fresh->floats.resize(type == kFloat ? count : 0);
        fresh->width = width;
        fresh->height = height;
        fresh->channels = channels;
        fresh->type = type;
        release();
        contents_ = fresh.release();
    });
}

void ZImage::release() {
    delete std::exchange(contents_, nullptr);
}

ZStatus ZImage::getSize(unsigned &width, unsigned &height) const {
    width = contents(contents_).width;
    height = contents(contents_).height;
    return ZStatus();
}

unsigned ZImage::channels() const {
    return contents(contents_).channels;
}

unsigned ZImage::depth() const {
    return channels() * static_cast<unsigned>(pixelType() == kFloat ? sizeof(float) : 1);
}

ZImage::ZPixelType ZImage::pixelType() const {
    return contents(contents_).type;
}

unsigned char *ZImage::pixels() {
    return pixelType() == kByte ? contents_->bytes.data() : nullptr;
}

const unsigned char *ZImage::pixels() const {
    return pixelType() == kByte ? contents_->bytes.data() : nullptr;
}

float *ZImage::floatPixels() {
    return pixelType() == kFloat ? contents_->floats.data() : nullptr;
}

const float *ZImage::floatPixels() const {
    return pixelType() == kFloat ? contents_->floats.data() : nullptr;
}

ZStatus ZImage::setPixels(const unsigned char *pixels, unsigned width, unsigned height) {
    if (!pixels)
        return invalid("there are no pixels");
    const ZStatus status = create(width, height);
    if (!status.error())
        std::copy_n(pixels, contents_->bytes.size(), contents_->bytes.begin());
    return status;
}

ZStatus ZImage::setFloatPixels(const float *pixels, unsigned width, unsigned height,
                               unsigned channels) {
    if (!pixels)
        return invalid("there are no pixels");
    const ZStatus status = create(width, height, channels, kFloat);
    if (!status.error())
        std::copy_n(pixels, contents_->floats.size(), contents_->floats.begin());
    return status;
}

ZStatus ZImage::convertPixelFormat(ZPixelType type) {
    if (type != kByte && type != kFloat)
        return invalid("the pixel type is not known");
    if (pixelType() == kUnknown)
        return noPixels();
    if (type == pixelType())
        return ZStatus();
    return guarded([&] {
        Contents &c = *contents_;
        if (type == kByte) {
            const auto bytes = devhost::toBytes(c.floats.data(), c.floats.size());
            c.bytes.assign(bytes.begin(), bytes.end());
            c.floats = {};
        } else {
            const auto floats = devhost::toFloats(c.bytes.data(), c.bytes.size());
            c.floats.assign(floats.begin(), floats.end());
            c.bytes = {};
        }
        c.type = type;
    });
}

ZStatus ZImage::setDepthMap(const float *depths, unsigned width, unsigned height) {
    if (!depths || width == 0 || height == 0)
        return invalid("a depth map needs values, a width and a height");
    return guarded([&] {
        Contents &c = devhost::made(contents_);
        c.depths.assign(depths, depths + std::size_t{width} * height);
        c.depthWidth = width;
        c.depthHeight = height;
    });
}

const float *ZImage::depthMap() const {
    const auto &depths = contents(contents_).depths;
    return depths.empty() ? nullptr : depths.data();
}

ZStatus ZImage::getDepthMapSize(unsigned &width, unsigned &height) const {
    width = contents(contents_).depthWidth;
    height = contents(contents_).depthHeight;
    return ZStatus();
}

ZStatus ZImage::readFromFile(const ZString &path, ZPixelType type) {
    return guarded([&] {
        const std::string name = path.asUTF8();
        ZImage read;
        ZStatus status;
        unsigned width = 0, height = 0;
        if (devhost::imageFileFormat(name) == devhost::ImageFile::kExr) {
            std::vector<float> pixels;
            status = devhost::readExr(name, width, height, pixels);
            if (!status.error())
                status = read.setFloatPixels(pixels.data(), width, height);
        } else {
            std::vector<unsigned char> pixels;
            status = devhost::readPng(name, width, height, pixels);
            if (!status.error())
                status = read.setPixels(pixels.data(), width, height);
        }
        if (!status.error() && type != kUnknown)
            status = read.convertPixelFormat(type);
        if (!status.error())
            *this = std::move(read);
        return status;
    });
}

ZStatus ZImage::writeToFile(const ZString &path, const ZString &format) const {
    const bool png = format == ZString("png");
    if (!png && format != ZString("exr"))
        return invalid("the format must be png or exr");
    if (pixelType() == kUnknown)
        return noPixels();
    return guarded([&] {
        const Contents &c = *contents_;
        const std::string name = path.asUTF8();
        if (png && c.type == kByte && c.channels == 4)
            return devhost::writePng(name, c.width, c.height, c.bytes.data());
        const std::vector<float> rgba =
            c.type == kFloat
                ? asRgba(c.floats, c.channels)
                : asRgba(devhost::toFloats(c.bytes.data(), c.bytes.size()), c.channels);
        if (!png)
            return devhost::writeExr(name, c.width, c.height, rgba.data());
        return devhost::writePng(name, c.width, c.height,
                                 devhost::toBytes(rgba.data(), rgba.size()).data());
    });
}

ZStatus ZImage::resize(unsigned width, unsigned height, bool preserveAspectRatio) {
    if (width == 0 || height == 0)
        return invalid("an image needs a width and a height");
    if (pixelType() == kUnknown)
        return noPixels();
    const Contents &old = *contents_;
    if (preserveAspectRatio) {
        const double scale = std::min(double(width) / old.width, double(height) / old.height);
        width = std::max(1u, static_cast<unsigned>(std::lround(old.width * scale)));
        height = std::max(1u, static_cast<unsigned>(std::lround(old.height * scale)));
    }
    if (tooMany(width, height))
        return ZStatus::kInsufficientMemory;
    return guarded([&] {
        const ZPixelType type = old.type;
        ZImage result(*this);
        result.convertPixelFormat(kFloat);
        const std::vector<float> pixels =
            scaled(result.contents_->floats, old.width, old.height, width, height, old.channels);
        ZStatus status = result.setFloatPixels(pixels.data(), width, height, old.channels);
        if (!status.error())
            status = result.convertPixelFormat(type);
        if (!status.error())
            *this = std::move(result);
        return status;
    });
}

void ZImage::verticalFlip() {
    if (!contents_)
        return;
    Contents &c = *contents_;
    flipRows(c.bytes, std::size_t{c.width} * c.channels);
    flipRows(c.floats, std::size_t{c.width} * c.channels);
    flipRows(c.depths, c.depthWidth);
}

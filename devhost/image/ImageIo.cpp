// SPDX-License-Identifier: MIT
// Reading and writing of picture files with libpng and OpenEXR.
#include "devhost/image/ImageIo.h"

#include "devhost/image/ExrStream.h"
#include "devhost/image/PngEncoder.h"
#include "devhost/util/AtomicFile.h"

#include <Imath/half.h>
#include <OpenEXR/ImfChannelList.h>
#include <OpenEXR/ImfFloatAttribute.h>
#include <OpenEXR/ImfFrameBuffer.h>
#include <OpenEXR/ImfHeader.h>
#include <OpenEXR/ImfInputFile.h>
#include <OpenEXR/ImfOutputFile.h>
#include <OpenEXR/ImfStringAttribute.h>
#include <png.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <list>
#include <new>
#include <stdexcept>

namespace devhost {
namespace {

constexpr std::size_t kRgba = 4;
constexpr unsigned kMaximumSide = 1u << 20;

ZStatus failure(const char *action, const std::string &path, const std::string &reason) {
    return ZStatus(ZStatus::kFailure,
                   (std::string("cannot ") + action + " '" + path + "': " + reason).c_str());
}

bool isReasonable(std::size_t width, std::size_t height) {
    return width > 0 && height > 0 && width <= kMaximumSide && height <= kMaximumSide &&
           width * height <= kMaximumPixels;
}

ZStatus unreasonableSize() {
    return ZStatus(ZStatus::kInvalidParameter, "the picture has no pixels, or too many");
}

/// Runs a reader or writer, whose exceptions become a status.
template <class Work>
ZStatus guarded(const char *action, const std::string &path, Work work) {
    try {
        return work();
    } catch (const std::bad_alloc &) {
        return ZStatus::kInsufficientMemory;
    } catch (const std::exception &error) {
        return failure(action, path, error.what());
    }
}

/// Fails unless there is a file to read.
ZStatus checkReadable(const std::string &path) {
    std::error_code ignored;
    if (!std::filesystem::exists(path, ignored))
        return ZStatus(ZStatus::kNotFound, ("there is no file '" + path + "'").c_str());
    if (!std::filesystem::is_regular_file(path, ignored))
        return failure("read", path, "it is no regular file");
    return ZStatus();
}

/// The simplified interface's picture, freed on every path.
struct PngImage : png_image {
    PngImage() : png_image() { version = PNG_IMAGE_VERSION; }
    ~PngImage() { png_image_free(this); }
};

half toHalf(float value) {
    constexpr float most = HALF_MAX;
    return half(std::clamp(value, -most, most));
}

/// Copies rows in the opposite order: files begin at the top, pictures in memory at the bottom.
std::vector<float> flipped(const float *pixels, std::size_t rowLength, std::size_t rows) {
    std::vector<float> result(rowLength * rows);
    for (std::size_t row = 0; row < rows; ++row)
        std::copy_n(pixels + row * rowLength, rowLength,
                    result.data() + (rows - 1 - row) * rowLength);
    return result;
}

std::string channelName(const std::string &layer, const std::string &channel) {
    return layer.empty() ? channel : layer + "." + channel;
}

Imf::Header makeHeader(unsigned width, unsigned height, const ExrHeader &about) {
    const int left = static_cast<int>(about.left),
              imageHeight = static_cast<int>(about.imageHeight);
    // The file counts its rows from the top.
    const int top = about.imageHeight ? imageHeight - static_cast<int>(about.bottom + height) : 0;
    const Imath::Box2i data(
        {left, top}, {left + static_cast<int>(width) - 1, top + static_cast<int>(height) - 1});
    const Imath::Box2i display =
        about.imageHeight
            ? Imath::Box2i({0, 0}, {static_cast<int>(about.imageWidth) - 1, imageHeight - 1})
            : data;
    Imf::Header header(display, data, about.pixelAspectRatio);
    header.compression() = Imf::ZIP_COMPRESSION;
    header.zipCompressionLevel() = kExrLevel;
    for (const auto &[name, number] : about.numbers)
        header.insert(name, Imf::FloatAttribute(number));
    for (const auto &[name, text] : about.texts)
        header.insert(name, Imf::StringAttribute(text));
    return header;
}

/// The pixels of a layer from the top down, as floats or halves.
struct LayerRows {
    std::vector<float> floats;
    std::vector<half> halves;

    LayerRows(const ImageLayer &layer, unsigned width, unsigned height)
        : floats(flipped(layer.pixels, width * layer.channels.size(), height)) {
        if (!layer.half)
            return;
        halves.resize(floats.size());
        std::transform(floats.begin(), floats.end(), halves.begin(), toHalf);
        floats = {};
    }
    /// One of so many channels.
    Imf::Slice channel(std::size_t index, std::size_t count, unsigned width) {
        const auto slice = [&](Imf::PixelType type, auto *values) {
            const std::size_t stride = count * sizeof *values;
            return Imf::Slice(type, reinterpret_cast<char *>(values + index), stride,
                              stride * width);
        };
        return halves.empty() ? slice(Imf::FLOAT, floats.data()) : slice(Imf::HALF, halves.data());
    }
};

ZStatus writeLayers(AtomicFile &file, const std::string &path, unsigned width, unsigned height,
                    const std::vector<ImageLayer> &layers, const ExrHeader &about) {
    Imf::Header header = makeHeader(width, height, about);
    const Imath::Box2i window = header.dataWindow();
    Imf::FrameBuffer frame;
    std::list<LayerRows> rows;
    for (const ImageLayer &layer : layers) {
        const std::size_t count = layer.channels.size();
        LayerRows &values = rows.emplace_back(layer, width, height);
        for (std::size_t i = 0; i < count; ++i) {
            const std::string name = channelName(layer.name, layer.channels[i]);
            if (frame.findSlice(name))
                return ZStatus(ZStatus::kInvalidParameter,
                               ("two channels are called '" + name + "'").c_str());
            Imf::Slice slice = values.channel(i, count, width);
            // The library counts from the origin of the whole image.
            slice.base -= window.min.x * std::ptrdiff_t(slice.xStride) +
                          window.min.y * std::ptrdiff_t(slice.yStride);
            header.channels().insert(name, Imf::Channel(slice.type));
            frame.insert(name, slice);
        }
    }
    ExrStream stream(path, file.stream());
    {
        Imf::OutputFile output(stream, header);
        output.setFrameBuffer(frame);
        output.writePixels(static_cast<int>(height));
    } // The file's line table is written when the writer goes.
    return ZStatus();
}

} // namespace

ZStatus writePng(const std::string &path, unsigned width, unsigned height,
                 const unsigned char *rgba) {
    if (!rgba || !isReasonable(width, height))
        return unreasonableSize();
    AtomicFile file(path);
    if (!file.stream())
        return file.status();
    const std::string wrong = encodePng(file.stream(), width, height, rgba);
    return wrong.empty() ? file.commit() : failure("write", path, wrong);
}

ZStatus writeExr(const std::string &path, unsigned width, unsigned height, const float *rgba) {
    return writeExr(path, width, height, {ImageLayer{"", {"R", "G", "B", "A"}, rgba}});
}

ZStatus writeExr(const std::string &path, unsigned width, unsigned height,
                 const std::vector<ImageLayer> &layers, const ExrHeader &header) {
    const auto isEmpty = [](const ImageLayer &l) { return !l.pixels || l.channels.empty(); };
    if (layers.empty() || std::any_of(layers.begin(), layers.end(), isEmpty))
        return ZStatus(ZStatus::kInvalidParameter, "there is no layer, or one without pixels");
    if (!isReasonable(width, height))
        return unreasonableSize();
    return guarded("write", path, [&] {
        AtomicFile file(path);
        if (!file.stream())
            return file.status();
        const ZStatus status = writeLayers(file, path, width, height, layers, header);
        return status.error() ? status : file.commit();
    });
}

ZStatus readPng(const std::string &path, unsigned &width, unsigned &height,
                std::vector<unsigned char> &rgba) {
    if (const ZStatus status = checkReadable(path); status.error())
        return status;
    return guarded("read", path, [&] {
        PngImage image;
        if (!png_image_begin_read_from_file(&image, path.c_str()))
            return failure("read", path, image.message);
        if (!isReasonable(image.width, image.height))
            return failure("read", path, "its size is not plausible");
        image.format = PNG_FORMAT_RGBA;
        std::vector<unsigned char> pixels(kRgba * image.width * image.height);
        const auto bottomUp = -static_cast<png_int_32>(image.width * kRgba);
        if (!png_image_finish_read(&image, nullptr, pixels.data(), bottomUp, nullptr))
            return failure("read", path, image.message);
        width = image.width;
        height = image.height;
        rgba = std::move(pixels);
        return ZStatus();
    });
}

ZStatus readExr(const std::string &path, unsigned &width, unsigned &height,
                std::vector<float> &rgba, const std::string &layer, std::size_t mostPixels) {
    if (const ZStatus status = checkReadable(path); status.error())
        return status;
    return guarded("read", path, [&] {
        Imf::InputFile input(path.c_str());
        const Imath::Box2i window = input.header().dataWindow();
        const auto columns = static_cast<std::size_t>(int64_t{window.max.x} - window.min.x + 1);
        const auto rows = static_cast<std::size_t>(int64_t{window.max.y} - window.min.y + 1);
        if (!isReasonable(columns, rows) || columns * rows > mostPixels)
            return failure("read", path, "its size is not plausible");

        const auto has = [&](const std::string &channel) {
            return input.header().channels().findChannel(channelName(layer, channel)) != nullptr;
        };
        const bool grey = has("Y") && !has("R") && !has("G") && !has("B");
        std::vector<float> pixels(kRgba * columns * rows);
        Imf::FrameBuffer frame;
        bool found = false;
        const char *const names[kRgba] = {grey ? "Y" : "R", "G", "B", "A"};
        for (std::size_t i = 0; i < kRgba; ++i) {
            if (i > 0 && i < 3 && grey)
                continue;
            found = found || has(names[i]);
            frame.insert(channelName(layer, names[i]),
                         Imf::Slice::Make(Imf::FLOAT, pixels.data() + i, window,
                                          kRgba * sizeof(float), kRgba * columns * sizeof(float), 1,
                                          1, i == 3 ? 1.0 : 0.0));
        }
        if (!found)
            return ZStatus(
                ZStatus::kNotFound,
                ("'" + path + "' has no colour channel in the layer '" + layer + "'").c_str());
        input.setFrameBuffer(frame);
        input.readPixels(window.min.y, window.max.y);
        if (grey)
            for (std::size_t i = 0; i < pixels.size(); i += kRgba)
                pixels[i + 1] = pixels[i + 2] = pixels[i];

        width = static_cast<unsigned>(columns);
        height = static_cast<unsigned>(rows);
        rgba = flipped(pixels.data(), kRgba * columns, rows);
        return ZStatus();
    });
}

ImageFile imageFileFormat(const std::string &path) {
    char start[8] = {};
    std::ifstream(path, std::ios::binary).read(start, sizeof start);
    if (std::memcmp(start, "\x89PNG\r\n\x1a\n", 8) == 0)
        return ImageFile::kPng;
    if (std::memcmp(start, "\x76\x2f\x31\x01", 4) == 0)
        return ImageFile::kExr;
    return ImageFile::kUnknown;
}

unsigned char toByte(float value) {
    if (!(value > 0.0f))
        return 0;
    return value >= 1.0f ? 255 : static_cast<unsigned char>(value * 255.0f + 0.5f);
}

std::vector<unsigned char> toBytes(const float *values, std::size_t count) {
    std::vector<unsigned char> bytes(count);
    std::transform(values, values + count, bytes.begin(), toByte);
    return bytes;
}

std::vector<float> toFloats(const unsigned char *values, std::size_t count) {
    std::vector<float> floats(count);
    std::transform(values, values + count, floats.begin(),
                   [](unsigned char value) { return static_cast<float>(value) / 255.0f; });
    return floats;
}

} // namespace devhost

// SPDX-License-Identifier: MIT
#pragma once

// Reading and writing of picture files. In memory, row 0 is at the bottom and channels are
// interleaved. Every writer leaves either the whole file or what was there before.

#include "host/base/HostApi.h"
#include "host/core/ZStatus.h"

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace devhost {

/// Pictures of more pixels are refused: in a file they are a sign of damage.
constexpr std::size_t kMaximumPixels = std::size_t{1} << 28;

/// One named group of channels of an EXR file; the unnamed layer is the picture itself.
struct ImageLayer {
    std::string name;
    /// The channels' names, such as "R", "G", "B", "A"; in the file "name.R" and so on.
    std::vector<std::string> channels;
    /// width * height * channels.size() values.
    const float *pixels = nullptr;
    /// Kept as 16-bit floats; what is beyond their 65504 becomes that.
    bool half = false;
};

/// What an EXR file tells beside its pixels.
struct ExrHeader {
    /// The size of the whole image that the pixels are a part of, and where they begin in it, from
    /// its lower left. No size: they are all of it.
    unsigned imageWidth = 0, imageHeight = 0, left = 0, bottom = 0;
    float pixelAspectRatio = 1;
    /// Attributes by name.
    std::map<std::string, float> numbers;
    std::map<std::string, std::string> texts;
};

OPENQUIL_API ZStatus writePng(const std::string &path, unsigned width, unsigned height,
                              const unsigned char *rgba);
OPENQUIL_API ZStatus writeExr(const std::string &path, unsigned width, unsigned height,
                              const float *rgba);
/// Fails with kInvalidParameter when there is no layer, or two channels get one name.
OPENQUIL_API ZStatus writeExr(const std::string &path, unsigned width, unsigned height,
                              const std::vector<ImageLayer> &layers, const ExrHeader &header = {});

/// Both fail with kNotFound when there is no such file; a failure leaves the results as they were.
OPENQUIL_API ZStatus readPng(const std::string &path, unsigned &width, unsigned &height,
                             std::vector<unsigned char> &rgba);
/// Reads the channels R, G, B and A of the named layer; an absent colour is 0 (a lone "Y" is grey),
/// an absent A is 1. Fails with kNotFound when the layer has none of them.
OPENQUIL_API ZStatus readExr(const std::string &path, unsigned &width, unsigned &height,
                             std::vector<float> &rgba, const std::string &layer = "",
                             std::size_t mostPixels = kMaximumPixels);

enum class ImageFile { kUnknown, kPng, kExr };

/// Tells the format by the file's first bytes.
OPENQUIL_API ImageFile imageFileFormat(const std::string &path);

/// Rounds 0 to 1 to 0 to 255, clamping what is outside; not-a-number becomes 0.
OPENQUIL_API unsigned char toByte(float value);
OPENQUIL_API std::vector<unsigned char> toBytes(const float *values, std::size_t count);
OPENQUIL_API std::vector<float> toFloats(const unsigned char *values, std::size_t count);

} // namespace devhost

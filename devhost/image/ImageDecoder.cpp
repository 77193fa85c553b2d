// SPDX-License-Identifier: MIT
#include "devhost/image/ImageDecoder.h"

#include "devhost/image/ImageIo.h"

#include <algorithm>
#include <cstring>

namespace devhost {
namespace {

constexpr size_t kMostInAny = size_t{8192} * 8192;
constexpr size_t kMostPerByte = 16; // photographs have five or so

bool startsWith(ImageBytes file, const char *signature, size_t count) {
    return file.size() >= count && std::memcmp(file.data(), signature, count) == 0;
}

} // namespace

size_t mostPixels(size_t fileBytes) {
    return std::clamp(std::min(fileBytes, kMaximumPixels) * kMostPerByte, kMostInAny,
                      kMaximumPixels);
}

Pixels makePixels(size_t width, size_t height, ImageBytes file) {
    if (!width || !height || width > mostPixels(file.size()) / height)
        throw BadImage("its size of " + std::to_string(width) + " x " + std::to_string(height) +
                       " pixels is not plausible");
    Pixels pixels;
    pixels.width = unsigned(width);
    pixels.height = unsigned(height);
    pixels.rgba.resize(4 * width * height);
    return pixels;
}

Pixels decodeImage(ImageBytes file) {
    if (startsWith(file, "\x89PNG\r\n\x1a\n", 8))
        return decodePng(file);
    if (startsWith(file, "\xff\xd8", 2))
        return decodeJpeg(file);
    return decodeBmpTgaPsd(file);
}

} // namespace devhost

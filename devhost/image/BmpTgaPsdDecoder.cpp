// SPDX-License-Identifier: MIT
// BMP, TGA and PSD files by stb_image, whose assertions are failures here and whose memory is
// clear: what damaged files leave out is black.
#include "devhost/image/ImageDecoder.h"

#include <algorithm>
#include <cstdlib>
#include <memory>

namespace {

void require(bool holds) {
    if (!holds)
        throw devhost::BadImage("it is damaged");
}

} // namespace

#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_STATIC
#define STBI_NO_STDIO
#define STBI_ONLY_BMP
#define STBI_ONLY_TGA
#define STBI_ONLY_PSD
#define STBI_ASSERT(condition) require(condition)
#define STBI_MALLOC(size) std::calloc(1, size)
#define STBI_REALLOC(memory, size) std::realloc(memory, size)
#define STBI_FREE(memory) std::free(memory)
#include <stb/stb_image.h>

namespace devhost {

Pixels decodeBmpTgaPsd(ImageBytes file) {
    int width = 0, height = 0, channels = 0;
    if (file.size() > INT32_MAX)
        throw BadImage("it is too large");
    const int size = int(file.size());
    if (!stbi_info_from_memory(file.data(), size, &width, &height, &channels))
        throw BadImage("its format is not known");
    Pixels pixels = makePixels(size_t(width), size_t(height), file);
    const std::unique_ptr<stbi_uc, void (*)(void *)> read(
        stbi_load_from_memory(file.data(), size, &width, &height, &channels, 4), stbi_image_free);
    if (!read)
        throw BadImage(stbi_failure_reason());
    std::copy_n(read.get(), pixels.rgba.size(), pixels.rgba.begin());
    return pixels;
}

} // namespace devhost

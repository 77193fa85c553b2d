// SPDX-License-Identifier: MIT
// Pictures in memory.

#include "devhost/core_module/items.h"
#include "devhost/core_module/raw_items.h"
#include "devhost/core_module/scene_values.h"
#include "devhost/util/KnownMemory.h"
#include "host/core/ZImage.h"
#include "host/core/ZImageFileInfo.h"
#include "wrappers/rows/constants.h"

#include <cstring>

namespace {

using namespace binding;

/// False, with an exception set, when a buffer is known to be shorter than the host will read.
bool is_long_enough(const void *source, unsigned long items, size_t item_size) {
    const auto size = devhost::knownBytes(source);
    if (!size || *size / item_size >= items)
        return true;
    PyErr_SetString(PyExc_ValueError, "the buffer is shorter than the picture");
    return false;
}

PyObject *set_pixels(ZImage &self, unsigned char const *pixels, unsigned int width,
                     unsigned int height) {
    if (!is_long_enough(pixels, 4ul * width * height, 1))
        return nullptr;
    return status_result(self.setPixels(pixels, width, height));
}

PyObject *set_float_pixels(ZImage &self, float const *pixels, unsigned int width,
                           unsigned int height, unsigned int channels) {
    if (channels <= 4 && !is_long_enough(pixels, 1ul * width * height * channels, sizeof(float)))
        return nullptr;
    return status_result(self.setFloatPixels(pixels, width, height, channels));
}

PyObject *set_depth_map(ZImage &self, float const *depths, unsigned int width,
                        unsigned int height) {
    if (!is_long_enough(depths, 1ul * width * height, sizeof(float)))
        return nullptr;
    return status_result(self.setDepthMap(depths, width, height));
}

/// The memory of all pixels: bytes or floats, row by row from the bottom.
std::span<char> memory_of(ZImage &image) {
    unsigned width, height;
    image.getSize(width, height);
    void *start = image.pixelType() == ZImage::kFloat ? static_cast<void *>(image.floatPixels())
                                                      : image.pixels();
    return {static_cast<char *>(start), size_t(width) * height * image.depth()};
}

PyObject *read_pixels(ZImage &self) {
    const auto memory = memory_of(self);
    return PyString_FromStringAndSize(memory.data(), static_cast<Py_ssize_t>(memory.size()));
}

PyObject *write_pixels(ZImage &self, PyObject *data) {
    const RawItems pixels(data, self.pixelType() == ZImage::kFloat ? 'f' : 'B');
    if (!pixels) {
        if (!pixels.failed())
            PyErr_SetString(PyExc_TypeError, "the pixels must be a str, bytearray or buffer");
        return nullptr;
    }
    const auto memory = memory_of(self);
    if (pixels.size() != memory.size()) {
        PyErr_Format(PyExc_ValueError, "the picture has %zd bytes, not %zd",
                     static_cast<Py_ssize_t>(memory.size()),
                     static_cast<Py_ssize_t>(pixels.size()));
        return nullptr;
    }
    if (!memory.empty())
        std::memcpy(memory.data(), pixels.data(), memory.size());
    Py_RETURN_NONE;
}

unsigned int width(ZImage &self) {
    unsigned int width, height;
    self.getSize(width, height);
    return width;
}

unsigned int height(ZImage &self) {
    unsigned int width, height;
    self.getSize(width, height);
    return height;
}

} // namespace

#define ROW_LIST "devhost/core_module/image.def"
#define ROW_TABLE image_rows
#include "wrappers/rows/make_rows.h"

CONSTANTS(image_constants, ENUMERATOR(ZImage, kUnknown), ENUMERATOR(ZImage, kByte),
          ENUMERATOR(ZImage, kFloat), ENUMERATOR(ZImageFileInfo, kImageTypeUnknown),
          ENUMERATOR(ZImageFileInfo, kImageTypeColor), ENUMERATOR(ZImageFileInfo, kImageTypeNormal),
          ENUMERATOR(ZImageFileInfo, kImageTypeBump), ENUMERATOR(ZImageFileInfo, kHwTextureUnknown),
          ENUMERATOR(ZImageFileInfo, kHwTexture1D), ENUMERATOR(ZImageFileInfo, kHwTexture2D),
          ENUMERATOR(ZImageFileInfo, kHwTexture3D), ENUMERATOR(ZImageFileInfo, kHwTextureRectangle),
          ENUMERATOR(ZImageFileInfo, kHwTextureCubeMap))

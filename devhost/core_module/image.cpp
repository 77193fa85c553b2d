// Pictures in memory.

#include "devhost/core_module/items.h"
#include "devhost/util/KnownMemory.h"
#include "host/core/ZImage.h"
#include "host/core/ZImageFileInfo.h"
#include "wrappers/rows/wrapper_table.h"

#include <cstring>

ROWS_BEGIN

/// False, with an exception set, when a buffer is known to be shorter than the host will read.
static bool is_long_enough(const void *source, unsigned long items, size_t item_size) {
    const auto size = devhost::knownBytes(source);
    if (!size || *size / item_size >= items)
        return true;
    PyErr_SetString(PyExc_ValueError, "the buffer is shorter than the picture");
    return false;
}

static PyObject *set_pixels(ZImage &self, unsigned char const *pixels, unsigned int width,
                            unsigned int height) {
    if (!is_long_enough(pixels, 4ul * width * height, 1))
        return nullptr;
    return status_result(self.setPixels(pixels, width, height));
}

static PyObject *set_float_pixels(ZImage &self, float const *pixels, unsigned int width,
                                  unsigned int height, unsigned int channels) {
    if (channels <= 4 && !is_long_enough(pixels, 1ul * width * height * channels, sizeof(float)))
        return nullptr;
    return status_result(self.setFloatPixels(pixels, width, height, channels));
}

static PyObject *set_depth_map(ZImage &self, float const *depths, unsigned int width,
                               unsigned int height) {
    if (!is_long_enough(depths, 1ul * width * height, sizeof(float)))
        return nullptr;
    return status_result(self.setDepthMap(depths, width, height));
}

/// The memory of all pixels: bytes or floats, row by row from the bottom.
static std::span<char> memory_of(ZImage &image) {
    unsigned width, height;
    image.getSize(width, height);
    void *start = image.pixelType() == ZImage::kFloat ? static_cast<void *>(image.floatPixels())
                                                      : image.pixels();
    return {static_cast<char *>(start), size_t(width) * height * image.depth()};
}

static PyObject *read_pixels(ZImage &self) {
    const auto memory = memory_of(self);
    return PyString_FromStringAndSize(memory.data(), static_cast<Py_ssize_t>(memory.size()));
}

static PyObject *write_pixels(ZImage &self, PyObject *data) {
    const char *bytes;
    size_t size;
    if (!raw_bytes(data, bytes, size)) {
        PyErr_SetString(PyExc_TypeError, "the pixels must be a str, bytearray or buffer");
        return nullptr;
    }
    const auto memory = memory_of(self);
    if (size != memory.size()) {
        PyErr_Format(PyExc_ValueError, "the picture has %zd bytes, not %zd",
                     static_cast<Py_ssize_t>(memory.size()), static_cast<Py_ssize_t>(size));
        return nullptr;
    }
    if (size)
        std::memcpy(memory.data(), bytes, size);
    Py_RETURN_NONE;
}

static unsigned int width(ZImage &self) {
    unsigned int width, height;
    self.getSize(width, height);
    return width;
}

static unsigned int height(ZImage &self) {
    unsigned int width, height;
    self.getSize(width, height);
    return height;
}

CONSTRUCTOR_CASE(ZImage, 1, ZImage())
CONSTRUCTOR_CASE(ZImage, 2, ZImage(ZImage const &))
CONSTRUCTOR_OVERLOADS(ZImage, &new_ZImage_1, &new_ZImage_2)
// The pixel type 0 (kUnknown) has no meaning here; 1 is kByte.
METHOD(ZImage, create, ZStatus(unsigned int, unsigned int, unsigned int, ZImage::ZPixelType), 4, 1)
METHOD(ZImage, release, void())
METHOD(ZImage, getSize, ZStatus(unsigned int &, unsigned int &) const)
EXTENSION(ZImage, width, unsigned int() const, width)
EXTENSION(ZImage, height, unsigned int() const, height)
METHOD(ZImage, channels, unsigned int() const)
METHOD(ZImage, depth, unsigned int() const)
METHOD(ZImage, pixelType, ZImage::ZPixelType() const)
METHOD(ZImage, pixels, unsigned char *())
METHOD(ZImage, floatPixels, float *())
EXTENSION(ZImage, readPixels, PyObject *() const, read_pixels)
EXTENSION(ZImage, writePixels, void(PyObject *), write_pixels)
EXTENSION(ZImage, setPixels, ZStatus(unsigned char const *, unsigned int, unsigned int), set_pixels)
EXTENSION(ZImage, setFloatPixels, ZStatus(float const *, unsigned int, unsigned int, unsigned int),
          set_float_pixels, 4)
METHOD(ZImage, convertPixelFormat, ZStatus(ZImage::ZPixelType))
EXTENSION(ZImage, setDepthMap, ZStatus(float const *, unsigned int, unsigned int), set_depth_map)
METHOD(ZImage, depthMap, float const *() const)
METHOD(ZImage, getDepthMapSize, ZStatus(unsigned int &, unsigned int &) const)
METHOD(ZImage, readFromFile, ZStatus(ZString const &, ZImage::ZPixelType), 0)
EXTENSION_CASE(
    ZImage, writeToFile, 1, ZStatus(ZString const &) const,
    +[](ZImage &self, ZString const &path) { return self.writeToFile(path); })
METHOD_CASE(ZImage, writeToFile, 2, ZStatus(ZString const &, ZString const &) const)
OVERLOADS(ZImage, writeToFile, &ZImage_writeToFile_1, &ZImage_writeToFile_2)
METHOD(ZImage, resize, ZStatus(unsigned int, unsigned int, bool), 1)
METHOD(ZImage, verticalFlip, void())
DESTRUCTOR(ZImage)
PROXY(ZImage)

REGISTRATION(ZImageFileInfo)

ROWS_END(image_rows)

CONSTANTS(image_constants, ENUMERATOR(ZImage, kUnknown), ENUMERATOR(ZImage, kByte),
          ENUMERATOR(ZImage, kFloat), ENUMERATOR(ZImageFileInfo, kImageTypeUnknown),
          ENUMERATOR(ZImageFileInfo, kImageTypeColor), ENUMERATOR(ZImageFileInfo, kImageTypeNormal),
          ENUMERATOR(ZImageFileInfo, kImageTypeBump), ENUMERATOR(ZImageFileInfo, kHwTextureUnknown),
          ENUMERATOR(ZImageFileInfo, kHwTexture1D), ENUMERATOR(ZImageFileInfo, kHwTexture2D),
          ENUMERATOR(ZImageFileInfo, kHwTexture3D), ENUMERATOR(ZImageFileInfo, kHwTextureRectangle),
          ENUMERATOR(ZImageFileInfo, kHwTextureCubeMap))

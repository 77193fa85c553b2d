// SPDX-License-Identifier: MIT
#pragma once

// A picture in memory, with files to read it from and write it to.

#include "host/base/HostApi.h"
#include "host/core/ZString.h"

class ZStatus;

/// A picture of 1 to 4 channels of 8-bit or floating-point values, with an optional depth map. Row
/// 0 is at the bottom. Files are PNG or EXR.
class OPENQUIL_API ZImage {
  public:
    /// How a channel's value is kept: a byte 0 to 255, or a float.
    enum ZPixelType : int { kUnknown = 0, kByte = 1, kFloat = 2 };

    /// Makes an image of no size.
    ZImage() noexcept;
    ZImage(const ZImage &other);
    ZImage(ZImage &&other) noexcept;
    ~ZImage();
    ZImage &operator=(const ZImage &other);
    ZImage &operator=(ZImage &&other) noexcept;

    /// Becomes a black, clear image of the given size; the depth map is dropped. Fails with
    /// kInvalidParameter when a size is 0, channels is not 1 to 4 or the type is unknown, and with
    /// kInsufficientMemory when there are more than 2^28 pixels or memory is short.
    ZStatus create(unsigned width, unsigned height, unsigned channels = 4, ZPixelType type = kByte);
    /// Drops pixels and depth map; the size becomes 0.
    void release();

    /// Gives width and height in pixels.
    ZStatus getSize(unsigned &width, unsigned &height) const;
    /// Returns the number of channels, 0 without pixels.
    unsigned channels() const;
    /// Returns the number of bytes of one pixel, 0 without pixels.
    unsigned depth() const;
    /// Returns the type of the channels, kUnknown without pixels.
    ZPixelType pixelType() const;

    /// Returns the pixels of a kByte image, row by row from the bottom, otherwise null.
    unsigned char *pixels();
    /// Returns the pixels of a kByte image, row by row from the bottom, otherwise null.
    const unsigned char *pixels() const;
    /// Returns the pixels of a kFloat image, row by row from the bottom, otherwise null.
    float *floatPixels();
    /// Returns the pixels of a kFloat image, row by row from the bottom, otherwise null.
    const float *floatPixels() const;
    /// Becomes a kByte image of four channels with a copy of the pixels. Fails as create() does,
    /// and with kInvalidParameter when the pixels are null.
    ZStatus setPixels(const unsigned char *pixels, unsigned width, unsigned height);
    /// Becomes a kFloat image with a copy of the pixels. Fails as create() does, and with
    /// kInvalidParameter when the pixels are null.
    ZStatus setFloatPixels(const float *pixels, unsigned width, unsigned height,
                           unsigned channels = 4);
    /// Changes the type of the channels: the byte 255 is the float 1, and floats outside 0 to 1 are
    /// clamped. Fails with kFailure without pixels and kInvalidParameter for an unknown type.
    ZStatus convertPixelFormat(ZPixelType type);

    /// Keeps a copy of the depth map, one float per pixel; it may differ in size from the pixels.
    /// Fails with kInvalidParameter when it is null or a size is 0.
    ZStatus setDepthMap(const float *depths, unsigned width, unsigned height);
    /// Returns the depth map, row by row from the bottom, or null.
    const float *depthMap() const;
    /// Gives the depth map's width and height, 0 without one.
    ZStatus getDepthMapSize(unsigned &width, unsigned &height) const;

    /// Reads a PNG or EXR file as four channels. The type kUnknown keeps the file's own: bytes for
    /// PNG, floats for EXR. Fails with kNotFound when there is no such file and with kFailure when
    /// it cannot be read; the image then keeps its contents.
    ZStatus readFromFile(const ZString &path, ZPixelType type = kUnknown);
    /// Writes the image to a file of the format "png" or "exr"; floats outside 0 to 1 are clamped
    /// in a PNG file. Fails with kInvalidParameter for another format, and with kFailure without
    /// pixels or when the file cannot be written; a failure leaves an older file as it was.
    ZStatus writeToFile(const ZString &path, const ZString &format = "png") const;

    /// Scales the pixels to the new size; with preserveAspectRatio, to the greatest size of the
    /// same proportions that fits. The depth map is dropped. Fails with kFailure without pixels,
    /// else as create() does.
    ZStatus resize(unsigned width, unsigned height, bool preserveAspectRatio = true);
    /// Turns pixels and depth map upside down.
    void verticalFlip();

  private:
    struct Contents;
    Contents *contents_;
};

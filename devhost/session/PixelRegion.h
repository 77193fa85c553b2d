// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace devhost {

/// A rectangle of pixels, counted from the lower left of an image; its borders belong to it.
struct PixelRegion {
    unsigned left = 0, right = 0, bottom = 0, top = 0;

    static PixelRegion all(unsigned width, unsigned height) {
        return {0, width - 1, 0, height - 1};
    }
    bool isEmpty() const { return right < left || top < bottom; }
    bool isInside(const PixelRegion &other) const {
        return left >= other.left && right <= other.right && bottom >= other.bottom &&
               top <= other.top;
    }
    size_t width() const { return size_t(right) - left + 1; }
    size_t height() const { return size_t(top) - bottom + 1; }
    size_t area() const { return width() * height(); }
};

} // namespace devhost

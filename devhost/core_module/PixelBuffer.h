// SPDX-License-Identifier: MIT
#pragma once

#include "devhost/util/GuardedMemory.h"
#include "devhost/util/KnownMemory.h"
#include "host/render/ZRenderView.h"

/// A fixed number of pixels for the render view, filled in bulk.
class PixelBuffer {
  public:
    explicit PixelBuffer(unsigned int count)
        : pixels_(count), known_(pixels_.data(), count * sizeof(RV_PIXEL)) {}

    unsigned int length() const { return static_cast<unsigned int>(pixels_.size()); }
    RV_PIXEL *data() { return pixels_.data(); }

  private:
    static constexpr char kWhat[] = "the pixels of a PixelBuffer";
    devhost::LentVector<RV_PIXEL, kWhat> pixels_;
    devhost::KnownMemory known_;
};

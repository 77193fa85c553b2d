// SPDX-License-Identifier: MIT
#pragma once

#include "devhost/util/GuardedMemory.h"
#include "devhost/util/KnownMemory.h"
#include "devhost/util/ViewedMemory.h"
#include "host/render/ZRenderView.h"

#include <memory>

/// A fixed number of pixels for the render view, filled in bulk.
class PixelBuffer {
  public:
    explicit PixelBuffer(unsigned int count)
        : pixels_(new Pixels(count)), known_(data(), count * sizeof(RV_PIXEL)) {}

    unsigned int length() const { return static_cast<unsigned int>(pixels_->size()); }
    RV_PIXEL *data() { return pixels_->data(); }

  private:
    static constexpr char kWhat[] = "the pixels of a PixelBuffer";
    using Pixels = devhost::LentVector<RV_PIXEL, kWhat>;
    struct LeaveToViews {
        void operator()(Pixels *pixels) const {
            devhost::deleteUnlessViewed(pixels->data(), pixels);
        }
    };
    std::unique_ptr<Pixels, LeaveToViews> pixels_;
    devhost::KnownMemory known_;
};

// SPDX-License-Identifier: MIT
#pragma once

// The mean of the exposures of a hardware frame.

#include "devhost/session/Viewport.h"

#include <vector>

namespace devhost {

class ExposureMean {
  public:
    void add(const ViewportImage &exposure);
    /// Replaces the image by the mean of the light that the pixels of all exposures stand for, with
    /// the nearest of their depths.
    void get(ViewportImage &image) const;

  private:
    unsigned count_ = 0;
    std::vector<float> light_; // multiplied by the opacity
    std::vector<float> depth_;
};

} // namespace devhost

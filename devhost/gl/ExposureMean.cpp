// SPDX-License-Identifier: MIT
#include "devhost/gl/ExposureMean.h"

#include "devhost/image/Srgb.h"

#include <algorithm>
#include <limits>

namespace devhost {

void ExposureMean::add(const ViewportImage &exposure) {
    ++count_;
    light_.resize(exposure.rgba.size());
    depth_.resize(exposure.depth.size(), std::numeric_limits<float>::infinity());
    for (size_t i = 0; i < depth_.size(); ++i) {
        float pixel[4];
        fromDisplay(&exposure.rgba[4 * i], pixel);
        for (size_t channel = 0; channel < 4; ++channel)
            light_[4 * i + channel] += pixel[channel];
        depth_[i] = std::min(depth_[i], exposure.depth[i]);
    }
}

void ExposureMean::get(ViewportImage &image) const {
    std::vector<float> mean = light_;
    for (float &value : mean)
        value /= float(count_);
    image.rgba = displayBytes(mean);
    image.depth = depth_;
}

} // namespace devhost

// SPDX-License-Identifier: MIT
#include "devhost/raytrace/FrameCallbacks.h"

#include "devhost/image/Srgb.h"
#include "devhost/raytrace/SoftwareRenderer.h"
#include "devhost/session/RenderCallbacks.h"
#include "devhost/session/RenderSession.h"
#include "devhost/util/GuardedMemory.h"
#include "devhost/util/KnownMemory.h"

#include <algorithm>
#include <cstring>

namespace devhost {
namespace {

constexpr char kPixels[] = "the pixels that render callbacks are lent (rgbaArr)";
constexpr char kDepths[] = "the depths that render callbacks are lent (depthArr)";
using LentBytes = LentVector<unsigned char, kPixels>;

void takeOverChanges(const std::vector<unsigned char> &before, const LentBytes &after,
                     std::vector<float> &pixels) {
    for (size_t at = 0; at + 3 < pixels.size(); at += 4)
        if (std::memcmp(&before[at], &after[at], 4) != 0)
            fromDisplay(&after[at], &pixels[at]);
}

} // namespace

void runFrameCallbacks(Frame &frame) {
    const std::vector<unsigned char> before = displayBytes(frame.pixels);
    LentBytes bytes(before.begin(), before.end());
    // The frame's own depths are lent but for the guard's sake.
    LentVector<float, kDepths> guarded;
    if (guardIsOn)
        guarded.assign(frame.depth.begin(), frame.depth.end());
    float *const depths = guardIsOn ? guarded.data() : frame.depth.data();
    ZRenderData data = frame.data;
    data.rgbaArr = bytes.data();
    data.depthArr = depths;
    const KnownMemory lentBytes(bytes.data(), bytes.size());
    const KnownMemory lentDepths(depths, frame.depth.size() * sizeof(float));
    ++renderSession().framesWithCallbacks;
    runRenderCallbacks(data);
    runPostProcessCallbacks(data);
    takeOverChanges(before, bytes, frame.pixels);
    std::copy(guarded.begin(), guarded.end(), frame.depth.begin());
}

} // namespace devhost

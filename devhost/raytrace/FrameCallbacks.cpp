// SPDX-License-Identifier: MIT
#include "devhost/raytrace/FrameCallbacks.h"

#include "devhost/image/Srgb.h"
#include "devhost/raytrace/SoftwareRenderer.h"
#include "devhost/session/RenderCallbacks.h"
#include "devhost/session/RenderSession.h"
#include "devhost/util/KnownMemory.h"

#include <cstring>

namespace devhost {
namespace {

void takeOverChanges(const std::vector<unsigned char> &before,
                     const std::vector<unsigned char> &after, std::vector<float> &pixels) {
    for (size_t at = 0; at + 3 < pixels.size(); at += 4)
        if (std::memcmp(&before[at], &after[at], 4) != 0)
            fromDisplay(&after[at], &pixels[at]);
}

} // namespace

void runFrameCallbacks(Frame &frame) {
    const std::vector<unsigned char> before = displayBytes(frame.pixels);
    std::vector<unsigned char> bytes = before;
    ZRenderData data = frame.data;
    data.rgbaArr = bytes.data();
    data.depthArr = frame.depth.data();
    const KnownMemory lentBytes(bytes.data(), bytes.size());
    const KnownMemory lentDepths(frame.depth.data(), frame.depth.size() * sizeof(float));
    ++renderSession().framesWithCallbacks;
    runRenderCallbacks(data);
    runPostProcessCallbacks(data);
    takeOverChanges(before, bytes, frame.pixels);
}

} // namespace devhost

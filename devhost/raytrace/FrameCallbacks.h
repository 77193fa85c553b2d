// SPDX-License-Identifier: MIT
#pragma once

namespace devhost {

struct Frame;

/// Calls the render and post-process callbacks with the frame as they know it: pixels of 8-bit sRGB
/// codes that are not multiplied by the opacity, and depths. Pixels whose bytes they changed get
/// the light that these stand for; all others keep theirs.
void runFrameCallbacks(Frame &frame);

} // namespace devhost

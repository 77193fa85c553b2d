// SPDX-License-Identifier: MIT
#pragma once

// What the hardware renderer tells about the frame that is being drawn.

namespace devhost {

struct HardwareFrame {
    bool isDrawing = false;
    unsigned width = 0, height = 0;
    unsigned exposure = 0;
    unsigned exposureCount = 1;
};

/// The frame of this process; it has no size between frames.
HardwareFrame &hardwareFrame();

} // namespace devhost

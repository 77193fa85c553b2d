// SPDX-License-Identifier: MIT
#pragma once

// The device that the hardware renderer draws with: the host's OpenGL context and buffers in it.

#include "devhost/gl/DrawBuffers.h"

#include <cstddef>
#include <vector>

namespace devhost {

/// What drawing goes to.
enum class DrawTarget { kNothing, kFrame, kSwatch };

class HardwareDevice {
  public:
    /// Makes the device on first use, which the device callbacks are told, and gives OpenGL to this
    /// thread. Fails, saying why, when it cannot have it.
    ZStatus open();
    /// As open, but fails when there is no device.
    ZStatus enter();
    /// Deletes the device with its buffers, which the device callbacks are told. It is closed so
    /// when the process ends, too.
    void close();

    DrawBuffers &buffers(DrawTarget target) {
        return target == DrawTarget::kFrame ? frame_ : swatch_;
    }
    /// Gives the buffers of a target their size. When they lose their old ones the device callbacks
    /// are told.
    ZStatus resize(DrawTarget target, unsigned width, unsigned height);

    /// Directs drawing to a target until it is undone.
    void push(DrawTarget target);
    /// Undoes the last push that was not undone; does nothing when there is none.
    void pop();
    /// Undoes pushes until so many are left.
    void popTo(size_t depth);
    size_t depth() const { return uses_.size(); }
    /// The target of the last push that was not undone.
    DrawTarget target() const { return uses_.empty() ? DrawTarget::kNothing : uses_.back().target; }

  private:
    struct Use {
        DrawTarget target;
        int framebuffer, viewport[4]; // what was in use before
    };

    bool isOpen_ = false;
    DrawBuffers frame_, swatch_;
    /// Of the thread that has OpenGL: they are undone when it gives that back.
    std::vector<Use> uses_;
};

/// The device of this process.
HardwareDevice &hardwareDevice();

} // namespace devhost

// SPDX-License-Identifier: MIT
#include "devhost/gl/HardwareRendering.h"

#include "devhost/gl/DrawPlaces.h"
#include "devhost/gl/GlContext.h"
#include "devhost/gl/HardwareDevice.h"
#include "devhost/gl/HardwareFrame.h"
#include "devhost/session/RenderSession.h"
#include "devhost/util/Guarded.h"

namespace devhost {
namespace {

/// The frame is being drawn as long as it lives, and drawing goes to its buffers where there are.
class FrameScope {
  public:
    FrameScope(const HardwareFrame &frame, bool hasBuffers)
        : hasBuffers_(hasBuffers), depth_(hardwareDevice().depth()) {
        hardwareFrame() = frame;
        if (!hasBuffers)
            return;
        hardwareDevice().buffers(DrawTarget::kFrame).clear();
        hardwareDevice().push(DrawTarget::kFrame);
    }
    ~FrameScope() {
        // A procedure may have left other targets in use.
        if (hasBuffers_ && hasGl())
            hardwareDevice().popTo(depth_);
        hardwareFrame() = {};
    }
    FrameScope(const FrameScope &) = delete;

  private:
    bool hasBuffers_;
    size_t depth_;
};

} // namespace

HardwareFrame &hardwareFrame() {
    static HardwareFrame frame;
    return frame;
}

ZStatus drawHardwareFrame(unsigned exposures, const std::function<void(unsigned)> &expose) {
    const auto &settings = renderSession().settings;
    if (hardwareFrame().isDrawing)
        return {ZStatus::kFailure, "a frame is being drawn already"};
    if (!exposures || !settings.width || !settings.height)
        return {ZStatus::kInvalidParameter, "the frame has no exposures or no size"};
    return guarded([&]() -> ZStatus {
        const GlUse use;
        HardwareDevice &device = hardwareDevice();
        const HardwareFrame frame{true, settings.width, settings.height, 0, exposures};
        const bool hasBuffers = glContext().available;
        if (hasBuffers) {
            ZStatus status = device.open();
            if (!status.error())
                status = device.resize(DrawTarget::kFrame, frame.width, frame.height);
            if (status.error())
                return status;
        }
        const FrameScope scope(frame, hasBuffers);
        runDrawProcedures(DrawPlace::kPreRendering);
        for (unsigned i = 0; i < exposures; ++i) {
            hardwareFrame().exposure = i;
            runDrawProcedures(DrawPlace::kPreExposure);
            if (expose)
                expose(i);
            runDrawProcedures(DrawPlace::kPostExposure);
        }
        runDrawProcedures(DrawPlace::kPostRendering);
        return {};
    });
}

ZStatus readHardwareFrame(ZImage &image) {
    const GlUse use;
    HardwareDevice &device = hardwareDevice();
    if (const ZStatus status = device.enter(); status.error())
        return status;
    if (!device.buffers(DrawTarget::kFrame).exist())
        return {ZStatus::kFailure, "no frame was drawn yet"};
    return device.buffers(DrawTarget::kFrame).read(image);
}

void closeHardwareDevice() {
    hardwareDevice().close();
}

} // namespace devhost

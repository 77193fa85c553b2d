// SPDX-License-Identifier: MIT
#include "devhost/gl/HardwareRendering.h"

#include "devhost/gl/DrawPlaces.h"
#include "devhost/gl/ExposureMean.h"
#include "devhost/gl/GlContext.h"
#include "devhost/gl/HardwareDevice.h"
#include "devhost/gl/HardwareFrame.h"
#include "devhost/session/RenderSession.h"
#include "devhost/util/Guarded.h"
#include "devhost/util/Statuses.h"
#include "host/render/ZGLFunctionTable.h"

#include <GL/gl.h>

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
        if (hasBuffers_ && hasGl())
            hardwareDevice().popTo(depth_);
        hardwareFrame() = {};
    }
    FrameScope(const FrameScope &) = delete;

    /// Executes the procedures of a place, none of which finds what another one left in use.
    void run(DrawPlace place) const {
        runDrawProcedures(place);
        if (!hasBuffers_)
            return;
        glContext().tryAcquire(); // one may have given OpenGL back
        hardwareDevice().popTo(depth_);
        hardwareDevice().push(DrawTarget::kFrame);
    }

  private:
    bool hasBuffers_;
    size_t depth_;
};

/// OpenGL's matrices are the frame's as long as it lives; then they are what they were.
class MatrixScope {
  public:
    explicit MatrixScope(bool hasBuffers) : gl_(hasBuffers ? glFunctionTable() : nullptr) {
        if (!gl_)
            return;
        gl_->glGetIntegerv(GL_MATRIX_MODE, &mode_);
        forBoth([&](ZGLenum) { gl_->glPushMatrix(); });
    }
    ~MatrixScope() {
        if (gl_)
            forBoth([&](ZGLenum) { gl_->glPopMatrix(); });
    }
    MatrixScope(const MatrixScope &) = delete;

    /// Looks through a place of the pixels.
    void look(const HardwareView &view, const HardwareView::Place &place) const {
        if (!gl_)
            return;
        const HardwareFrame &frame = hardwareFrame();
        const double size[] = {double(frame.width), double(frame.height)};
        ZMatrix projection = view.projection;
        for (unsigned row = 0; row < 4; ++row)
            for (unsigned axis = 0; axis < 2; ++axis)
                projection(row, axis) -= projection(row, 3) * (2 * place[axis] - 1) / size[axis];
        forBoth([&](ZGLenum mode) {
            gl_->glLoadMatrixd(mode == GL_PROJECTION ? projection[0] : view.view[0]);
        });
    }

  private:
    template <class Work>
    void forBoth(Work work) const {
        for (const ZGLenum mode : {ZGLenum{GL_PROJECTION}, ZGLenum{GL_MODELVIEW}}) {
            gl_->glMatrixMode(mode);
            work(mode);
        }
        gl_->glMatrixMode(static_cast<ZGLenum>(mode_));
    }

    ZGLFunctionTable *gl_;
    ZGLint mode_ = 0;
};

/// The frame's pixels in memory, from and to its buffers where there are.
class FrameImage {
  public:
    FrameImage(const ZMatrix &projection, bool hasBuffers)
        : projection_(projection), hasBuffers_(hasBuffers) {
        const HardwareFrame &frame = hardwareFrame();
        image_ = ViewportImage::clear(frame.width, frame.height);
    }
    ViewportImage &read() {
        if (hasBuffers_)
            textures().read(image_, projection_);
        return image_;
    }
    /// Writes back what was read.
    void write() const {
        if (hasBuffers_)
            textures().write(image_, projection_);
    }
    void write(const ViewportImage &image) {
        image_ = image;
        write();
    }

  private:
    static const TargetTextures &textures() {
        return hardwareDevice().buffers(DrawTarget::kFrame).textures();
    }

    const ZMatrix &projection_;
    bool hasBuffers_;
    ViewportImage image_;
};

/// Draws all exposures, and leaves their mean in the image. False when the session was cancelled.
bool expose(const HardwareView &view, const FrameScope &scope, const MatrixScope &matrices,
            FrameImage &image) {
    auto &session = renderSession();
    const unsigned count = hardwareFrame().exposureCount;
    const ViewportImage before = count > 1 ? image.read() : ViewportImage();
    ExposureMean mean;
    for (unsigned i = 0; i < count; ++i) {
        if (session.cancelled)
            return false;
        hardwareFrame().exposure = i;
        if (i > 0)
            image.write(before);
        matrices.look(view, view.places[i]);
        scope.run(DrawPlace::kPreExposure);
        if (view.drawMeshes) {
            view.drawMeshes(image.read(), view.places[i]);
            image.write();
        }
        scope.run(DrawPlace::kPostExposure);
        if (count > 1)
            mean.add(image.read());
        if (session.progress)
            session.progress("drawing", int((i + 1) * 100 / count));
    }
    if (count > 1) {
        ViewportImage whole = before;
        mean.get(whole);
        image.write(whole);
    }
    return true;
}

} // namespace

HardwareFrame &hardwareFrame() {
    static HardwareFrame frame;
    return frame;
}

ZStatus drawHardwareFrame(const HardwareView &view, ViewportImage *result) {
    const auto &settings = renderSession().settings;
    if (hardwareFrame().isDrawing)
        return {ZStatus::kFailure, "a frame is being drawn already"};
    if (view.places.empty() || !settings.width || !settings.height)
        return {ZStatus::kInvalidParameter, "the frame has no exposures or no size"};
    return guarded([&]() -> ZStatus {
        const GlUse use;
        HardwareDevice &device = hardwareDevice();
        const HardwareFrame frame{true, settings.width, settings.height, 0,
                                  static_cast<unsigned>(view.places.size())};
        const bool hasBuffers = glContext().available;
        if (hasBuffers) {
            ZStatus status = device.open();
            if (!status.error())
                status = device.resize(DrawTarget::kFrame, frame.width, frame.height);
            if (status.error())
                return status;
        }
        const FrameScope scope(frame, hasBuffers);
        const MatrixScope matrices(hasBuffers);
        FrameImage image(view.projection, hasBuffers);
        constexpr HardwareView::Place centre{0.5, 0.5};
        matrices.look(view, centre);
        scope.run(DrawPlace::kPreRendering);
        if (!expose(view, scope, matrices, image))
            return renderInterrupted();
        matrices.look(view, centre);
        scope.run(DrawPlace::kPostRendering);
        if (result)
            *result = image.read();
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

// SPDX-License-Identifier: MIT
#include "devhost/raytrace/SoftwareRenderer.h"

#include "devhost/raytrace/CameraView.h"
#include "devhost/raytrace/FrameCallbacks.h"
#include "devhost/raytrace/SamplePattern.h"
#include "devhost/raytrace/ShadowMaps.h"
#include "devhost/session/Parallel.h"
#include "devhost/session/RenderCallbacks.h"
#include "devhost/session/RenderSession.h"
#include "devhost/util/KnownMemory.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <numbers>
#include <optional>

namespace devhost {
namespace {

/// Enough for the panes of a scene; two mirrors may face each other.
constexpr int kRayDepth = 8;

ZStatus cancelled() {
    return {ZStatus::kFailure, "the render was interrupted"};
}

void describe(const CameraView &view, const PixelRegion &region, ZRenderData &data) {
    const ViewRays &rays = view.rays;
    const auto &settings = renderSession().settings;
    data.perspective = rays.perspective;
    data.resX = static_cast<unsigned short>(settings.width);
    data.resY = static_cast<unsigned short>(settings.height);
    data.left = static_cast<unsigned short>(region.left);
    data.bottom = static_cast<unsigned short>(region.bottom);
    data.right = static_cast<unsigned short>(region.right);
    data.top = static_cast<unsigned short>(region.top);
    data.xsize = static_cast<unsigned short>(region.width());
    data.ysize = static_cast<unsigned short>(region.height());
    data.bytesPerChannel = 1;
    data.fieldOfView = static_cast<float>(
        rays.perspective ? std::atan(rays.halfWidth) * 360 / std::numbers::pi : rays.halfWidth * 2);
    data.aspectRatio = static_cast<float>(view.aspect);
    data.viewDirection = ZFloatVector(rays.frame.forward);
    data.eyePoint = ZFloatPoint(ZFloatVector(rays.frame.eye));
    data.worldToEyeMatrix = ZFloatMatrix(rays.frame.worldToView());
}

/// Renders pixels of a frame. Rays may come from several threads at once.
class PixelRenderer {
  public:
    PixelRenderer(Frame &frame, const CameraView &view, const Shader &shader)
        : frame_(frame), view_(view), shader_(shader),
          samples_(samplePattern(std::max(1u, renderSession().samples))) {}

    /// The pixel at a place in the frame's buffers.
    void render(size_t column, size_t row) const {
        ZFloatVector light;
        float opacity = 0;
        for (const PixelSample &sample : samples_) {
            const Ray ray = through(column, row, sample);
            const Sight sight =
                shader_.trace(ray.origin, ray.direction, kRayDepth, nullptr, ray.span);
            light += sight.color;
            opacity += sight.opacity;
        }
        const size_t index = row * frame_.data.xsize + column;
        const float share = 1 / float(samples_.size());
        for (unsigned channel = 0; channel < 3; ++channel)
            frame_.pixels[index * 4 + channel] = light[channel] * share;
        frame_.pixels[index * 4 + 3] = opacity * share;
        if (!frame_.depth.empty())
            frame_.depth[index] = depthOf(through(column, row, {0.5, 0.5}));
    }

  private:
    struct Ray {
        ZFloatVector origin, direction;
        RaySpan span;
    };
    Ray through(size_t column, size_t row, const PixelSample &sample) const {
        const ZRenderData &data = frame_.data;
        const double x = (double(data.left + column) + sample.right) * 2 / data.resX - 1;
        const double y = (double(data.bottom + row) + sample.up) * 2 / data.resY - 1;
        Ray ray{view_.rays.origin(x, y), view_.rays.direction(x, y), view_.clip()};
        const float length = ray.direction.length();
        ray.span.from *= length;
        ray.span.to *= length;
        return ray;
    }
    float depthOf(const Ray &ray) const {
        Hit hit;
        return shader_.intersect(ray.origin, ray.direction, hit, ray.span)
                   ? hit.distance / ray.direction.length()
                   : std::numeric_limits<float>::infinity();
    }

    Frame &frame_;
    const CameraView &view_;
    const Shader &shader_;
    std::vector<PixelSample> samples_;
};

ZStatus renderPixels(const Frame &frame, const PixelRenderer &renderer) {
    auto &session = renderSession();
    const size_t width = frame.data.xsize, height = frame.data.ysize;
    // From the top down in bands, between which progress is told and interrupts are seen.
    const size_t band = std::clamp<size_t>(height / 20, 1, 64);
    for (size_t done = 0; done < height;) {
        if (session.cancelled)
            return cancelled();
        const size_t rows = std::min(band, height - done);
        const size_t bottom = height - done - rows;
        forBlocks(rows * width, 64, [&](size_t begin, size_t end) {
            for (size_t i = begin; i < end; ++i)
                renderer.render(i % width, bottom + i / width);
        });
        done += rows;
        if (session.progress)
            session.progress("rendering", int(done * 100 / height));
    }
    return {};
}

ZStatus tellShadows() {
    const bool defaultLights = renderSession().settings.enableDefaultLight;
    for (const auto &light : worldLights(scene(), defaultLights)) {
        if (renderSession().cancelled)
            return cancelled();
        if (!light.castsShadows)
            continue;
        const ShadowMaps maps = makeShadowMaps(light, scene(), rayTracer());
        const KnownMemory lent(maps.depths.data(), maps.depths.size() * sizeof(float));
        runShadowCastCallbacks(maps.data);
    }
    return {};
}

} // namespace

ZStatus describeFrame(const CameraView &view, Frame &frame) {
    const auto &settings = renderSession().settings;
    const PixelRegion region = renderRegion();
    if (region.isEmpty() || !region.isInside(PixelRegion::all(settings.width, settings.height)))
        return {ZStatus::kInvalidParameter, "the region is empty or not inside the image"};
    describe(view, region, frame.data);
    return {};
}

ZStatus renderFrame(Frame &frame, bool withDepth) try {
    auto &session = renderSession();
    const bool withCallbacks = hasRenderCallbacks();
    // First: a callback may change the scene.
    if (withCallbacks)
        if (const ZStatus status = tellShadows(); status.error())
            return status;
    const auto &settings = session.settings;
    std::optional<CameraView> view;
    if (const ZStatus status =
            findCameraView(settings.width, settings.height, settings.pixelAspectRatio, view);
        status.error())
        return status;
    if (const ZStatus status = describeFrame(*view, frame); status.error())
        return status;
    const size_t area = size_t(frame.data.xsize) * frame.data.ysize;
    frame.pixels.assign(area * 4, 0);
    frame.depth.assign(withDepth || withCallbacks ? area : 0, 0);

    const Shader shader(scene(), rayTracer(), sessionShading());
    if (const ZStatus status = renderPixels(frame, {frame, *view, shader}); status.error())
        return status;
    if (withCallbacks)
        runFrameCallbacks(frame);
    return session.cancelled ? cancelled() : ZStatus();
} catch (const std::bad_alloc &) {
    return {ZStatus::kInsufficientMemory, "not enough memory for the image"};
}

} // namespace devhost

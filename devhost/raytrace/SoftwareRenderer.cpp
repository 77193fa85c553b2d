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
#include <new>
#include <numbers>
#include <optional>
#include <utility>

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
        : frame_(frame), rays_(view.rays), clip_(view.clip()), shader_(shader),
          samples_(samplePattern(std::max(1u, renderSession().samples))) {}

    /// The pixels from one place in the frame's buffers to another.
    void render(size_t begin, size_t end) const {
        renderColors(begin, end);
        if (!frame_.depth.empty())
            renderDepths(begin, end);
    }

  private:
    /// The pixels' samples, as many at once as rays are followed together.
    void renderColors(size_t begin, size_t end) const {
        Ray rays[kRaysTogether];
        Hit hits[kRaysTogether];
        Sight sights[kRaysTogether];
        float *sums[kRaysTogether]; // of the rays' pixels
        size_t count = 0;
        const auto take = [&] {
            shader_.trace({rays, count}, kRayDepth, hits, sights);
            for (size_t i = 0; i < count; ++i) {
                for (unsigned channel = 0; channel < 3; ++channel)
                    sums[i][channel] += sights[i].color[channel];
                sums[i][3] += sights[i].opacity;
            }
            count = 0;
        };
        forPixels(begin, end, samples_, [&](size_t pixel, const Ray &ray) {
            rays[count] = ray;
            sums[count] = &frame_.pixels[pixel * 4];
            if (++count == kRaysTogether)
                take();
        });
        if (count > 0)
            take();
        const float share = 1 / float(samples_.size());
        for (size_t i = begin * 4; i < end * 4; ++i)
            frame_.pixels[i] *= share;
    }
    void renderDepths(size_t begin, size_t end) const {
        Ray rays[kRaysTogether];
        size_t count = 0, first = begin;
        const auto take = [&] {
            shader_.reach({rays, count}, &frame_.depth[first]);
            first += std::exchange(count, 0);
        };
        forPixels(begin, end, {{0.5, 0.5}}, [&](size_t, const Ray &ray) {
            rays[count] = ray;
            if (++count == kRaysTogether)
                take();
        });
        if (count > 0)
            take();
    }
    /// Calls work(pixel, ray) for each pixel and place in it. Directions are a unit of depth long.
    template <class Work>
    void forPixels(size_t begin, size_t end, const std::vector<PixelSample> &places,
                   Work work) const {
        const ZRenderData &data = frame_.data;
        const double width = 2.0 / data.resX, height = 2.0 / data.resY;
        size_t column = begin % data.xsize, row = begin / data.xsize;
        for (size_t pixel = begin; pixel < end; ++pixel) {
            for (const PixelSample &place : places) {
                const double x = (double(data.left + column) + place.right) * width - 1;
                const double y = (double(data.bottom + row) + place.up) * height - 1;
                work(pixel, Ray{rays_.origin(x, y), rays_.direction(x, y), clip_});
            }
            if (++column == data.xsize) {
                column = 0;
                ++row;
            }
        }
    }

    Frame &frame_;
    const ViewRays &rays_;
    RaySpan clip_;
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
            renderer.render(bottom * width + begin, bottom * width + end);
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

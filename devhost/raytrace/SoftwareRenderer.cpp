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
#include "devhost/util/Statuses.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <new>
#include <numbers>
#include <optional>
#include <span>

namespace devhost {
namespace {

/// Enough for the panes of a scene; two mirrors may face each other.
constexpr int kRayDepth = 8;

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
        Hit hits[kRaysTogether];
        Sight sights[kRaysTogether];
        forPackets(begin, end, samples_, [&](std::span<const Ray> rays, const size_t *pixels) {
            shader_.trace(rays, kRayDepth, hits, sights);
            for (size_t i = 0; i < rays.size(); ++i) {
                if (pixels[i] == kOutside)
                    continue;
                float *sum = &frame_.pixels[pixels[i] * 4];
                for (unsigned channel = 0; channel < 3; ++channel)
                    sum[channel] += sights[i].color[channel];
                sum[3] += sights[i].opacity;
            }
        });
        const float share = 1 / float(samples_.size());
        for (size_t i = begin * 4; i < end * 4; ++i)
            frame_.pixels[i] *= share;
    }
    void renderDepths(size_t begin, size_t end) const {
        float depths[kRaysTogether];
        forPackets(begin, end, {{0.5, 0.5}}, [&](std::span<const Ray> rays, const size_t *pixels) {
            shader_.reach(rays, depths);
            for (size_t i = 0; i < rays.size(); ++i)
                if (pixels[i] != kOutside)
                    frame_.depth[pixels[i]] = depths[i];
        });
    }
    /// Calls work(rays, pixels) for the rays through each place in the pixels, at most
    /// kRaysTogether at once. Directions are a unit of depth long. The ray library's rounding
    /// depends on the company that a ray is in, so that packets are those of the whole picture,
    /// whatever part of it is rendered: the pixel of a ray that is not asked for is kOutside.
    template <class Work>
    void forPackets(size_t begin, size_t end, const std::vector<PixelSample> &places,
                    Work work) const {
        const ZRenderData &data = frame_.data;
        const size_t together = std::max<size_t>(1, kRaysTogether / places.size());
        const double width = 2.0 / data.resX, height = 2.0 / data.resY;
        Ray rays[kRaysTogether];
        size_t pixels[kRaysTogether], count = 0;
        const auto take = [&] {
            if (count > 0)
                work(std::span<const Ray>(rays, count), pixels);
            count = 0;
        };
        for (size_t pixel = begin; pixel < end;) {
            const size_t row = pixel / data.xsize, rowBegin = row * data.xsize;
            const size_t rowEnd = std::min(rowBegin + data.xsize, end);
            const size_t column = data.left + pixel - rowBegin; // in the picture
            const size_t first = column - column % together;
            const size_t last = std::min<size_t>(first + together, data.resX);
            for (size_t at = first; at < last; ++at) {
                const size_t place = rowBegin + at - data.left; // wraps left of the region
                const bool asked = at >= column && place < rowEnd;
                for (const PixelSample &sample : places) {
                    const double x = (double(at) + sample.right) * width - 1;
                    const double y = (double(data.bottom + row) + sample.up) * height - 1;
                    rays[count] = Ray{rays_.origin(x, y), rays_.direction(x, y), clip_};
                    pixels[count] = asked ? place : kOutside;
                    if (++count == kRaysTogether)
                        take();
                }
            }
            take();
            pixel = std::min(rowBegin + last - data.left, rowEnd);
        }
    }

    static constexpr size_t kOutside = size_t(-1);
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
            return renderInterrupted();
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
            return renderInterrupted();
        if (!light.castsShadows)
            continue;
        const ShadowMaps maps = makeShadowMaps(light, scene(), rayTracer());
        const KnownMemory lent(maps.depths.data(), maps.depths.size() * sizeof(float));
        runShadowCastCallbacks(maps.data);
    }
    return {};
}

/// The frame that is being rendered: callbacks and a script's threads may ask for another.
struct OnlyFrame {
    OnlyFrame() : isFirst(!isTaken.exchange(true)) {}
    ~OnlyFrame() {
        if (isFirst)
            isTaken = false;
    }
    OnlyFrame(const OnlyFrame &) = delete;

    const bool isFirst;

  private:
    static inline std::atomic<bool> isTaken = false;
};

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
    const OnlyFrame only;
    if (!only.isFirst)
        return {ZStatus::kFailure, "a frame is being rendered already"};
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
    return session.cancelled ? renderInterrupted() : ZStatus();
} catch (const std::bad_alloc &) {
    return {ZStatus::kInsufficientMemory, "not enough memory for the image"};
}

} // namespace devhost

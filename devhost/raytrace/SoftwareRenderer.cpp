#include "devhost/raytrace/SoftwareRenderer.h"

#include "devhost/image/ImageIo.h"
#include "devhost/raytrace/CameraView.h"
#include "devhost/raytrace/ShadowMaps.h"
#include "devhost/session/Parallel.h"
#include "devhost/session/RenderCallbacks.h"
#include "devhost/session/RenderSession.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <new>
#include <numbers>
#include <optional>

namespace devhost {
namespace {

constexpr int kReflectionDepth = 2;

/// Where in a pixel the colour is sampled: a grid turned so that nearly level and nearly upright
/// edges are smoothed too. The depth is that of the pixel's centre.
constexpr double kSamples[][2] = {{0.375, 0.125}, {0.875, 0.375}, {0.625, 0.875}, {0.125, 0.625}};

ZStatus cancelled() {
    return {ZStatus::kFailure, "the render was interrupted"};
}

void describe(const CameraView &view, ZRenderData &data) {
    const ViewRays &rays = view.rays;
    const auto &settings = renderSession().settings;
    data.perspective = rays.perspective;
    data.resX = data.xsize = static_cast<unsigned short>(settings.width);
    data.resY = data.ysize = static_cast<unsigned short>(settings.height);
    data.left = data.bottom = 0;
    data.right = static_cast<unsigned short>(settings.width - 1);
    data.top = static_cast<unsigned short>(settings.height - 1);
    data.bytesPerChannel = 1;
    data.fieldOfView = static_cast<float>(
        rays.perspective ? std::atan(rays.halfWidth) * 360 / std::numbers::pi : rays.halfWidth * 2);
    data.aspectRatio = static_cast<float>(view.aspect);
    data.viewDirection = ZFloatVector(rays.frame.forward);
    data.eyePoint = ZFloatPoint(ZFloatVector(rays.frame.eye));
    data.worldToEyeMatrix = ZFloatMatrix(rays.frame.worldToView());
}

void renderPixel(Frame &frame, const ViewRays &rays, const Shader &shader, const RayTracer &tracer,
                 size_t column, size_t row) {
    const auto x = [&](double part) { return (double(column) + part) * 2 / frame.data.xsize - 1; };
    const auto y = [&](double part) { return (double(row) + part) * 2 / frame.data.ysize - 1; };
    ZFloatVector sum;
    unsigned covered = 0;
    for (const auto &[right, up] : kSamples) {
        Hit first;
        const ZFloatVector color =
            shader.trace(rays.origin(x(right), y(up)), rays.direction(x(right), y(up)),
                         kReflectionDepth, &first);
        if (first.hit) {
            sum += color;
            ++covered;
        }
    }
    const size_t index = row * frame.data.xsize + column;
    if (covered) {
        // The mean of the samples that hit: the opacity alone tells how many did not.
        const ZFloatVector color = sum / float(covered);
        unsigned char *pixel = frame.rgba.data() + index * 4;
        for (unsigned channel = 0; channel < 3; ++channel)
            pixel[channel] = toByte(color[channel]);
        pixel[3] = toByte(float(covered) / std::size(kSamples));
    }
    const ZFloatVector direction = rays.direction(x(0.5), y(0.5));
    Hit centre;
    if (tracer.intersect(rays.origin(x(0.5), y(0.5)), direction, centre))
        frame.depth[index] = centre.distance / direction.length();
}

ZStatus renderPixels(Frame &frame, const ViewRays &rays, const Shader &shader,
                     const RayTracer &tracer) {
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
                renderPixel(frame, rays, shader, tracer, i % width, bottom + i / width);
        });
        done += rows;
        if (session.progress)
            session.progress("rendering", int(done * 100 / height));
    }
    return {};
}

} // namespace

ZStatus renderFrame(Frame &frame) try {
    auto &session = renderSession();
    const auto &settings = session.settings;
    std::optional<CameraView> view;
    if (const ZStatus status =
            findCameraView(settings.width, settings.height, settings.pixelAspectRatio, view);
        status.error())
        return status;
    describe(*view, frame.data);
    const size_t pixels = size_t(frame.data.xsize) * frame.data.ysize;
    frame.rgba.assign(pixels * 4, 0);
    frame.depth.assign(pixels, std::numeric_limits<float>::infinity());
    frame.data.rgbaArr = frame.rgba.data();
    frame.data.depthArr = frame.depth.data();

    const bool defaultLight = session.settings.enableDefaultLight;
    if (hasRenderCallbacks()) {
        for (const auto &light : worldLights(scene(), defaultLight)) {
            if (session.cancelled)
                return cancelled();
            if (light.light.kind != Light::kAmbient)
                runShadowCastCallbacks(makeShadowMaps(light, scene(), rayTracer()).data);
        }
    }
    // Asked for each time: a callback may have changed the scene.
    const RayTracer &tracer = rayTracer();
    const Shader shader(scene(), tracer, true, defaultLight);
    if (const ZStatus status = renderPixels(frame, view->rays, shader, tracer); status.error())
        return status;
    runRenderCallbacks(frame.data);
    runPostProcessCallbacks(frame.data);
    // Callbacks may have led the record's pointers elsewhere; the buffers are what counts.
    frame.data.rgbaArr = frame.rgba.data();
    frame.data.depthArr = frame.depth.data();
    return session.cancelled ? cancelled() : ZStatus();
} catch (const std::bad_alloc &) {
    return {ZStatus::kInsufficientMemory, "not enough memory for the image"};
}

} // namespace devhost

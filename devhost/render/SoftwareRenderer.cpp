#include "devhost/render/SoftwareRenderer.h"

#include "devhost/core/image_io.h"
#include "devhost/render/Parallel.h"
#include "devhost/render/RenderCallbacks.h"
#include "devhost/render/RenderSession.h"
#include "devhost/render/ShadowMaps.h"
#include "devhost/render/ViewFrame.h"

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

/// The camera that a render looks through.
struct View {
    ViewRays rays;
    double aspect;
};

ZStatus findView(std::optional<View> &view) {
    const auto &session = renderSession();
    const unsigned width = session.settings.width, height = session.settings.height;
    if (!width || !height || width > 16384 || height > 16384)
        return {ZStatus::kInvalidParameter, "the image size is not 1 to 16384 pixels"};

    const Scene &world = scene();
    NodeId id = world.id(session.camera);
    if (id == kNoNode)
        id = world.findCamera();
    const Node *node = world.node(id);
    const Camera *camera = node ? node->camera() : nullptr;
    if (!camera)
        return {ZStatus::kNotFound, "the scene has no camera to render from"};

    // The camera's own axes, without any scale or shear of its matrix.
    const ZMatrix matrix = world.worldMatrix(id);
    const ViewFrame frame(ZVector(matrix(3, 0), matrix(3, 1), matrix(3, 2)),
                          ZVector(-matrix(2, 0), -matrix(2, 1), -matrix(2, 2)),
                          ZVector(matrix(1, 0), matrix(1, 1), matrix(1, 2)));
    // The image shows all of the camera's film and, where the proportions differ, more beside it.
    const double aspect = double(width) / height * session.settings.pixelAspectRatio;
    const double film = camera->filmAspect > 0 ? camera->filmAspect : aspect;
    const double filmWidth =
        camera->orthographic
            ? camera->orthographicWidth / 2
            : std::tan(camera->verticalFieldOfView * std::numbers::pi / 360) * film;
    const double halfWidth = filmWidth * std::max(1.0, aspect / film);
    view = View{{frame, !camera->orthographic, halfWidth, halfWidth / aspect}, aspect};
    return {};
}

void describe(const View &view, ZRenderData &data) {
    const auto &[rays, aspect] = view;
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
    data.aspectRatio = static_cast<float>(aspect);
    data.viewDirection = ZFloatVector(rays.frame.forward);
    data.eyePoint = ZFloatPoint(ZFloatVector(rays.frame.eye));
    data.worldToEyeMatrix = ZFloatMatrix(rays.frame.worldToView());
}

void renderPixel(Frame &frame, const ViewRays &rays, const Shader &shader, const RayTracer &tracer,
                 size_t column, size_t row) {
    const auto x = [&](double part) { return (column + part) * 2 / frame.data.xsize - 1; };
    const auto y = [&](double part) { return (row + part) * 2 / frame.data.ysize - 1; };
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
    std::optional<View> view;
    if (const ZStatus status = findView(view); status.error())
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

// SPDX-License-Identifier: MIT
#include "devhost/session/Viewport.h"

#include "devhost/gl/GlContext.h"
#include "devhost/image/ImageIo.h"
#include "devhost/image/Srgb.h"
#include "devhost/raytrace/CameraView.h"
#include "devhost/raytrace/RayTracer.h"
#include "devhost/raytrace/Shading.h"
#include "devhost/session/Parallel.h"
#include "devhost/session/RenderSession.h"
#include "devhost/session/ViewportRegistry.h"
#include "devhost/session/ViewportRequest.h"
#include "devhost/util/Guarded.h"

#include <algorithm>
#include <limits>
#include <optional>

namespace devhost {
namespace {

RegisteredViewport *find(const std::string &name) {
    for (auto &entry : registeredViewports())
        if (entry.name == name)
            return &entry;
    return nullptr;
}

/// Draws the meshes, lit, where nothing nearer is in the image. Viewports cast no shadows.
void drawStandard(ViewportImage &image, const ViewRays &rays) {
    const RayTracer &tracer = rayTracer();
    const Shader shader(scene(), tracer, sessionShading(false));
    const size_t width = image.width, height = image.height;
    forBlocks(width * height, 256, [&](size_t begin, size_t end) {
        for (size_t i = begin; i < end; ++i) {
            const size_t column = i % width, row = i / width;
            const double x = (double(column) + 0.5) * 2 / double(width) - 1;
            const double y = (double(row) + 0.5) * 2 / double(height) - 1;
            const ZFloatVector direction = rays.direction(x, y);
            Hit hit;
            const ZFloatVector color = shader.trace(rays.origin(x, y), direction, 0, &hit).color;
            const float depth = hit.distance / direction.length();
            if (!hit.hit || depth >= image.depth[i])
                continue;
            image.depth[i] = depth;
            for (unsigned channel = 0; channel < 3; ++channel)
                image.rgba[i * 4 + channel] = srgbByte(color[channel]);
            image.rgba[i * 4 + 3] = 255;
        }
    });
}

/// Decides what the renderer draws with; OpenGL where both sides can.
bool chooseApi(ZViewportRenderer &renderer, ViewportRequest &request) {
    const float version = glTargetVersion();
    if (version > 0 && renderer.nativelySupports(ZViewportRenderer::kOpenGL, version)) {
        request.gl = GlTarget::make(request.image.width, request.image.height);
        if (request.gl) {
            request.api = ZViewportRenderer::kOpenGL;
            request.version = version;
            return true;
        }
    }
    return renderer.nativelySupports(ZViewportRenderer::kSoftware, request.version);
}

ZStatus initialize(RegisteredViewport &entry) {
    if (entry.initialized)
        return {};
    const ZStatus status = entry.renderer->initialize();
    entry.initialized = !status.error();
    return status;
}

ZStatus drawWith(ZViewportRenderer &renderer, ViewportRequest &request) {
    const GlUse use;
    if (!chooseApi(renderer, request)) {
        if (glContext().available && use.status().error())
            return use.status();
        return {ZStatus::kFailure, "the viewport renderer supports neither OpenGL nor software"};
    }
    if (request.gl) {
        request.gl->write(request.image, request.projection);
        request.gl->bind();
    }
    const ZStatus status = renderer.render(request.info);
    if (request.gl) {
        request.gl->read(request.image, request.projection);
        request.gl.reset();
    }
    return status;
}

ZStatus draw(RegisteredViewport &entry, ViewportRequest &request, const ViewRays &rays) {
    ZViewportRenderer &renderer = *entry.renderer;
    const auto mode = renderer.renderingOverride();
    bool drawsStandard = true;
    if (mode != ZViewportRenderer::kNoOverride && renderer.override(mode)) {
        if (const ZStatus status = initialize(entry); status.error())
            return status;
        drawsStandard =
            mode == ZViewportRenderer::kOverrideThenStandard &&
            !(renderer.overrideThenStandardExclusion() & ZViewportRenderer::kExcludeMeshes);
        if (const ZStatus status = drawWith(renderer, request); status.error())
            return status;
    }
    if (drawsStandard)
        drawStandard(request.image, rays);
    return {};
}

ZStatus renderRequest(RegisteredViewport &entry, unsigned width, unsigned height,
                      const std::string &output, ViewportImage *result) {
    std::optional<CameraView> view;
    if (const ZStatus status = findCameraView(width, height, 1, view); status.error())
        return status;
    ViewportRequest request;
    request.image = {width, height, {}, {}};
    request.image.rgba.resize(size_t(width) * height * 4);
    request.image.depth.resize(size_t(width) * height, std::numeric_limits<float>::infinity());
    ZDagPath::getAPathTo(scene().object(view->camera), request.camera);
    request.view = view->rays.frame.worldToView();
    request.projection = view->projection();
    const RenderStateScope drawing(ZRenderUtil::kInteractiveRender);
    if (const ZStatus status = draw(entry, request, view->rays); status.error())
        return status;
    if (result)
        *result = request.image;
    return output.empty() ? ZStatus() : writePng(output, width, height, request.image.rgba.data());
}

} // namespace

std::vector<std::string> viewportRenderers() {
    std::vector<std::string> names;
    for (const auto &entry : registeredViewports())
        names.push_back(entry.name);
    return names;
}

ZViewportRenderer *findViewportRenderer(const std::string &name) {
    RegisteredViewport *entry = find(name);
    return entry ? entry->renderer : nullptr;
}

ZStatus renderViewport(const std::string &name, unsigned width, unsigned height,
                       const std::string &output, ViewportImage *result) {
    RegisteredViewport *entry = find(name);
    if (!entry)
        return {ZStatus::kNotFound, ("there is no viewport renderer " + name).c_str()};
    return guarded([&] { return renderRequest(*entry, width, height, output, result); });
}

} // namespace devhost

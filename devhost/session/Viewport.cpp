// SPDX-License-Identifier: MIT
#include "devhost/session/Viewport.h"

#include "devhost/gl/GlContext.h"
#include "devhost/raytrace/CameraView.h"
#include "devhost/session/MeshDrawing.h"
#include "devhost/session/RenderSession.h"
#include "devhost/session/ViewportRegistry.h"
#include "devhost/session/ViewportRequest.h"
#include "devhost/util/Guarded.h"
#include "devhost/util/Notices.h"

#include <limits>
#include <optional>
#include <utility>

namespace devhost {
namespace {

RegisteredViewport *find(const std::string &name) {
    for (auto &entry : registeredViewports())
        if (entry.name == name)
            return &entry;
    return nullptr;
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
        request.gl->textures().write(request.image, request.projection);
        request.gl->bind();
    }
    const ZStatus status = renderer.render(request.info);
    if (request.gl) {
        request.gl->textures().read(request.image, request.projection);
        request.gl.reset();
    }
    return status;
}

ZStatus draw(RegisteredViewport &entry, ViewportRequest &request, const ViewRays &rays) {
    ZViewportRenderer &renderer = *entry.renderer;
    const auto mode = renderer.renderingOverride();
    bool drawsStandard = true;
    const bool takesOver = mode != ZViewportRenderer::kNoOverride && renderer.override(mode);
    if (!takesOver)
        tell({"viewport renderer", "", "viewport renderer '" + entry.name + "'",
              mode == ZViewportRenderer::kNoOverride ? "its renderingOverride is kNoOverride"
                                                     : "it refuses its own renderingOverride",
              "the host draws"});
    if (takesOver) {
        if (const ZStatus status = initialize(entry); status.error())
            return status;
        drawsStandard =
            mode == ZViewportRenderer::kOverrideThenStandard &&
            !(renderer.overrideThenStandardExclusion() & ZViewportRenderer::kExcludeMeshes);
        if (const ZStatus status = drawWith(renderer, request); status.error())
            return status;
    }
    if (drawsStandard)
        drawMeshes(request.image, rays);
    return {};
}

ZStatus renderRequest(RegisteredViewport &entry, unsigned width, unsigned height,
                      double pixelAspectRatio, ViewportImage &image) {
    std::optional<CameraView> view;
    if (const ZStatus status = findCameraView(width, height, pixelAspectRatio, view);
        status.error())
        return status;
    ViewportRequest request;
    request.image = ViewportImage::clear(width, height);
    ZDagPath::getAPathTo(scene().object(view->camera), request.camera);
    request.view = view->rays.frame.worldToView();
    request.projection = view->projection();
    const RenderStateScope drawing(ZRenderUtil::kInteractiveRender);
    if (const ZStatus status = draw(entry, request, view->rays); status.error())
        return status;
    image = std::move(request.image);
    return {};
}

} // namespace

ViewportImage ViewportImage::clear(unsigned width, unsigned height) {
    const size_t pixels = size_t(width) * height;
    return {width, height, std::vector<unsigned char>(pixels * 4),
            std::vector<float>(pixels, std::numeric_limits<float>::infinity())};
}

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
                       double pixelAspectRatio, ViewportImage &image) {
    RegisteredViewport *entry = find(name);
    if (!entry)
        return {ZStatus::kNotFound, ("there is no viewport renderer '" + name + "'").c_str()};
    return guarded([&] { return renderRequest(*entry, width, height, pixelAspectRatio, image); });
}

} // namespace devhost

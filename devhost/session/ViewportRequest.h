// SPDX-License-Identifier: MIT
#pragma once

// One drawing of a viewport: all that a renderer is told, and the image that it makes.

#include "devhost/gl/GlTarget.h"
#include "devhost/session/Viewport.h"
#include "host/core/ZDagPath.h"
#include "host/core/ZMatrix.h"
#include "host/render/ZRenderingInfo.h"

#include <memory>

struct ZRenderTarget::Request {
    Request() = default;
    Request(const Request &) = delete;

    devhost::ViewportImage image;
    ZViewportRenderer::RenderingAPI api = ZViewportRenderer::kSoftware;
    float version = 1;
    ZDagPath camera;
    ZMatrix view, projection;
    /// What OpenGL draws into, where it is what is drawn with; it then holds the image.
    std::unique_ptr<devhost::GlTarget> gl;
    ZRenderTarget target{*this};
    ZRenderingInfo info{*this};
};

namespace devhost {

using ViewportRequest = ZRenderTarget::Request;

} // namespace devhost

// SPDX-License-Identifier: MIT
#pragma once

// What a viewport renderer is asked to draw.

#include "host/base/HostApi.h"
#include "host/render/ZRenderTarget.h"
#include "host/render/ZViewportRenderer.h"

class ZDagPath;
class ZMatrix;

/// What a viewport renderer is asked to draw. It and all that it gives belong to the host and exist
/// during the drawing only.
class OPENQUIL_API ZRenderingInfo {
  public:
    ZRenderingInfo(const ZRenderingInfo &) = delete;
    /// The left border of the image in its target, in pixels.
    int originX() const;
    /// The lower border of the image in its target, in pixels.
    int originY() const;
    /// The width of the image in pixels.
    int width() const;
    /// The height of the image in pixels.
    int height() const;
    /// The interface to draw with: kOpenGL, kDirect3D or kSoftware of ZViewportRenderer.
    ZViewportRenderer::RenderingAPI renderingAPI() const;
    /// The version of that interface, such as 4.5; 1 for kSoftware.
    float renderingVersion() const;
    /// The camera.
    ZDagPath const &cameraPath() const;
    /// Where to draw.
    ZRenderTarget const &renderTarget() const;
    /// From world space to the camera's: x right, y up, -z into the image.
    ZMatrix const &viewMatrix() const;
    /// From the camera's space to clip space, where the visible part of all three coordinates,
    /// divided by w, is -1 to 1.
    ZMatrix const &projectionMatrix() const;

    /// What to draw for a drawing of the host's.
    explicit ZRenderingInfo(ZRenderTarget::Request const &request);

  private:
    ZRenderTarget::Request const &request_;
};

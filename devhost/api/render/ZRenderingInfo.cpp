// SPDX-License-Identifier: MIT
#include "devhost/session/ViewportRequest.h"

ZRenderingInfo::ZRenderingInfo(ZRenderTarget::Request const &request) : request_(request) {}

// The image covers the whole target.
int ZRenderingInfo::originX() const {
    return 0;
}
int ZRenderingInfo::originY() const {
    return 0;
}
int ZRenderingInfo::width() const {
    return static_cast<int>(request_.image.width);
}
int ZRenderingInfo::height() const {
    return static_cast<int>(request_.image.height);
}
ZViewportRenderer::RenderingAPI ZRenderingInfo::renderingAPI() const {
    return request_.api;
}
float ZRenderingInfo::renderingVersion() const {
    return request_.version;
}
ZDagPath const &ZRenderingInfo::cameraPath() const {
    return request_.camera;
}
ZRenderTarget const &ZRenderingInfo::renderTarget() const {
    return request_.target;
}
ZMatrix const &ZRenderingInfo::viewMatrix() const {
    return request_.view;
}
ZMatrix const &ZRenderingInfo::projectionMatrix() const {
    return request_.projection;
}

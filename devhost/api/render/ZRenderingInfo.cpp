#include "devhost/session/ViewportRequest.h"

// The image covers the whole target.
int ZRenderingInfo::originX() const {
    return 0;
}
int ZRenderingInfo::originY() const {
    return 0;
}
int ZRenderingInfo::width() const {
    return static_cast<int>(fRequest.image.width);
}
int ZRenderingInfo::height() const {
    return static_cast<int>(fRequest.image.height);
}
ZViewportRenderer::RenderingAPI ZRenderingInfo::renderingAPI() const {
    return fRequest.api;
}
float ZRenderingInfo::renderingVersion() const {
    return fRequest.version;
}
ZDagPath const &ZRenderingInfo::cameraPath() const {
    return fRequest.camera;
}
ZRenderTarget const &ZRenderingInfo::renderTarget() const {
    return fRequest.target;
}
ZMatrix const &ZRenderingInfo::viewMatrix() const {
    return fRequest.view;
}
ZMatrix const &ZRenderingInfo::projectionMatrix() const {
    return fRequest.projection;
}

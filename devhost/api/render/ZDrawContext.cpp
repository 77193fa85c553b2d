#include "host/render/ZDrawContext.h"

namespace ZHWRender {

ZDrawContext::ZDrawContext(ZMatrix const &world, ZMatrix const &view, ZMatrix const &projection,
                           unsigned int width, unsigned int height)
    : fWorld(world), fView(view), fProjection(projection), fWidth(width), fHeight(height) {}

ZMatrix const &ZDrawContext::worldMatrix() const {
    return fWorld;
}

ZMatrix const &ZDrawContext::viewMatrix() const {
    return fView;
}

ZMatrix const &ZDrawContext::projectionMatrix() const {
    return fProjection;
}

unsigned int ZDrawContext::width() const {
    return fWidth;
}

unsigned int ZDrawContext::height() const {
    return fHeight;
}

} // namespace ZHWRender

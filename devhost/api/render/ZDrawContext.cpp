// SPDX-License-Identifier: MIT
#include "host/render/ZDrawContext.h"

namespace ZHWRender {

ZDrawContext::ZDrawContext(ZMatrix const &world, ZMatrix const &view, ZMatrix const &projection,
                           unsigned int width, unsigned int height)
    : world_(world), view_(view), projection_(projection), width_(width), height_(height) {}

ZMatrix const &ZDrawContext::worldMatrix() const {
    return world_;
}

ZMatrix const &ZDrawContext::viewMatrix() const {
    return view_;
}

ZMatrix const &ZDrawContext::projectionMatrix() const {
    return projection_;
}

unsigned int ZDrawContext::width() const {
    return width_;
}

unsigned int ZDrawContext::height() const {
    return height_;
}

} // namespace ZHWRender

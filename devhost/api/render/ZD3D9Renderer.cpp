// SPDX-License-Identifier: MIT
#include "host/render/ZD3D9Renderer.h"

#include "host/core/ZStatus.h"

namespace {

ZStatus unavailable() {
    return {ZStatus::kNotImplemented, "there is no Direct3D on this platform"};
}

} // namespace

ZD3D9Renderer *ZD3D9Renderer::theRenderer() {
    static ZD3D9Renderer renderer;
    return &renderer;
}

IDirect3DDevice9 *ZD3D9Renderer::getD3D9Device() {
    return nullptr;
}

ZStatus ZD3D9Renderer::makeSwatchContextCurrent(unsigned int &, unsigned int &) {
    return unavailable();
}

ZStatus ZD3D9Renderer::readSwatchContextPixels(ZImage &) {
    return unavailable();
}

ZStatus ZD3D9Renderer::setBackgroundColor(ZColor const &) {
    return unavailable();
}

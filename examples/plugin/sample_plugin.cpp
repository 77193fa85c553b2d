// SPDX-License-Identifier: MIT
// A native plug-in with one of each kind of object that scripts cannot make themselves, in a colour
// of its own: a draw procedure, a viewport renderer, a render callback and a swatch creator.
// four_parts.py shows them in one picture.

#include "devhost/app/PluginInterface.h"
#include "host/core/ZImage.h"
#include "host/core/ZStatus.h"
#include "host/render/ZDrawProcedureBase.h"
#include "host/render/ZGLFunctionTable.h"
#include "host/render/ZHardwareRenderer.h"
#include "host/render/ZRenderCallback.h"
#include "host/render/ZSwatchRenderBase.h"
#include "host/render/ZSwatchRenderRegister.h"
#include "host/render/ZViewportRenderer.h"

#include <vector>

QUILHOST_PLUGIN

namespace {

constexpr ZGLenum kColorBufferBit = 0x4000;

void clearTo(float red, float green, float blue) {
    ZGLFunctionTable *gl = ZHardwareRenderer::theRenderer()->glFunctionTable();
    gl->glClearColor(red, green, blue, 1);
    gl->glClear(kColorBufferBit);
}

/// Draws what is behind the meshes of hardware frames: blue.
struct Background : ZDrawProcedureBase {
    bool execute() override {
        clearTo(0, 0, 1);
        return true;
    }
};

/// Draws everything by itself: orange.
struct Painter : ZViewportRenderer {
    Painter() : ZViewportRenderer("samplePainter") { setRenderingOverride(kOverrideAllDrawing); }
    ZStatus initialize() override { return {}; }
    ZStatus uninitialize() override { return {}; }
    bool nativelySupports(RenderingAPI api, float) override { return api == kOpenGL; }
    bool override(RenderingOverride) override { return true; }
    ZStatus render(ZRenderingInfo const &) override {
        clearTo(1, 0.5f, 0);
        return {};
    }
};

/// Makes the lowest row of the host's own frames green.
struct GreenRow : ZRenderCallback {
    bool renderCallback(ZRenderData const &data) override {
        for (unsigned column = 0; column < data.xsize; ++column) {
            unsigned char *pixel = data.rgbaArr + 4 * column;
            pixel[0] = pixel[2] = 0;
            pixel[1] = pixel[3] = 255;
        }
        return true;
    }
};

/// A violet swatch, whatever the node.
struct VioletSwatch : ZSwatchRenderBase {
    using ZSwatchRenderBase::ZSwatchRenderBase;
    bool doIteration() override {
        const auto size = unsigned(resolution());
        std::vector<unsigned char> pixels;
        for (unsigned at = 0; at < size * size; ++at)
            pixels.insert(pixels.end(), {128, 0, 255, 255});
        image().create(size, size);
        image().setPixels(pixels.data(), size, size);
        return true;
    }
    static ZSwatchRenderBase *create(ZObject swatchNode, ZObject node, int resolution) {
        return new VioletSwatch(swatchNode, node, resolution);
    }
};

Background background;
Painter painter;
GreenRow greenRow;

} // namespace

const char *startQuilhostPlugin() {
    background.setName("sampleBackground");
    ZHardwareRenderer::theRenderer()->addDrawProcedure("", &background,
                                                       ZHardwareRenderer::kPreExposure);
    if (painter.registerRenderer().error())
        return "there is a viewport renderer named samplePainter already";
    ZSwatchRenderRegister::registerSwatchRender("sampleViolet", VioletSwatch::create);
    ZRenderCallback::addCallback(&greenRow);
    return nullptr;
}

void endQuilhostPlugin() {
    ZRenderCallback::removeCallback(&greenRow);
    ZSwatchRenderRegister::unregisterSwatchRender("sampleViolet");
    painter.deregisterRenderer();
    ZHardwareRenderer::theRenderer()->removeDrawProcedure("", &background,
                                                          ZHardwareRenderer::kPreExposure);
}

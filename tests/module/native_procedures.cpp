// SPDX-License-Identifier: MIT
// What only native code can do: make draw procedures of the hardware renderer and draw, for
// test_hardware.py, which sees every call written down; and make a viewport renderer, for
// test_operations.py, which draws by a function of the script.

#include "devhost/gl/HardwareRendering.h"
#include "host/render/ZDrawProcedureBase.h"
#include "host/render/ZHardwareRenderer.h"
#include "host/render/ZRenderingInfo.h"
#include "host/render/ZViewportRenderer.h"

#include <string>

namespace {

std::string calls;

struct Procedure : ZDrawProcedureBase {
    ~Procedure() override { calls += "~" + std::string(name().asChar()) + " "; }
    bool execute() override {
        unsigned exposure = 9, count = 9;
        const auto *renderer = ZHardwareRenderer::theRenderer();
        renderer->getCurrentExposureNumber("", exposure);
        renderer->getTotalExposureCount("", count);
        calls += name().asChar() + std::to_string(exposure) + "/" + std::to_string(count) + " ";
        return true;
    }
};

struct Renderer : ZViewportRenderer {
    using ZViewportRenderer::ZViewportRenderer;
    ZStatus initialize() override { return {}; }
    ZStatus uninitialize() override { return {}; }
    bool nativelySupports(RenderingAPI api, float) override { return api == kSoftware; }
    bool override(RenderingOverride) override { return true; }
    ZStatus render(ZRenderingInfo const &info) override { return draw(&info), ZStatus(); }
    void (*draw)(const ZRenderingInfo *) = nullptr;
};

} // namespace

#define EXPORTED extern "C" __attribute__((visibility("default")))

EXPORTED ZDrawProcedureBase *make_procedure(const char *name) {
    auto *procedure = new Procedure;
    procedure->setName(name);
    return procedure;
}
EXPORTED int draw(unsigned exposures) {
    devhost::HardwareView view;
    view.places.resize(exposures);
    return devhost::drawHardwareFrame(view).statusCode();
}
/// The calls since the last time.
EXPORTED const char *take_calls() {
    static std::string taken;
    taken = std::move(calls);
    calls.clear();
    return taken.c_str();
}
/// A renderer that takes over all drawing.
EXPORTED ZViewportRenderer *make_renderer(const char *name, void (*draw)(const ZRenderingInfo *)) {
    auto *renderer = new Renderer(name);
    renderer->draw = draw;
    renderer->setRenderingOverride(ZViewportRenderer::kOverrideAllDrawing);
    return renderer;
}

// SPDX-License-Identifier: MIT
// A plug-in that lets scripts draw: draw procedures and viewport renderers are native objects, and
// these hand on to a function of the script (hardware_frame.py shows how). It needs the host's
// declarations only:
//
//     c++ -std=c++20 -shared -fPIC -I. examples/script_drawing.cpp -Lbuild/lib -lOpenQuilRender
//         -lOpenQuil -lOpenQuilFoundation -o script_drawing.so

#include "host/base/HostApi.h"
#include "host/core/ZStatus.h"
#include "host/render/ZDrawProcedureBase.h"
#include "host/render/ZHardwareRenderer.h"
#include "host/render/ZRenderingInfo.h"
#include "host/render/ZViewportRenderer.h"

#include <memory>
#include <vector>

namespace {

struct Procedure : ZDrawProcedureBase {
    bool execute() override { return draw(); }
    bool (*draw)() = nullptr;
};

struct Renderer : ZViewportRenderer {
    using ZViewportRenderer::ZViewportRenderer;
    ZStatus initialize() override { return {}; }
    ZStatus uninitialize() override { return {}; }
    bool nativelySupports(RenderingAPI api, float) override { return api == kOpenGL; }
    bool override(RenderingOverride) override { return true; }
    ZStatus render(ZRenderingInfo const &info) override {
        return draw(info.width(), info.height())
                   ? ZStatus()
                   : ZStatus(ZStatus::kFailure, "the script's drawing failed");
    }
    bool (*draw)(int width, int height) = nullptr;
};

} // namespace

extern "C" {

/// Adds a procedure at the end of a location's list. Returns the code of addDrawProcedure.
OPENQUIL_API int add_draw_procedure(const char *name, int location, bool (*draw)()) {
    auto *procedure = new Procedure; // lives as long as the process
    procedure->setName(name);
    procedure->draw = draw;
    return ZHardwareRenderer::theRenderer()->addDrawProcedure(
        "", procedure, ZHardwareRenderer::CallLocation(location));
}

/// Registers a renderer that draws with OpenGL before the host draws the meshes. False when there
/// is one of the name.
OPENQUIL_API bool add_viewport_renderer(const char *name, bool (*draw)(int width, int height)) {
    // The host has none of them: they live as long as the process.
    static auto *const registered = new std::vector<std::unique_ptr<Renderer>>;
    auto renderer = std::make_unique<Renderer>(name);
    renderer->draw = draw;
    renderer->setRenderingOverride(ZViewportRenderer::kOverrideThenStandard);
    if (renderer->registerRenderer().error())
        return false;
    registered->push_back(std::move(renderer));
    return true;
}
}

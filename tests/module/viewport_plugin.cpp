// SPDX-License-Identifier: MIT
// A plug-in with one viewport renderer, "paint", which lets a callback of the test draw.

#include "host/base/HostApi.h"
#include "host/core/ZStatus.h"
#include "host/render/ZRenderingInfo.h"

namespace {

using Draw = bool (*)(const ZRenderingInfo *);

class Paint : public ZViewportRenderer {
  public:
    Paint() : ZViewportRenderer("paint") {}
    ZStatus initialize() override { return {}; }
    ZStatus uninitialize() override { return {}; }
    ZStatus render(ZRenderingInfo const &info) override {
        return draw && draw(&info) ? ZStatus() : ZStatus(ZStatus::kFailure, "nothing was drawn");
    }
    bool nativelySupports(RenderingAPI api, float version) override {
        return api == kSoftware && version == 1.0f;
    }
    bool override(RenderingOverride mode) override { return mode != kOverrideThenUI; }
    int overrideThenStandardExclusion() override { return kExcludePluginShapes; }

    Draw draw = nullptr;
};

} // namespace

extern "C" {

OPENQUIL_API ZViewportRenderer *make_renderer(Draw draw) {
    auto *renderer = new Paint;
    renderer->draw = draw;
    return renderer;
}
}

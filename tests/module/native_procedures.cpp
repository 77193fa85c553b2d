// SPDX-License-Identifier: MIT
// What only native code can do to the hardware renderer, for test_hardware.py: make draw procedures
// and draw. Every call of theirs is written down.

#include "devhost/gl/HardwareRendering.h"
#include "host/render/ZDrawProcedureBase.h"
#include "host/render/ZHardwareRenderer.h"

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

// SPDX-License-Identifier: MIT
#include "devhost/session/UnmetSettings.h"

namespace devhost {

std::vector<std::string> unmetSettings(const ZCommonRenderSettingsData &settings) {
    std::vector<std::string> lines;
    if (!settings.renderAll)
        lines.emplace_back(
            "renderAll is false: nothing is selected here, all objects are rendered");
    if (settings.dotPerInch != 72)
        lines.emplace_back("dotPerInch is not written to pictures");
    const std::pair<const char *, const ZString *> commands[] = {
        {"preKos", &settings.preKos},
        {"postKos", &settings.postKos},
        {"preRenderLayerKos", &settings.preRenderLayerKos},
        {"postRenderLayerKos", &settings.postRenderLayerKos},
        {"preRenderKos", &settings.preRenderKos},
        {"postRenderKos", &settings.postRenderKos}};
    for (const auto &[name, command] : commands)
        if (command->length())
            lines.push_back(std::string(name) + " is not run: scripts can ask for it");
    return lines;
}

} // namespace devhost

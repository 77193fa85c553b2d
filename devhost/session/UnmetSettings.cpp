// SPDX-License-Identifier: MIT
#include "devhost/session/UnmetSettings.h"

#include "devhost/util/Notices.h"

#include <utility>

namespace devhost {

void tellUnmetSettings(const ZCommonRenderSettingsData &settings) {
    const auto unmet = [](const char *name, const char *found, const char *instead) {
        tell({"setting", "", std::string("setting ") + name, found, instead});
    };
    if (!settings.renderAll)
        unmet("renderAll", "it is false, and nothing can be selected", "all objects are rendered");
    if (settings.dotPerInch != 72)
        unmet("dotPerInch", "pictures do not hold it", "it is left out");
    const std::pair<const char *, const ZString *> commands[] = {
        {"preKos", &settings.preKos},
        {"postKos", &settings.postKos},
        {"preRenderLayerKos", &settings.preRenderLayerKos},
        {"postRenderLayerKos", &settings.postRenderLayerKos},
        {"preRenderKos", &settings.preRenderKos},
        {"postRenderKos", &settings.postRenderKos}};
    for (const auto &[name, command] : commands)
        if (command->length())
            unmet(name, "there is nothing that runs commands", "scripts can ask for it");
}

} // namespace devhost

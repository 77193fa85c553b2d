// SPDX-License-Identifier: MIT
#include "devhost/app/SettingOptions.h"

#include <CLI/StringTools.hpp>
#include <CLI/TypeTools.hpp>

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <variant>

namespace quilhost {
namespace {

using Settings = ZCommonRenderSettingsData;

struct Field {
    const char *name;
    std::variant<bool Settings::*, float Settings::*, ZString Settings::*> member;
};

constexpr Field kFields[] = {
    {"renumberFrames", &Settings::renumberFrames},
    {"renumberStart", &Settings::renumberStart},
    {"renumberBy", &Settings::renumberBy},
    {"pixelAspectRatio", &Settings::pixelAspectRatio},
    {"dotPerInch", &Settings::dotPerInch},
    {"enableDefaultLight", &Settings::enableDefaultLight},
    {"renderAll", &Settings::renderAll},
    {"preKos", &Settings::preKos},
    {"postKos", &Settings::postKos},
    {"preRenderLayerKos", &Settings::preRenderLayerKos},
    {"postRenderLayerKos", &Settings::postRenderLayerKos},
    {"preRenderKos", &Settings::preRenderKos},
    {"postRenderKos", &Settings::postRenderKos},
};

bool read(const std::string &text, bool &value) {
    value = text == "1" || text == "true";
    return value || text == "0" || text == "false";
}
bool read(const std::string &text, float &value) {
    return CLI::detail::lexical_cast(text, value) && std::isfinite(value);
}
bool read(const std::string &text, ZString &value) {
    value = text.c_str();
    return true;
}

} // namespace

std::string settingNames() {
    std::string names;
    for (const Field &field : kFields)
        names += (names.empty() ? "" : ", ") + std::string(field.name);
    return names;
}

void applySetting(const std::string &assignment, ZCommonRenderSettingsData &settings) {
    const size_t equals = std::min(assignment.find('='), assignment.size());
    const std::string name = assignment.substr(0, equals);
    const auto *const field = std::find_if(std::begin(kFields), std::end(kFields),
                                           [&](const Field &each) { return each.name == name; });
    if (field == std::end(kFields) || equals == assignment.size())
        throw std::invalid_argument("--setting '" + assignment +
                                    "' is no NAME=VALUE with one of the names " + settingNames());
    const std::string text = assignment.substr(equals + 1);
    if (!std::visit([&](auto member) { return read(text, settings.*member); }, field->member))
        throw std::invalid_argument("--setting '" + assignment + "': the value does not fit");
    if (!(settings.pixelAspectRatio > 0))
        throw std::invalid_argument("--setting '" + assignment + "': pixels need a width");
    settings.deviceAspectRatio = settings.pixelAspectRatio * static_cast<float>(settings.width) /
                                 static_cast<float>(settings.height);
}

} // namespace quilhost

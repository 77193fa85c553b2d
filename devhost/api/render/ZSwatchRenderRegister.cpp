// SPDX-License-Identifier: MIT
// The swatch generators that the host knows.
#include "host/render/ZSwatchRenderRegister.h"

#include "devhost/api/render/Swatches.h"
#include "devhost/raytrace/MaterialBall.h"
#include "devhost/util/Guarded.h"

#include <map>
#include <string>

namespace devhost {

namespace {

constexpr int kLargestSwatch = 4096;

using Generators = std::map<std::string, ZSwatchRenderCreatorFnPtr>;

Generators &generators() {
    static Generators all = {{kMaterialBall, createMaterialBall}};
    return all;
}

} // namespace

ZStringArray swatchGenerators() {
    ZStringArray names;
    for (const auto &[name, creator] : generators())
        names.append(ZString(name.c_str()));
    return names;
}

ZStatus findSwatchGenerator(const ZString &name, ZSwatchRenderCreatorFnPtr &creator) {
    const auto found = generators().find(name.asChar());
    if (found == generators().end())
        return {ZStatus::kNotFound,
                ("no swatch generator of the name \"" + std::string(name.asChar()) + "\"").c_str()};
    creator = found->second;
    return {};
}

ZStatus beginSwatch(const ZString &generator, const ZObject &node, int resolution,
                    std::unique_ptr<ZSwatchRenderBase> &swatch) {
    ZSwatchRenderCreatorFnPtr creator = nullptr;
    if (const ZStatus status = findSwatchGenerator(generator, creator); !status)
        return status;
    if (resolution < 1 || resolution > kLargestSwatch)
        return {ZStatus::kInvalidParameter, "the resolution is not 1 to 4096"};
    return guarded([&]() -> ZStatus {
        swatch.reset(creator ? creator(node, node, resolution) : nullptr);
        if (swatch)
            return {};
        return {ZStatus::kInvalidParameter,
                ("the generator \"" + std::string(generator.asChar()) +
                 "\" has no swatch for this node (" + node.apiTypeStr() + ")")
                    .c_str()};
    });
}

} // namespace devhost

using namespace devhost;

// NOLINTBEGIN(performance-unnecessary-value-param): the host declares them by value
ZStatus ZSwatchRenderRegister::registerSwatchRender(ZString name,
                                                    ZSwatchRenderCreatorFnPtr creator) {
    if (name.length() == 0)
        return {ZStatus::kInvalidParameter, "a swatch generator needs a name"};
    if (!generators().try_emplace(name.asChar(), creator).second)
        return {ZStatus::kInvalidParameter, ("there is already a swatch generator of the name \"" +
                                             std::string(name.asChar()) + "\"")
                                                .c_str()};
    return {};
}

ZStatus ZSwatchRenderRegister::unregisterSwatchRender(ZString name) {
    ZSwatchRenderCreatorFnPtr creator;
    const ZStatus status = findSwatchGenerator(name, creator);
    if (status)
        generators().erase(name.asChar());
    return status;
}
// NOLINTEND(performance-unnecessary-value-param)

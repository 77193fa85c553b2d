// SPDX-License-Identifier: MIT
#include "host/render/ZViewportRenderer.h"

#include "devhost/session/ViewportRegistry.h"
#include "host/core/ZStatus.h"

#include <algorithm>

namespace devhost {

std::list<RegisteredViewport> &registeredViewports() {
    // Never destroyed: renderers of plug-ins may outlive everything else.
    static auto *const registered = new std::list<RegisteredViewport>;
    return *registered;
}

} // namespace devhost

namespace {

auto find(const ZViewportRenderer *renderer) {
    auto &all = devhost::registeredViewports();
    return std::find_if(all.begin(), all.end(),
                        [=](const auto &entry) { return entry.renderer == renderer; });
}

} // namespace

ZViewportRenderer::ZViewportRenderer(ZString const &name) : name_(name), uiName_(name) {}

ZViewportRenderer::~ZViewportRenderer() {
    // What would uninitialise it is gone already.
    auto &all = devhost::registeredViewports();
    if (const auto found = find(this); found != all.end())
        all.erase(found);
}

int ZViewportRenderer::overrideThenStandardExclusion() {
    return kExcludeNone;
}

ZString ZViewportRenderer::name() const {
    return name_;
}

ZString ZViewportRenderer::UIname() const {
    return uiName_;
}

void ZViewportRenderer::setUIName(ZString const &name) {
    uiName_ = name;
}

ZViewportRenderer::RenderingOverride ZViewportRenderer::renderingOverride() const {
    return renderingOverride_;
}

void ZViewportRenderer::setRenderingOverride(RenderingOverride mode) {
    renderingOverride_ = mode;
}

ZStatus ZViewportRenderer::registerRenderer() const {
    const std::string name = name_.asChar();
    if (name.empty())
        return {ZStatus::kInvalidParameter, "the viewport renderer has no name"};
    auto &all = devhost::registeredViewports();
    for (const auto &entry : all)
        if (entry.name == name)
            return {ZStatus::kFailure,
                    ("a viewport renderer of this name is registered: " + name).c_str()};
    // Being registered does not change a renderer, but drawing may.
    all.push_back({name, const_cast<ZViewportRenderer *>(this)});
    return {};
}

ZStatus ZViewportRenderer::deregisterRenderer() const {
    auto &all = devhost::registeredViewports();
    const auto found = find(this);
    if (found == all.end())
        return {ZStatus::kNotFound, "the viewport renderer is not registered"};
    const auto entry = *found;
    all.erase(found);
    return entry.initialized ? entry.renderer->uninitialize() : ZStatus();
}

// SPDX-License-Identifier: MIT
// Render passes and the implementations that the host has for them.
#include "host/render/ZFnRenderPass.h"

#include "devhost/scene/PassKind.h"
#include "devhost/scene/SceneGraph.h"
#include "devhost/util/Statuses.h"
#include "host/core/ZString.h"

#include <vector>

using devhost::Node;
using devhost::PassKind;
using devhost::RenderPass;
using devhost::scene;

namespace {

class Implementation : public ZPxRenderPassImpl {
  public:
    explicit Implementation(const PassKind &kind) : kind_(kind) {}
    ZString name() const override { return ZString(kind_.name); }
    PassTypeBit frameBufferType() const override { return kind_.isColor ? kUInt8 : kFloat32; }
    unsigned int numChannels() const override { return kind_.channels; }
    bool usesFiltering() const override { return kind_.isColor; }

  private:
    const PassKind &kind_;
};

/// Null when there is none of that name.
ZPxRenderPassImpl *implementationOf(const std::string &name) {
    // Never destroyed: scripts may keep what they were handed.
    static auto *const all =
        new std::vector<Implementation>(devhost::passKinds().begin(), devhost::passKinds().end());
    for (Implementation &each : *all)
        if (each.name() == name.c_str())
            return &each;
    return nullptr;
}

const RenderPass *passOf(const ZFnRenderPass &set, ZStatus *ReturnStatus) {
    const Node *node = scene().node(set.object(ReturnStatus));
    return node ? node->pass() : nullptr;
}

} // namespace

ZPxRenderPassImpl::~ZPxRenderPassImpl() = default;

ZFnRenderPass::ZFnRenderPass() = default;
ZFnRenderPass::ZFnRenderPass(ZObject &object, ZStatus *ReturnStatus) {
    devhost::report(ReturnStatus, setObject(object));
}
ZFnRenderPass::~ZFnRenderPass() = default;

bool ZFnRenderPass::hasObj(const ZObject &object) const {
    const Node *node = scene().node(object);
    return node && node->pass();
}

const char *ZFnRenderPass::className() {
    return "ZFnRenderPass";
}

ZPxRenderPassImpl *ZFnRenderPass::setImplementation(ZString const &implementation,
                                                    ZStatus *ReturnStatus) {
    ZPxRenderPassImpl *const chosen = implementationOf(implementation.asChar());
    if (!passOf(*this, ReturnStatus))
        return nullptr;
    if (chosen)
        std::get<RenderPass>(scene().edit(scene().id(object()))->payload).implementation =
            implementation.asChar();
    else
        devhost::report(
            ReturnStatus,
            ZStatus(ZStatus::kNotFound, (std::string("there is no render pass implementation ") +
                                         implementation.asChar())
                                            .c_str()));
    return chosen;
}

ZPxRenderPassImpl *ZFnRenderPass::getImplementation(ZStatus *ReturnStatus) const {
    const RenderPass *pass = passOf(*this, ReturnStatus);
    return pass ? implementationOf(pass->implementation) : nullptr;
}

ZPxRenderPassImpl::PassTypeBit ZFnRenderPass::frameBufferType(ZStatus *ReturnStatus) const {
    const ZPxRenderPassImpl *chosen = getImplementation(ReturnStatus);
    return chosen ? chosen->frameBufferType() : ZPxRenderPassImpl::PassTypeBit(0);
}

unsigned int ZFnRenderPass::frameBufferChannels(ZStatus *ReturnStatus) const {
    const ZPxRenderPassImpl *chosen = getImplementation(ReturnStatus);
    return chosen ? chosen->numChannels() : 0;
}

bool ZFnRenderPass::usesFiltering(ZStatus *ReturnStatus) const {
    const ZPxRenderPassImpl *chosen = getImplementation(ReturnStatus);
    return chosen && chosen->usesFiltering();
}

ZString ZFnRenderPass::passID(ZStatus *ReturnStatus) const {
    const RenderPass *pass = passOf(*this, ReturnStatus);
    return pass ? ZString(pass->passId.c_str()) : ZString();
}

ZString ZFnRenderPass::customTokenString(ZStatus *ReturnStatus) const {
    const RenderPass *pass = passOf(*this, ReturnStatus);
    return pass ? ZString(pass->customTokens.c_str()) : ZString();
}

// SPDX-License-Identifier: MIT
#include "host/render/ZFnRenderLayer.h"

#include "devhost/scene/SceneGraph.h"
#include "devhost/util/Guarded.h"
#include "devhost/util/Statuses.h"
#include "host/core/ZDagPath.h"
#include "host/core/ZPlug.h"
#include "host/render/ZRenderUtil.h"

#include <algorithm>

using devhost::invalid;
using devhost::kNoNode;
using devhost::Node;
using devhost::NodeId;
using devhost::RenderLayer;
using devhost::report;
using devhost::scene;

namespace {

ZStatus collect(const std::vector<NodeId> &ids, ZObjectArray &objects) {
    objects.clear();
    for (const NodeId id : ids)
        if (scene().node(id) && !objects.append(scene().object(id)))
            return ZStatus::kInsufficientMemory;
    return ZStatus();
}

/// The layer, and all layers below it, parents first.
std::vector<NodeId> withDescendants(NodeId layer) {
    std::vector<NodeId> all{layer};
    for (size_t at = 0; at < all.size(); ++at) {
        const auto &children = scene().node(all[at])->children;
        all.insert(all.end(), children.begin(), children.end());
    }
    return all;
}

/// The layer's adjustment of a plug; fails where the plug or the layer is no good, and is null
/// where there is none.
const RenderLayer::Adjustment *adjustmentOf(const ZFnRenderLayer &set, const ZPlug &plug,
                                            ZStatus &status) {
    const Node *layer = scene().node(set.object(&status));
    if (layer && plug.isNull())
        status = invalid("the plug names no attribute");
    if (!status)
        return nullptr;
    const NodeId id = scene().id(plug.node());
    const std::string attribute = plug.partialName().asChar();
    for (const auto &each : layer->layer()->adjustments)
        if (each.node == id && each.attribute == attribute)
            return &each;
    return nullptr;
}

/// Whether a pass of the layer shows a node that is in the layer.
bool passShows(NodeId layer, NodeId pass, const devhost::NodeChoice &chosen, NodeId id) {
    const auto &passes = scene().node(layer)->layer()->passes;
    return std::find(passes.begin(), passes.end(), pass) != passes.end() &&
           scene().isInLayer(id, layer) && scene().isChosen(id, chosen);
}

} // namespace

ZFnRenderLayer::ZFnRenderLayer() = default;
ZFnRenderLayer::ZFnRenderLayer(ZObject &object, ZStatus *ReturnStatus) {
    report(ReturnStatus, setObject(object));
}
ZFnRenderLayer::~ZFnRenderLayer() = default;

bool ZFnRenderLayer::hasObj(const ZObject &object) const {
    const Node *node = scene().node(object);
    return node && node->layer();
}

const char *ZFnRenderLayer::className() {
    return "ZFnRenderLayer";
}

bool ZFnRenderLayer::inLayer(ZObject const &transform, ZStatus *ReturnStatus) {
    ZStatus status;
    const ZObject layer = object(&status);
    if (status && transform.isNull())
        status = invalid("a null object is in no layer");
    report(ReturnStatus, status);
    return status && scene().isInLayer(scene().id(transform), scene().id(layer));
}

ZStatus ZFnRenderLayer::layerChildren(ZObjectArray &layerObjects, bool recurse) {
    return devhost::guarded([&]() -> ZStatus {
        ZStatus status;
        const Node *layer = scene().node(object(&status));
        if (!status)
            return status;
        std::vector<NodeId> found = layer->children;
        if (recurse) {
            found = withDescendants(scene().id(object()));
            found.erase(found.begin());
        }
        return collect(found, layerObjects);
    });
}

bool ZFnRenderLayer::inCurrentRenderLayer(ZDagPath const &objectPath, ZStatus *ReturnStatus) {
    return ZRenderUtil::inCurrentRenderLayer(objectPath, ReturnStatus);
}

ZStatus ZFnRenderLayer::listMembers(ZObjectArray &objects) const {
    return devhost::guarded([&]() -> ZStatus {
        ZStatus status;
        const ZObject layer = object(&status);
        if (!status)
            return status;
        std::vector<NodeId> members;
        if (scene().node(layer)->layer()->isDefault) {
            for (const NodeId id : scene().nodes())
                if (scene().node(id)->parent == kNoNode && scene().node(id)->inHierarchy())
                    members.push_back(id);
            return collect(members, objects);
        }
        for (const NodeId each : withDescendants(scene().id(layer)))
            for (const NodeId id : scene().node(each)->layer()->members)
                if (std::find(members.begin(), members.end(), id) == members.end())
                    members.push_back(id);
        return collect(members, objects);
    });
}

bool ZFnRenderLayer::isPlugAdjusted(ZPlug const &scenePlug, ZStatus *ReturnStatus) const {
    ZStatus status;
    const bool adjusted = adjustmentOf(*this, scenePlug, status) != nullptr;
    report(ReturnStatus, status);
    return adjusted;
}

ZPlug ZFnRenderLayer::adjustmentPlug(ZPlug const &scenePlug, ZStatus *ReturnStatus) const {
    ZStatus status;
    const auto *adjustment = adjustmentOf(*this, scenePlug, status);
    if (status && !adjustment)
        status = ZStatus(
            ZStatus::kNotFound,
            (std::string("the layer does not adjust ") + scenePlug.name().asChar()).c_str());
    report(ReturnStatus, status);
    return adjustment ? ZPlug(object(), ZString(adjustment->name.c_str())) : ZPlug();
}

ZStatus ZFnRenderLayer::externalRenderPasses(ZObjectArray &objectArray) const {
    ZStatus status;
    const Node *layer = scene().node(object(&status));
    return status ? collect(layer->layer()->passes, objectArray) : status;
}

bool ZFnRenderLayer::passHasObject(ZObject const &renderPass, ZDagPath const &objectInstance,
                                   ZStatus *ReturnStatus) const {
    ZStatus status;
    const NodeId layer = scene().id(object(&status));
    const Node *pass = scene().node(renderPass);
    if (status && !(pass && pass->pass()))
        status = invalid("a render pass is needed");
    else if (status && !objectInstance.isValid())
        status = invalid("the path is not valid");
    report(ReturnStatus, status);
    return status && passShows(layer, scene().id(renderPass), pass->pass()->objects,
                               scene().id(objectInstance.node()));
}

bool ZFnRenderLayer::passHasLight(ZObject const &renderPass, ZObject const &light,
                                  ZStatus *ReturnStatus) const {
    ZStatus status;
    const NodeId layer = scene().id(object(&status));
    const Node *pass = scene().node(renderPass), *lamp = scene().node(light);
    if (status && !(pass && pass->pass()))
        status = invalid("a render pass is needed");
    else if (status && !(lamp && lamp->light()))
        status = invalid("a light is needed");
    report(ReturnStatus, status);
    return status &&
           passShows(layer, scene().id(renderPass), pass->pass()->lights, scene().id(light));
}

ZObject ZFnRenderLayer::findLayerByName(ZString const &renderLayer, ZStatus *ReturnStatus) {
    const std::string name = renderLayer.asChar();
    for (const NodeId id : scene().layers())
        if (scene().node(id)->name == name) {
            report(ReturnStatus, ZStatus());
            return scene().object(id);
        }
    report(ReturnStatus, ZStatus(ZStatus::kNotFound, ("there is no render layer " + name).c_str()));
    return ZObject();
}

ZObject ZFnRenderLayer::defaultRenderLayer(ZStatus *ReturnStatus) {
    for (const NodeId id : scene().layers())
        if (scene().node(id)->layer()->isDefault) {
            report(ReturnStatus, ZStatus());
            return scene().object(id);
        }
    report(ReturnStatus, ZStatus(ZStatus::kNotFound, "the scene has no default render layer"));
    return ZObject();
}

ZStatus ZFnRenderLayer::listAllRenderLayers(ZObjectArray &renderLayers) {
    return devhost::guarded([&]() -> ZStatus { return collect(scene().layers(), renderLayers); });
}

ZObject ZFnRenderLayer::currentLayer(ZStatus *ReturnStatus) {
    const ZObject layer = scene().object(scene().currentLayer());
    report(ReturnStatus, layer.isNull()
                             ? ZStatus(ZStatus::kNotFound, "the scene has no render layer")
                             : ZStatus());
    return layer;
}

// SPDX-License-Identifier: MIT
// Light links: every pair of a light and a mesh of the layer, with what holds between the two.
#include "host/render/ZLightLinks.h"

#include "devhost/scene/SceneGraph.h"
#include "devhost/session/RenderSession.h"
#include "devhost/util/Guarded.h"
#include "devhost/util/Hidden.h"
#include "host/core/ZDagPathArray.h"
#include "host/core/ZSelectionList.h"

#include <algorithm>
#include <iostream>
#include <vector>

using devhost::kNoNode;
using devhost::Light;
using devhost::Node;
using devhost::NodeChoice;
using devhost::NodeId;
using devhost::scene;

namespace {

/// The nodes at or below one.
bool isBelow(NodeId id, NodeId top) {
    return scene().isChosen(id, {false, {top}});
}

std::vector<NodeId> below(const std::vector<NodeId> &all, NodeId top) {
    std::vector<NodeId> result;
    for (const NodeId id : all)
        if (isBelow(id, top))
            result.push_back(id);
    return result;
}

/// Whether a light or mesh takes part in pictures of a layer.
bool isUsed(NodeId id, NodeId layer, bool hiddenToo) {
    const Light *light = scene().node(id)->light();
    if (!hiddenToo && !scene().isVisible(id))
        return false;
    if (light && light->isDefault)
        return devhost::renderSession().settings.enableDefaultLight;
    return layer == kNoNode || scene().isInLayer(id, layer);
}

/// One light and one object.
struct Link {
    ZObject light, object;
    bool illuminates, castsShadows;
};
using AllLinks = std::vector<Link>;

ZStatus notParsed() {
    return ZStatus(ZStatus::kFailure, "the links were not read yet: call parseLinks");
}

/// Fills the array with the lights that are, or are not, related to the objects of a path.
ZStatus lightsOf(const AllLinks *links, ZDagPath const &path, bool Link::*relation, bool wanted,
                 ZDagPathArray &lights) {
    return devhost::guarded([&]() -> ZStatus {
        if (!links)
            return notParsed();
        const NodeId top = scene().id(path.node());
        if (top == kNoNode || below(scene().meshes(), top).empty())
            return ZStatus(ZStatus::kInvalidParameter, "the path leads to no object");
        // A light is related to a group when it is to one of its meshes.
        std::vector<ZObject> all, related;
        for (const Link &link : *links) {
            if (link.light.isNull() || !isBelow(scene().id(link.object), top))
                continue;
            if (std::find(all.begin(), all.end(), link.light) == all.end())
                all.push_back(link.light);
            if (link.*relation)
                related.push_back(link.light);
        }
        lights.clear();
        for (const ZObject &light : all) {
            const bool is = std::find(related.begin(), related.end(), light) != related.end();
            ZDagPath lightPath;
            if (is == wanted &&
                (!ZDagPath::getAPathTo(light, lightPath) || !lights.append(lightPath)))
                return ZStatus::kInsufficientMemory;
        }
        return ZStatus();
    });
}

/// Fills the list with the objects that are, or are not, related to the lights of a path.
ZStatus objectsOf(const AllLinks *links, ZDagPath const &light, bool Link::*relation, bool wanted,
                  ZSelectionList &objects) {
    return devhost::guarded([&]() -> ZStatus {
        if (!links)
            return notParsed();
        const NodeId top = scene().id(light.node());
        if (top == kNoNode || below(scene().lights(), top).empty())
            return ZStatus(ZStatus::kInvalidParameter, "the path leads to no light");
        objects.clear();
        for (const Link &link : *links)
            if (link.*relation == wanted && !link.object.isNull() &&
                isBelow(scene().id(link.light), top))
                objects.add(link.object);
        return ZStatus();
    });
}

} // namespace

struct ZLightLinks::Links : AllLinks {};

ZLightLinks::ZLightLinks() : links_(nullptr) {}

ZLightLinks::~ZLightLinks() {
    delete links_;
}

ZStatus ZLightLinks::parseLinks(ZObject const &object, bool verbose, std::ostream *stream,
                                bool includeHidden, bool shadowLinks) {
    return devhost::guarded([&]() -> ZStatus {
        const NodeId given = scene().id(object);
        const Node *node = scene().node(given);
        NodeId layer = scene().currentLayer(), top = kNoNode;
        if (node && node->layer())
            layer = given;
        else if (node)
            top = given;
        const std::vector<NodeId> lights = scene().lights(), meshes = scene().meshes();
        if (top != kNoNode && below(lights, top).empty() && below(meshes, top).empty())
            return ZStatus(ZStatus::kInvalidParameter,
                           (node->name + " is no object, light or render layer").c_str());

        std::ostream &out = stream ? *stream : std::cout;
        AllLinks &links = devhost::made(links_);
        links.clear();
        for (const NodeId lightId : lights) {
            if (!isUsed(lightId, layer, includeHidden))
                continue;
            const Light &light = *scene().node(lightId)->light();
            const NodeChoice &casters = shadowLinks ? light.shadowCasters : light.illuminated;
            for (const NodeId mesh : meshes) {
                if (!isUsed(mesh, layer, includeHidden))
                    continue;
                if (top != kNoNode && !isBelow(lightId, top) && !isBelow(mesh, top))
                    continue;
                const Link link{scene().object(lightId), scene().object(mesh),
                                scene().isChosen(mesh, light.illuminated),
                                scene().isChosen(mesh, casters)};
                links.push_back(link);
                if (verbose)
                    out << scene().path(lightId)
                        << (link.illuminates ? " illuminates " : " ignores ") << scene().path(mesh)
                        << (link.castsShadows ? ", which casts shadows\n"
                                              : ", which casts no shadow\n");
            }
        }
        if (verbose)
            out.flush();
        return ZStatus();
    });
}

ZStatus ZLightLinks::getLinkedLights(ZDagPath const &path, ZObject const &, ZDagPathArray &lights) {
    return lightsOf(links_, path, &Link::illuminates, true, lights);
}

ZStatus ZLightLinks::getIgnoredLights(ZDagPath const &path, ZObject const &,
                                      ZDagPathArray &lights) {
    return lightsOf(links_, path, &Link::illuminates, false, lights);
}

ZStatus ZLightLinks::getShadowLinkedLights(ZDagPath const &path, ZObject const &,
                                           ZDagPathArray &lights) {
    return lightsOf(links_, path, &Link::castsShadows, true, lights);
}

ZStatus ZLightLinks::getShadowIgnoredLights(ZDagPath const &path, ZObject const &,
                                            ZDagPathArray &lights) {
    return lightsOf(links_, path, &Link::castsShadows, false, lights);
}

ZStatus ZLightLinks::getLinkedObjects(ZDagPath const &light, ZSelectionList &objects) {
    return objectsOf(links_, light, &Link::illuminates, true, objects);
}

ZStatus ZLightLinks::getIgnoredObjects(ZDagPath const &light, ZSelectionList &objects) {
    return objectsOf(links_, light, &Link::illuminates, false, objects);
}

ZStatus ZLightLinks::getShadowLinkedObjects(ZDagPath const &light, ZSelectionList &objects) {
    return objectsOf(links_, light, &Link::castsShadows, true, objects);
}

ZStatus ZLightLinks::getShadowIgnoredObjects(ZDagPath const &light, ZSelectionList &objects) {
    return objectsOf(links_, light, &Link::castsShadows, false, objects);
}

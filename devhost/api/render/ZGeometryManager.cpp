// SPDX-License-Identifier: MIT
#include "host/render/ZGeometryManager.h"

#include "devhost/api/render/GeometryElements.h"
#include "devhost/geometry/DefaultShapes.h"
#include "host/core/ZObject.h"
#include "host/core/ZStatus.h"

#include <algorithm>

namespace {

using Requirements = devhost::GeometryRequirementList;
using Shape = ZGeometryManager::GeometricShape;

struct Lent {
    ZGeometryList *list = nullptr;
    unsigned references = 0;
};

using LentShapes = std::map<std::pair<Shape, Requirements>, Lent>;

/// The shapes that scripts have and did not give back.
LentShapes &lentShapes() {
    static auto *const shapes = new LentShapes; // never destroyed: lists may outlive the rest
    return *shapes;
}

LentShapes::iterator find(const ZGeometryList *list) {
    LentShapes &all = lentShapes();
    return std::find_if(all.begin(), all.end(),
                        [&](const auto &entry) { return entry.second.list == list; });
}

devhost::MeshHandle meshOf(Shape shape) {
    switch (shape) {
    case ZGeometryManager::kDefaultSphere:
        return devhost::defaultSphere();
    case ZGeometryManager::kDefaultPlane:
        return devhost::defaultPlane();
    case ZGeometryManager::kDefaultCube:
        return devhost::defaultCube();
    default:
        return nullptr;
    }
}

} // namespace

void devhost::forgetDefaultGeometry(const ZGeometryList *list) {
    if (const auto found = find(list); found != lentShapes().end())
        lentShapes().erase(found);
}

ZGeometry ZGeometryManager::getGeometry(ZDagPath const &dagPath,
                                        ZGeometryRequirements const &requirements,
                                        ZObject *component) {
    const bool isPart = component && !component->isNull();
    const devhost::NodeId mesh = isPart ? devhost::kNoNode : devhost::meshNode(dagPath);
    return devhost::geometryOf(devhost::meshOfNode(mesh), requirements.list());
}

ZGeometryList *
ZGeometryManager::referenceDefaultGeometry(GeometricShape shape,
                                           ZGeometryRequirements const &requirements) {
    const devhost::MeshHandle mesh = meshOf(shape);
    if (!mesh)
        return nullptr;
    Lent &lent = lentShapes()[{shape, requirements.list()}];
    if (!lent.list) {
        lent.list = new ZGeometryList;
        lent.list->addLast(devhost::geometryOf(mesh, requirements.list()), ZMatrix());
    }
    ++lent.references;
    return lent.list;
}

ZStatus ZGeometryManager::dereferenceDefaultGeometry(ZGeometryList *geometry) {
    const auto found = find(geometry);
    if (found == lentShapes().end())
        return {ZStatus::kInvalidParameter, "the list is none of the default geometry in use"};
    if (--found->second.references == 0)
        delete geometry; // which takes the entry out
    return {};
}

char const *ZGeometryManager::className() {
    return "ZGeometryManager";
}

// SPDX-License-Identifier: MIT
#include "devhost/api/render/DefaultGeometry.h"

#include "host/core/ZStatus.h"
#include "host/core/ZString.h"
#include "host/render/ZGeometryManager.h"

#include <algorithm>
#include <map>
#include <vector>

namespace devhost {
namespace {

/// The handles keep the streams and indices.
struct Shape {
    std::vector<ZGeometryData> streams;
    ZGeometryPrimitive triangles;
    unsigned references = 0;
};

std::map<int, Shape> &shapes() {
    // Never destroyed: scripts may give shapes back while the process exits.
    static auto *const instance = new std::map<int, Shape>;
    return *instance;
}

Shape *findShape(int shape) {
    const auto found = shapes().find(shape);
    if (found != shapes().end())
        return &found->second;

    const ZString uvs;
    ZGeometryRequirements requirements;
    requirements.addPosition();
    requirements.addNormal();
    requirements.addTexCoord(uvs);
    ZGeometryList *list = ZGeometryManager::referenceDefaultGeometry(
        static_cast<ZGeometryManager::GeometricShape>(shape), requirements);
    if (!list)
        return nullptr;
    ZGeometry &geometry = list->geometry();
    Shape made{{geometry.position(), geometry.normal(), geometry.texCoord(uvs)},
               geometry.primitiveArray(0)};
    ZGeometryManager::dereferenceDefaultGeometry(list);
    return &shapes().emplace(shape, std::move(made)).first->second;
}

} // namespace

GeometryReference referenceShape(ZHardwareRenderer::GeometricShape shape) {
    Shape *found = findShape(shape);
    if (!found)
        return {};
    ++found->references;
    return {found->streams.data(), static_cast<unsigned>(found->streams.size()),
            static_cast<unsigned *>(found->triangles.data()), found->triangles.elementCount()};
}

bool dereferenceShape(const ZGeometryData *data, unsigned dataCount) {
    const auto found = std::find_if(shapes().begin(), shapes().end(), [&](const auto &entry) {
        return entry.second.streams.data() == data;
    });
    if (found == shapes().end() || found->second.streams.size() != dataCount)
        return false;
    if (--found->second.references == 0)
        shapes().erase(found);
    return true;
}

} // namespace devhost

// SPDX-License-Identifier: MIT
#pragma once

// What a geometry list iterates over.

#include "devhost/api/render/GeometryHandles.h"
#include "host/core/ZMatrix.h"

#include <deque>
#include <optional>

class ZGeometryList;

namespace devhost {

/// The required streams as a handle to geometry: see makeGeometry.
inline ZGeometry geometryOf(const MeshHandle &mesh, const GeometryRequirementList &requirements) {
    return ZGeometry(ZGeometry::Streams(makeGeometry(mesh, requirements)));
}

struct GeometryElement {
    ZDagPath path;
    ZMatrix toWorld;
    MeshHandle mesh;                   // null for geometry that came without an object
    std::optional<ZGeometry> geometry; // made of the mesh when it is first asked for
};

class GeometryElements {
  public:
    // Scripts keep references into the elements, so adding must not move them.
    std::deque<GeometryElement> elements;
    size_t current = 0;
    ZMatrix projection, view;
    // Told behind the last one. Each list has its own, for scripts may change what they refer to.
    ZGeometry nothing = geometryOf(nullptr, {});
    ZMatrix identity;

    /// Null behind the last one.
    GeometryElement *at() { return current < elements.size() ? &elements[current] : nullptr; }
};

/// Tells the keeper of the default geometry that a list dies, however that comes about.
void forgetDefaultGeometry(const ZGeometryList *list);

} // namespace devhost

// SPDX-License-Identifier: MIT
#pragma once

// What the objects of the geometry classes keep: handles to the engine's streams and lists.

#include "devhost/geometry/GeometryStreams.h"
#include "devhost/util/Hidden.h"
#include "host/render/ZGeometry.h"
#include "host/render/ZGeometryRequirements.h"

struct ZGeometryData::Stream : devhost::Shared {
    explicit Stream(devhost::StreamHandle handle) : to(std::move(handle)) {}
    const devhost::StreamHandle to; // never null
};

struct ZGeometry::Streams : devhost::Shared {
    using Handle = std::shared_ptr<const devhost::GeometryStreams>;
    explicit Streams(Handle handle) : to(std::move(handle)) {}
    const Handle to; // never null
};

struct ZGeometryRequirements::List : devhost::GeometryRequirementList {};

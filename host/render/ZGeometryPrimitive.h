// SPDX-License-Identifier: MIT
#pragma once

// One array of vertex indices.

#include "host/base/HostApi.h"
#include "host/render/ZGeometryData.h"

/// One array of vertex indices, and how they are drawn. The object is a handle: copies share the
/// array.
class OPENQUIL_API ZGeometryPrimitive {
  public:
    /// What the indices make up. The development host's meshes are triangles.
    enum DrawPrimitiveType : int {
        /// There are no indices.
        kInvalidIndexType = 0,
        /// A point for each index.
        kPoints = 1,
        /// A line for each two indices.
        kLines = 2,
        /// Lines, each from the end of the one before.
        kLineStrip = 3,
        /// A closed line.
        kLineLoop = 4,
        /// A triangle for each three indices.
        kTriangles = 5,
        /// Triangles, each on the last edge of the one before.
        kTriangleStrip = 6,
        /// Triangles around the first vertex.
        kTriangleFan = 7,
        /// A quadrilateral for each four indices.
        kQuads = 8,
        /// Quadrilaterals, each on the last edge of the one before.
        kQuadStrip = 9,
        /// One polygon.
        kPolygon = 10,
        /// One beyond the last type.
        kMaxDrawPrimitiveTypeIndex = 11
    };

    /// Makes another handle to the other's array.
    ZGeometryPrimitive(ZGeometryPrimitive const &other);
    /// Drops the handle; the array goes with its last one.
    ~ZGeometryPrimitive();
    /// Becomes a handle to the other's array and returns this one.
    ZGeometryPrimitive &operator=(ZGeometryPrimitive const &other);

    /// A number that no other stream or array of the process has; 0 when there is no array.
    int uniqueID() const;
    /// What the indices make up.
    DrawPrimitiveType drawPrimitiveType() const;
    /// The number of indices.
    unsigned int elementCount() const;
    /// The type of one index: ZGeometryData.kUnsignedInt32, or kInvalidElementType when there is
    /// no array.
    ZGeometryData::ElementType dataType() const;
    /// The address of the first index, null when there is none. The memory is valid while some
    /// handle to the array lives; it is the host's own, to be read only.
    void *data() const;

    /// A handle to an array of the host's.
    ZGeometryPrimitive(ZGeometryData::Stream const &indices, DrawPrimitiveType type);

  private:
    ZGeometryData::Stream *indices_; // never null, shared by copies
    DrawPrimitiveType type_;
};

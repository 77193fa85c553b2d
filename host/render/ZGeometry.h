// SPDX-License-Identifier: MIT
#pragma once

// The geometry of one object: its streams and its index arrays.

#include "host/base/HostApi.h"
#include "host/render/ZGeometryData.h"
#include "host/render/ZGeometryPrimitive.h"

class ZString;

/// The geometry of one object: streams with a value for each vertex, and index arrays that make
/// primitives of the vertices. The object is a handle: copies share the geometry. A stream that
/// the geometry does not have comes back without elements, its dataType kInvalidDataType.
class OPENQUIL_API ZGeometry {
  public:
    /// Makes another handle to the other's geometry.
    ZGeometry(ZGeometry const &other);
    /// Drops the handle; the geometry goes with its last one.
    ~ZGeometry();
    /// Becomes a handle to the other's geometry and returns this one.
    ZGeometry &operator=(ZGeometry const &other);

    /// The vertex positions.
    ZGeometryData position();
    /// The vertex normals.
    ZGeometryData normal();
    /// For each vertex the number of the point that it lies at. Vertices at the same point, which
    /// differ in normal or texture coordinates only, have the same number.
    ZGeometryData componentId();
    /// The texture coordinates of the named set; an empty name is the first set.
    ZGeometryData texCoord(ZString const &name);
    /// The colours of the named set, linear red, green, blue and alpha; an empty name is the first
    /// set.
    ZGeometryData color(ZString const &name);
    /// The tangents that belong to the named set of texture coordinates.
    ZGeometryData tangent(ZString const &name);
    /// The binormals that belong to the named set of texture coordinates.
    ZGeometryData binormal(ZString const &name);
    /// The first stream of the data type that has the name; an empty name stands for any.
    ZGeometryData data(ZGeometryData::DataType dataType, ZString const &name);
    /// The number of index arrays.
    unsigned int primitiveArrayCount() const;
    /// The index array of the number, counted from 0; one without indices when there is none.
    ZGeometryPrimitive primitiveArray(unsigned int arrayNumber) const;

    struct Streams; // the host's own
    /// A handle to geometry of the host's.
    explicit ZGeometry(Streams const &streams);

  private:
    Streams *streams_; // never null, shared by copies
};

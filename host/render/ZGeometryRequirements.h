// SPDX-License-Identifier: MIT
#pragma once

// What a renderer wants to know of each vertex.

#include "host/base/HostApi.h"

class ZString;

/// What a renderer wants to know of each vertex. Geometry is made with the streams that were asked
/// for here, as far as the object has them. Asking for the same twice counts once; the last element
/// size holds. Meshes have up to two sets of texture coordinates, named "uv" and "uv1", and one of
/// colours, named "color", or none.
class OPENQUIL_API ZGeometryRequirements {
  public:
    /// Asks for nothing but the index arrays.
    ZGeometryRequirements();
    /// Destroys the object; geometry that was made by it stays.
    ~ZGeometryRequirements();
    ZGeometryRequirements(ZGeometryRequirements const &) = delete;
    ZGeometryRequirements &operator=(ZGeometryRequirements const &) = delete;

    /// Asks for positions of 2, 3 or 4 values; the fourth is 1. Another number counts as 3.
    void addPosition(int elementSize = 3);
    /// Asks for normals of 2, 3 or 4 values; the fourth is 0. Another number counts as 3.
    void addNormal(int elementSize = 3);
    /// Asks for the texture coordinates of the named set; an empty name is the first set.
    void addTexCoord(ZString const &name);
    /// Asks for the colours of the named set, linear red, green, blue and alpha; an empty name is
    /// the first set.
    void addColor(ZString const &name);
    /// Asks for tangents along the named set of texture coordinates, of 2, 3 or 4 values; the
    /// fourth is -1 where the texture is mirrored, else 1. Another number counts as 3. Those that
    /// the scene file has itself belong to the first set.
    void addTangent(ZString const &name, int elementSize = 3);
    /// Asks for binormals along the named set of texture coordinates, of 2, 3 or 4 values; the
    /// fourth is 0. Another number counts as 3.
    void addBinormal(ZString const &name, int elementSize = 3);
    /// Asks for component numbers, one for each vertex.
    void addComponentId();
    /// Asks for the faces as the scene file has them: for each face the number of corners of all
    /// faces before it, and as one more element that of all faces, in a kUserData stream named
    /// "faceOffsets". In the index array a face of n corners is n - 2 triangles in a row, so those
    /// of face f begin at triangle faceOffsets[f] - 2 * f.
    void addFaceOffsets();

    struct List; // the host's own
    /// What was asked for.
    List const &list() const;

  private:
    List *list_;
};

// SPDX-License-Identifier: MIT
#pragma once

// Where geometry comes from.

#include "host/base/HostApi.h"
#include "host/render/ZGeometry.h"
#include "host/render/ZGeometryList.h"
#include "host/render/ZGeometryRequirements.h"

class ZDagPath;
class ZObject;
class ZStatus;

/// Makes the geometry of scene objects, and keeps the shapes that previews are drawn with.
class OPENQUIL_API ZGeometryManager {
  public:
    /// The shapes that the host has ready, each around the origin.
    enum GeometricShape : int {
        /// A sphere of radius 1.
        kDefaultSphere = 0,
        /// A square of side 2 that faces +Z.
        kDefaultPlane = 1,
        /// A cube of side 2.
        kDefaultCube = 2
    };

    /// The geometry of a mesh in its own space, with the streams that are required and the mesh
    /// has. The mesh is named by its own path or that of the node right above it. The geometry has
    /// no streams and arrays when the path names no mesh, or when a component is given: meshes of
    /// the development host are not divided into components.
    static ZGeometry getGeometry(ZDagPath const &dagPath, ZGeometryRequirements const &requirements,
                                 ZObject *component = nullptr);
    /// A list of one element, one of the host's shapes. It is the host's own: give it back with
    /// dereferenceDefaultGeometry. The same shape and requirements give the same list as long as it
    /// was not given back as often as it was asked for. Null when there is no such shape.
    static ZGeometryList *referenceDefaultGeometry(GeometricShape shape,
                                                   ZGeometryRequirements const &requirements);
    /// Gives back a list from referenceDefaultGeometry; when it was given back as often as it was
    /// asked for, it is destroyed. Fails with kInvalidParameter, doing nothing, for any other list.
    static ZStatus dereferenceDefaultGeometry(ZGeometryList *geometry);
    /// Returns "ZGeometryManager".
    static char const *className();
};

// SPDX-License-Identifier: MIT
#pragma once

// The objects that a hardware renderer is to draw, one after the other.

#include "host/base/HostApi.h"
#include "host/render/ZGeometry.h"

class ZDagPath;
class ZMatrix;
class ZObject;
class ZRenderingInfo;

/// The objects that a hardware renderer is to draw, one after the other, beginning with the first.
/// Behind the last one the list is done: the geometry is then empty, the matrices of the object and
/// the path say nothing. References to geometry and matrices are valid while the list lives.
class OPENQUIL_API ZGeometryList {
  public:
    /// What is set up for each object, as bits.
    enum SetupFlags : int {
        /// Nothing.
        kNone = 0,
        /// The matrices.
        kMatrices = 1,
        /// The lights of the fixed-function pipeline.
        kFixedFunctionLighting = 2,
        /// The culling of faces.
        kCulling = 4,
        /// Everything.
        kAll = -1
    };
    /// Which faces are not to be drawn.
    enum CullMode : int {
        /// All faces are drawn.
        kCullNone = 0,
        /// Those whose corners go round clockwise.
        kCullCW = 1,
        /// Those whose corners go round counterclockwise.
        kCullCCW = 2
    };

    /// Lists the visible meshes of the current render layer, with all their streams, and takes over
    /// the draw request's matrices.
    ZGeometryList(ZRenderingInfo const &renderInfo, int setupFlags = kMatrices);
    /// Destroys the list; handles to its geometry stay valid.
    ~ZGeometryList();
    ZGeometryList(ZGeometryList const &) = delete;
    ZGeometryList &operator=(ZGeometryList const &) = delete;

    /// True behind the last object.
    bool isDone() const;
    /// Goes to the next object; does nothing when the list is done.
    void next();
    /// Goes back to the first object.
    void reset();
    /// The number of objects.
    int length() const;
    /// Goes to the object of the number, counted from 0; the list is done when there is none.
    void setCurrentElement(int index);
    /// The current object's geometry. setupFlags tells what to prepare for drawing it; the
    /// development host touches no drawing state.
    ZGeometry &geometry(int setupFlags = kAll);
    /// From the current object's space to world space.
    ZMatrix const &objectToWorldMatrix() const;
    /// From the camera's space to the picture.
    ZMatrix const &projectionMatrix() const;
    /// From world space to the camera's.
    ZMatrix const &viewMatrix() const;
    /// The path to the current object; one that names nothing for geometry without an object.
    ZDagPath path() const;
    /// Which faces of the current object are not to be drawn. Meshes of the development host are
    /// drawn from both sides.
    CullMode cullMode() const;
    /// Adds a mesh of the scene, named by its own path or that of the node right above it. False,
    /// adding nothing, when the path names no mesh, or when a component is given: meshes of the
    /// development host are not divided into components.
    bool addLast(ZDagPath const &path, ZObject const *component = nullptr);
    /// Adds geometry, with the matrix from its space to world space.
    bool addLast(ZGeometry const &geometry, ZMatrix const &objectToWorldMatrix);

    /// What to set up for the objects: bits of SetupFlags.
    int ZSetupFlags;

    /// A list of the host's own, empty at first and with identity matrices.
    ZGeometryList();

  private:
    struct Elements;
    Elements *elements_;
};

// SPDX-License-Identifier: MIT
#pragma once

// A path to a node of the scene's hierarchy, from the root down: "|group|mesh".

#include "host/base/HostApi.h"
#include "host/core/ZObject.h"

class ZMatrix;
class ZStatus;
class ZString;

/// A path to a node of the scene's hierarchy, from the root down: "|group|mesh".
class OPENQUIL_API ZDagPath {
  public:
    /// Makes a path that names nothing.
    ZDagPath();

    /// The path to a node. Fails with kInvalidParameter when the node is null, or is no part of the
    /// hierarchy (a material, a texture).
    static ZStatus getAPathTo(const ZObject &object, ZDagPath &path);

    /// True while the node at the end of the path exists.
    bool isValid() const;
    /// The node at the end of the path; a null handle when the path is not valid.
    ZObject node() const;
    /// The names from the root down, each after a "|"; empty when the path is not valid.
    ZString fullPathName() const;
    /// The shortest end of the full name that names this node alone; empty when not valid.
    ZString partialPathName() const;
    /// The number of nodes on the path; 0 when the path is not valid.
    unsigned length() const;

    /// The number of nodes directly below the end of the path.
    unsigned childCount() const;
    /// The node number `index` below the end of the path, counted from 0. Fails with
    /// kInvalidParameter when there is none; the result is then a null handle.
    ZObject child(unsigned index, ZStatus *ReturnStatus = nullptr) const;
    /// Takes `num` nodes off the end of the path. Fails with kInvalidParameter, changing nothing,
    /// when the path has no more than that.
    ZStatus pop(unsigned num = 1);
    /// Adds a node that lies directly below the end of the path. Fails with kInvalidParameter when
    /// it does not.
    ZStatus push(const ZObject &child);

    /// The matrix from the node's own space to world space; identity when the path is not valid.
    ZMatrix inclusiveMatrix() const;
    /// The matrix from the parent's space to world space; identity at the root.
    ZMatrix exclusiveMatrix() const;

    /// True when both paths end at the same node, or neither is valid.
    bool operator==(const ZDagPath &other) const;
    /// True when the paths end at different nodes.
    bool operator!=(const ZDagPath &other) const;

    /// The class's name, "ZDagPath".
    static const char *className();

  private:
    ZObject node_;
};

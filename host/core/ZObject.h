// SPDX-License-Identifier: MIT
#pragma once

// A handle to one node of the scene. It stays safe after the node is gone: it then reads as null.

#include "host/base/HostApi.h"

/// A handle to one node of the scene. It stays safe after the node is gone: it then reads as null.
class OPENQUIL_API ZObject {
  public:
    /// Makes a null handle, which names no node.
    ZObject() noexcept;

    /// True when the handle names no node, or names a node that was deleted since.
    bool isNull() const;
    /// The node's type as text, such as "transform", "mesh", "camera" or "material"; "invalid" for
    /// a null handle.
    const char *apiTypeStr() const;
    /// True when both handles name the same node, or both are null.
    bool operator==(const ZObject &other) const;
    /// True when the handles name different nodes.
    bool operator!=(const ZObject &other) const;

    /// The null handle.
    static const ZObject kNullObj;

    struct Access; // the host's own way to what a handle holds

  private:
    int node_;
    unsigned generation_;
};

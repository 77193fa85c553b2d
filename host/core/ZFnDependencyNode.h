// SPDX-License-Identifier: MIT
#pragma once

// The function set of any node.

#include "host/base/HostApi.h"
#include "host/core/ZFnBase.h"

class ZString;

/// The function set of any node of the scene.
class OPENQUIL_API ZFnDependencyNode : public ZFnBase {
  public:
    /// Makes a function set that is attached to nothing.
    ZFnDependencyNode();
    ~ZFnDependencyNode() override;
    bool hasObj(const ZObject &object) const override;

    /// The node's name. Fails with kFailure when the function set is attached to nothing.
    ZString name(ZStatus *ReturnStatus = nullptr) const;
};

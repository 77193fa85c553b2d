// SPDX-License-Identifier: MIT
#pragma once

// What all function sets have in common: the node that they are attached to.

#include "host/base/HostApi.h"
#include "host/core/ZObject.h"

class ZStatus;

/// The base of all function sets. A function set gives the operations of one kind of node; it is
/// attached to a node and does not own it.
class OPENQUIL_API ZFnBase {
  public:
    /// Detaches from the node, which stays as it is.
    virtual ~ZFnBase();
    /// True when the function set can be attached to the node.
    virtual bool hasObj(const ZObject &object) const;

    /// Attaches to a node. Fails with kInvalidParameter, and changes nothing, when the node is null
    /// or of another kind.
    ZStatus setObject(const ZObject &object);
    /// The node that the function set is attached to. Fails with kFailure when there is none, or it
    /// was deleted since.
    ZObject object(ZStatus *ReturnStatus = nullptr) const;

  protected:
    ZFnBase();

  private:
    ZObject object_;
};

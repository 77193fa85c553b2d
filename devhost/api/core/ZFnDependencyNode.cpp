// SPDX-License-Identifier: MIT
#include "host/core/ZFnDependencyNode.h"

#include "devhost/scene/SceneGraph.h"
#include "host/core/ZString.h"

ZFnDependencyNode::ZFnDependencyNode() = default;
ZFnDependencyNode::~ZFnDependencyNode() = default;

bool ZFnDependencyNode::hasObj(const ZObject &object) const {
    return ZFnBase::hasObj(object);
}

ZString ZFnDependencyNode::name(ZStatus *ReturnStatus) const {
    const devhost::Node *node = devhost::scene().node(devhost::scene().id(object(ReturnStatus)));
    return node ? ZString(node->name.c_str()) : ZString();
}

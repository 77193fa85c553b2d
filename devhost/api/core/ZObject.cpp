// SPDX-License-Identifier: MIT
// Handles to nodes.
#include "host/core/ZObject.h"

#include "devhost/scene/SceneGraph.h"

const ZObject ZObject::kNullObj;

ZObject::ZObject() noexcept : node_(devhost::kNoNode), generation_(0) {}

bool ZObject::isNull() const {
    return devhost::scene().id(*this) == devhost::kNoNode;
}

const char *ZObject::apiTypeStr() const {
    const devhost::Node *node = devhost::scene().node(devhost::scene().id(*this));
    return node ? node->type.c_str() : "invalid";
}

bool ZObject::operator==(const ZObject &other) const {
    return devhost::scene().id(*this) == devhost::scene().id(other);
}

bool ZObject::operator!=(const ZObject &other) const {
    return !(*this == other);
}

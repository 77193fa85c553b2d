// Handles to nodes.
#include "host/core/ZObject.h"

#include "devhost/scene/SceneGraph.h"

constinit const ZObject ZObject::kNullObj;

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

// SPDX-License-Identifier: MIT
// Paths into the scene's hierarchy.
#include "host/core/ZDagPath.h"

#include "devhost/scene/SceneGraph.h"
#include "devhost/util/Statuses.h"
#include "host/core/ZString.h"

using devhost::Node;
using devhost::NodeId;
using devhost::scene;

ZDagPath::ZDagPath() = default;

ZStatus ZDagPath::getAPathTo(const ZObject &object, ZDagPath &path) {
    const Node *node = scene().node(object);
    if (!node)
        return ZStatus(ZStatus::kInvalidParameter, "there is no path to a null object");
    if (!node->inHierarchy())
        return ZStatus(ZStatus::kInvalidParameter,
                       ("not a node of the hierarchy: " + node->name).c_str());
    path.node_ = object;
    return ZStatus();
}

bool ZDagPath::isValid() const {
    return !node_.isNull();
}

ZObject ZDagPath::node() const {
    return isValid() ? node_ : ZObject();
}

ZString ZDagPath::fullPathName() const {
    return ZString(scene().path(scene().id(node_)).c_str());
}

ZString ZDagPath::partialPathName() const {
    const std::string full = scene().path(scene().id(node_));
    if (full.empty())
        return ZString();
    // Try ever longer ends of the path until no other path has the same end. What is no part of the
    // hierarchy goes by its mere name.
    for (size_t bar = full.rfind('|'); bar != 0; bar = full.rfind('|', bar - 1)) {
        const std::string end = full.substr(bar);
        int matches = 0;
        for (NodeId id : scene().nodes())
            matches += ("|" + scene().path(id)).ends_with(end);
        if (matches == 1)
            return ZString(full.c_str() + bar + 1);
    }
    for (NodeId id : scene().nodes())
        if (id != scene().id(node_) && scene().path(id).ends_with(full))
            return ZString(full.c_str());
    return ZString(full.c_str() + 1);
}

unsigned ZDagPath::length() const {
    unsigned count = 0;
    for (const Node *each = scene().node(node_); each; each = scene().node(each->parent))
        ++count;
    return count;
}

unsigned ZDagPath::childCount() const {
    const Node *node = scene().node(node_);
    return node ? unsigned(node->children.size()) : 0;
}

ZObject ZDagPath::child(unsigned index, ZStatus *ReturnStatus) const {
    const bool exists = index < childCount();
    devhost::report(ReturnStatus,
                    exists ? ZStatus() : devhost::invalid("there is no such child node"));
    return exists ? scene().object(scene().node(node_)->children[index]) : ZObject();
}

ZStatus ZDagPath::pop(unsigned num) {
    if (num >= length())
        return ZStatus(ZStatus::kInvalidParameter, "the path has too few nodes to take off");
    NodeId id = scene().id(node_);
    for (; num > 0; --num)
        id = scene().node(id)->parent;
    node_ = scene().object(id);
    return ZStatus();
}

ZStatus ZDagPath::push(const ZObject &child) {
    const Node *node = scene().node(child);
    if (!node || !isValid() || node->parent != scene().id(node_))
        return ZStatus(ZStatus::kInvalidParameter, "the node is not directly below the path");
    node_ = child;
    return ZStatus();
}

ZMatrix ZDagPath::inclusiveMatrix() const {
    return scene().worldMatrix(scene().id(node_));
}

ZMatrix ZDagPath::exclusiveMatrix() const {
    const Node *node = scene().node(node_);
    return node ? scene().worldMatrix(node->parent) : ZMatrix();
}

bool ZDagPath::operator==(const ZDagPath &other) const {
    return node_ == other.node_;
}

bool ZDagPath::operator!=(const ZDagPath &other) const {
    return !(*this == other);
}

const char *ZDagPath::className() {
    return "ZDagPath";
}

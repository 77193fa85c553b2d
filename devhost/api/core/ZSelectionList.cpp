// SPDX-License-Identifier: MIT
// Lists of nodes and plugs.
#include "host/core/ZSelectionList.h"

#include "devhost/scene/SceneGraph.h"
#include "devhost/util/Hidden.h"
#include "host/core/ZDagPath.h"
#include "host/core/ZPlug.h"
#include "host/core/ZStatus.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

using devhost::contents;
using devhost::kNoNode;
using devhost::made;
using devhost::NodeId;
using devhost::scene;

namespace {

struct Entry {
    ZObject node;
    ZPlug plug;
};

ZStatus outsideList() {
    return ZStatus(ZStatus::kInvalidParameter, "the index is outside the selection list");
}

} // namespace

struct ZSelectionList::Entries : std::vector<Entry> {};

ZSelectionList::ZSelectionList() noexcept : entries_(nullptr) {}

ZSelectionList::ZSelectionList(const ZSelectionList &other)
    : entries_(devhost::copied(other.entries_)) {}

ZSelectionList::~ZSelectionList() {
    delete entries_;
}

ZSelectionList &ZSelectionList::operator=(const ZSelectionList &other) {
    ZSelectionList copy(other);
    std::swap(entries_, copy.entries_);
    return *this;
}

unsigned ZSelectionList::length() const {
    return unsigned(contents(entries_).size());
}

bool ZSelectionList::isEmpty() const {
    return length() == 0;
}

ZStatus ZSelectionList::clear() {
    delete std::exchange(entries_, nullptr);
    return ZStatus();
}

ZStatus ZSelectionList::add(const ZString &name) {
    const std::string text = name.asChar();
    if (const NodeId id = scene().find(text); id != kNoNode)
        return add(scene().object(id));
    if (const size_t dot = text.rfind('.'); dot != std::string::npos) {
        const NodeId id = scene().find(text.substr(0, dot));
        ZStatus status;
        const ZPlug plug(scene().object(id), ZString(text.c_str() + dot + 1), &status);
        if (!plug.isNull())
            return add(plug);
        if (id != kNoNode)
            return status;
    }
    return ZStatus(ZStatus::kNotFound, ("no such node or attribute: " + text).c_str());
}

ZStatus ZSelectionList::add(const ZObject &object) {
    if (object.isNull())
        return ZStatus(ZStatus::kInvalidParameter, "a null object cannot be selected");
    if (!hasItem(object))
        made(entries_).push_back({object, {}});
    return ZStatus();
}

ZStatus ZSelectionList::add(const ZDagPath &path) {
    return add(path.node());
}

ZStatus ZSelectionList::addNodesOfType(const ZString &typeName) {
    const std::string type = typeName.asChar();
    bool found = false;
    for (const NodeId id : scene().nodes()) {
        if (scene().node(id)->type != type)
            continue;
        add(scene().object(id));
        found = true;
    }
    return found ? ZStatus() : ZStatus(ZStatus::kNotFound, ("no node of type " + type).c_str());
}

ZStatus ZSelectionList::add(const ZPlug &plug) {
    if (plug.isNull())
        return ZStatus(ZStatus::kInvalidParameter, "a null plug cannot be selected");
    const auto same = [&plug](const Entry &entry) { return entry.plug == plug; };
    if (std::none_of(contents(entries_).begin(), contents(entries_).end(), same))
        made(entries_).push_back({plug.node(), plug});
    return ZStatus();
}

ZStatus ZSelectionList::remove(unsigned index) {
    if (index >= length())
        return outsideList();
    entries_->erase(entries_->begin() + index);
    return ZStatus();
}

ZStatus ZSelectionList::getDependNode(unsigned index, ZObject &object) const {
    if (index >= length())
        return outsideList();
    if ((*entries_)[index].node.isNull())
        return ZStatus(ZStatus::kInvalidParameter, "the selected node was deleted");
    object = (*entries_)[index].node;
    return ZStatus();
}

ZStatus ZSelectionList::getDagPath(unsigned index, ZDagPath &path) const {
    ZObject object;
    const ZStatus status = getDependNode(index, object);
    return status ? ZDagPath::getAPathTo(object, path) : status;
}

ZStatus ZSelectionList::getPlug(unsigned index, ZPlug &plug) const {
    if (index >= length())
        return outsideList();
    if ((*entries_)[index].plug.isNull())
        return ZStatus(ZStatus::kInvalidParameter, "the selection list's entry is no plug");
    plug = (*entries_)[index].plug;
    return ZStatus();
}

ZStatus ZSelectionList::getSelectionStrings(unsigned index, ZStringArray &names) const {
    ZObject object;
    if (const ZStatus status = getDependNode(index, object); !status)
        return status;
    const ZPlug &plug = (*entries_)[index].plug;
    names.append(plug.isNull() ? ZString(scene().path(scene().id(object)).c_str()) : plug.name());
    return ZStatus();
}

ZStatus ZSelectionList::getSelectionStrings(ZStringArray &names) const {
    names.clear();
    for (unsigned index = 0; index < length(); ++index)
        getSelectionStrings(index, names); // one whose node is gone adds nothing
    return ZStatus();
}

bool ZSelectionList::hasItem(const ZObject &object) const {
    return !object.isNull() && std::any_of(contents(entries_).begin(), contents(entries_).end(),
                                           [&object](const Entry &entry) {
                                               return entry.plug.isNull() && entry.node == object;
                                           });
}

bool ZSelectionList::hasItem(const ZDagPath &path) const {
    return hasItem(path.node());
}

const char *ZSelectionList::className() {
    return "ZSelectionList";
}

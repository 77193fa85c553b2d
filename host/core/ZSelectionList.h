// SPDX-License-Identifier: MIT
#pragma once

// An ordered list of nodes and plugs, each at most once.

#include "host/base/HostApi.h"
#include "host/core/ZStringArray.h"

class ZDagPath;
class ZObject;
class ZPlug;
class ZStatus;
class ZString;

/// An ordered list of nodes and plugs, each at most once.
class OPENQUIL_API ZSelectionList {
  public:
    /// Makes an empty list.
    ZSelectionList() noexcept;
    ZSelectionList(const ZSelectionList &other);
    ~ZSelectionList();
    ZSelectionList &operator=(const ZSelectionList &other);

    /// The number of entries.
    unsigned length() const;
    /// True when the list has no entry.
    bool isEmpty() const;
    /// Takes every entry out.
    ZStatus clear();

    /// Adds the node or plug of that name: "mesh", "|group|mesh" or "mesh.visibility". Fails with
    /// kNotFound when there is none.
    ZStatus add(const ZString &name);
    /// Adds a node. Fails with kInvalidParameter when it is null.
    ZStatus add(const ZObject &object);
    /// Adds the node at the end of a path. Fails with kInvalidParameter when it is not valid.
    ZStatus add(const ZDagPath &path);
    /// Adds a plug. Fails with kInvalidParameter when it is null.
    ZStatus add(const ZPlug &plug);
    /// Adds every node of a type ("mesh", "camera", "light", "material" ...), in the scene's order.
    /// Fails with kNotFound when there is none.
    ZStatus addNodesOfType(const ZString &typeName);
    /// Takes one entry out. Fails with kInvalidParameter when `index` is out of range.
    ZStatus remove(unsigned index);

    /// The node of an entry. Fails with kInvalidParameter when `index` is out of range or the node
    /// was deleted since.
    ZStatus getDependNode(unsigned index, ZObject &object) const;
    /// The path to an entry's node. Fails as getDependNode does, and with kInvalidParameter when
    /// the node is no part of the hierarchy.
    ZStatus getDagPath(unsigned index, ZDagPath &path) const;
    /// The plug of an entry. Fails with kInvalidParameter when `index` is out of range or the entry
    /// is no plug.
    ZStatus getPlug(unsigned index, ZPlug &plug) const;
    /// Appends the names that an entry goes by: the full path of a node, node and attribute of a
    /// plug. Fails as getDependNode does.
    ZStatus getSelectionStrings(unsigned index, ZStringArray &names) const;
    /// Fills the array with the name of every entry whose node still exists.
    ZStatus getSelectionStrings(ZStringArray &names) const;

    /// True when the node is in the list.
    bool hasItem(const ZObject &object) const;
    /// True when the node at the end of the path is in the list.
    bool hasItem(const ZDagPath &path) const;

    /// The class's name, "ZSelectionList".
    static const char *className();

  private:
    struct Entries;
    Entries *entries_;
};

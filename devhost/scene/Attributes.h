// SPDX-License-Identifier: MIT
#pragma once

// What the types of nodes have in attributes: one table, which plugs, scripts, messages and the
// documentation read.

#include "devhost/scene/SceneGraph.h"

namespace devhost {

/// The value inside a node that an attribute stands for; none where it is computed.
using FieldRef =
    std::variant<std::monostate, bool *, int *, double *, std::string *, ZVector *, ZMatrix *>;

struct AttributeInfo {
    const char *nodeType;
    const char *name;
    const char *unit; ///< empty where there is none
    const char *meaning;
    FieldRef (*field)(Node &node);

    OPENQUIL_API bool isSettable() const;
    /// "bool", "int", "double", "string", "vector" or "matrix", by the value.
    OPENQUIL_API const char *valueType() const;
    /// As a new node has it.
    OPENQUIL_API AttributeValue defaultValue() const;
};

/// The types of nodes that there are.
OPENQUIL_API const std::vector<std::string> &nodeTypes();

/// The attributes that all nodes of the type have; none for a type that there is not.
OPENQUIL_API std::vector<AttributeInfo> attributesOf(const std::string &nodeType);

/// The names of all attributes of a node: those of its type, and its own further ones.
OPENQUIL_API std::vector<std::string> attributeNames(const Node &node);

/// The text for a name that a node has no attribute of: which ones it has.
OPENQUIL_API std::string noSuchAttribute(const Node &node, const std::string &name);

/// The value behind the name of an attribute of the node's type.
FieldRef builtInField(Node &node, const std::string &name);

OPENQUIL_API const char *valueTypeName(const AttributeValue &value);

} // namespace devhost

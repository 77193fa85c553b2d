// SPDX-License-Identifier: MIT
#include "devhost/scene/Attributes.h"

#include <algorithm>
#include <iterator>

namespace devhost {
namespace {

template <class Value>
FieldRef select(Node &node, Value Node::*member) {
    return &(node.*member);
}
template <class Holder, class Value>
FieldRef select(Node &node, Value Holder::*member) {
    auto *const holder = std::get_if<Holder>(&node.payload);
    return holder ? FieldRef(&(holder->*member)) : FieldRef();
}

/// A member of the node, or of what it holds of the kind.
template <auto member>
FieldRef field(Node &node) {
    return select(node, member);
}

FieldRef computed(Node &) {
    return {};
}

// Attributes of every node in the hierarchy.
#define HIERARCHY(type)                                                                       \
    {type, "visibility", "", "whether the node and what is below it are shown",               \
     field<&Node::visible>},                                                                  \
        {type, "matrix", "", "from the node's space to its parent's", field<&Node::local>}, { \
        type, "worldMatrix", "", "from the node's space to the world's", computed             \
    }

constexpr char kColorUnit[] = "linear";

constexpr AttributeInfo kTable[] = {
    HIERARCHY("transform"),
    HIERARCHY("mesh"),
    HIERARCHY("camera"),
    {"camera", "verticalFieldOfView", "degrees", "the angle of view from bottom to top",
     field<&Camera::verticalFieldOfView>},
    {"camera", "horizontalFieldOfView", "degrees",
     "the angle of view from left to right; setting either sets both",
     field<&Camera::horizontalFieldOfView>},
    {"camera", "filmAspect", "", "width over height", field<&Camera::filmAspect>},
    {"camera", "nearClip", "scene units", "nothing nearer is seen", field<&Camera::nearClip>},
    {"camera", "farClip", "scene units", "nothing farther is seen", field<&Camera::farClip>},
    {"camera", "orthographic", "", "whether it sees without perspective",
     field<&Camera::orthographic>},
    {"camera", "orthographicWidth", "scene units", "the width of such a view",
     field<&Camera::orthographicWidth>},
    {"camera", "imageName", "", "the file of a background image", field<&Camera::imageName>},
    HIERARCHY("light"),
    {"light", "color", kColorUnit, "the colour", field<&Light::color>},
    {"light", "intensity", "lux or candela",
     "the light on a surface that faces it, at the distance 1 where the distance counts",
     field<&Light::intensity>},
    {"light", "decay", "", "the exponent of the distance by which it falls off",
     field<&Light::decay>},
    {"light", "innerCone", "radians", "from the axis to where a spot light begins to fade",
     field<&Light::innerCone>},
    {"light", "outerCone", "radians", "from the axis to where it has faded out",
     field<&Light::outerCone>},
    {"material", "diffuse", kColorUnit, "the colour of scattered light", field<&Material::diffuse>},
    {"material", "specular", kColorUnit, "the colour of the highlight", field<&Material::specular>},
    {"material", "shininess", "", "the cosine's exponent of the highlight",
     field<&Material::shininess>},
    {"material", "emission", kColorUnit, "the colour that it glows in", field<&Material::emission>},
    {"material", "reflectivity", kColorUnit, "the share of mirrored light",
     field<&Material::reflectivity>},
    {"material", "opacity", "0 to 1", "1 hides what is behind", field<&Material::opacity>},
    {"file", "fileTextureName", "", "the image's file; relative to the scene's",
     field<&Texture::fileName>},
};
#undef HIERARCHY

/// A node of the type as it is when nobody has set anything.
Node freshNode(const std::string &type) {
    Node node;
    node.type = type;
    const std::pair<const char *, Payload> payloads[] = {
        {"camera", Camera()}, {"light", Light()}, {"material", Material()}, {"file", Texture()}};
    for (const auto &[name, payload] : payloads)
        if (type == name)
            node.payload = payload;
    return node;
}

} // namespace

bool AttributeInfo::isSettable() const {
    return field != computed;
}

const char *AttributeInfo::valueType() const {
    return valueTypeName(defaultValue());
}

AttributeValue AttributeInfo::defaultValue() const {
    Node node = freshNode(nodeType);
    return std::visit(
        [](auto held) -> AttributeValue {
            if constexpr (std::is_same_v<decltype(held), std::monostate>)
                return ZMatrix(); // what is computed is a matrix
            else
                return *held;
        },
        field(node));
}

const std::vector<std::string> &nodeTypes() {
    static const std::vector<std::string> types = {"transform",   "mesh",       "camera",
                                                   "light",       "material",   "file",
                                                   "renderLayer", "renderPass", "imageSource"};
    return types;
}

std::vector<AttributeInfo> attributesOf(const std::string &nodeType) {
    std::vector<AttributeInfo> found;
    std::copy_if(std::begin(kTable), std::end(kTable), std::back_inserter(found),
                 [&](const AttributeInfo &each) { return each.nodeType == nodeType; });
    return found;
}

std::vector<std::string> attributeNames(const Node &node) {
    std::vector<std::string> names;
    for (const AttributeInfo &each : attributesOf(node.type))
        names.emplace_back(each.name);
    for (const auto &[name, value] : node.attributes)
        names.push_back(name);
    return names;
}

std::string noSuchAttribute(const Node &node, const std::string &name) {
    std::string known;
    for (const std::string &each : attributeNames(node))
        known += (known.empty() ? "" : ", ") + each;
    return "no such attribute: " + node.name + "." + name + "; it is a " + node.type + " and has " +
           (known.empty() ? "none" : known);
}

FieldRef builtInField(Node &node, const std::string &name) {
    for (const AttributeInfo &each : kTable)
        if (each.nodeType == node.type && each.name == name)
            return each.field(node);
    return {};
}

const char *valueTypeName(const AttributeValue &value) {
    constexpr const char *kNames[] = {"bool", "int", "double", "string", "vector", "matrix"};
    static_assert(std::size(kNames) == std::variant_size_v<AttributeValue>);
    return kNames[value.index()];
}

} // namespace devhost

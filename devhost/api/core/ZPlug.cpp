// SPDX-License-Identifier: MIT
// Attributes of nodes.
#include "host/core/ZPlug.h"

#include "devhost/scene/Attributes.h"
#include "devhost/scene/SceneGraph.h"
#include "devhost/util/Statuses.h"

#include <optional>
#include <string>
#include <type_traits>

using devhost::AttributeValue;
using devhost::NodeId;
using devhost::report;
using devhost::scene;

namespace {

std::optional<AttributeValue> valueOf(const ZObject &node, const ZString &attribute) {
    return scene().attribute(scene().id(node), attribute.asChar());
}

ZStatus mismatch(const ZPlug &plug, const char *wanted) {
    if (plug.isNull())
        return ZStatus(ZStatus::kFailure, "the plug names no attribute");
    return ZStatus(ZStatus::kFailure,
                   (std::string(plug.name().asChar()) + " is not " + wanted).c_str());
}

double number(const ZPlug &plug, ZStatus *ReturnStatus) {
    std::optional<double> result;
    if (auto value = valueOf(plug.node(), plug.partialName()))
        std::visit(
            [&result](const auto &held) {
                if constexpr (std::is_arithmetic_v<std::decay_t<decltype(held)>>)
                    result = double(held);
            },
            *value);
    report(ReturnStatus, result ? ZStatus() : mismatch(plug, "a number"));
    return result.value_or(0);
}

template <class T>
T valueAs(const ZPlug &plug, const char *wanted, ZStatus *ReturnStatus) {
    const auto value = valueOf(plug.node(), plug.partialName());
    const T *held = value ? std::get_if<T>(&*value) : nullptr;
    report(ReturnStatus, held ? ZStatus() : mismatch(plug, wanted));
    return held ? *held : T();
}

ZStatus setValue(const ZPlug &plug, const AttributeValue &value, const char *kind) {
    const NodeId id = scene().id(plug.node());
    if (!plug.isNull() && scene().setAttribute(id, plug.partialName().asChar(), value))
        return ZStatus();
    return mismatch(plug, kind);
}

} // namespace

ZPlug::ZPlug() = default;

ZPlug::ZPlug(const ZObject &node, const ZString &attribute, ZStatus *ReturnStatus) {
    if (node.isNull()) {
        report(ReturnStatus, ZStatus(ZStatus::kInvalidParameter, "a plug needs a node"));
    } else if (!valueOf(node, attribute)) {
        const std::string text = devhost::noSuchAttribute(*scene().node(node), attribute.asChar());
        report(ReturnStatus, ZStatus(ZStatus::kNotFound, text.c_str()));
    } else {
        node_ = node;
        attribute_ = attribute;
        report(ReturnStatus, ZStatus());
    }
}

bool ZPlug::isNull() const {
    return node_.isNull();
}

ZObject ZPlug::node() const {
    return isNull() ? ZObject() : node_;
}

ZString ZPlug::name() const {
    if (isNull())
        return ZString();
    return ZString((scene().node(node_)->name + "." + attribute_.asChar()).c_str());
}

ZString ZPlug::partialName() const {
    return isNull() ? ZString() : attribute_;
}

bool ZPlug::asBool(ZStatus *ReturnStatus) const {
    return number(*this, ReturnStatus) != 0;
}

int ZPlug::asInt(ZStatus *ReturnStatus) const {
    const double value = number(*this, ReturnStatus);
    if (value > -2147483649.0 && value < 2147483648.0)
        return int(value);
    report(ReturnStatus, mismatch(*this, "within the range of integers"));
    return 0;
}

float ZPlug::asFloat(ZStatus *ReturnStatus) const {
    return float(number(*this, ReturnStatus));
}

double ZPlug::asDouble(ZStatus *ReturnStatus) const {
    return number(*this, ReturnStatus);
}

ZString ZPlug::asString(ZStatus *ReturnStatus) const {
    return ZString(valueAs<std::string>(*this, "a text", ReturnStatus).c_str());
}

ZVector ZPlug::asVector(ZStatus *ReturnStatus) const {
    return valueAs<ZVector>(*this, "a vector", ReturnStatus);
}

ZMatrix ZPlug::asMatrix(ZStatus *ReturnStatus) const {
    return valueAs<ZMatrix>(*this, "a matrix", ReturnStatus);
}

ZStatus ZPlug::setBool(bool value) {
    return setValue(*this, value, "a settable number");
}

ZStatus ZPlug::setInt(int value) {
    return setValue(*this, value, "a settable number");
}

ZStatus ZPlug::setFloat(float value) {
    return setValue(*this, double(value), "a settable number");
}

ZStatus ZPlug::setDouble(double value) {
    return setValue(*this, value, "a settable number");
}

ZStatus ZPlug::setString(const ZString &value) {
    return setValue(*this, value.asChar(), "a settable text");
}

ZStatus ZPlug::setVector(const ZVector &value) {
    return setValue(*this, value, "a settable vector");
}

ZStatus ZPlug::setMatrix(const ZMatrix &value) {
    return setValue(*this, value, "a settable matrix");
}

bool ZPlug::operator==(const ZPlug &other) const {
    return node_ == other.node_ && (isNull() || attribute_ == other.attribute_);
}

bool ZPlug::operator!=(const ZPlug &other) const {
    return !(*this == other);
}

const char *ZPlug::className() {
    return "ZPlug";
}

// SPDX-License-Identifier: MIT
#pragma once

// One attribute of one node, such as "headlight.intensity".

#include "host/base/HostApi.h"
#include "host/core/ZObject.h"
#include "host/core/ZString.h"

class ZMatrix;
class ZStatus;
class ZVector;

/// One attribute of one node, such as "headlight.intensity".
class OPENQUIL_API ZPlug {
  public:
    /// Makes a plug that names nothing.
    ZPlug();
    /// The named attribute of a node. Fails with kInvalidParameter when the node is null, with
    /// kNotFound when it has no such attribute; the plug is then null.
    ZPlug(const ZObject &node, const ZString &attribute, ZStatus *ReturnStatus = nullptr);

    /// True when the plug names no attribute, or its node was deleted since.
    bool isNull() const;
    /// The node that has the attribute.
    ZObject node() const;
    /// The node's and the attribute's name with a dot between; empty when the plug is null.
    ZString name() const;
    /// The attribute's name alone; empty when the plug is null.
    ZString partialName() const;

    /// The value as a truth value: a number is true when it is not zero. Fails with kFailure when
    /// the plug is null or its value is neither number nor bool.
    bool asBool(ZStatus *ReturnStatus = nullptr) const;
    /// The value as an integer, fractions cut off. Fails as asBool does.
    int asInt(ZStatus *ReturnStatus = nullptr) const;
    /// The value as a float. Fails as asBool does.
    float asFloat(ZStatus *ReturnStatus = nullptr) const;
    /// The value as a double. Fails as asBool does.
    double asDouble(ZStatus *ReturnStatus = nullptr) const;
    /// The value as text. Fails with kFailure when the plug is null or its value is no text.
    ZString asString(ZStatus *ReturnStatus = nullptr) const;
    /// The value as three numbers (a vector or a colour). Fails with kFailure when it is none.
    ZVector asVector(ZStatus *ReturnStatus = nullptr) const;
    /// The value as a matrix. Fails with kFailure when it is none.
    ZMatrix asMatrix(ZStatus *ReturnStatus = nullptr) const;

    /// Sets a number or truth value. Fails with kFailure when the attribute holds something else.
    ZStatus setBool(bool value);
    /// Sets a number or truth value. Fails with kFailure when the attribute holds something else.
    ZStatus setInt(int value);
    /// Sets a number or truth value. Fails with kFailure when the attribute holds something else.
    ZStatus setFloat(float value);
    /// Sets a number or truth value. Fails with kFailure when the attribute holds something else.
    ZStatus setDouble(double value);
    /// Sets a text. Fails with kFailure when the attribute holds something else.
    ZStatus setString(const ZString &value);
    /// Sets three numbers. Fails with kFailure when the attribute holds something else.
    ZStatus setVector(const ZVector &value);
    /// Sets a matrix. Fails with kFailure when the attribute holds something else.
    ZStatus setMatrix(const ZMatrix &value);

    /// True when both plugs name the same attribute of the same node, or both are null.
    bool operator==(const ZPlug &other) const;
    /// True when the plugs name different attributes.
    bool operator!=(const ZPlug &other) const;

    /// The class's name, "ZPlug".
    static const char *className();

  private:
    ZObject node_;
    ZString attribute_;
};

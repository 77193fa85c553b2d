// SPDX-License-Identifier: MIT
#include "host/core/ZFnBase.h"

#include "devhost/util/Statuses.h"

#include <string>

ZFnBase::ZFnBase() = default;
ZFnBase::~ZFnBase() = default;

bool ZFnBase::hasObj(const ZObject &object) const {
    return !object.isNull();
}

ZStatus ZFnBase::setObject(const ZObject &object) {
    if (object.isNull())
        return ZStatus(ZStatus::kInvalidParameter, "a function set needs a node");
    if (!hasObj(object))
        return ZStatus(
            ZStatus::kInvalidParameter,
            (std::string("the function set is not made for a node of type ") + object.apiTypeStr())
                .c_str());
    object_ = object;
    return ZStatus();
}

ZObject ZFnBase::object(ZStatus *ReturnStatus) const {
    const bool attached = !object_.isNull();
    devhost::report(ReturnStatus, attached ? ZStatus()
                                           : ZStatus(ZStatus::kFailure,
                                                     "the function set is attached to no node"));
    return attached ? object_ : ZObject();
}

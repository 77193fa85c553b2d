// SPDX-License-Identifier: MIT
#pragma once

// How operations make statuses and hand them to callers.

#include "host/core/ZStatus.h"

#include <string>

namespace devhost {

/// Hands a status to a caller who asked for it.
inline void report(ZStatus *ReturnStatus, const ZStatus &status) {
    if (ReturnStatus)
        *ReturnStatus = status;
}

/// The status for an argument that will not do.
inline ZStatus invalid(const char *text) {
    return ZStatus(ZStatus::kInvalidParameter, text);
}
inline ZStatus outsideArray() {
    return invalid("the index is outside the array");
}

/// The status of a render that was stopped from outside.
inline ZStatus renderInterrupted() {
    return ZStatus(ZStatus::kFailure, "the render was interrupted");
}

/// The text of a failed status, "(kFailure): the text", without its code's name.
inline std::string withoutCode(const std::string &text) {
    const size_t end = text.find("): ");
    return end == std::string::npos ? text : text.substr(end + 3);
}

} // namespace devhost

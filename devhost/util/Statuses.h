// SPDX-License-Identifier: MIT
#pragma once

// How operations make statuses and hand them to callers.

#include "host/core/ZStatus.h"

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

} // namespace devhost

// The host's border for native exceptions: none leaves an operation, failures are statuses.
#pragma once

#include <exception>
#include <new>

#include "host/core/ZStatus.h"

namespace devhost {

/// Runs an operation that returns a status, and turns what it throws into one.
template <class Operation>
ZStatus guarded(Operation operation) noexcept {
    try {
        return operation();
    } catch (const std::bad_alloc &) {
        return ZStatus::kInsufficientMemory;
    } catch (const std::exception &error) {
        return {ZStatus::kFailure, error.what()};
    }
}

} // namespace devhost

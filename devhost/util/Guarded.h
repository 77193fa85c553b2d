// SPDX-License-Identifier: MIT
#pragma once

// The host's border for native exceptions: none leaves an operation, failures are statuses.

#include "host/core/ZStatus.h"

#include <exception>
#include <new>
#include <stdexcept>
#include <type_traits>

namespace devhost {

/// Runs an operation that returns a status, or nothing where only what it throws can fail, and
/// turns what it throws into a status.
template <class Operation>
ZStatus guarded(Operation operation) noexcept {
    try {
        if constexpr (std::is_void_v<decltype(operation())>) {
            operation();
            return ZStatus();
        } else {
            return operation();
        }
    } catch (const std::bad_alloc &) {
        return ZStatus::kInsufficientMemory;
    } catch (const std::length_error &) { // more than any memory holds
        return ZStatus::kInsufficientMemory;
    } catch (const std::exception &error) {
        return {ZStatus::kFailure, error.what()};
    }
}

} // namespace devhost

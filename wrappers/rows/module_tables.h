// SPDX-License-Identifier: MIT
#pragma once

// What a module consists of. Every module defines the two lists, in the order in which its rows
// and constants are installed.

#include "wrappers/rows/constants.h"
#include "wrappers/rows/function.h"

namespace binding {

extern const std::span<const Rows *const> method_tables;
extern const std::span<const Constants *const> constant_tables;

/// Creates the module with all its rows, joins it to the interpreter's type ring and installs its
/// constants. A failure leaves its exception for the import to report.
void initialise_module(const char *name);

} // namespace binding

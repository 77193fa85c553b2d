// SPDX-License-Identifier: MIT
#pragma once

// What render passes can compute.

#include "host/base/HostApi.h"

#include <span>
#include <string>

namespace devhost {

struct PassKind {
    const char *name;
    unsigned channels;
    bool isColor; // in bytes and smoothed; else in floating-point numbers and as they are
};

OPENQUIL_API std::span<const PassKind> passKinds();
/// Null when there is none of that name.
const PassKind *findPassKind(const std::string &name);

} // namespace devhost

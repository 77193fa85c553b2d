// SPDX-License-Identifier: MIT
#pragma once

#include "host/base/HostApi.h"

namespace devhost {

/// The version of this system, such as "0.1.0".
OPENQUIL_API const char *version();

} // namespace devhost

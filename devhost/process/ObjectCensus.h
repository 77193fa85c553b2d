#pragma once

// The development host's count of live host objects, by class.

#include "host/base/HostApi.h"

#include <map>
#include <string_view>

namespace devhost {

/// Begins to count; what was made before is not known.
OPENQUIL_API void startObjectCensus();

/// The number of live objects of each class that has had any since the start; nothing before it.
OPENQUIL_API std::map<std::string_view, long> objectCensus();

} // namespace devhost

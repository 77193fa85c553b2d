// SPDX-License-Identifier: MIT
#pragma once

// The count of live host objects that scripts came to own, by class.

#include <map>
#include <string>

namespace quilhost {

/// Imports the native modules and begins to count, before any proxy class registers: what their
/// functions return with ownership is born, what the delete functions get dies. Objects that only
/// native code makes and drops are not seen.
void startObjectCensus();

/// The number of live objects of each class that has had any since the start; nothing before it.
/// Native memory of numbers counts as "buffer".
const std::map<std::string, long> &objectCensus();

} // namespace quilhost

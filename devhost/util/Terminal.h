// SPDX-License-Identifier: MIT
#pragma once

// What the host writes to the standard error output.

#include "host/base/HostApi.h"

#include <string>
#include <string_view>

namespace devhost {

/// UTF-8 text as a terminal can be given it: texts of files and scripts are not to move the cursor,
/// change the window's title or forge lines. What would, stands as "\u001b", which is also how JSON
/// writes it.
OPENQUIL_API std::string harmless(std::string_view text);

/// Writes one line, made harmless.
OPENQUIL_API void writeLine(const std::string &line);

/// Tells the user something, in one line behind the program's name.
OPENQUIL_API void tell(const std::string &text);

} // namespace devhost

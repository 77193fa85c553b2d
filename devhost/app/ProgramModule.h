// SPDX-License-Identifier: MIT
#pragma once

// The built-in module `quilhost`: what scripts can ask of the program itself.

namespace quilhost {

/// Makes the module known to the interpreter.
void addProgramModule();

} // namespace quilhost

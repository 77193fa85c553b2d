// SPDX-License-Identifier: MIT
#pragma once

// The standard streams as scripts see them.

namespace quilhost {

/// Makes the interpreter's streams fit for pipes and files: UTF-8 and line by line, where the
/// interpreter would have ASCII and blocks, so that a farm's log shows what a terminal does.
/// PYTHONIOENCODING and PYTHONUNBUFFERED are obeyed. Called before anything is written.
void setUpStandardStreams();

} // namespace quilhost

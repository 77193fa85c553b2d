// SPDX-License-Identifier: MIT
#pragma once

// What a native plug-in of quilhost exports. With the package's targets, in CMake:
//
//     find_package(OpenQuil REQUIRED)
//     add_library(my_plugin MODULE my_plugin.cpp)
//     target_link_libraries(my_plugin PRIVATE OpenQuil::OpenQuilRender)
//
// and `quilhost --plugin my_plugin.so`. A plug-in registers what it brings (draw procedures,
// viewport renderers, render callbacks, swatches ...) with the host's classes, and scripts see it
// as they see the host's own. Python is not running yet when it starts, and has ended when it ends.

#include "host/base/HostApi.h"

/// Changes with this interface or with the declarations in host/.
#define QUILHOST_PLUGIN_VERSION 1

extern "C" {

/// The QUILHOST_PLUGIN_VERSION that the plug-in was compiled with: `QUILHOST_PLUGIN` defines it.
extern OPENQUIL_API const int quilhostPluginVersion; // NOLINT(readability-identifier-naming)

/// Called once, before the scene is loaded. Returns null, or why the plug-in cannot be used: a text
/// in UTF-8 that stays. quilhost tells it and ends with exit code 2.
OPENQUIL_API const char *startQuilhostPlugin();

/// Called once, when the last frame is written and Python has ended, for plug-ins that started, the
/// last one first: takes out what was registered. The file stays loaded. May be left out.
OPENQUIL_API void endQuilhostPlugin();
}

/// Stands once in each plug-in.
#define QUILHOST_PLUGIN const int quilhostPluginVersion = QUILHOST_PLUGIN_VERSION;

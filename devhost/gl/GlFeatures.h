// SPDX-License-Identifier: MIT
#pragma once

// What a driver offers: its release of OpenGL and its extensions.

#include "host/base/HostApi.h"

#include <set>
#include <string>
#include <string_view>

namespace devhost {

class OPENQUIL_API GlFeatures {
  public:
    /// Nothing at all.
    GlFeatures() = default;
    /// From the driver's two strings: "4.5 (Compatibility Profile) ...", "GL_ARB_imaging ...".
    GlFeatures(const char *version, const char *extensions);

    /// A feature is a release, "VERSION_1_3", or an extension without its GL_, "ARB_imaging".
    bool has(std::string_view feature) const;
    /// Any of several, separated by blanks; none of none.
    bool hasAny(std::string_view features) const;

  private:
    int major_ = 0;
    int minor_ = 0;
    std::set<std::string, std::less<>> extensions_;
};

} // namespace devhost

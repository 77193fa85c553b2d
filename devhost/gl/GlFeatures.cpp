// SPDX-License-Identifier: MIT
#include "devhost/gl/GlFeatures.h"

#include <cstdio>
#include <sstream>
#include <utility>

namespace devhost {

GlFeatures::GlFeatures(const char *version, const char *extensions) {
    if (!version || std::sscanf(version, "%d.%d", &major_, &minor_) != 2)
        return;
    std::istringstream names(extensions ? extensions : "");
    for (std::string name; names >> name;)
        if (name.starts_with("GL_"))
            extensions_.insert(name.substr(3));
}

bool GlFeatures::has(std::string_view feature) const {
    int major, minor;
    if (std::sscanf(std::string(feature).c_str(), "VERSION_%d_%d", &major, &minor) == 2)
        return std::pair(major_, minor_) >= std::pair(major, minor);
    return extensions_.contains(feature);
}

bool GlFeatures::hasAny(std::string_view features) const {
    std::istringstream names{std::string(features)};
    for (std::string name; names >> name;)
        if (has(name))
            return true;
    return false;
}

} // namespace devhost

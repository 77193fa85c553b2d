// SPDX-License-Identifier: MIT
#pragma once

// What names of files tell.

#include <cctype>
#include <filesystem>
#include <string>

namespace devhost {

/// The extension in lower case, with its dot; empty where there is none.
inline std::string lowerExtension(const std::filesystem::path &path) {
    std::string extension = path.extension().string();
    for (char &c : extension)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return extension;
}

} // namespace devhost

// SPDX-License-Identifier: MIT
#include "devhost/app/Plugins.h"

#include "devhost/app/Errors.h"
#include "devhost/app/PluginInterface.h"

#include <dlfcn.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <system_error>

namespace quilhost {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void refuse(const std::string &file, const std::string &why) {
    throw Failure(kUsageError, "plug-in '" + file + "': " + why);
}

std::vector<std::string> pluginsInFolder(const fs::path &folder) {
    std::error_code problem;
    std::vector<std::string> files;
    for (const auto &entry : fs::directory_iterator(folder, problem))
        if (entry.path().extension() == ".so")
            files.push_back(entry.path());
    if (problem)
        throw Failure(kUsageError, "the plug-in folder '" + folder.string() +
                                       "' cannot be read: " + problem.message());
    std::ranges::sort(files);
    return files;
}

std::vector<std::string> pluginsOfEnvironment() {
    const char *folders = std::getenv("QUILHOST_PLUGINS");
    std::istringstream text(folders ? folders : "");
    std::vector<std::string> files;
    for (std::string folder; std::getline(text, folder, ':');)
        if (!folder.empty())
            std::ranges::copy(pluginsInFolder(folder), std::back_inserter(files));
    return files;
}

} // namespace

Plugins::Plugins(const std::vector<std::string> &files) {
    try {
        for (const std::string &file : pluginsOfEnvironment())
            start(file);
        for (const std::string &file : files)
            start(file);
    } catch (...) {
        end();
        throw;
    }
}

Plugins::~Plugins() {
    end();
}

void Plugins::start(const std::string &file) {
    // The loader looks for a bare name elsewhere.
    void *library = dlopen(fs::absolute(file).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!library)
        refuse(file, dlerror());
    const auto *version = static_cast<const int *>(dlsym(library, "quilhostPluginVersion"));
    const auto begin = reinterpret_cast<const char *(*)()>(dlsym(library, "startQuilhostPlugin"));
    if (!version || !begin)
        refuse(file, "it has no " +
                         std::string(version ? "startQuilhostPlugin" : "QUILHOST_PLUGIN") +
                         ", and so is none");
    if (*version != QUILHOST_PLUGIN_VERSION)
        refuse(file, "it was built for version " + std::to_string(*version) +
                         " of the plug-in interface; this is version " +
                         std::to_string(QUILHOST_PLUGIN_VERSION));
    if (const char *why = begin())
        refuse(file, why);
    if (const auto end = reinterpret_cast<void (*)()>(dlsym(library, "endQuilhostPlugin")))
        ends_.push_back(end);
}

void Plugins::end() {
    std::for_each(ends_.rbegin(), ends_.rend(), [](void (*end)()) { end(); });
    ends_.clear();
}

} // namespace quilhost

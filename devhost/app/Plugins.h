// SPDX-License-Identifier: MIT
#pragma once

// Native plug-ins: what PluginInterface.h describes, from the outside.

#include <string>
#include <vector>

namespace quilhost {

/// Plug-ins that run while this lives.
class Plugins {
  public:
    /// Loads and starts those in the folders of the environment variable QUILHOST_PLUGINS, which a
    /// colon separates, by name (*.so), then the given files. Throws Failure with kUsageError,
    /// which says what is wrong with which file; those before it are ended again.
    explicit Plugins(const std::vector<std::string> &files);
    ~Plugins();
    Plugins(const Plugins &) = delete;
    Plugins &operator=(const Plugins &) = delete;

  private:
    void start(const std::string &file);
    void end();

    std::vector<void (*)()> ends_;
};

} // namespace quilhost

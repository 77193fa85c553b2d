// SPDX-License-Identifier: MIT
#pragma once

// A folder for the files of one test.

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

class TemporaryFolder {
  public:
    TemporaryFolder()
        : path(std::filesystem::canonical(std::filesystem::temp_directory_path()) /
               ("openquil_" + std::to_string(getpid()) + "_" + std::to_string(count++))) {
        std::filesystem::create_directories(path);
    }
    TemporaryFolder(const TemporaryFolder &) = delete;
    ~TemporaryFolder() { std::filesystem::remove_all(path); }

    std::string file(const std::string &name) const { return (path / name).string(); }
    std::string write(const std::string &name, const std::string &contents) const {
        std::ofstream(path / name, std::ios::binary) << contents;
        return file(name);
    }

    std::filesystem::path path;

  private:
    static inline int count = 0;
};

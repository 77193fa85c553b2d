// SPDX-License-Identifier: MIT
#pragma once

// What the user asked for.

#include "devhost/session/PixelRegion.h"

#include <optional>
#include <string>
#include <vector>

namespace quilhost {

/// The name of the script that comes from there.
inline constexpr char kStandardInput[] = "-";

struct Options {
    std::string scene;
    /// Native plug-ins to load first.
    std::vector<std::string> plugins;
    std::string pythonFile;
    std::string pythonExpression;
    bool hasExpression = false;
    std::vector<std::string> scriptArguments;
    /// Files, folders and dotted names of tests to run instead of a script.
    std::vector<std::string> tests;
    std::vector<std::string> testPatterns;
    bool failFast = false;
    std::string junit;
    std::vector<int> frames = {1};
    double framesPerSecond = 24;
    std::string output;
    unsigned width = 640, height = 480;
    std::string renderer = "software";
    std::string camera;
    std::string layer;
    std::optional<devhost::PixelRegion> region;
    /// Texts such as "renumberStart=100".
    std::vector<std::string> settings;
    bool skipExisting = false;
    bool keepGoing = false;
    float exposure = 0;
    unsigned samples = 4;
    bool exrFloats = false;
    unsigned threads = 0;
    bool noGl = false;
    bool leakCheck = false;
    bool strict = false;
    std::string trace;
    bool stats = false;
    bool guard = false;
    bool quiet = false;
    bool verbose = false;
    std::string progress = "auto";

    bool hasScript() const { return !pythonFile.empty() || hasExpression || hasTests(); }
    bool hasTests() const { return !tests.empty(); }
};

/// The name of an output with its places of the frame number as runs of #.
std::string withHashPlaces(const std::string &output);

/// Throws Failure with kUsageError unless so many frames can be written to files of that name.
void checkOutputName(const std::string &output, size_t frames);

/// Reads and checks the command line, including the files and folders that it names. Empty when
/// the help was asked for and has been printed. Throws Failure with kUsageError.
std::optional<Options> readCommandLine(int argc, char **argv);

} // namespace quilhost

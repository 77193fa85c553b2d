// SPDX-License-Identifier: MIT
#pragma once

// What is to be rendered by many tasks, and in which parts.

#include "devhost/app/CommandLine.h"
#include "devhost/session/PixelRegion.h"
#include "devhost/util/FrameList.h"

#include <CLI/App.hpp>

#include <optional>
#include <string>
#include <vector>

namespace quilfarm {

/// How a picture is cut into tiles that are rendered apart.
struct TileGrid {
    unsigned columns = 0, rows = 0;

    unsigned count() const { return columns * rows; }
    /// The pixels of a tile; tiles are counted by rows from the lower left.
    devhost::PixelRegion region(const devhost::PixelRegion &whole, unsigned tile) const;
};

/// The pictures of a job: a file for each frame, or one for each of its tiles.
struct Pictures {
    devhost::FrameList frames = {1};
    /// With runs of # as the places of the frame number.
    std::string output;
    std::optional<TileGrid> tiles;

    unsigned tileCount() const { return tiles ? tiles->count() : 1; }
    /// The name of a tile's files, with the places of the frame number; the output without tiles.
    /// Tiles of another grid have other names.
    std::string tileOutput(unsigned tile) const;
    std::vector<std::string> filesOf(int frame) const;
};

/// What one task renders.
struct Task {
    devhost::FrameList frames;
    unsigned tile = 0;
};

struct Job {
    /// As the user gave them.
    std::vector<std::string> arguments;
    Pictures pictures;
    /// Frames of a task.
    size_t chunk = 1;
    std::string scene, script;
    /// Width and height; the first and last column, the first and last row: empty as quilhost has
    /// it.
    std::vector<unsigned> resolution, region;
    /// Those options that are quilhost's alone, and the script's arguments.
    std::vector<std::string> hostOptions, scriptArguments;

    size_t taskCount() const;
    Task task(size_t index) const;
    /// The words that have quilhost render a task. Throws Failure with kUsageError where it
    /// would not take it.
    std::vector<std::string> hostArguments(const Task &task) const;
    /// What quilhost reads out of the command line of a task.
    quilhost::Options readHostOptions(const Task &task) const;
};

/// Adds the options that name pictures. Throws out of the parser what is wrong with them.
void addPictureOptions(CLI::App &app, Pictures &pictures);

/// Throws Failure with kUsageError where the names of the pictures cannot be told beforehand.
void checkPictures(const Pictures &pictures);

/// Parses a command's arguments; false where the help was asked for and has been printed. Throws
/// Failure with kUsageError.
bool parse(CLI::App &app, const std::vector<std::string> &arguments);

/// Reads a job, whose options stand beside those of the command that `app` has already. Empty where
/// the help was asked for, which leaves `refused` out, an option that the command refuses. Throws
/// Failure with kUsageError where the words make no sense.
std::optional<Job> readJob(CLI::App &app, const std::vector<std::string> &arguments,
                           const std::string &refused = "");

/// Throws Failure with kUsageError where quilhost would not take the job's tasks: a file or folder
/// is not there, an option is unknown.
void checkJob(const Job &job);

} // namespace quilfarm

// SPDX-License-Identifier: MIT
#include "devhost/farm/Job.h"

#include "devhost/app/Errors.h"
#include "devhost/util/FileName.h"
#include "devhost/util/FramePlaces.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <filesystem>
#include <stdexcept>

namespace fs = std::filesystem;

namespace quilfarm {
namespace {

using quilhost::Failure;
using quilhost::kUsageError;

TileGrid parseTiles(const std::string &text) {
    TileGrid grid;
    const char *const end = text.data() + text.size();
    const auto [cross, noColumns] = std::from_chars(text.data(), end, grid.columns);
    const bool hasCross = noColumns == std::errc() && cross != end && *cross == 'x';
    const auto [behind, noRows] = std::from_chars(cross + (hasCross ? 1 : 0), end, grid.rows);
    constexpr unsigned kMost = 1024;
    if (!hasCross || noRows != std::errc() || behind != end || !grid.columns || !grid.rows ||
        grid.columns > kMost || grid.rows > kMost)
        throw std::invalid_argument("--tiles '" + text +
                                    "' is no grid of columns and rows such as 4x4");
    return grid;
}

/// `part` of `parts` even parts of a side, by its first pixel and the one behind its last.
std::pair<unsigned, unsigned> partOf(unsigned first, size_t length, unsigned part, unsigned parts) {
    const auto begin = [&](size_t i) { return first + static_cast<unsigned>(length * i / parts); };
    return {begin(part), begin(part + 1)};
}

void append(std::vector<std::string> &list, const std::vector<std::string> &more) {
    list.insert(list.end(), more.begin(), more.end());
}

void appendNumbers(std::vector<std::string> &list, const std::string &option,
                   const std::vector<unsigned> &numbers) {
    if (numbers.empty())
        return;
    list.push_back(option);
    for (const unsigned number : numbers)
        list.push_back(std::to_string(number));
}

/// The scene or the script is the first word that is no option of ours.
void takeScene(Job &job) {
    auto &words = job.hostOptions;
    if (words.empty() || words.front().starts_with('-'))
        return;
    const bool isScript = devhost::lowerExtension(words.front()) == ".py";
    (isScript && job.script.empty() ? job.script : job.scene) = words.front();
    words.erase(words.begin());
}

} // namespace

devhost::PixelRegion TileGrid::region(const devhost::PixelRegion &whole, unsigned tile) const {
    const auto [left, right] = partOf(whole.left, whole.width(), tile % columns, columns);
    const auto [bottom, top] = partOf(whole.bottom, whole.height(), tile / columns, rows);
    return {left, right - 1, bottom, top - 1};
}

std::string Pictures::tileOutput(unsigned tile) const {
    if (!tiles)
        return output;
    const fs::path path = output;
    const auto pair = [](unsigned x, const std::string &between, unsigned y) {
        return std::to_string(x) + between + std::to_string(y);
    };
    return path.parent_path() /
           (path.stem().string() + ".tile-" +
            pair(tile % tiles->columns, "-", tile / tiles->columns) + "-of-" +
            pair(tiles->columns, "x", tiles->rows) + path.extension().string());
}

std::vector<std::string> Pictures::filesOf(int frame) const {
    std::vector<std::string> files;
    for (unsigned tile = 0; tile < tileCount(); ++tile) {
        const fs::path path = tileOutput(tile);
        files.push_back(path.parent_path() / devhost::numberHashes(path.filename(), frame));
    }
    return files;
}

size_t Job::taskCount() const {
    return (pictures.frames.size() + chunk - 1) / chunk * pictures.tileCount();
}

Task Job::task(size_t index) const {
    const unsigned tiles = pictures.tileCount();
    return {devhost::chunksOf(pictures.frames, chunk).at(index / tiles),
            static_cast<unsigned>(index % tiles)};
}

std::vector<std::string> Job::hostArguments(const Task &task) const {
    std::vector<std::string> list;
    if (!scene.empty())
        list.push_back(scene);
    if (!script.empty())
        append(list, {"--python", script});
    append(list, hostOptions);
    append(list, {"--frames=" + devhost::printFrames(task.frames), "--output",
                  pictures.tileOutput(task.tile), "--skip-existing", "--progress", "json"});
    appendNumbers(list, "--resolution", resolution);
    std::vector<unsigned> part = region;
    if (pictures.tiles) {
        Job whole = *this;
        whole.pictures.tiles.reset();
        const auto options = whole.readHostOptions(task);
        const auto all =
            options.region.value_or(devhost::PixelRegion::all(options.width, options.height));
        if (pictures.tiles->columns > all.width() || pictures.tiles->rows > all.height())
            throw Failure(kUsageError, "--tiles: the picture has only " +
                                           std::to_string(all.width()) + " x " +
                                           std::to_string(all.height()) + " pixels");
        const auto tile = pictures.tiles->region(all, task.tile);
        part = {tile.left, tile.right, tile.bottom, tile.top};
    }
    appendNumbers(list, "--region", part);
    if (!scriptArguments.empty()) {
        list.emplace_back("--");
        append(list, scriptArguments);
    }
    return list;
}

quilhost::Options Job::readHostOptions(const Task &task) const {
    std::vector<std::string> words = hostArguments(task);
    words.insert(words.begin(), "quilhost");
    std::vector<char *> pointers;
    pointers.reserve(words.size());
    for (std::string &word : words)
        pointers.push_back(word.data());
    const auto options =
        quilhost::readCommandLine(static_cast<int>(pointers.size()), pointers.data());
    if (!options)
        throw Failure(kUsageError, "the options of quilhost ask for its help or version");
    return *options;
}

void addPictureOptions(CLI::App &app, Pictures &pictures) {
    app.add_option_function<std::string>(
        "--frames", [&](const std::string &text) { pictures.frames = devhost::parseFrames(text); },
        "The frames, such as 1-1000 or 1-10x2,20 (default 1)");
    app.add_option_function<std::string>(
           "--output",
           [&](const std::string &text) { pictures.output = quilhost::withHashPlaces(text); },
           "The pictures, such as out.####.exr; #### is the place of the frame number")
        ->required();
    app.add_option_function<std::string>(
        "--tiles", [&](const std::string &text) { pictures.tiles = parseTiles(text); },
        "Columns and rows of tiles that are rendered apart, such as 4x4");
}

void checkPictures(const Pictures &pictures) {
    quilhost::checkOutputName(pictures.output, pictures.frames.size());
    if (fs::path(pictures.output).filename().string().find('<') != std::string::npos)
        throw Failure(kUsageError, "--output '" + pictures.output +
                                       "': names that only the scene tells cannot be looked for");
}

bool parse(CLI::App &app, const std::vector<std::string> &arguments) {
    try {
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
        return true;
    } catch (const CLI::CallForHelp &) {
        std::fputs(app.help().c_str(), stdout);
        return false;
    } catch (const CLI::ParseError &error) {
        throw Failure(kUsageError, std::string(error.what()) + " (--help tells the options)");
    } catch (const std::invalid_argument &error) {
        throw Failure(kUsageError, error.what());
    }
}

std::optional<Job> readJob(CLI::App &app, const std::vector<std::string> &arguments,
                           const std::string &refused) {
    Job job;
    job.arguments = arguments;
    const auto dashes = std::find(arguments.begin(), arguments.end(), "--");
    if (dashes != arguments.end())
        job.scriptArguments.assign(dashes + 1, arguments.end());
    addPictureOptions(app, job.pictures);
    app.add_option("--chunk", job.chunk, "Frames of a task (default 1)")
        ->check(CLI::Range(size_t{1}, size_t{1'000'000}));
    app.add_option("--python", job.script, "The Python script to run");
    app.add_option("--resolution", job.resolution, "Width and height in pixels")
        ->expected(2)
        ->allow_extra_args(false);
    app.add_option("--region", job.region, "The columns and rows to render, as quilhost takes them")
        ->expected(4)
        ->allow_extra_args(false);
    if (!refused.empty())
        app.get_option(refused)->group(""); // which no help shows
    app.allow_extras();
    app.footer(
        "What is no option above is quilhost's; SCENE or SCRIPT.py stands before such options.");
    if (!parse(app, {arguments.begin(), dashes}))
        return std::nullopt;
    job.hostOptions = app.remaining();
    takeScene(job);
    return job;
}

void checkJob(const Job &job) {
    checkPictures(job.pictures);
    const auto options = job.readHostOptions(job.task(0));
    if (job.scene.empty() && !options.scene.empty())
        throw Failure(kUsageError,
                      "the scene '" + options.scene + "' has to stand before options of quilhost");
    for (const std::string &setting : options.settings)
        if (setting.starts_with("renumber"))
            throw Failure(kUsageError, "--setting '" + setting +
                                           "': tasks, which know their own frames only, cannot "
                                           "renumber them");
}

} // namespace quilfarm

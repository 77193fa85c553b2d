// SPDX-License-Identifier: MIT
#include "devhost/app/CommandLine.h"

#include "devhost/api/render/Picture.h"
#include "devhost/app/Errors.h"
#include "devhost/app/SettingOptions.h"
#include "devhost/session/FrameRenderer.h"
#include "devhost/util/FileName.h"
#include "devhost/util/FrameList.h"
#include "devhost/util/FramePlaces.h"
#include "devhost/util/Version.h"

#include <CLI/CLI.hpp>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <tuple>

namespace fs = std::filesystem;

namespace quilhost {
namespace {

constexpr const char *kFooter = R"(
A script runs once. If it then has a function render(frame), that is called for every frame.
Otherwise, if it finished a picture in the render view, that picture is the output. Otherwise, and
for each frame whose render(frame) finished no picture, the host renders the scene itself, with the
render callbacks that the script registered, to --output.

The name after --output ends in .png or .exr. A run of # is the place of the frame number, as are
%04d and $F4 for four digits; <Scene>, <Camera> and <RenderLayer> stand for their names. The folder
must exist.

What follows -- goes to the script as sys.argv[1:].

Exit codes:
    0  success
    1  the script failed (or the number that it gave to sys.exit); a test failed
    2  a mistake on the command line, or a file, folder, camera or layer that it names is not there,
       or a plug-in cannot be used
    3  the scene could not be read, rendered or written; with --strict also: something in it is not
       honoured
    4  a render callback failed; the pictures were rendered all the same
    5  with --leak-check: host objects that the script made are left over
  130  interrupted
  143  terminated: SIGTERM ends script and render as an interrupt does)";

[[noreturn]] void usage(const std::string &line) {
    throw Failure(kUsageError, line);
}

void checkReadableFile(const std::string &what, const std::string &path) {
    std::error_code ignored;
    if (!fs::exists(path, ignored))
        usage(what + " '" + path + "' does not exist");
    if (fs::is_directory(path, ignored))
        usage(what + " '" + path + "' is a folder");
    if (!std::ifstream(path))
        usage("cannot read " + what + " '" + path + "': " + std::strerror(errno));
}

/// That a file can be made under the name.
void checkTarget(const std::string &option, const fs::path &path) {
    std::error_code ignored, problem;
    const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
    static_cast<void>(fs::absolute(folder, problem));
    if (problem)
        usage("the working folder is not there any more: " + problem.message());
    if (!fs::is_directory(folder, ignored))
        usage("the output folder '" + folder.string() + "' does not exist");
    if (access(folder.c_str(), W_OK | X_OK) != 0)
        usage("cannot write to the output folder '" + folder.string() +
              "': " + std::strerror(errno));
    if (fs::is_directory(path, ignored))
        usage(option + " '" + path.string() + "' is a folder");
}

void checkOutput(const Options &options) {
    checkOutputName(options.output, options.frames.size());
    checkTarget("--output", options.output);
}

/// Dotted names are looked for later, on Python's search path.
void checkTests(const Options &options) {
    std::error_code ignored;
    for (const std::string &test : options.tests)
        if (!fs::exists(test, ignored) &&
            (test.find('/') != std::string::npos || fs::path(test).extension() == ".py"))
            usage("test '" + test + "' does not exist");
    if (!options.junit.empty())
        checkTarget("--junit", options.junit);
}

void checkRegion(const Options &options) {
    const auto whole = devhost::PixelRegion::all(options.width, options.height);
    if (options.region && (options.region->isEmpty() || !options.region->isInside(whole)))
        usage("--region is empty or not inside the picture of " + std::to_string(options.width) +
              " x " + std::to_string(options.height) + " pixels");
}

void check(const Options &options) {
    checkRegion(options);
    if (!options.hasScript() && options.output.empty())
        usage("nothing to do: give a script with --python or --python-expr, tests with --test, or "
              "an --output");
    if (!options.hasScript() && options.scene.empty())
        usage("--output needs a scene or a script to render");
    if (!options.pythonFile.empty() && options.pythonFile != kStandardInput)
        checkReadableFile("script", options.pythonFile);
    for (const std::string &plugin : options.plugins)
        checkReadableFile("plug-in", plugin);
    if (!options.scene.empty()) {
        checkReadableFile("scene", options.scene);
        const std::string extension = devhost::lowerExtension(options.scene);
        if (extension != ".obj" && extension != ".gltf" && extension != ".glb")
            usage("scene '" + options.scene + "' is no .obj, .gltf or .glb file");
    }
    if (!options.output.empty())
        checkOutput(options);
    checkTests(options);
    if (!options.trace.empty())
        checkTarget("--trace", options.trace);
}

/// Ranges of the parser let "nan" pass.
std::string refuseNan(const std::string &text) {
    return std::isnan(std::strtod(text.c_str(), nullptr)) ? "'" + text + "' is no number" : "";
}

std::string oneLine(std::string text) {
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
}

} // namespace

std::string withHashPlaces(const std::string &output) {
    const fs::path path = output;
    return path.parent_path() / devhost::hashPlaces(path.filename());
}

void checkOutputName(const std::string &output, size_t frames) {
    if (!devhost::isPictureFileName(output))
        usage("--output '" + output + "' does not end in .png or .exr");
    if (frames > 1 && fs::path(output).filename().string().find('#') == std::string::npos)
        usage("--output '" + output +
              "' needs a place such as #### for the frame number, as there are " +
              std::to_string(frames) + " frames");
}

std::optional<Options> readCommandLine(int argc, char **argv) {
    Options options;
    // What follows -- is the script's alone, even where it looks like our options.
    char **const end = argv + argc;
    char **const dashes = std::find_if(argv + std::min(argc, 1), end,
                                       [](const char *a) { return !std::strcmp(a, "--"); });
    if (dashes != end)
        options.scriptArguments.assign(dashes + 1, end);

    CLI::App app("Runs render scripts and renders scenes without the host application.",
                 "quilhost");
    app.footer(kFooter);
    bool background = false;
    std::vector<unsigned> resolution;
    std::string frames;
    app.add_option("scene", options.scene, "The scene to load: a .obj, .gltf or .glb file");
    app.add_flag("--background", background, "Accepted; the host has no windows");
    auto *file = app.add_option("--python", options.pythonFile,
                                "The Python script to run; - is the standard input");
    auto *expression =
        app.add_option("--python-expr", options.pythonExpression, "The Python statements to run")
            ->excludes(file);
    auto *tests = app.add_option("--test", options.tests,
                                 "Run the tests of files, folders (their test*.py) and dotted "
                                 "names; see docs/testing.md")
                      ->excludes(file)
                      ->excludes(expression);
    app.add_option("-k", options.testPatterns,
                   "Only tests whose name contains this, or fits it where it has a *")
        ->needs(tests)
        ->allow_extra_args(false);
    app.add_flag("--failfast", options.failFast, "End after the first test that fails")
        ->needs(tests);
    app.add_option("--junit", options.junit, "The JUnit file to write")->needs(tests);
    app.add_option("--plugin", options.plugins,
                   "A native plug-in to load, after those in the folders of QUILHOST_PLUGINS")
        ->allow_extra_args(false);
    app.add_option("--frames", frames, "The frames to render, such as 1-10x2,20 (default 1)")
        ->excludes(tests);
    app.add_option("--fps", options.framesPerSecond,
                   "Frames a second of what moves in the scene (default 24); frame 0 is its time 0")
        ->check(refuseNan)
        ->check(CLI::Range(1e-3, 1e6));
    app.add_option("--output", options.output, "The picture to write, such as out.####.png")
        ->excludes(tests);
    app.add_option("--resolution", resolution, "Width and height in pixels (default 640 480)")
        ->expected(2)
        ->allow_extra_args(false)
        ->check(CLI::Range(1u, 16384u));
    app.add_option("--renderer", options.renderer,
                   "software, hardware (the draw procedures of ZHardwareRenderer are executed) or "
                   "viewport:NAME, a registered viewport renderer (default software)")
        ->check([](const std::string &name) -> std::string {
            return devhost::isRendererName(name)
                       ? ""
                       : "'" + name + "' is neither software nor hardware nor viewport:NAME";
        });
    app.add_option("--camera", options.camera, "The camera to render from (default: the first)");
    app.add_option("--layer", options.layer, "The render layer to render (default: all objects)");
    std::vector<unsigned> region;
    app.add_option("--region", region,
                   "The first and last column and the first and last row to render, counted from "
                   "the lower left (default: all)")
        ->expected(4)
        ->allow_extra_args(false);
    app.add_option("--samples", options.samples,
                   "Samples in each pixel, or exposures of a hardware frame (default 4)")
        ->check(CLI::Range(1u, 4096u));
    app.add_option("--exposure", options.exposure, "Stops: each one doubles all light (default 0)")
        ->check(refuseNan)
        ->check(CLI::Range(-64.0f, 64.0f));
    std::string exr = "half";
    app.add_option("--exr", exr, "The colours of .exr files: half or float (default half)")
        ->check(CLI::IsMember({"half", "float"}));
    app.add_option("--threads", options.threads, "Threads to render with (default: one per core)")
        ->check(CLI::Range(1u, 1024u));
    app.add_option("--setting", options.settings,
                   "NAME=VALUE: a common render setting, one of " + settingNames())
        ->allow_extra_args(false);
    app.add_flag("--skip-existing", options.skipExisting,
                 "Do not render frames whose picture is there and whole")
        ->excludes(tests);
    app.add_flag("--keep-going", options.keepGoing,
                 "Go on with the other frames after one that failed")
        ->excludes(tests);
    app.add_flag("--no-gl", options.noGl, "Do not use OpenGL");
    app.add_flag("--leak-check", options.leakCheck,
                 "Tell which host objects are left over when the script and Python have ended");
    app.add_option("--trace", options.trace,
                   "The file to write a timeline to, in the Chrome trace format");
    app.add_flag("--stats", options.stats,
                 "Tell at the end how often what was called, and how long it took");
    app.add_flag(
        "--guard", options.guard,
        "Stop a script at the access where it leaves memory that it is lent, or comes back "
        "to it too late, and tell whose it was");
    app.add_flag("--strict", options.strict,
                 "Whatever the scene or script asks for and is not honoured is an error");
    auto *quiet = app.add_flag("--quiet", options.quiet, "Tell errors only");
    app.add_flag("--verbose", options.verbose, "Tell more")->excludes(quiet);
    app.add_option(
           "--progress", options.progress,
           "auto: a bar on a terminal, else plain; plain: a line for each step; json: one "
           "JSON object per line on standard error; openjd: messages of Open Job Description")
        ->check(CLI::IsMember({"auto", "plain", "json", "openjd"}));
    app.set_version_flag("--version", std::string("quilhost ") + devhost::version());

    try {
        app.parse(static_cast<int>(dashes - argv), argv);
    } catch (const CLI::CallForVersion &version) {
        std::puts(version.what());
        return std::nullopt;
    } catch (const CLI::CallForHelp &) {
        std::fputs(app.help().c_str(), stdout);
        return std::nullopt;
    } catch (const CLI::ParseError &error) {
        usage(oneLine(error.what()) + " (quilhost --help tells the options)");
    }
    options.hasExpression = expression->count() > 0;
    options.exrFloats = exr == "float";
    if (!resolution.empty())
        std::tie(options.width, options.height) = std::pair(resolution[0], resolution[1]);
    if (!region.empty())
        options.region = {region[0], region[1], region[2], region[3]};
    options.output = withHashPlaces(options.output);
    try {
        if (app["--frames"]->count())
            options.frames = devhost::parseFrames(frames);
        ZCommonRenderSettingsData settings;
        for (const std::string &each : options.settings)
            applySetting(each, settings);
    } catch (const std::invalid_argument &error) {
        usage(oneLine(error.what()));
    }
    check(options);
    return options;
}

} // namespace quilhost

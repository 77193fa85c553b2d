// SPDX-License-Identifier: MIT
// A job template of Open Job Description, for render farms.
#include "devhost/app/Errors.h"
#include "devhost/farm/Commands.h"
#include "devhost/farm/Job.h"
#include "devhost/farm/Processes.h"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <filesystem>

namespace fs = std::filesystem;

namespace quilfarm {
namespace {

using quilhost::Failure;
using quilhost::kUsageError;
using Json = nlohmann::ordered_json;

constexpr size_t kMostListed = 1024; // items of a task parameter's list
constexpr size_t kLongestName = 128;

/// A text that is no format string. The templates have no way to write the braces of one.
std::string literal(const std::string &text) {
    if (text.find("{{") != std::string::npos)
        throw Failure(kUsageError,
                      "a template cannot have '" + text + "', as {{ begins a parameter");
    return text;
}

Json parameter(const std::string &name, const std::string &type, const Json &value,
               const std::string &label, const std::string &control, const Json &more) {
    Json result = {{"name", name},
                   {"type", type},
                   {"default", value},
                   {"userInterface", {{"control", control}, {"label", label}}}};
    result.update(more);
    return result;
}

Json fileParameter(const std::string &name, const std::string &path, const std::string &label,
                   bool isOutput) {
    return parameter(name, "PATH", fs::absolute(path).string(), label,
                     isOutput ? "CHOOSE_OUTPUT_FILE" : "CHOOSE_INPUT_FILE",
                     {{"objectType", "FILE"}, {"dataFlow", isOutput ? "OUT" : "IN"}});
}

/// Frames in the words of the templates, where values increase.
std::string rangeExpression(devhost::FrameList frames) {
    std::sort(frames.begin(), frames.end());
    return devhost::printFrames(frames, ':');
}

/// A task for each frame leaves the frames to whoever submits; the list of chunks is made here, and
/// what it is made of is told but cannot be changed.
bool hasTaskForEachFrame(const Job &job) {
    return job.chunk == 1;
}

Json parameterDefinitions(const Job &job, const quilhost::Options &options) {
    Json list = Json::array();
    if (!job.scene.empty())
        list.push_back(fileParameter("Scene", job.scene, "Scene", false));
    if (!job.script.empty())
        list.push_back(fileParameter("Script", job.script, "Python script", false));
    const auto frames = rangeExpression(job.pictures.frames);
    list.push_back(parameter(
        "Frames", "STRING", frames, "Frames", hasTaskForEachFrame(job) ? "LINE_EDIT" : "HIDDEN",
        hasTaskForEachFrame(job) ? Json{{"minLength", 1}} : Json{{"allowedValues", {frames}}}));
    list.push_back(parameter("Chunk", "INT", job.chunk, "Frames of a task", "HIDDEN",
                             {{"allowedValues", {job.chunk}}}));
    list.push_back(fileParameter("Output", job.pictures.output, "Pictures", true));
    const Json sides = {{"minValue", 1}, {"maxValue", 16384}};
    list.push_back(parameter("Width", "INT", options.width, "Width in pixels", "SPIN_BOX", sides));
    list.push_back(
        parameter("Height", "INT", options.height, "Height in pixels", "SPIN_BOX", sides));
    return list;
}

Json taskParameter(const Job &job) {
    if (hasTaskForEachFrame(job))
        return {{"name", "Frames"}, {"type", "INT"}, {"range", "{{Param.Frames}}"}};
    Json chunks = Json::array();
    for (const auto &chunk : devhost::chunksOf(job.pictures.frames, job.chunk))
        chunks.push_back(devhost::printFrames(chunk));
    if (chunks.size() > kMostListed)
        throw Failure(
            kUsageError,
            std::to_string(chunks.size()) +
                " chunks are more than the 1024 that a template can list: use "
                "--chunk " +
                std::to_string((job.pictures.frames.size() + kMostListed - 1) / kMostListed) +
                " or more, or 1");
    return {{"name", "Frames"}, {"type", "STRING"}, {"range", chunks}};
}

/// The command line of a task, with parameters in place of what they stand for.
Json commandLine(const Job &job) {
    std::vector<std::string> words;
    const auto append = [&](const std::vector<std::string> &more) {
        words.insert(words.end(), more.begin(), more.end());
    };
    if (!job.scene.empty())
        append({"{{Param.Scene}}"});
    if (!job.script.empty())
        append({"--python", "{{Param.Script}}"});
    for (const std::string &word : job.hostOptions)
        append({literal(word)});
    append({"--frames={{Task.Param.Frames}}", "--output", "{{Param.Output}}", "--resolution",
            "{{Param.Width}}", "{{Param.Height}}"});
    if (!job.region.empty())
        append({"--region"});
    for (const unsigned border : job.region)
        append({std::to_string(border)});
    append({"--skip-existing", "--progress", "openjd"});
    if (!job.scriptArguments.empty())
        append({"--"});
    for (const std::string &word : job.scriptArguments)
        append({literal(word)});
    return words;
}

Json renderStep(const Job &job, const quilhost::Options &options) {
    constexpr int kSecondsToEnd = 30; // between the signals: a frame is given up at once
    Json step = {{"name", "Render"}};
    if (options.threads)
        step["hostRequirements"]["amounts"] = {
            {{"name", "amount.worker.vcpu"}, {"min", options.threads}}};
    step["parameterSpace"]["taskParameterDefinitions"] = Json::array({taskParameter(job)});
    step["script"]["actions"]["onRun"] = {
        {"command", literal(programBeside("quilhost"))},
        {"args", commandLine(job)},
        {"cancelation",
         {{"mode", "NOTIFY_THEN_TERMINATE"}, {"notifyPeriodInSeconds", kSecondsToEnd}}}};
    return step;
}

/// What a farm shows of the job: the scene's name, or the script's, with no control characters.
std::string templateName(const Job &job) {
    std::string name;
    size_t characters = 0;
    for (const char c : fs::path(job.scene.empty() ? job.script : job.scene).stem().string()) {
        const bool goesOn = (static_cast<unsigned char>(c) & 0xc0) == 0x80; // of UTF-8
        if (!goesOn && ++characters > kLongestName)
            break;
        name += std::iscntrl(static_cast<unsigned char>(c)) ? '_' : c;
    }
    return literal(name);
}

} // namespace

int writeTemplate(const Arguments &arguments) try {
    CLI::App app(
        "Writes a job template of Open Job Description to standard output. quilfarm template "
        "[options] [SCENE|SCRIPT.py] [options of quilhost] [-- script arguments]",
        "quilfarm template");
    const auto job = readJob(app, arguments, "--tiles");
    if (!job)
        return quilhost::kOk;
    checkJob(*job);
    if (job->pictures.tiles)
        throw Failure(kUsageError, "--tiles: the tasks of a template have whole pictures");
    const auto options = job->readHostOptions(job->task(0));
    const Json document = {{"specificationVersion", "jobtemplate-2023-09"},
                           {"name", templateName(*job)},
                           {"parameterDefinitions", parameterDefinitions(*job, options)},
                           {"steps", Json::array({renderStep(*job, options)})}};
    std::printf("%s\n", document.dump(2).c_str());
    return quilhost::kOk;
} catch (const Json::type_error &) {
    throw Failure(kUsageError, "a template is UTF-8, and cannot have names that are not");
}

} // namespace quilfarm

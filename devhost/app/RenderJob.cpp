// SPDX-License-Identifier: MIT
#include "devhost/app/RenderJob.h"

#include "devhost/api/render/Picture.h"
#include "devhost/app/Errors.h"
#include "devhost/app/HostRender.h"
#include "devhost/app/Interrupt.h"
#include "devhost/app/SettingOptions.h"
#include "devhost/gl/HardwareRendering.h"
#include "devhost/image/PictureFile.h"
#include "devhost/scene/SceneLoader.h"
#include "devhost/session/FrameRenderer.h"
#include "devhost/session/RenderCallbacks.h"
#include "devhost/session/RenderSession.h"
#include "devhost/session/UnmetSettings.h"
#include "devhost/util/Notices.h"
#include "devhost/util/Statuses.h"
#include "devhost/util/Terminal.h"
#include "devhost/util/Timeline.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace quilhost {
namespace {

using devhost::withoutCode;

std::string callOf(int frame) {
    return "render(" + std::to_string(frame) + ")";
}

/// Every picture of the render view goes to this file as long as it lives.
class OutputScope {
  public:
    explicit OutputScope(const std::string &file) { devhost::renderSession().outputFile = file; }
    ~OutputScope() { devhost::renderSession().outputFile.clear(); }
};

} // namespace

void fillSettings(const Options &options, ZCommonRenderSettingsData &settings) {
    settings.width = options.width;
    settings.height = options.height;
    settings.deviceAspectRatio =
        static_cast<float>(options.width) / static_cast<float>(options.height);
    const auto [first, last] = std::minmax_element(options.frames.begin(), options.frames.end());
    settings.frameStart = ZTime(*first);
    settings.frameEnd = ZTime(*last);
    settings.frameBy =
        options.frames.size() > 1 ? float(std::abs(options.frames[1] - options.frames[0])) : 1;
    settings.skipExistingFrames = options.skipExisting;
    for (const std::string &each : options.settings)
        applySetting(each, settings);
    if (options.output.empty())
        return;

    const std::filesystem::path path = options.output;
    const std::string file = path.filename().string();
    const std::string extension = path.extension().string().substr(1);
    settings.imageFormat = extension == "exr" ? 1 : 0;
    if (extension != "exr" && extension != "png") {
        settings.useCustomExt = true;
        settings.customExt = extension.c_str();
    }
    const size_t hashes = file.find('#');
    const size_t behind = file.find_first_not_of('#', hashes);
    // What names of the schemes 1 to 3 look like: "name.####.ext", "name_####.ext", "name####.ext".
    const bool hasHashes = hashes != std::string::npos;
    const bool isPlain = hasHashes && "." + extension == file.substr(behind);
    const bool hasMark =
        hasHashes && hashes > 0 && (file[hashes - 1] == '.' || file[hashes - 1] == '_');
    const std::string name = file.substr(0, hasMark ? hashes - 1 : hashes);
    if (!hasHashes) {
        settings.namingScheme = 0;
        settings.name = path.stem().c_str();
    } else if (isPlain && !name.empty()) {
        settings.namingScheme = !hasMark ? 3 : file[hashes - 1] == '.' ? 1 : 2;
        settings.name = name.c_str();
        settings.framePadding = static_cast<unsigned>(behind - hashes);
    } else {
        settings.namingScheme = 5;
        settings.namePattern = file.c_str();
    }
}

RenderJob::RenderJob(const Options &options)
    : options_(options),
      progress_(progressStyle(options.progress, options.quiet || options.hasTests()),
                options.frames.size(), options.strict) {
    devhost::setNoticeListener([this](const devhost::Notice &notice) { progress_.notice(notice); });
}

RenderJob::~RenderJob() {
    devhost::closeHardwareDevice();
    // Scripts may still tell progress while the interpreter ends.
    script_.reset();
    devhost::renderSession().progress = nullptr;
    devhost::setNoticeListener(nullptr);
}

int RenderJob::run() {
    const int code = runAll();
    progress_.countNotices(devhost::noticesTold());
    return code;
}

int RenderJob::runAll() {
    auto &session = devhost::renderSession();
    session.isBatch = true;
    session.threads = options_.threads;
    session.useGl = !options_.noGl;
    session.region = options_.region;
    session.samples = options_.samples;
    session.exposure = options_.exposure;
    session.exrFloats = options_.exrFloats;
    devhost::chooseRenderer(options_.renderer);
    if (!devhost::setFramesPerSecond(options_.framesPerSecond))
        devhost::tell({"frame rate", "", "--fps", "ZTime has no unit for this frame rate",
                       "its frames are those of 24 a second"});
    devhost::setCurrentFrame(options_.frames.front());
    session.progress = [this](const std::string &message, int percent) {
        progress_.update(message, percent);
    };
    if (!options_.output.empty()) {
        const auto folder = std::filesystem::path(options_.output).parent_path();
        session.imagesFolder = folder.empty() ? "." : folder.string();
    }
    fillSettings(options_, session.settings);
    devhost::tellUnmetSettings(session.settings);
    loadScene();
    chooseCamera();
    chooseLayer();
    if (interrupted())
        return interruptCode();
    checkNotices();

    if (options_.hasScript()) {
        script_.emplace(options_);
        if (interrupted())
            return interruptCode();
        const ScriptEnd end = runScript();
        if (interrupted())
            return interruptCode();
        if (options_.hasTests())
            return end.exitCode;
        if (const auto code = codeAfter(end, "the script"))
            return *code;
        checkNotices();
    }
    if (const auto code = renderFrames())
        return *code;
    checkNotices();
    tellUncalledCallbacks();
    if (session.callbackErrors || (script_ && Script::reportedErrors()))
        return kCallbackError;
    return kOk;
}

void RenderJob::loadScene() {
    if (options_.scene.empty()) {
        devhost::newScene();
        return;
    }
    const ZStatus status = devhost::loadScene(options_.scene);
    if (status.error())
        throw Failure(kRenderError, withoutCode(status.errorString().asChar()));
    if (!options_.verbose)
        return;
    const auto &scene = devhost::scene();
    size_t triangles = 0;
    const auto meshes = scene.meshes();
    for (const auto id : meshes)
        triangles += scene.node(id)->mesh()->triangleCount();
    devhost::tell(options_.scene + ": meshes: " + std::to_string(meshes.size()) + ", triangles: " +
                  std::to_string(triangles) + ", lights: " + std::to_string(scene.lights().size()));
}

void RenderJob::chooseCamera() {
    const auto &scene = devhost::scene();
    const auto id = scene.findCamera(options_.camera);
    if (id == devhost::kNoNode && !options_.camera.empty()) {
        std::string known;
        for (const auto camera : scene.cameras())
            known += (known.empty() ? "" : ", ") + scene.node(camera)->name;
        throw Failure(kUsageError,
                      "there is no camera '" + options_.camera + "'; the scene has: " + known);
    }
    devhost::renderSession().camera = scene.object(id);
}

void RenderJob::chooseLayer() {
    if (options_.layer.empty())
        return;
    auto &scene = devhost::scene();
    std::string known;
    for (const auto layer : scene.layers()) {
        const std::string &name = scene.node(layer)->name;
        if (name == options_.layer) {
            scene.setCurrentLayer(layer);
            return;
        }
        known += (known.empty() ? "" : ", ") + name;
    }
    throw Failure(kUsageError,
                  "there is no layer '" + options_.layer + "'; the scene has: " + known);
}

ScriptEnd RenderJob::runScript() {
    const int first = options_.frames.front();
    firstOutput_ = outputFile(first);
    firstIsSkipped_ = isSkipped(firstOutput_);
    const OutputScope output(firstIsSkipped_ ? "" : firstOutput_);
    progress_.beginFrame(first);
    return script_->run();
}

std::optional<int> RenderJob::renderFrames() {
    byScript_ = script_ && script_->definesRender();
    if (!byScript_ && devhost::renderSession().picturesFinished) {
        takeScriptPicture();
        return std::nullopt;
    }
    if (!byScript_ && options_.output.empty())
        return std::nullopt;
    if (!byScript_)
        requireScene("nothing to write: the script rendered no picture");
    const devhost::RenderStateScope rendering(ZRenderUtil::kBatchRender);
    for (const int frame : options_.frames)
        if (const auto code = tryFrame(frame))
            return code;
    return failure_ != kOk ? std::optional(failure_) : std::nullopt;
}

void RenderJob::takeScriptPicture() {
    const int first = options_.frames.front();
    if (options_.output.empty())
        return;
    progress_.endFrame(firstOutput_, firstIsSkipped_ ? Progress::kSkipped : Progress::kRendered);
    if (options_.frames.size() > 1 && !options_.quiet)
        devhost::tell("the script rendered frame " + std::to_string(first) +
                      " only; for all frames it has to define render(frame)");
}

void RenderJob::requireScene(const std::string &what) const {
    if (options_.scene.empty() && devhost::scene().meshes().empty())
        throw Failure(kRenderError, what + " and there is no scene");
}

std::optional<int> RenderJob::tryFrame(int frame) try {
    const auto code = renderFrame(frame);
    if (!code || *code == kInterrupted || interrupted() || !options_.keepGoing)
        return code;
    devhost::tell("frame " + std::to_string(frame) + " failed");
    failure_ = failure_ == kOk ? *code : failure_;
    return std::nullopt;
} catch (const Failure &failure) {
    if (!options_.keepGoing)
        throw;
    progress_.clearBar();
    devhost::tell("frame " + std::to_string(frame) + ": " + failure.what());
    failure_ = failure_ == kOk ? failure.code() : failure_;
    return std::nullopt;
}

std::optional<int> RenderJob::renderFrame(int frame) {
    const auto start = std::chrono::steady_clock::now();
    devhost::setCurrentFrame(frame);
    checkNotices();
    progress_.beginFrame(frame);
    devhost::markOnTimeline("frame " + std::to_string(frame));
    // Once: the script may change the camera, whose name may be in the file's name.
    const std::string output = outputFile(frame);
    if (isSkipped(output)) {
        progress_.endFrame(output, Progress::kSkipped);
        return std::nullopt;
    }
    if (byScript_) {
        const ScriptEnd end = renderByScript(frame, output);
        if (interrupted())
            return interruptCode();
        if (const auto code = codeAfter(end, callOf(frame)))
            return code;
    } else {
        renderByHost(output);
    }
    if (interrupted())
        return interruptCode();
    progress_.endFrame(output);
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
    if (options_.verbose)
        std::fprintf(stderr, "quilhost: frame %d took %.2f s\n", frame, seconds.count());
    return std::nullopt;
}

ScriptEnd RenderJob::renderByScript(int frame, const std::string &outputFile) {
    auto &session = devhost::renderSession();
    const unsigned before = session.picturesFinished;
    ScriptEnd end;
    {
        const OutputScope output(outputFile);
        end = script_->render(frame);
    }
    const bool leftToHost = end.kind == ScriptEnd::kDone && !devhost::viewIsOpen() &&
                            session.picturesFinished == before && !interrupted();
    if (leftToHost && !options_.output.empty()) {
        requireScene(callOf(frame) + " finished no picture");
        renderByHost(outputFile);
    }
    return end;
}

void RenderJob::renderByHost(const std::string &outputFile) {
    const ZStatus status = renderInterruptibly(outputFile, script_.has_value());
    if (interrupted())
        return;
    if (status.error())
        throw Failure(kRenderError, withoutCode(status.errorString().asChar()));
}

std::optional<int> RenderJob::codeAfter(const ScriptEnd &end, const std::string &who) {
    if (const auto &error = devhost::renderSession().outputError; !error.empty())
        throw Failure(kRenderError, withoutCode(error));
    if (end.kind != ScriptEnd::kDone)
        return end.exitCode;
    if (devhost::viewIsOpen()) {
        devhost::abandonView();
        throw Failure(kRenderError, who + " left its picture in the render view open");
    }
    return std::nullopt;
}

void RenderJob::checkNotices() {
    const auto revision = devhost::scene().revision();
    if (revision != checkedRevision_)
        devhost::tellUnreadableTextures();
    checkedRevision_ = revision;
    const size_t count = devhost::noticesTold();
    if (options_.strict && count > 0)
        throw Failure(kRenderError,
                      "with --strict, " +
                          std::string(count == 1 ? "the notice is an error"
                                                 : std::to_string(count) + " notices are errors"));
}

std::string RenderJob::outputFile(int frame) const {
    if (options_.output.empty())
        return {};
    ZStatus status;
    const ZString name = devhost::renderSession().settings.getImageName(
        ZCommonRenderSettingsData::kFullPathImage, frame, ZString(), ZString(), ZString(),
        ZObject::kNullObj, false, &status);
    if (status.error())
        throw Failure(kRenderError, withoutCode(status.errorString().asChar()));
    return name.asChar();
}

bool RenderJob::isSkipped(const std::string &outputFile) const {
    return options_.skipExisting && !outputFile.empty() &&
           devhost::inspectPicture(outputFile).damage.empty();
}

void RenderJob::tellUncalledCallbacks() {
    if (options_.quiet || devhost::renderSession().framesWithCallbacks ||
        !devhost::hasRenderCallbacks())
        return;
    progress_.clearBar();
    devhost::tell(std::string("nothing calls the render callbacks: ") +
                  (options_.output.empty() ? "the host renders only with --output"
                   : devhost::renderSession().renderer != "software"
                       ? "that is for the software renderer"
                       : "the host rendered no frame itself"));
}

bool RenderJob::interrupted() const {
    return devhost::renderSession().cancelled || (script_ && Script::wasInterrupted());
}

} // namespace quilhost

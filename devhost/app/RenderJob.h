// SPDX-License-Identifier: MIT
#pragma once

// One run of the program: loads the scene, runs the script and renders the frames.

#include "devhost/app/CommandLine.h"
#include "devhost/app/Errors.h"
#include "devhost/app/Progress.h"
#include "devhost/app/Script.h"
#include "host/render/ZCommonRenderSettings.h"

#include <optional>

namespace quilhost {

/// Puts the command line's image name, frames and size into the settings that scripts read.
void fillSettings(const Options &options, ZCommonRenderSettingsData &settings);

class RenderJob {
  public:
    explicit RenderJob(const Options &options);
    ~RenderJob();
    RenderJob(const RenderJob &) = delete;
    RenderJob &operator=(const RenderJob &) = delete;

    /// Returns the exit code. Throws Failure.
    int run();
    /// Makes room for other lines on the terminal.
    void clearProgress() { progress_.clearBar(); }

  private:
    int runAll();
    void loadScene();
    void chooseCamera();
    void chooseLayer();
    ScriptEnd runScript();
    /// Renders all frames in the way that the script left open; empty to go on to the end.
    std::optional<int> renderFrames();
    /// With --keep-going, failures are told and remembered; empty then as after a success.
    std::optional<int> tryFrame(int frame);
    /// The exit code where the frame ends the program. Throws Failure.
    std::optional<int> renderFrame(int frame);
    ScriptEnd renderByScript(int frame, const std::string &outputFile);
    void renderByHost(const std::string &outputFile);
    /// Ends the first frame where the script's picture is it.
    void takeScriptPicture();
    /// Throws Failure where there is nothing that the host could render.
    void requireScene(const std::string &what) const;
    /// True where the picture is there already and whole, and is to be kept.
    bool isSkipped(const std::string &outputFile) const;
    void tellUncalledCallbacks();
    /// The exit code when script code did not end well. Throws when it left a picture open, or one
    /// could not be written.
    std::optional<int> codeAfter(const ScriptEnd &end, const std::string &who);
    /// Looks for what the scene's materials do not find, and throws where notices are errors.
    void checkNotices();
    std::string outputFile(int frame) const;
    bool interrupted() const;

    const Options &options_;
    Progress progress_;
    std::string firstOutput_;
    bool firstIsSkipped_ = false;
    std::optional<Script> script_;
    unsigned long checkedRevision_ = 0; // of the scene whose textures were looked for
    bool byScript_ = false;
    /// The exit code of the first frame that failed.
    int failure_ = kOk;
};

} // namespace quilhost

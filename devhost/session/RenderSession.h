// SPDX-License-Identifier: MIT
#pragma once

// What render code of the host shares about the render that is going on.
//
// One thread at a time drives renders: the one that runs the script, or quilhost's main thread. The
// session belongs to it, and needs no lock:
//
//   member                            written by              read by
//   cancelled                         any thread, signals     any thread
//   callbackErrors, onCallbackError,  the driving thread,     the driving thread, which alone
//   callbackGuard                     between renders         calls a render's callbacks
//   everything else                   the driving thread,     any thread while a render goes on
//                                     between renders
//
// Worker threads of a render (forBlocks) start after the last write before it and are joined before
// the next: starting and joining order the two. While a render with a script goes on, the driving
// thread has given the interpreter lock away; other Python threads then run, and may not start a
// render of their own or change settings. Registries of callbacks have their own mutexes, because
// scripts register from any Python thread.

#include "devhost/scene/SceneGraph.h"
#include "devhost/session/PixelRegion.h"
#include "host/base/HostApi.h"
#include "host/render/ZCommonRenderSettings.h"
#include "host/render/ZRenderUtil.h"

#include <atomic>
#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace devhost {

struct RenderSession {
    /// The render that goes on, but for hardware frames and pictures that a script has open in the
    /// render view.
    ZRenderUtil::QuilRenderState state = ZRenderUtil::kNotRendering;
    /// True in a program that renders frames, false where somebody works at a host.
    bool isBatch = false;
    ZRenderUtil::RenderPass pass = ZRenderUtil::kAll;
    bool generatingIprFile = false;
    /// The settings in force; scripts read a copy of them.
    ZCommonRenderSettingsData settings;
    /// Threads that render code may use; 0 means as many as the machine has.
    unsigned threads = 0;
    /// The part of the image to render; none for the whole image.
    std::optional<PixelRegion> region;
    /// What renders frames: isRendererName tells the names.
    std::string renderer = "software";
    /// The number of samples in each pixel.
    unsigned samples = 4;
    /// In stops: each one doubles all light.
    float exposure = 0;
    /// Whether the colours in EXR files are floats rather than halves.
    bool exrFloats = false;
    /// The camera to render from; a null handle means the scene's first.
    ZObject camera;
    /// Gets each progress message and its percentage, 0 to 100; may be empty.
    std::function<void(const std::string &message, int percent)> progress;

    /// False when OpenGL must not be used.
    bool useGl = true;
    /// The frame that is rendered, or was rendered last.
    double frame = 1;
    double framesPerSecond = 24;
    /// The folder that image names are relative to.
    std::string imagesFolder = ".";
    /// The file that a finished picture is written to; empty for none.
    std::string outputFile;
    /// Pictures finished, written or not.
    unsigned picturesFinished = 0;
    /// Why the last picture could not be written; empty when it could.
    std::string outputError;
    /// Runs `call`, which looks whether a registered callback is still there and calls it, while
    /// nothing else can delete it. May be empty.
    std::function<void(const std::function<void()> &call)> callbackGuard;
    /// Frames that render callbacks were called with.
    unsigned framesWithCallbacks = 0;
    /// Callbacks that ended with a native exception.
    unsigned callbackErrors = 0;
    /// Told of each of those; when empty, they are written to standard error.
    std::function<void(const char *callback, const char *what)> onCallbackError;
    /// Set from any thread or signal handler to make the software renderer stop.
    std::atomic<bool> cancelled = false;

    /// The time of the current frame; frame 0 is at 0.
    double seconds() const { return frame / framesPerSecond; }
};

/// The session of this process.
OPENQUIL_API RenderSession &renderSession();

/// A render of some kind goes on as long as it lives.
class RenderStateScope {
  public:
    explicit RenderStateScope(ZRenderUtil::QuilRenderState state)
        : earlier_(std::exchange(renderSession().state, state)) {}
    ~RenderStateScope() { renderSession().state = earlier_; }
    RenderStateScope(const RenderStateScope &) = delete;
    RenderStateScope &operator=(const RenderStateScope &) = delete;

  private:
    ZRenderUtil::QuilRenderState earlier_;
};

/// The part of the image to render; empty when the resolution is zero.
OPENQUIL_API PixelRegion renderRegion();

/// Goes to a frame, and brings the scene to its state then.
OPENQUIL_API void setCurrentFrame(double frame);

/// Sets how many frames a second has, for the scene and for ZTime's unit of the user interface.
/// False when ZTime has no such unit; its unit then stays.
OPENQUIL_API bool setFramesPerSecond(double rate);

/// The number of threads to render with, at least 1.
OPENQUIL_API unsigned renderThreads();

} // namespace devhost

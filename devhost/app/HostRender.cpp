// SPDX-License-Identifier: MIT
#include "devhost/app/HostRender.h"

#include "devhost/api/render/Picture.h"
#include "devhost/app/Interrupt.h"
#include "devhost/app/Script.h"
#include "devhost/raytrace/SoftwareRenderer.h"
#include "devhost/session/FrameRenderer.h"
#include "devhost/session/RenderSession.h"
#include "devhost/util/Statuses.h"
#include "devhost/util/Timeline.h"

#include <Python.h>

#include <atomic>
#include <optional>

namespace quilhost {
namespace {

std::atomic<int> renders = 0;

/// A render, from before it gives the interpreter lock away to before it asks for it again.
struct RunningRender {
    RunningRender() { ++renders; }
    ~RunningRender() {
        --renders;
        renders.notify_all();
    }
    RunningRender(const RunningRender &) = delete;
};

} // namespace

ZStatus renderInterruptibly(const std::string &file, bool hasInterpreterLock) {
    std::optional<InterruptScope> interrupts;
    std::optional<NativeSection> unlocked;
    if (hasInterpreterLock) {
        interrupts.emplace();
        if (PyErr_CheckSignals() < 0) { // of what came before
            devhost::renderSession().cancelled = true;
            return devhost::renderInterrupted();
        }
        unlocked.emplace();
    }
    const RunningRender running;
    devhost::Frame image;
    const devhost::Stage stage("render");
    const ZStatus status = devhost::renderSessionFrame(image, devhost::holdsDepth(file));
    if (status.error() || devhost::renderSession().cancelled || Script::wasInterrupted())
        return status;
    return devhost::writeFrame(image, file);
}

void endRenders() {
    for (int count = renders; count > 0; count = renders) {
        devhost::renderSession().cancelled = true;
        renders.wait(count);
    }
}

} // namespace quilhost

// SPDX-License-Identifier: MIT
#include "devhost/app/HostRender.h"

#include "devhost/api/render/Picture.h"
#include "devhost/app/Interrupt.h"
#include "devhost/app/Script.h"
#include "devhost/raytrace/SoftwareRenderer.h"
#include "devhost/session/FrameRenderer.h"
#include "devhost/session/RenderSession.h"
#include "devhost/util/Timeline.h"

#include <optional>

namespace quilhost {

ZStatus renderToFile(const std::string &file, bool hasInterpreterLock) {
    std::optional<NativeSection> unlocked;
    std::optional<InterruptScope> interrupts;
    if (hasInterpreterLock) {
        unlocked.emplace();
        interrupts.emplace();
    }
    devhost::Frame image;
    const devhost::Stage stage("render");
    const ZStatus status = devhost::renderSessionFrame(image, devhost::holdsDepth(file));
    if (status.error() || devhost::renderSession().cancelled || Script::wasInterrupted())
        return status;
    return devhost::writeFrame(image, file);
}

} // namespace quilhost

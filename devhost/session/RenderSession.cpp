// SPDX-License-Identifier: MIT
#include "devhost/session/RenderSession.h"

#include "host/core/ZStatus.h"
#include "host/core/ZTime.h"

#include <algorithm>
#include <thread>

namespace devhost {

RenderSession &renderSession() {
    // Never destroyed: callbacks may still be unregistered while the process exits.
    static auto *const session = new RenderSession;
    return *session;
}

PixelRegion renderRegion() {
    const RenderSession &session = renderSession();
    return session.region.value_or(
        PixelRegion::all(session.settings.width, session.settings.height));
}

void setCurrentFrame(double frame) {
    renderSession().frame = frame;
    scene().setTime(renderSession().seconds());
}

bool setFramesPerSecond(double rate) {
    renderSession().framesPerSecond = rate;
    for (int unit = ZTime::kGames; unit < ZTime::kLast; ++unit)
        if (ZTime(1, ZTime::kSeconds).as(ZTime::Unit(unit)) == rate)
            return !ZTime::setUIUnit(ZTime::Unit(unit)).error();
    return false;
}

unsigned renderThreads() {
    const unsigned wanted = renderSession().threads;
    return wanted ? wanted : std::max(1u, std::thread::hardware_concurrency());
}

} // namespace devhost

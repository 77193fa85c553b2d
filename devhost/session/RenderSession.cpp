#include "devhost/session/RenderSession.h"

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

unsigned renderThreads() {
    const unsigned wanted = renderSession().threads;
    return wanted ? wanted : std::max(1u, std::thread::hardware_concurrency());
}

} // namespace devhost

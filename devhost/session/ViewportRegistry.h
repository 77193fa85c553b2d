// SPDX-License-Identifier: MIT
#pragma once

// The registered viewport renderers.

#include <list>
#include <string>

class ZViewportRenderer;

namespace devhost {

struct RegisteredViewport {
    std::string name;
    ZViewportRenderer *renderer;
    bool initialized = false;
};

/// Entries stay where they are while others come and go.
std::list<RegisteredViewport> &registeredViewports();

} // namespace devhost

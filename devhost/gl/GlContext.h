#pragma once

// The host's OpenGL context: an off-screen compatibility context without a window system, and the
// function table that calls into it. It has no default framebuffer; draw into framebuffer objects.

#include "devhost/gl/GlFeatures.h"
#include "host/base/HostApi.h"

#include <string>

class ZGLFunctionTable;

namespace devhost {

/// The context of this process, made on first use and kept until the process ends.
class OPENQUIL_API GlContext {
  public:
    GlContext();
    GlContext(const GlContext &) = delete;

    /// False when there is no driver or OpenGL is switched off: then every call of the table fails.
    bool available = false;
    /// Why it is not available, as a sentence part: "switched off by --no-gl".
    std::string whyNot;
    /// What its driver offers; nothing when there is none.
    GlFeatures features;

    /// Makes the context current in the calling thread; false when that is not possible. A context
    /// is current in one thread at a time.
    bool makeCurrent();
    /// Releases it from the calling thread, so that another one can make it current.
    void release();

  private:
    void *display_ = nullptr;
    void *context_ = nullptr;
};

/// The context, made by the first call and current in the thread of that call.
OPENQUIL_API GlContext &glContext();

/// The table that scripts get; the context is made current in the calling thread. It is there even
/// when the context is not available.
OPENQUIL_API ZGLFunctionTable *glFunctionTable();

} // namespace devhost

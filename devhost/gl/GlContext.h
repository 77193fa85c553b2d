// SPDX-License-Identifier: MIT
#pragma once

// The host's OpenGL context: an off-screen compatibility context without a window system, and the
// function table that calls into it. It has no default framebuffer; draw into framebuffer objects.
//
// One thread has it at a time: the one that asks for it when it is free (a call of the table asks),
// until it gives it back or ends. What another thread asks of OpenGL meanwhile fails, and says why.
//
// Scripts leave state in it: pixel transfers, bound buffers, clip planes, and what later releases
// of OpenGL bring. The host's own work would be spoilt by it, and a list of what to put back would
// never be complete, so that the host works in a second context that shares textures and buffers
// with the first (GlPrivateScope).

#include "devhost/gl/GlFeatures.h"
#include "host/base/HostApi.h"
#include "host/core/ZStatus.h"

#include <atomic>
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
    /// What its driver offers; nothing when there is none.
    GlFeatures features;
    /// Called by release() while the thread still has the context. May be null.
    void (*beforeRelease)() = nullptr;

    /// Why the calling thread cannot have it, as a sentence part: "switched off by --no-gl".
    std::string whyNot() const;
    /// Gives it to the calling thread. Fails with kFailure, saying why.
    ZStatus acquire();
    /// The same without words, for calls that must not need memory.
    bool tryAcquire() noexcept;
    /// Gives it back; does nothing in a thread that does not have it.
    void release();

  private:
    friend class GlPrivateScope;
    std::string open();
    bool makeCurrent(void *context);

    std::string whyNot_;
    void *display_ = nullptr;
    void *context_ = nullptr;
    void *privateContext_ = nullptr;
    std::atomic<bool> isTaken_ = false;
};

/// The context, made by the first call.
OPENQUIL_API GlContext &glContext();

/// True when the calling thread has the context.
OPENQUIL_API bool hasGl();

/// The context for the calling thread as long as it lives; afterwards the thread has it only if it
/// had it before.
class OPENQUIL_API GlUse {
  public:
    GlUse() : hadIt_(hasGl()), status_(glContext().acquire()) {}
    ~GlUse() {
        if (!hadIt_)
            glContext().release();
    }
    GlUse(const GlUse &) = delete;
    const ZStatus &status() const { return status_; }

  private:
    bool hadIt_;
    ZStatus status_;
};

/// Within it, the calling thread, which must have the context, draws in the host's own.
class GlPrivateScope {
  public:
    GlPrivateScope();
    ~GlPrivateScope();
    GlPrivateScope(const GlPrivateScope &) = delete;

    /// Fails when OpenGL reported an error within the scope; scripts are not told of it.
    static ZStatus check();
};

/// The table that scripts get. It is there even when the context is not available.
OPENQUIL_API ZGLFunctionTable *glFunctionTable();

} // namespace devhost

// SPDX-License-Identifier: MIT
#include "devhost/gl/GlContext.h"

#include "devhost/gl/GlDriver.h"
#include "devhost/session/Parallel.h"
#include "devhost/session/RenderSession.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>

#include <algorithm>
#include <cstdlib>
#include <thread>

namespace devhost {

namespace {

/// The software driver waits for ever for threads that it could not start.
void limitDriverThreads() {
    const size_t cores = std::max(1u, std::thread::hardware_concurrency());
    if (startableThreads(cores) < cores)
        setenv("LP_NUM_THREADS", "0", false);
}

/// A display that needs no window system, else the default one; null for none.
EGLDisplay openDisplay() {
    EGLDisplay candidates[] = {
        eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr),
        eglGetDisplay(EGL_DEFAULT_DISPLAY)};
    for (EGLDisplay display : candidates)
        if (display != EGL_NO_DISPLAY && eglInitialize(display, nullptr, nullptr))
            return display;
    return EGL_NO_DISPLAY;
}

EGLContext createContext(EGLDisplay display, EGLContext shared) {
    const EGLint wanted[] = {EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT, EGL_SURFACE_TYPE, EGL_DONT_CARE,
                             EGL_NONE};
    EGLConfig config;
    EGLint count = 0;
    if (!eglChooseConfig(display, wanted, &config, 1, &count) || count == 0)
        return EGL_NO_CONTEXT;
    const EGLint profile[] = {EGL_CONTEXT_OPENGL_PROFILE_MASK,
                              EGL_CONTEXT_OPENGL_COMPATIBILITY_PROFILE_BIT, EGL_NONE};
    return eglCreateContext(display, config, shared, profile);
}

GlFeatures readFeatures() {
    constexpr ZGLenum kVersion = 0x1F02, kExtensions = 0x1F03;
    const auto glGetString =
        reinterpret_cast<const char *(*)(ZGLenum)>(findGlFunction("glGetString"));
    return GlFeatures(glGetString(kVersion), glGetString(kExtensions));
}

/// Asked by every call of the table, and therefore without a destructor.
constinit thread_local bool holdsContext = false;

/// Gives the context back when its thread ends.
struct AtThreadEnd {
    ~AtThreadEnd() { glContext().release(); }
};

} // namespace

GlContext::GlContext() {
    whyNot_ = open();
    available = whyNot_.empty();
    if (!available)
        return;
    features = readFeatures();
    glDriver.load(features);
    makeCurrent(EGL_NO_CONTEXT);
}

/// Makes both contexts, the scripts' one current, and says what is wrong where it cannot.
std::string GlContext::open() {
    if (!renderSession().useGl)
        return "switched off by --no-gl";
    limitDriverThreads();
    display_ = openDisplay();
    if (display_ == EGL_NO_DISPLAY || !eglBindAPI(EGL_OPENGL_API))
        return "no driver";
    context_ = createContext(display_, EGL_NO_CONTEXT);
    if (context_ != EGL_NO_CONTEXT)
        privateContext_ = createContext(display_, context_);
    if (privateContext_ == EGL_NO_CONTEXT || !makeCurrent(context_))
        return "the driver has no compatibility context";
    return {};
}

bool GlContext::makeCurrent(void *context) {
    // The interface that a context belongs to is a thread's own setting.
    return eglBindAPI(EGL_OPENGL_API) &&
           eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, context);
}

std::string GlContext::whyNot() const {
    return available ? "it is in use in another thread" : whyNot_;
}

ZStatus GlContext::acquire() {
    if (tryAcquire())
        return ZStatus();
    return ZStatus(ZStatus::kFailure, ("there is no OpenGL: " + whyNot()).c_str());
}

bool GlContext::tryAcquire() noexcept {
    if (holdsContext)
        return true;
    if (!available || isTaken_.exchange(true))
        return false;
    thread_local const AtThreadEnd atThreadEnd;
    holdsContext = makeCurrent(context_);
    isTaken_ = holdsContext;
    return holdsContext;
}

void GlContext::release() {
    if (!holdsContext)
        return;
    if (beforeRelease)
        beforeRelease();
    makeCurrent(EGL_NO_CONTEXT);
    holdsContext = false;
    isTaken_ = false;
}

GlContext &glContext() {
    // Never destroyed: scripts may still call through the table while the process exits.
    static auto *const context = new GlContext;
    return *context;
}

bool hasGl() {
    return holdsContext;
}

GlPrivateScope::GlPrivateScope() {
    glDriver.glFinish(); // what was drawn is there for the other context
    glContext().makeCurrent(glContext().privateContext_);
}

GlPrivateScope::~GlPrivateScope() {
    glDriver.glFinish();
    while (driverGlError())
        ; // none for the next scope
    glContext().makeCurrent(glContext().context_);
}

ZStatus GlPrivateScope::check() {
    constexpr ZGLenum kOutOfMemory = 0x0505;
    const ZGLenum error = driverGlError();
    if (error == kOutOfMemory)
        return {ZStatus::kInsufficientMemory, "OpenGL has not enough memory"};
    if (!error)
        return ZStatus();
    return ZStatus(ZStatus::kFailure,
                   ("OpenGL reports the error " + std::to_string(error)).c_str());
}

ZGLFunctionTable *glFunctionTable() {
    static ZGLFunctionTable table;
    glContext();
    return &table;
}

GlFunction findGlFunction(const char *name) {
    return eglGetProcAddress(name);
}

} // namespace devhost

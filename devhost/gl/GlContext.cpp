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

EGLContext createContext(EGLDisplay display) {
    const EGLint wanted[] = {EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT, EGL_SURFACE_TYPE, EGL_DONT_CARE,
                             EGL_NONE};
    EGLConfig config;
    EGLint count = 0;
    if (!eglBindAPI(EGL_OPENGL_API) || !eglChooseConfig(display, wanted, &config, 1, &count) ||
        count == 0)
        return EGL_NO_CONTEXT;
    const EGLint profile[] = {EGL_CONTEXT_OPENGL_PROFILE_MASK,
                              EGL_CONTEXT_OPENGL_COMPATIBILITY_PROFILE_BIT, EGL_NONE};
    return eglCreateContext(display, config, EGL_NO_CONTEXT, profile);
}

GlFeatures readFeatures() {
    constexpr ZGLenum kVersion = 0x1F02, kExtensions = 0x1F03;
    const auto glGetString =
        reinterpret_cast<const char *(*)(ZGLenum)>(findGlFunction("glGetString"));
    return GlFeatures(glGetString(kVersion), glGetString(kExtensions));
}

} // namespace

GlContext::GlContext() {
    if (!renderSession().useGl) {
        whyNot = "switched off by --no-gl";
        return;
    }
    limitDriverThreads();
    display_ = openDisplay();
    if (display_ == EGL_NO_DISPLAY) {
        whyNot = "no driver";
        return;
    }
    context_ = createContext(display_);
    available = context_ != EGL_NO_CONTEXT;
    if (!available || !makeCurrent()) {
        available = false;
        whyNot = "the driver has no compatibility context";
        return;
    }
    features = readFeatures();
    glDriver.load(features);
}

bool GlContext::makeCurrent() {
    if (!available)
        return false;
    // The interface that a context belongs to is a thread's own setting.
    return eglBindAPI(EGL_OPENGL_API) &&
           (eglGetCurrentContext() == context_ ||
            eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, context_));
}

void GlContext::release() {
    if (available && eglBindAPI(EGL_OPENGL_API) && eglGetCurrentContext() == context_)
        eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
}

GlContext &glContext() {
    // Never destroyed: scripts may still call through the table while the process exits.
    static auto *const context = new GlContext;
    return *context;
}

ZGLFunctionTable *glFunctionTable() {
    static ZGLFunctionTable table;
    glContext().makeCurrent();
    return &table;
}

GlFunction findGlFunction(const char *name) {
    return eglGetProcAddress(name);
}

} // namespace devhost

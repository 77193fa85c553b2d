#include "devhost/gl/GlDriver.h"

#include "devhost/gl/GlContext.h"

#include <atomic>
#include <cstdio>
#include <mutex>

namespace devhost {

namespace {

constexpr ZGLenum kNoError = 0, kInvalidOperation = 0x0502;

std::atomic<ZGLenum> recordedError = kNoError;

/// The driver's own glGetError; null without a driver.
ZGLenum (*driverError)() = nullptr;

void explainOnce() {
    static std::once_flag told;
    if (!glContext().available)
        std::call_once(told, [] {
            std::fprintf(stderr,
                         "quilhost: OpenGL is not available (%s): calls of ZGLFunctionTable have "
                         "no effect and record an error\n",
                         glContext().whyNot.c_str());
        });
}

/// Stands where the driver has no function.
template <class R, class... A>
R missing(A...) {
    explainOnce();
    recordGlError(kInvalidOperation);
    return R();
}

template <class R, class... A>
constexpr auto missingFor(R (*)(A...)) {
    return &missing<R, A...>;
}

} // namespace

ZGLenum takeGlError() {
    const ZGLenum recorded = recordedError.exchange(kNoError);
    return recorded || !driverError ? recorded : driverError();
}

namespace {

constexpr GlDriver noDriver() {
    GlDriver driver{};
#define GL(since, result, member, ...) driver.member = missingFor(driver.member);
#include "host/render/gl_functions.def"
    driver.glGetError = takeGlError;
    return driver;
}

template <class Function>
void find(Function &function, const char *name) {
    if (const GlFunction found = findGlFunction(name))
        function = reinterpret_cast<Function>(found);
}

} // namespace

constinit GlDriver glDriver = noDriver();

void GlDriver::load(const GlFeatures &features) {
    *this = noDriver();
#define GL(since, result, member, ...) GL_AS(member, since, result, member, )
#define GL_AS(entry, since, result, member, ...) \
    if (features.has(#since))                    \
        find(member, #entry);
#include "host/render/gl_functions.def"
    driverError = glGetError == takeGlError ? nullptr : glGetError;
    glGetError = takeGlError;
}

void recordGlError(ZGLenum error) {
    ZGLenum none = kNoError;
    recordedError.compare_exchange_strong(none, error);
}

} // namespace devhost

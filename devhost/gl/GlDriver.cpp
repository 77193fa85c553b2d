// SPDX-License-Identifier: MIT
#include "devhost/gl/GlDriver.h"

#include "devhost/gl/GlContext.h"
#include "devhost/util/Guarded.h"
#include "devhost/util/Terminal.h"

#include <mutex>
#include <utility>

namespace devhost {

namespace {

constexpr ZGLenum kNoError = 0, kInvalidOperation = 0x0502;

thread_local ZGLenum recordedError = kNoError;

/// The driver's own glGetError; null without a driver.
ZGLenum (*driverError)() = nullptr;

void explainOnce() {
    static std::once_flag told;
    if (glContext().tryAcquire())
        return;
    guarded([] { // memory may be short
        std::call_once(told, [] {
            tell("OpenGL is not available (" + glContext().whyNot() +
                 "): calls of ZGLFunctionTable have no effect and record an error");
        });
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
    const ZGLenum recorded = std::exchange(recordedError, kNoError);
    return recorded ? recorded : driverGlError();
}

ZGLenum driverGlError() {
    return driverError && hasGl() ? driverError() : kNoError;
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

const GlDriver &driverForThread() {
    static constinit GlDriver missing = noDriver();
    // Without a context all of the driver is missing anyway.
    if (hasGl() || !driverError || glContext().tryAcquire())
        return glDriver;
    return missing;
}

void recordGlError(ZGLenum error) {
    if (!recordedError)
        recordedError = error;
}

} // namespace devhost

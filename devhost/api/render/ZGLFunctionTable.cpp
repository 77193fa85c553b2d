// SPDX-License-Identifier: MIT
// The function table: hands every call on to the driver.

#include "host/render/ZGLFunctionTable.h"

#include "devhost/gl/GlContext.h"
#include "devhost/gl/GlDriver.h"

using devhost::driverForThread;

namespace {

enum : ZGLenum {
    kMaxTextureSize = 0x0D33,
    kMaxTextureUnits = 0x84E2,
    kMaxVertexAttributes = 0x8869,
    kMaxTextureCoords = 0x8871,
    kMaxTextureImageUnits = 0x8872
};

ZGLint capacity(ZGLenum name) {
    ZGLint value = 0;
    if (devhost::glContext().available)
        driverForThread().glGetIntegerv(name, &value);
    return value;
}

constexpr const char *kExtensionFeatures[] = {
#define GL_EXTENSION(name, brought_by) brought_by,
#include "host/render/gl_extensions.def"
};

} // namespace

ZGLint ZGLFunctionTable::numTexUnits() const {
    return capacity(kMaxTextureUnits);
}

ZGLint ZGLFunctionTable::numTexInterpolants() const {
    return capacity(kMaxTextureCoords);
}

ZGLint ZGLFunctionTable::numTexImageUnits() const {
    return capacity(kMaxTextureImageUnits);
}

ZGLint ZGLFunctionTable::maxTextureSize() const {
    return capacity(kMaxTextureSize);
}

ZGLint ZGLFunctionTable::maxVertexAttributes() const {
    return capacity(kMaxVertexAttributes);
}

bool ZGLFunctionTable::extensionExists(ZGLExtension extension) {
    return extension >= 0 && extension < kZGLext_NUMBER_OF_EXTENSIONS &&
           devhost::glContext().features.hasAny(kExtensionFeatures[extension]);
}

#define GL(since, result, member, ...)                             \
    result ZGLFunctionTable::member(ZGL_PARAMETERS(__VA_ARGS__)) { \
        return driverForThread().member(ZGL_NAMES(__VA_ARGS__));   \
    }
#define GL_WITH_OUTCOME(since, member, ...)                                         \
    bool ZGLFunctionTable::member(ZGL_PARAMETERS(__VA_ARGS__)) {                    \
        const devhost::GlDriver &driver = driverForThread();                        \
        return devhost::glSucceeds([&] { driver.member(ZGL_NAMES(__VA_ARGS__)); }); \
    }
#include "host/render/gl_functions.def"

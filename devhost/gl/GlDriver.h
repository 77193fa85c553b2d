// SPDX-License-Identifier: MIT
#pragma once

// The driver's entry points, one pointer each. Pointers that the driver has no function for lead
// to one that records an error.

#include "devhost/gl/GlFeatures.h"
#include "host/render/ZGLFunctionTable.h"

namespace devhost {

struct OPENQUIL_API GlDriver {
#define GL(since, result, member, ...) result (*member)(ZGL_TYPES(__VA_ARGS__));
#define GL_WITH_OUTCOME(since, member, ...) void (*member)(ZGL_TYPES(__VA_ARGS__));
#include "host/render/gl_functions.def"

    /// Takes the entry points that are there according to `features`.
    void load(const GlFeatures &features);
};

/// The driver. All entry points are missing until the context is made.
OPENQUIL_API extern GlDriver glDriver;

/// What the function table calls: the driver for the thread that has the context, which the calling
/// thread gets if it is free, else entry points that are all missing.
const GlDriver &driverForThread();

/// Finds a function of the driver by name. It must not be asked for one that the features lack.
using GlFunction = void (*)();
GlFunction findGlFunction(const char *name);

/// Records an error that the driver does not know of; glGetError reports it. Like OpenGL's own
/// record, each thread's keeps the first one until it is reported.
void recordGlError(ZGLenum error);

/// The first error since the last one was reported, which this reports; 0 for none.
ZGLenum takeGlError();

/// The same of the errors that the driver itself reports in the calling thread's context.
ZGLenum driverGlError();

/// Runs a call and tells whether it left an error, which stays recorded.
template <class Call>
bool glSucceeds(Call call) {
    const ZGLenum before = takeGlError();
    call();
    const ZGLenum error = takeGlError();
    recordGlError(before);
    recordGlError(error);
    return !error;
}

} // namespace devhost

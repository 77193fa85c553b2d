// SPDX-License-Identifier: MIT
#pragma once

// The function table: OpenGL as scripts and plug-ins call it, entry points up to OpenGL 2.0 and a
// fixed set of extensions.

#include "host/base/HostApi.h"
#include "host/render/gl_parameters.h"

#include <cstddef>

using ZGLenum = unsigned int;
using ZGLuint = unsigned int;
using ZGLbitfield = unsigned int;
using ZGLhandleARB = unsigned int;
using ZGLint = int;
using ZGLsizei = int;
using ZGLsizeiptrARB = std::ptrdiff_t;
using ZGLintptrARB = std::ptrdiff_t;
using ZGLfloat = float;
using ZGLclampf = float;
using ZGLdouble = double;
using ZGLclampd = double;
using ZGLshort = short;
using ZGLushort = unsigned short;
using ZGLbyte = signed char;
using ZGLubyte = unsigned char;
using ZGLboolean = unsigned char;
using ZGLcharARB = char;
using ZGLvoid = void;

/// Extensions of OpenGL, and features that came to it as one.
enum ZGLExtension : int {
#define GL_EXTENSION(name, brought_by) kZGLext_##name,
#include "host/render/gl_extensions.def"
    kZGLext_NUMBER_OF_EXTENSIONS ///< how many there are; none itself
};

/// Calls OpenGL. Every entry point is a method of its own name, with OpenGL's parameters; data
/// travel as typed pointer objects and are never copied. One thread has OpenGL at a time: the first
/// to call, or to make a context current, until ZHardwareRenderer::restoreCurrent or its end. Calls
/// of other threads, and of what the driver lacks, do nothing but record GL_INVALID_OPERATION for
/// glGetError.
class OPENQUIL_API ZGLFunctionTable {
  public:
    /// Releases of OpenGL.
    enum ZGLVersion : int {
        kZGL_Version11 = 0,
        kZGL_Version12 = 1,
        kZGL_Version121 = 2,
        kZGL_Version13 = 3,
        kZGL_Version14 = 4,
        kZGL_Version15 = 5,
        kZGL_Version20 = 6
    };

    /// The number of texture units of fixed-function rendering; 0 without a driver.
    ZGLint numTexUnits() const;
    /// The number of texture coordinate sets that are interpolated; 0 without a driver.
    ZGLint numTexInterpolants() const;
    /// The number of textures that a fragment program can read; 0 without a driver.
    ZGLint numTexImageUnits() const;
    /// The largest width and height of a texture, in pixels; 0 without a driver.
    ZGLint maxTextureSize() const;
    /// The number of generic vertex attributes; 0 without a driver.
    ZGLint maxVertexAttributes() const;
    /// True when the driver has the extension, or a release of OpenGL that includes it, and what
    /// this table has of its entry points. False for values that are no extension.
    bool extensionExists(ZGLExtension extension);

#define GL(since, result, member, ...) result member(ZGL_PARAMETERS(__VA_ARGS__));
#include "host/render/gl_functions.def"
};

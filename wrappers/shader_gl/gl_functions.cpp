// ZGLFunctionTable: a row for every line of its list, and what it tells about the driver.

#include "host/render/ZGLFunctionTable.h"
#include "wrappers/rows/wrapper_table.h"
#include "wrappers/shader_gl/gl_argument.h"

ROWS_BEGIN

using gl::ZGLvoid; // instead of the host's

METHOD(ZGLFunctionTable, numTexUnits, ZGLint() const)
METHOD(ZGLFunctionTable, numTexInterpolants, ZGLint() const)
METHOD(ZGLFunctionTable, numTexImageUnits, ZGLint() const)
METHOD(ZGLFunctionTable, maxTextureSize, ZGLint() const)
METHOD(ZGLFunctionTable, maxVertexAttributes, ZGLint() const)
METHOD(ZGLFunctionTable, extensionExists, bool(ZGLExtension))

#define GL(since, result, member, ...) \
    METHOD(ZGLFunctionTable, member, result(ZGL_TYPES(__VA_ARGS__)))
#include "host/render/gl_functions.def"

REGISTRATION(ZGLFunctionTable)

ROWS_END(gl_function_rows)

static constexpr Constant extensions[] = {
#define GL_EXTENSION(name, brought_by) {"kZGLext_" #name, kZGLext_##name},
#include "host/render/gl_extensions.def"
    {"kZGLext_NUMBER_OF_EXTENSIONS", kZGLext_NUMBER_OF_EXTENSIONS}};
PACK_CONSTANTS(gl_extension_constants, extensions)

CONSTANTS(gl_version_constants, ENUMERATOR(ZGLFunctionTable, kZGL_Version11),
          ENUMERATOR(ZGLFunctionTable, kZGL_Version12),
          ENUMERATOR(ZGLFunctionTable, kZGL_Version121),
          ENUMERATOR(ZGLFunctionTable, kZGL_Version13),
          ENUMERATOR(ZGLFunctionTable, kZGL_Version14),
          ENUMERATOR(ZGLFunctionTable, kZGL_Version15),
          ENUMERATOR(ZGLFunctionTable, kZGL_Version20))

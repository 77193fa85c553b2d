// SPDX-License-Identifier: MIT
// ZGLFunctionTable: a row for every line of its list, and what it tells about the driver.

#include "host/render/ZGLFunctionTable.h"
#include "wrappers/rows/constants.h"
#include "wrappers/shader_gl/gl_argument.h"

namespace {
using gl::ZGLvoid; // instead of the host's
} // namespace

#define ROW_LIST "wrappers/shader_gl/gl_function_table.def"
#define ROW_TABLE gl_function_rows
#include "wrappers/rows/make_rows.h"

static constexpr auto extensions = [] {
    return std::to_array<binding::Constant>({
#define GL_EXTENSION(name, brought_by) {"kZGLext_" #name, kZGLext_##name},
#include "host/render/gl_extensions.def"
        {"kZGLext_NUMBER_OF_EXTENSIONS", kZGLext_NUMBER_OF_EXTENSIONS}});
};
extern constinit const binding::Constants gl_extension_constants =
    binding::PackedConstants<extensions>::kPacked;

CONSTANTS(gl_version_constants, ENUMERATOR(ZGLFunctionTable, kZGL_Version11),
          ENUMERATOR(ZGLFunctionTable, kZGL_Version12),
          ENUMERATOR(ZGLFunctionTable, kZGL_Version121),
          ENUMERATOR(ZGLFunctionTable, kZGL_Version13),
          ENUMERATOR(ZGLFunctionTable, kZGL_Version14),
          ENUMERATOR(ZGLFunctionTable, kZGL_Version15),
          ENUMERATOR(ZGLFunctionTable, kZGL_Version20))

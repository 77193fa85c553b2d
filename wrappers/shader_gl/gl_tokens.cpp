// SPDX-License-Identifier: MIT
// The OpenGL tokens as constants of the module.

#include "wrappers/rows/constants.h"

static constexpr auto tokens = [] {
    return std::to_array<binding::Constant>({
#define TOKEN(name, value) {"ZGL_" #name, value},
#include "wrappers/shader_gl/gl_tokens.def"
    });
};
extern constinit const binding::Constants gl_token_constants =
    binding::PackedConstants<tokens>::kPacked;

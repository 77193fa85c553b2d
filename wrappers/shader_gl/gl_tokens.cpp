// The OpenGL tokens as constants of the module.

#include "wrappers/rows/constants.h"

static constexpr Constant tokens[] = {
#define TOKEN(name, value) {"ZGL_" #name, value},
#include "wrappers/shader_gl/gl_tokens.def"
};
PACK_CONSTANTS(gl_token_constants, tokens)

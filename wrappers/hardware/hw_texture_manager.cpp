// SPDX-License-Identifier: MIT
// Texture files and the binding of textures. The file name that textureFile gives is a parameter
// like any other text, so that scripts do not see it.

#include "host/render/ZHwTextureManager.h"
#include "wrappers/rows/call.h"

template <>
inline constexpr int binding::type_index<ZImageFileInfo::ZHwTextureType> =
    binding::k_p_ZImageFileInfo__ZHwTextureType;

#define ROW_LIST "wrappers/hardware/hw_texture_manager.def"
#define ROW_TABLE hw_texture_manager_rows
#include "wrappers/rows/make_rows.h"

// Texture files and the binding of textures. The file name that textureFile gives is a parameter
// like any other text, so that scripts do not see it.

#include "host/render/ZHwTextureManager.h"
#include "wrappers/rows/wrapper_table.h"

template <>
inline constexpr int type_index<ZImageFileInfo::ZHwTextureType> =
    k_p_ZImageFileInfo__ZHwTextureType;

ROWS_BEGIN

STATIC(ZHwTextureManager, className, char const *())
STATIC_CASE(ZHwTextureManager, glBind, 1,
            ZStatus(ZObject const &, ZImageFileInfo::ZHwTextureType &, ZImageFileInfo::ZImageType),
            0)
STATIC_CASE(ZHwTextureManager, glBind, 2,
            ZStatus(ZPlug const &, ZImageFileInfo::ZHwTextureType &, ZImageFileInfo::ZImageType), 0)
STATIC_CASE(ZHwTextureManager, glBind, 3,
            ZStatus(ZHwTextureFileHandle const &, ZImageFileInfo::ZHwTextureType &,
                    ZImageFileInfo::ZImageType),
            0)
OVERLOADS(ZHwTextureManager, glBind, &ZHwTextureManager_glBind_1, &ZHwTextureManager_glBind_2,
          &ZHwTextureManager_glBind_3)
STATIC(ZHwTextureManager, registerTextureFile, ZStatus(ZString const &, ZHwTextureFileHandle &))
STATIC(ZHwTextureManager, deregisterTextureFile, ZStatus(ZHwTextureFileHandle const &))
STATIC(ZHwTextureManager, textureFile, ZStatus(ZHwTextureFileHandle const &, ZString &))
CONSTRUCTOR(ZHwTextureManager, ZHwTextureManager())
PROXY(ZHwTextureManager)

ROWS_END(hw_texture_manager_rows)

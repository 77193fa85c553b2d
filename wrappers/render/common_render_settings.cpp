// The record of render settings that every renderer shares.

#include "host/core/ZObject.h"
#include "host/render/ZCommonRenderSettings.h"
#include "wrappers/rows/wrapper_table.h"

ROWS_BEGIN

MEMBER(ZCommonRenderSettingsData, name, ZString)
MEMBER(ZCommonRenderSettingsData, namingScheme, unsigned int)
MEMBER(ZCommonRenderSettingsData, framePadding, unsigned int)
MEMBER(ZCommonRenderSettingsData, namePattern, ZString)
MEMBER(ZCommonRenderSettingsData, imageFormat, unsigned int)
MEMBER(ZCommonRenderSettingsData, customImageFormat, ZString)
MEMBER(ZCommonRenderSettingsData, frameStart, ZTime)
MEMBER(ZCommonRenderSettingsData, frameEnd, ZTime)
MEMBER(ZCommonRenderSettingsData, frameBy, float)
MEMBER(ZCommonRenderSettingsData, skipExistingFrames, bool)
MEMBER(ZCommonRenderSettingsData, renderAll, bool)
MEMBER(ZCommonRenderSettingsData, useCustomExt, bool)
MEMBER(ZCommonRenderSettingsData, customExt, ZString)
MEMBER(ZCommonRenderSettingsData, renumberFrames, bool)
MEMBER(ZCommonRenderSettingsData, renumberStart, float)
MEMBER(ZCommonRenderSettingsData, renumberBy, float)
MEMBER(ZCommonRenderSettingsData, width, unsigned int)
MEMBER(ZCommonRenderSettingsData, height, unsigned int)
MEMBER(ZCommonRenderSettingsData, deviceAspectRatio, float)
MEMBER(ZCommonRenderSettingsData, pixelAspectRatio, float)
MEMBER(ZCommonRenderSettingsData, dotPerInch, float)
MEMBER(ZCommonRenderSettingsData, enableDefaultLight, bool)
MEMBER(ZCommonRenderSettingsData, preKos, ZString)
MEMBER(ZCommonRenderSettingsData, postKos, ZString)
MEMBER(ZCommonRenderSettingsData, preRenderLayerKos, ZString)
MEMBER(ZCommonRenderSettingsData, postRenderLayerKos, ZString)
MEMBER(ZCommonRenderSettingsData, preRenderKos, ZString)
MEMBER(ZCommonRenderSettingsData, postRenderKos, ZString)

CONSTRUCTOR(ZCommonRenderSettingsData, ZCommonRenderSettingsData())
DESTRUCTOR(ZCommonRenderSettingsData)
METHOD(ZCommonRenderSettingsData, isAnimated, bool() const)
METHOD(ZCommonRenderSettingsData, isMovieFormat, bool() const)
METHOD(ZCommonRenderSettingsData, setPassName, void(ZString const &))
METHOD(ZCommonRenderSettingsData, setFieldName, void(ZString const &))

METHOD_CASE(ZCommonRenderSettingsData, getImageName, 1,
            ZString(ZCommonRenderSettingsData::ZpathType, double, ZString const &, ZString const &,
                    ZString const &, ZObject const, bool const, ZStatus *) const,
            true)
METHOD_CASE(ZCommonRenderSettingsData, getImageName, 2,
            ZString(ZCommonRenderSettingsData::ZpathType, double, ZString const &, ZString const &,
                    ZString const &, ZObject const, ZString const &, bool const, ZStatus *) const,
            true)
OVERLOADS(ZCommonRenderSettingsData, getImageName, &ZCommonRenderSettingsData_getImageName_1,
          &ZCommonRenderSettingsData_getImageName_2)

METHOD(ZCommonRenderSettingsData, shouldRenderFrameAtTime,
       bool(ZCommonRenderSettingsData::ZpathType, double, ZString const &, ZString const &,
            ZString const &, ZObject const, ZString const &) const)
METHOD(ZCommonRenderSettingsData, getBufferName,
       ZString(ZObject const &, ZObject const &, ZString const &, ZString const &, bool, ZStatus *)
           const,
       0, false)
STATIC(ZCommonRenderSettingsData, getPreRenderFrameCmd, ZString())
STATIC(ZCommonRenderSettingsData, getPostRenderFrameCmd, ZString())
STATIC(ZCommonRenderSettingsData, className, char const *())
PROXY(ZCommonRenderSettingsData)

ROWS_END(common_render_settings_rows)

CONSTANTS(common_render_settings_constants, ENUMERATOR(ZCommonRenderSettingsData, kRelativePath),
          ENUMERATOR(ZCommonRenderSettingsData, kFullPathImage),
          ENUMERATOR(ZCommonRenderSettingsData, kFullPathTmp))

// The static helpers for software renderers and shading plug-ins.

#include "host/core/ZDagPath.h"
#include "host/core/ZDoubleArray.h"
#include "host/core/ZFloatArray.h"
#include "host/core/ZFloatMatrix.h"
#include "host/core/ZFloatPointArray.h"
#include "host/core/ZFloatVector.h"
#include "host/core/ZFloatVectorArray.h"
#include "host/core/ZIntArray.h"
#include "host/core/ZObject.h"
#include "host/core/ZSelectionList.h"
#include "host/core/ZVectorArray.h"
#include "host/render/ZCommonRenderSettings.h"
#include "host/render/ZRenderUtil.h"
#include "wrappers/rows/wrapper_table.h"

ROWS_BEGIN

STATIC(ZRenderUtil, quilRenderState, ZRenderUtil::QuilRenderState())

STATIC_CASE(ZRenderUtil, raytrace, 1,
            ZStatus(ZFloatVector const &, ZFloatVector const &, void const *, void const *,
                    short const, ZFloatVector &, ZFloatVector &, bool const),
            true)
STATIC_CASE(ZRenderUtil, raytrace, 2,
            ZStatus(ZFloatVectorArray const &, ZFloatVectorArray const &, void const *,
                    void const *, short const, ZFloatVectorArray &, ZFloatVectorArray &,
                    bool const),
            true)
OVERLOADS(ZRenderUtil, raytrace, &ZRenderUtil_raytrace_1, &ZRenderUtil_raytrace_2)

STATIC(ZRenderUtil, raytraceFirstGeometryIntersections,
       ZStatus(ZFloatVectorArray const &, ZFloatVectorArray const &, void const *, void const *,
               ZFloatVectorArray &, ZIntArray &))
STATIC(ZRenderUtil, sampleShadingNetwork,
       ZStatus(ZString, int, bool, bool, ZFloatMatrix &, ZFloatPointArray *, ZFloatArray *,
               ZFloatArray *, ZFloatVectorArray *, ZFloatPointArray *, ZFloatVectorArray *,
               ZFloatVectorArray *, ZFloatArray *, ZFloatVectorArray &, ZFloatVectorArray &))
STATIC(ZRenderUtil, generatingIprFile, bool())
STATIC(ZRenderUtil, relativeFileName, ZString(ZString const &, ZStatus *))

STATIC_CASE(ZRenderUtil, exactFileTextureName, 1, ZString(ZObject const &, ZStatus *))
STATIC_CASE(ZRenderUtil, exactFileTextureName, 2,
            ZString(ZString const &, bool, ZString const &, ZStatus *))
STATIC_CASE(ZRenderUtil, exactFileTextureName, 3,
            ZString(ZString const &, bool, ZString const &, ZString const &, ZStatus *))
OVERLOADS(ZRenderUtil, exactFileTextureName, &ZRenderUtil_exactFileTextureName_1,
          &ZRenderUtil_exactFileTextureName_2, &ZRenderUtil_exactFileTextureName_3)

STATIC(ZRenderUtil, convertPsdFile, ZString(ZObject const &, bool const &, ZStatus *), false)
STATIC(ZRenderUtil, exactImagePlaneFileName, ZString(ZObject const &, ZStatus *))
STATIC(ZRenderUtil, inCurrentRenderLayer, bool(ZDagPath const &, ZStatus *))
STATIC(ZRenderUtil, renderPass, ZRenderUtil::RenderPass())
STATIC(ZRenderUtil, mainBeautyPassCustomTokenString, ZString())
STATIC(ZRenderUtil, mainBeautyPassName, ZString())
STATIC(ZRenderUtil, diffuseReflectance,
       float(void const *, ZFloatVector const &, ZFloatVector const &, ZFloatVector const &, bool,
             ZStatus *))
STATIC(ZRenderUtil, maximumSpecularReflection,
       ZFloatVector(void const *, ZFloatVector const &, ZFloatVector const &, ZFloatVector const &,
                    ZFloatVector const &, ZStatus *))
STATIC(ZRenderUtil, lightAttenuation,
       float(void const *, ZFloatVector const &, ZFloatVector const &, bool, ZStatus *))
STATIC(ZRenderUtil, hemisphereCoverage,
       float(void const *, ZFloatVector const &, ZFloatVector const &, ZFloatVector const &, bool,
             ZStatus *))
STATIC(ZRenderUtil, sendRenderProgressInfo, void(ZString const &, int))
STATIC(ZRenderUtil, getCommonRenderSettings, void(ZCommonRenderSettingsData &))
STATIC(ZRenderUtil, renderObjectItem, ZStatus(void const *, ZSelectionList &))
STATIC(ZRenderUtil, className, char const *())
STATIC(ZRenderUtil, eval2dTexture,
       ZStatus(ZObject const &, ZDoubleArray &, ZDoubleArray &, ZVectorArray *, ZDoubleArray *))
STATIC(ZRenderUtil, noiseTableSize, unsigned int())
STATIC(ZRenderUtil, noiseTableCubeSide, unsigned int())
STATIC(ZRenderUtil, valueInNoiseTable, float(unsigned int))
STATIC(ZRenderUtil, noise1, float(float))
STATIC(ZRenderUtil, noise2, float(float, float))
STATIC(ZRenderUtil, noise3, float(float, float, float))
STATIC(ZRenderUtil, noise4, float(float, float, float, float, unsigned short))
CONSTRUCTOR(ZRenderUtil, ZRenderUtil())
PROXY(ZRenderUtil)

ROWS_END(render_util_rows)

CONSTANTS(render_util_constants, ENUMERATOR(ZRenderUtil, kNotRendering),
          ENUMERATOR(ZRenderUtil, kBatchRender), ENUMERATOR(ZRenderUtil, kInteractiveRender),
          ENUMERATOR(ZRenderUtil, kIprRender), ENUMERATOR(ZRenderUtil, kHardwareRender),
          ENUMERATOR(ZRenderUtil, kAll), ENUMERATOR(ZRenderUtil, kColorOnly),
          ENUMERATOR(ZRenderUtil, kShadowOnly), ENUMERATOR(ZRenderUtil, kAmbientOnly),
          ENUMERATOR(ZRenderUtil, kDiffuseOnly), ENUMERATOR(ZRenderUtil, kSpecularOnly))

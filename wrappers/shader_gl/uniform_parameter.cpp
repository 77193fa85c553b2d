// SPDX-License-Identifier: MIT
// The inputs of hardware shaders that have one value for each draw, and their list.

#include "host/core/ZPlug.h"
#include "host/render/ZUniformParameter.h"
#include "host/render/ZUniformParameterList.h"
#include "wrappers/rows/constants.h"

#define ROW_LIST "wrappers/shader_gl/uniform_parameter.def"
#define ROW_TABLE uniform_parameter_rows
#include "wrappers/rows/make_rows.h"

CONSTANTS(uniform_parameter_constants, ENUMERATOR(ZUniformParameter, kTypeUnknown),
          ENUMERATOR(ZUniformParameter, kTypeBool), ENUMERATOR(ZUniformParameter, kTypeInt),
          ENUMERATOR(ZUniformParameter, kTypeFloat), ENUMERATOR(ZUniformParameter, kType1DTexture),
          ENUMERATOR(ZUniformParameter, kType2DTexture),
          ENUMERATOR(ZUniformParameter, kType3DTexture),
          ENUMERATOR(ZUniformParameter, kTypeCubeTexture),
          ENUMERATOR(ZUniformParameter, kTypeEnvTexture),
          ENUMERATOR(ZUniformParameter, kTypeString), ENUMERATOR(ZUniformParameter, kTypeEnum),
          ENUMERATOR(ZUniformParameter, kSemanticUnknown),
          ENUMERATOR(ZUniformParameter, kSemanticObjectDir),
          ENUMERATOR(ZUniformParameter, kSemanticWorldDir),
          ENUMERATOR(ZUniformParameter, kSemanticViewDir),
          ENUMERATOR(ZUniformParameter, kSemanticProjectionDir),
          ENUMERATOR(ZUniformParameter, kSemanticObjectPos),
          ENUMERATOR(ZUniformParameter, kSemanticWorldPos),
          ENUMERATOR(ZUniformParameter, kSemanticViewPos),
          ENUMERATOR(ZUniformParameter, kSemanticProjectionPos),
          ENUMERATOR(ZUniformParameter, kSemanticColor),
          ENUMERATOR(ZUniformParameter, kSemanticNormal),
          ENUMERATOR(ZUniformParameter, kSemanticBump),
          ENUMERATOR(ZUniformParameter, kSemanticEnvironment),
          ENUMERATOR(ZUniformParameter, kSemanticWorldMatrix),
          ENUMERATOR(ZUniformParameter, kSemanticWorldInverseMatrix),
          ENUMERATOR(ZUniformParameter, kSemanticWorldInverseTransposeMatrix),
          ENUMERATOR(ZUniformParameter, kSemanticViewMatrix),
          ENUMERATOR(ZUniformParameter, kSemanticViewInverseMatrix),
          ENUMERATOR(ZUniformParameter, kSemanticViewInverseTransposeMatrix),
          ENUMERATOR(ZUniformParameter, kSemanticProjectionMatrix),
          ENUMERATOR(ZUniformParameter, kSemanticProjectionInverseMatrix),
          ENUMERATOR(ZUniformParameter, kSemanticProjectionInverseTransposeMatrix),
          ENUMERATOR(ZUniformParameter, kSemanticWorldViewMatrix),
          ENUMERATOR(ZUniformParameter, kSemanticWorldViewInverseMatrix),
          ENUMERATOR(ZUniformParameter, kSemanticWorldViewInverseTransposeMatrix),
          ENUMERATOR(ZUniformParameter, kSemanticWorldViewProjectionMatrix),
          ENUMERATOR(ZUniformParameter, kSemanticWorldViewProjectionInverseMatrix),
          ENUMERATOR(ZUniformParameter, kSemanticWorldViewProjectionInverseTransposeMatrix),
          ENUMERATOR(ZUniformParameter, kSemanticColorTexture),
          ENUMERATOR(ZUniformParameter, kSemanticNormalTexture),
          ENUMERATOR(ZUniformParameter, kSemanticBumpTexture),
          ENUMERATOR(ZUniformParameter, kSemanticNormalizationTexture),
          ENUMERATOR(ZUniformParameter, kSemanticTranspDepthTexture),
          ENUMERATOR(ZUniformParameter, kSemanticOpaqueDepthTexture),
          ENUMERATOR(ZUniformParameter, kSemanticTime),
          ENUMERATOR(ZUniformParameter, kSemanticWorldTransposeMatrix),
          ENUMERATOR(ZUniformParameter, kSemanticViewTransposeMatrix),
          ENUMERATOR(ZUniformParameter, kSemanticProjectionTransposeMatrix),
          ENUMERATOR(ZUniformParameter, kSemanticWorldViewTransposeMatrix),
          ENUMERATOR(ZUniformParameter, kSemanticWorldViewProjectionTransposeMatrix),
          ENUMERATOR(ZUniformParameter, kSemanticViewProjectionMatrix),
          ENUMERATOR(ZUniformParameter, kSemanticViewProjectionInverseMatrix),
          ENUMERATOR(ZUniformParameter, kSemanticViewProjectionTransposeMatrix),
          ENUMERATOR(ZUniformParameter, kSemanticViewProjectionInverseTransposeMatrix),
          ENUMERATOR(ZUniformParameter, kSemanticLocalViewer),
          ENUMERATOR(ZUniformParameter, kSemanticViewportPixelSize),
          ENUMERATOR(ZUniformParameter, kSemanticBackgroundColor),
          ENUMERATOR(ZUniformParameter, kSemanticFrameNumber))

// SPDX-License-Identifier: MIT
// The inputs of hardware shaders that have a value for each vertex, and their list.

#include "host/render/ZVaryingParameter.h"
#include "host/render/ZVaryingParameterList.h"
#include "wrappers/rows/constants.h"

#define ROW_LIST "wrappers/shader_gl/varying_parameter.def"
#define ROW_TABLE varying_parameter_rows
#include "wrappers/rows/make_rows.h"

CONSTANTS(varying_parameter_constants, ENUMERATOR(ZVaryingParameter, kInvalidParameter),
          ENUMERATOR(ZVaryingParameter, kStructure), ENUMERATOR(ZVaryingParameter, kFloat),
          ENUMERATOR(ZVaryingParameter, kDouble), ENUMERATOR(ZVaryingParameter, kChar),
          ENUMERATOR(ZVaryingParameter, kUnsignedChar), ENUMERATOR(ZVaryingParameter, kInt16),
          ENUMERATOR(ZVaryingParameter, kUnsignedInt16), ENUMERATOR(ZVaryingParameter, kInt32),
          ENUMERATOR(ZVaryingParameter, kUnsignedInt32), ENUMERATOR(ZVaryingParameter, kNoSemantic),
          ENUMERATOR(ZVaryingParameter, kPosition), ENUMERATOR(ZVaryingParameter, kNormal),
          ENUMERATOR(ZVaryingParameter, kTexCoord), ENUMERATOR(ZVaryingParameter, kColor),
          ENUMERATOR(ZVaryingParameter, kWeight), ENUMERATOR(ZVaryingParameter, kTangent),
          ENUMERATOR(ZVaryingParameter, kBinormal))

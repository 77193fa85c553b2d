// SPDX-License-Identifier: MIT
// The geometry of scene objects: streams, index arrays, lists of objects, and where they come from.

#include "host/core/ZDagPath.h"
#include "host/core/ZObject.h"
#include "host/render/ZGeometry.h"
#include "host/render/ZGeometryData.h"
#include "host/render/ZGeometryList.h"
#include "host/render/ZGeometryManager.h"
#include "host/render/ZGeometryPrimitive.h"
#include "host/render/ZGeometryRequirements.h"
#include "wrappers/rows/constants.h"

#define ROW_LIST "wrappers/hardware/geometry.def"
#define ROW_TABLE geometry_rows
#include "wrappers/rows/make_rows.h"

namespace {

PyObject *_wrap_ZGeometryList_addLast(PyObject *self, PyObject *arguments) {
    constexpr auto at = at_ZGeometryList_addLast;
    const Function &overloaded = row_table[at];
    // A single path has no rival of its length, and is still probed: what is none fits no overload.
    if (arguments && PyTuple_Check(arguments) && PyTuple_GET_SIZE(arguments) == 2 &&
        !Argument<ZDagPath const &>::probe(PyTuple_GET_ITEM(arguments, 1)))
        return raise_no_overload(overloaded);
    return dispatch(overloaded, probes_of_cases<row_descriptions, at>.data(), self, arguments);
}

} // namespace

CONSTANTS(geometry_constants, ENUMERATOR(ZGeometryData, kInvalidElementSize),
          ENUMERATOR(ZGeometryData, kOne), ENUMERATOR(ZGeometryData, kTwo),
          ENUMERATOR(ZGeometryData, kThree), ENUMERATOR(ZGeometryData, kFour),
          ENUMERATOR(ZGeometryData, kInvalidElementType), ENUMERATOR(ZGeometryData, kFloat),
          ENUMERATOR(ZGeometryData, kDouble), ENUMERATOR(ZGeometryData, kChar),
          ENUMERATOR(ZGeometryData, kUnsignedChar), ENUMERATOR(ZGeometryData, kInt16),
          ENUMERATOR(ZGeometryData, kUnsignedInt16), ENUMERATOR(ZGeometryData, kInt32),
          ENUMERATOR(ZGeometryData, kUnsignedInt32), ENUMERATOR(ZGeometryData, kInvalidDataType),
          ENUMERATOR(ZGeometryData, kPosition), ENUMERATOR(ZGeometryData, kNormal),
          ENUMERATOR(ZGeometryData, kTexCoord), ENUMERATOR(ZGeometryData, kColor),
          ENUMERATOR(ZGeometryData, kWeight), ENUMERATOR(ZGeometryData, kAPISupported),
          ENUMERATOR(ZGeometryData, kTangent), ENUMERATOR(ZGeometryData, kBiNormal),
          ENUMERATOR(ZGeometryData, kVelocity), ENUMERATOR(ZGeometryData, kPrimitiveCenter),
          ENUMERATOR(ZGeometryData, kColorMask), ENUMERATOR(ZGeometryData, kUserData),
          ENUMERATOR(ZGeometryData, kMaxDataTypeIndex), ENUMERATOR(ZGeometryList, kNone),
          ENUMERATOR(ZGeometryList, kMatrices), ENUMERATOR(ZGeometryList, kFixedFunctionLighting),
          ENUMERATOR(ZGeometryList, kCulling), ENUMERATOR(ZGeometryList, kAll),
          ENUMERATOR(ZGeometryList, kCullNone), ENUMERATOR(ZGeometryList, kCullCW),
          ENUMERATOR(ZGeometryList, kCullCCW), ENUMERATOR(ZGeometryManager, kDefaultSphere),
          ENUMERATOR(ZGeometryManager, kDefaultPlane), ENUMERATOR(ZGeometryManager, kDefaultCube),
          ENUMERATOR(ZGeometryPrimitive, kInvalidIndexType),
          ENUMERATOR(ZGeometryPrimitive, kPoints), ENUMERATOR(ZGeometryPrimitive, kLines),
          ENUMERATOR(ZGeometryPrimitive, kLineStrip), ENUMERATOR(ZGeometryPrimitive, kLineLoop),
          ENUMERATOR(ZGeometryPrimitive, kTriangles),
          ENUMERATOR(ZGeometryPrimitive, kTriangleStrip),
          ENUMERATOR(ZGeometryPrimitive, kTriangleFan), ENUMERATOR(ZGeometryPrimitive, kQuads),
          ENUMERATOR(ZGeometryPrimitive, kQuadStrip), ENUMERATOR(ZGeometryPrimitive, kPolygon),
          ENUMERATOR(ZGeometryPrimitive, kMaxDrawPrimitiveTypeIndex))

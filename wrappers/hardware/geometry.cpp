// The geometry of scene objects: streams, index arrays, lists of objects, and where they come from.

#include "host/core/ZDagPath.h"
#include "host/core/ZObject.h"
#include "host/render/ZGeometry.h"
#include "host/render/ZGeometryData.h"
#include "host/render/ZGeometryList.h"
#include "host/render/ZGeometryManager.h"
#include "host/render/ZGeometryPrimitive.h"
#include "host/render/ZGeometryRequirements.h"
#include "wrappers/rows/wrapper_table.h"

ROWS_BEGIN

CONSTRUCTOR_CASE(ZGeometryData, 1,
                 ZGeometryData(char const *, ZGeometryData::DataType, ZGeometryData::ElementType,
                               ZGeometryData::ElementSize, unsigned int, void *, bool),
                 0, true)
CONSTRUCTOR_CASE(ZGeometryData, 2, ZGeometryData(ZGeometryData const &))
CONSTRUCTOR_OVERLOADS(ZGeometryData, &new_ZGeometryData_1, &new_ZGeometryData_2)
DESTRUCTOR(ZGeometryData)
METHOD(ZGeometryData, objectName, char const *() const)
METHOD(ZGeometryData, uniqueID, int() const)
METHOD(ZGeometryData, dataType, ZGeometryData::DataType() const)
METHOD(ZGeometryData, elementType, ZGeometryData::ElementType() const)
METHOD(ZGeometryData, elementTypeSize, int() const)
METHOD(ZGeometryData, elementSize, ZGeometryData::ElementSize() const)
METHOD(ZGeometryData, elementCount, unsigned int() const)
METHOD(ZGeometryData, data, void *() const)
METHOD(ZGeometryData, collectionNumber, int() const)
METHOD(ZGeometryData, setCollectionNumber, void(int))
METHOD(ZGeometryData, setObjectOwnsData, void(bool))
METHOD(ZGeometryData, objectOwnsData, bool() const)
PROXY(ZGeometryData)

CONSTRUCTOR(ZGeometry, ZGeometry(ZGeometry const &))
DESTRUCTOR(ZGeometry)
ASSIGNMENT(ZGeometry)
METHOD(ZGeometry, position, ZGeometryData())
METHOD(ZGeometry, normal, ZGeometryData())
METHOD(ZGeometry, componentId, ZGeometryData())
METHOD(ZGeometry, texCoord, ZGeometryData(ZString const &))
METHOD(ZGeometry, color, ZGeometryData(ZString const &))
METHOD(ZGeometry, tangent, ZGeometryData(ZString const &))
METHOD(ZGeometry, binormal, ZGeometryData(ZString const &))
METHOD(ZGeometry, data, ZGeometryData(ZGeometryData::DataType, ZString const &))
METHOD(ZGeometry, primitiveArrayCount, unsigned int() const)
METHOD(ZGeometry, primitiveArray, ZGeometryPrimitive(unsigned int) const)
PROXY(ZGeometry)

CONSTRUCTOR(ZGeometryList, ZGeometryList(ZRenderingInfo const &, int), ZGeometryList::kMatrices)
DESTRUCTOR(ZGeometryList)
METHOD(ZGeometryList, isDone, bool() const)
METHOD(ZGeometryList, next, void())
METHOD(ZGeometryList, reset, void())
METHOD(ZGeometryList, length, int() const)
METHOD(ZGeometryList, setCurrentElement, void(int))
MEMBER(ZGeometryList, ZSetupFlags, int)
METHOD(ZGeometryList, geometry, ZGeometry &(int), ZGeometryList::kAll)
METHOD(ZGeometryList, objectToWorldMatrix, ZMatrix const &() const)
METHOD(ZGeometryList, projectionMatrix, ZMatrix const &() const)
METHOD(ZGeometryList, viewMatrix, ZMatrix const &() const)
METHOD(ZGeometryList, path, ZDagPath() const)
METHOD(ZGeometryList, cullMode, ZGeometryList::CullMode() const)

METHOD_CASE(ZGeometryList, addLast, 1, bool(ZDagPath const &, ZObject const *), 0)
METHOD_CASE(ZGeometryList, addLast, 2, bool(ZGeometry const &, ZMatrix const &))
constexpr const Function *const ZGeometryList_addLast_overloads[] = {&ZGeometryList_addLast_1,
                                                                     &ZGeometryList_addLast_2};
PyObject *_wrap_ZGeometryList_addLast(PyObject *self, PyObject *arguments) {
    // A single path has no rival of its length, and is still probed: what is none fits no overload.
    if (arguments && PyTuple_Check(arguments) && PyTuple_GET_SIZE(arguments) == 2 &&
        !Argument<ZDagPath const &>::probe(PyTuple_GET_ITEM(arguments, 1)))
        return raise_no_overload(ZGeometryList_addLast_overloads);
    return dispatch(ZGeometryList_addLast_overloads, self, arguments);
}
constexpr Dispatcher ZGeometryList_addLast = describe_dispatcher(
    "ZGeometryList_addLast", _wrap_ZGeometryList_addLast, ZGeometryList_addLast_overloads);
ROW(ZGeometryList_addLast)
PROXY(ZGeometryList)

STATIC(ZGeometryManager, getGeometry,
       ZGeometry(ZDagPath const &, ZGeometryRequirements const &, ZObject *), 0)
STATIC(ZGeometryManager, referenceDefaultGeometry,
       ZGeometryList *(ZGeometryManager::GeometricShape, ZGeometryRequirements const &))
STATIC(ZGeometryManager, dereferenceDefaultGeometry, ZStatus(ZGeometryList *))
STATIC(ZGeometryManager, className, char const *())
CONSTRUCTOR(ZGeometryManager, ZGeometryManager())
PROXY(ZGeometryManager)

CONSTRUCTOR(ZGeometryPrimitive, ZGeometryPrimitive(ZGeometryPrimitive const &))
DESTRUCTOR(ZGeometryPrimitive)
METHOD(ZGeometryPrimitive, uniqueID, int() const)
METHOD(ZGeometryPrimitive, drawPrimitiveType, ZGeometryPrimitive::DrawPrimitiveType() const)
METHOD(ZGeometryPrimitive, elementCount, unsigned int() const)
METHOD(ZGeometryPrimitive, dataType, ZGeometryData::ElementType() const)
METHOD(ZGeometryPrimitive, data, void *() const)
PROXY(ZGeometryPrimitive)

CONSTRUCTOR(ZGeometryRequirements, ZGeometryRequirements())
DESTRUCTOR(ZGeometryRequirements)
METHOD(ZGeometryRequirements, addPosition, void(int), 3)
METHOD(ZGeometryRequirements, addNormal, void(int), 3)
METHOD(ZGeometryRequirements, addTexCoord, void(ZString const &))
METHOD(ZGeometryRequirements, addColor, void(ZString const &))
METHOD(ZGeometryRequirements, addTangent, void(ZString const &, int), 3)
METHOD(ZGeometryRequirements, addBinormal, void(ZString const &, int), 3)
METHOD(ZGeometryRequirements, addComponentId, void())
METHOD(ZGeometryRequirements, addFaceOffsets, void())
PROXY(ZGeometryRequirements)

ROWS_END(geometry_rows)

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

// The inputs of hardware shaders that have a value for each vertex, and their list.

#include "host/render/ZVaryingParameter.h"
#include "host/render/ZVaryingParameterList.h"
#include "wrappers/rows/wrapper_table.h"

ROWS_BEGIN

CONSTRUCTOR_CASE(ZVaryingParameter, 1, ZVaryingParameter())
CONSTRUCTOR_CASE(ZVaryingParameter, 2,
                 ZVaryingParameter(ZString const &, ZVaryingParameter::ZVaryingParameterType, int,
                                   int, ZVaryingParameter::ZVaryingParameterSemantic, bool,
                                   ZString const &),
                 1, 1, 0, false, 0)
CONSTRUCTOR_CASE(ZVaryingParameter, 3,
                 ZVaryingParameter(ZString const &, ZVaryingParameter::ZVaryingParameterType, int,
                                   int, int, ZVaryingParameter::ZVaryingParameterSemantic,
                                   ZString const &, bool, ZString const &),
                 0, 0, false, 0)
CONSTRUCTOR_OVERLOADS(ZVaryingParameter, &new_ZVaryingParameter_1, &new_ZVaryingParameter_2,
                      &new_ZVaryingParameter_3)
DESTRUCTOR(ZVaryingParameter)
ASSIGNMENT(ZVaryingParameter)
METHOD(ZVaryingParameter, name, ZString() const)
METHOD(ZVaryingParameter, type, ZVaryingParameter::ZVaryingParameterType() const)
METHOD(ZVaryingParameter, semantic, ZVaryingParameter::ZVaryingParameterSemantic() const)
METHOD(ZVaryingParameter, semanticName, ZString() const)
METHOD(ZVaryingParameter, destinationSet, ZString() const)
METHOD(ZVaryingParameter, dimension, unsigned int() const)
METHOD(ZVaryingParameter, getElementSize, unsigned int() const)
METHOD(ZVaryingParameter, getMaximumStride, unsigned int() const)
METHOD(ZVaryingParameter, getBuffer,
       ZStatus(ZGeometry &, void const *&, unsigned int &, unsigned int &) const)
METHOD(ZVaryingParameter, setSource,
       ZStatus(ZVaryingParameter::ZVaryingParameterSemantic, ZString const &))
METHOD(ZVaryingParameter, getSourceType, ZVaryingParameter::ZVaryingParameterSemantic() const)
METHOD(ZVaryingParameter, getSourceSetName, ZString() const)
METHOD(ZVaryingParameter, addElement, ZStatus(ZVaryingParameter const &))
METHOD(ZVaryingParameter, numElements, unsigned int() const)
METHOD(ZVaryingParameter, getElement, ZVaryingParameter(unsigned int) const)
METHOD(ZVaryingParameter, removeElements, ZStatus())
METHOD(ZVaryingParameter, getUpdateId, unsigned int() const)
PROXY(ZVaryingParameter)

CONSTRUCTOR(ZVaryingParameterList, ZVaryingParameterList())
DESTRUCTOR(ZVaryingParameterList)
METHOD(ZVaryingParameterList, append, void(ZVaryingParameter const &))
METHOD(ZVaryingParameterList, length, int() const)
METHOD(ZVaryingParameterList, setLength, void(int))
METHOD(ZVaryingParameterList, getElement, ZVaryingParameter(int) const)
METHOD(ZVaryingParameterList, setElement, void(int, ZVaryingParameter const &))
ASSIGNMENT(ZVaryingParameterList)
PROXY(ZVaryingParameterList)

ROWS_END(varying_parameter_rows)

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

// The inputs of hardware shaders that have one value for each draw, and their list.

#include "host/core/ZPlug.h"
#include "host/render/ZUniformParameter.h"
#include "host/render/ZUniformParameterList.h"
#include "wrappers/rows/wrapper_table.h"

ROWS_BEGIN

CONSTRUCTOR_CASE(ZUniformParameter, 1, ZUniformParameter())
CONSTRUCTOR_CASE(ZUniformParameter, 2,
                 ZUniformParameter(ZString const &, ZUniformParameter::DataType,
                                   ZUniformParameter::DataSemantic, unsigned int, unsigned int,
                                   void *),
                 1, 1, 0)
CONSTRUCTOR_OVERLOADS(ZUniformParameter, &new_ZUniformParameter_1, &new_ZUniformParameter_2)
DESTRUCTOR(ZUniformParameter)
ASSIGNMENT(ZUniformParameter)
METHOD(ZUniformParameter, name, ZString() const)
METHOD(ZUniformParameter, type, ZUniformParameter::DataType() const)
METHOD(ZUniformParameter, semantic, ZUniformParameter::DataSemantic() const)
METHOD(ZUniformParameter, numRows, unsigned int() const)
METHOD(ZUniformParameter, numColumns, unsigned int() const)
METHOD(ZUniformParameter, numElements, unsigned int() const)
METHOD(ZUniformParameter, userData, void *() const)
METHOD(ZUniformParameter, setRangeMin, void(double))
METHOD(ZUniformParameter, setRangeMax, void(double))
METHOD(ZUniformParameter, setSoftRangeMin, void(double))
METHOD(ZUniformParameter, setSoftRangeMax, void(double))
METHOD(ZUniformParameter, setUIHidden, void(bool))
METHOD(ZUniformParameter, UIHidden, bool() const)
METHOD(ZUniformParameter, setEnumFieldNames, void(ZString const &))
METHOD(ZUniformParameter, setKeyable, void(bool))
METHOD(ZUniformParameter, keyable, bool() const)
METHOD(ZUniformParameter, isATexture, bool() const)
METHOD_CASE(ZUniformParameter, hasChanged, 1, bool(ZGeometryList const &) const)
METHOD_CASE(ZUniformParameter, hasChanged, 2, bool(ZHWRender::ZDrawContext const &) const)
OVERLOADS(ZUniformParameter, hasChanged, &ZUniformParameter_hasChanged_1,
          &ZUniformParameter_hasChanged_2)
METHOD_CASE(ZUniformParameter, getAsFloatArray, 1, float const *(ZGeometryList const &) const)
METHOD_CASE(ZUniformParameter, getAsFloatArray, 2,
            float const *(ZHWRender::ZDrawContext const &) const)
OVERLOADS(ZUniformParameter, getAsFloatArray, &ZUniformParameter_getAsFloatArray_1,
          &ZUniformParameter_getAsFloatArray_2)
METHOD(ZUniformParameter, setAsFloatArray, void(float const *, unsigned int))
METHOD_CASE(ZUniformParameter, getAsFloat, 1, float(ZGeometryList const &) const)
METHOD_CASE(ZUniformParameter, getAsFloat, 2, float(ZHWRender::ZDrawContext const &) const)
OVERLOADS(ZUniformParameter, getAsFloat, &ZUniformParameter_getAsFloat_1,
          &ZUniformParameter_getAsFloat_2)
METHOD(ZUniformParameter, setAsFloat, void(float))
METHOD_CASE(ZUniformParameter, getAsString, 1, ZString(ZGeometryList const &) const)
METHOD_CASE(ZUniformParameter, getAsString, 2, ZString(ZHWRender::ZDrawContext const &) const)
OVERLOADS(ZUniformParameter, getAsString, &ZUniformParameter_getAsString_1,
          &ZUniformParameter_getAsString_2)
METHOD(ZUniformParameter, setAsString, void(ZString const &))
METHOD_CASE(ZUniformParameter, getAsBool, 1, bool(ZGeometryList const &) const)
METHOD_CASE(ZUniformParameter, getAsBool, 2, bool(ZHWRender::ZDrawContext const &) const)
OVERLOADS(ZUniformParameter, getAsBool, &ZUniformParameter_getAsBool_1,
          &ZUniformParameter_getAsBool_2)
METHOD(ZUniformParameter, setAsBool, void(bool))
METHOD_CASE(ZUniformParameter, getAsInt, 1, int(ZGeometryList const &) const)
METHOD_CASE(ZUniformParameter, getAsInt, 2, int(ZHWRender::ZDrawContext const &) const)
OVERLOADS(ZUniformParameter, getAsInt, &ZUniformParameter_getAsInt_1, &ZUniformParameter_getAsInt_2)
METHOD(ZUniformParameter, setAsInt, void(int))
METHOD(ZUniformParameter, setUINiceName, void(ZString const &))
METHOD(ZUniformParameter, getPlug, ZPlug() const)
METHOD(ZUniformParameter, getSource, ZPlug() const)
METHOD(ZUniformParameter, setDirty, void())
PROXY(ZUniformParameter)

CONSTRUCTOR(ZUniformParameterList, ZUniformParameterList())
DESTRUCTOR(ZUniformParameterList)
METHOD(ZUniformParameterList, append, void(ZUniformParameter const &))
METHOD(ZUniformParameterList, length, int() const)
METHOD(ZUniformParameterList, setLength, void(int))
METHOD(ZUniformParameterList, getElement, ZUniformParameter(int) const)
METHOD(ZUniformParameterList, setElement, void(int, ZUniformParameter const &))
ASSIGNMENT(ZUniformParameterList)
PROXY(ZUniformParameterList)

ROWS_END(uniform_parameter_rows)

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

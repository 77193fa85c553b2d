// SPDX-License-Identifier: MIT
#include "wrappers/shader_gl/gl_argument.h"

using namespace binding;

ReadResult GlData::read(PyObject *object, int) {
    // In this order: a proxy may have pointer objects of several types.
    swig_type_info *const types[] = {
        type_of<double>(), type_of<float>(),          type_of<int>(),  type_of<unsigned int>(),
        type_of<short>(),  type_of<unsigned short>(), type_of<char>(), type_of<unsigned char>()};
    for (swig_type_info *type : types)
        if (SWIG_Python_ConvertPtrAndOwn(object, &address, type, 0) >= 0)
            return SWIG_OK;
    PyErr_SetString(PyExc_TypeError, "Expected argument of pointer type compatible with ZGLvoid*");
    return {SWIG_TypeError, ReadResult::kRaised};
}

// SPDX-License-Identifier: MIT
#include "runtime/result_codes.h"

PyObject *SWIG_Python_ErrorType(int code) {
    switch (code) {
    case SWIG_IOError:
        return PyExc_IOError;
    case SWIG_IndexError:
        return PyExc_IndexError;
    case SWIG_TypeError:
        return PyExc_TypeError;
    case SWIG_DivisionByZero:
        return PyExc_ZeroDivisionError;
    case SWIG_OverflowError:
        return PyExc_OverflowError;
    case SWIG_SyntaxError:
        return PyExc_SyntaxError;
    case SWIG_ValueError:
        return PyExc_ValueError;
    case SWIG_SystemError:
        return PyExc_SystemError;
    case SWIG_AttributeError:
        return PyExc_AttributeError;
    case SWIG_MemoryError:
        return PyExc_MemoryError;
    default:
        return PyExc_RuntimeError;
    }
}

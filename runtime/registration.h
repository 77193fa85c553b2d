// SPDX-License-Identifier: MIT
#pragma once

// The module-level half of the proxy protocol: what every <Class>_swigregister and
// <Class>_swiginit function does, and how constants reach the module dictionary.

#include "runtime/type_registry.h"

/// Attaches the proxy class in `arguments` (a tuple of one) to its type; returns None.
PyObject *SWIG_RegisterProxy(PyObject *arguments, swig_type_info *type);

/// Gives the proxy instance in `arguments` (instance, pointer object) its "this", or chains the
/// pointer object behind the one that it has; returns None.
PyObject *SWIG_InitialiseProxy(PyObject *arguments);

/// METH_O row of every module of the ring; has no effect in Python 2 and returns null.
PyObject *SWIG_PyInstanceMethod_New(PyObject *self, PyObject *function);

/// Stores `object` in the dictionary and drops the caller's reference; returns the store's status.
int SWIG_Python_SetConstant(PyObject *dictionary, const char *name, PyObject *object);

namespace binding {
/// Kinds of swig_const_info entries.
enum ConstantKind { kEndOfConstants = 0, kPointerConstant = 4, kPackedConstant = 5 };
} // namespace binding

/// One pointer or packed constant of a module.
struct swig_const_info {
    int type;
    const char *name;
    long lvalue;
    double dvalue;
    void *pvalue;
    swig_type_info **ptype;
};

/// Puts the address of pointer constants into the documentation of functions that name them
/// after "swig_ptr: ", so that the function itself can be passed where a native pointer is due.
void SWIG_Python_FixMethods(PyMethodDef *methods, const swig_const_info *constants);

/// Makes the objects of a constant table and stores them in the dictionary.
void SWIG_Python_InstallConstants(PyObject *dictionary, const swig_const_info *constants);

// SPDX-License-Identifier: MIT
#include "wrappers/rows/module_tables.h"

#include "runtime/object_holder.h"
#include "runtime/pending_error.h"
#include "runtime/registration.h"

#include <new>

namespace binding {
namespace {

const PyMethodDef instance_method_row = {"SWIG_PyInstanceMethod_New", SWIG_PyInstanceMethod_New,
                                         METH_O, nullptr};
const PyMethodDef end_of_methods = {nullptr, nullptr, 0, nullptr};

/// No module of ours has pointer or packed constants.
const swig_const_info swig_const_table[] = {{kEndOfConstants, nullptr, 0, 0.0, nullptr, nullptr}};

/// All rows of the module in one array, as the interpreter wants them; it keeps the array for ever.
/// Null when memory is short.
PyMethodDef *make_method_array() {
    size_t most = 2;
    for (const Rows *rows : method_tables)
        most += rows->size();
    auto *methods = new (std::nothrow) PyMethodDef[most];
    if (!methods)
        return nullptr;
    PyMethodDef *end = methods;
    *end++ = instance_method_row;
    for (const Rows *rows : method_tables)
        for (const Function &function : *rows)
            if (!function.is_case)
                *end++ = {function.name, function.native, function.flags, nullptr};
    *end = end_of_methods;
    return methods;
}

/// False, with the exception set, when memory is short.
bool install_integers(PyObject *dictionary) {
    for (const Constants *constants : constant_tables)
        for (const Constant constant : *constants)
            if (SWIG_Python_SetConstant(dictionary, constant.name, PyInt_FromLong(constant.value)) <
                0)
                return false;
    return true;
}

} // namespace

void initialise_module(const char *name) {
    static PyMethodDef *SwigMethods = nullptr;
    if (!SwigMethods)
        SwigMethods = make_method_array();
    // Made now, because memory may be short when it is needed.
    const swig::SwigPtr_PyObject key(PyString_FromString(name));
    if (!SwigMethods || !key) {
        PyErr_NoMemory();
        return;
    }
    SWIG_Python_FixMethods(SwigMethods, swig_const_table);
    PyObject *module = Py_InitModule(const_cast<char *>(name), SwigMethods);
    PyObject *dictionary = module ? PyModule_GetDict(module) : nullptr;
    if (dictionary && SWIG_InitializeModule()) {
        SWIG_Python_InstallConstants(dictionary, swig_const_table);
        if (install_integers(dictionary))
            return;
    }
    // The next import is to start anew, not to find half a module.
    const PendingError keep;
    PyDict_DelItem(PyImport_GetModuleDict(), key.get());
}

} // namespace binding

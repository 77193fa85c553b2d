#include "wrappers/module_tables.h"
#include "runtime/registration.h"

namespace {

const PyMethodDef instance_method_row = {"SWIG_PyInstanceMethod_New", SWIG_PyInstanceMethod_New,
                                         METH_O, nullptr};
const PyMethodDef end_of_methods = {nullptr, nullptr, 0, nullptr};

/// No module of ours has pointer or packed constants.
const swig_const_info swig_const_table[] = {{kEndOfConstants, nullptr, 0, 0.0, nullptr, nullptr}};

/// All rows of the module in one array, as the interpreter wants them; it keeps the array for ever.
PyMethodDef *make_method_array() {
    size_t count = 2;
    for (const Rows *rows : method_tables)
        count += rows->size();
    auto *methods = new PyMethodDef[count];
    PyMethodDef *end = methods;
    *end++ = instance_method_row;
    for (const Rows *rows : method_tables)
        for (const Function *function : *rows)
            *end++ = {function->name, function->native, function->flags, nullptr};
    *end = end_of_methods;
    return methods;
}

void install_integers(PyObject *dictionary) {
    for (const Constants *constants : constant_tables)
        for (const Constant &constant : *constants)
            SWIG_Python_SetConstant(dictionary, constant.name, PyInt_FromLong(constant.value));
}

} // namespace

void initialise_module(const char *name) {
    static PyMethodDef *const SwigMethods = make_method_array();
    SWIG_Python_FixMethods(SwigMethods, swig_const_table);
    PyObject *module = Py_InitModule(const_cast<char *>(name), SwigMethods);
    PyObject *dictionary = module ? PyModule_GetDict(module) : nullptr;
    if (!dictionary)
        return;
    SWIG_InitializeModule();
    SWIG_Python_InstallConstants(dictionary, swig_const_table);
    install_integers(dictionary);
}

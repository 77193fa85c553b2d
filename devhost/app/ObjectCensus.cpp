// SPDX-License-Identifier: MIT
#include "devhost/app/ObjectCensus.h"

#include "runtime/pointer_object.h"

#include <cstring>
#include <deque>
#include <set>
#include <unordered_map>

namespace quilhost {
namespace {

constexpr const char kDelete[] = "delete_";
constexpr size_t kDeleteLength = sizeof(kDelete) - 1;

struct Census {
    std::map<std::string, long> counts;
    std::unordered_map<const void *, std::string> live; ///< the class of each object
    std::set<std::string> classes;                      ///< those with a delete function
    std::deque<PyMethodDef> definitions;                ///< of the functions that count
};

Census &census() {
    // Never destroyed: objects are deleted until the process has ended. Used under the interpreter
    // lock only.
    static auto *const instance = new Census;
    return *instance;
}

/// The pointer object that this is, or that a proxy instance holds; else null.
SwigPyObject *pointerIn(PyObject *object) {
    PyObject **dictionary = object ? _PyObject_GetDictPtr(object) : nullptr;
    if (dictionary && *dictionary) {
        static PyObject *const name = PyString_InternFromString("this");
        object = PyDict_GetItem(*dictionary, name);
    }
    const bool isPointer = object && !std::strcmp(Py_TYPE(object)->tp_name, "SwigPyObject");
    return isPointer ? reinterpret_cast<SwigPyObject *>(object) : nullptr;
}

std::string className(const SwigPyObject &pointer) {
    const std::string name = pointer.ty ? pointer.ty->name + std::strlen("_p_") : "";
    return census().classes.contains(name) ? name : "buffer";
}

PyObject *callOriginal(PyObject *original, PyObject *arguments) {
    return PyCFunction_GET_FUNCTION(original)(PyCFunction_GET_SELF(original), arguments);
}

PyObject *callAndCountBirth(PyObject *original, PyObject *arguments) {
    PyObject *const result = callOriginal(original, arguments);
    const SwigPyObject *pointer = pointerIn(result);
    if (pointer && pointer->own) {
        const auto [entry, isNew] = census().live.try_emplace(pointer->ptr, className(*pointer));
        census().counts[entry->second] += isNew;
    }
    return result;
}

PyObject *callAndCountDeath(PyObject *original, PyObject *argument) {
    const SwigPyObject *pointer = pointerIn(argument);
    const void *const address = pointer ? pointer->ptr : nullptr;
    PyObject *const result = callOriginal(original, argument);
    const auto entry = result ? census().live.find(address) : census().live.end();
    if (entry != census().live.end()) {
        --census().counts[entry->second];
        census().live.erase(entry);
    }
    return result;
}

/// Puts a function that counts in the place of each of a module's.
void watch(const char *moduleName) {
    PyObject *const module = PyImport_ImportModule(moduleName);
    if (!module)
        return PyErr_Clear(); // the script that needs it will be told
    PyObject *const names = PyModule_GetDict(module);
    PyObject *key, *value;
    for (Py_ssize_t at = 0; PyDict_Next(names, &at, &key, &value);) {
        if (!PyCFunction_Check(value))
            continue;
        const auto *original = reinterpret_cast<PyCFunctionObject *>(value);
        PyMethodDef &definition = census().definitions.emplace_back(*original->m_ml);
        const bool isDelete = !std::strncmp(definition.ml_name, kDelete, kDeleteLength);
        if (isDelete)
            census().classes.insert(definition.ml_name + kDeleteLength);
        definition.ml_meth = isDelete ? callAndCountDeath : callAndCountBirth;
        PyObject *const counting = PyCFunction_NewEx(&definition, value, original->m_module);
        PyDict_SetItem(names, key, counting);
        Py_DECREF(counting);
    }
    Py_DECREF(module);
}

} // namespace

void startObjectCensus() {
    for (const char *module : {"_OpenQuil", "_OpenQuilRender"})
        watch(module);
}

const std::map<std::string, long> &objectCensus() {
    return census().counts;
}

} // namespace quilhost

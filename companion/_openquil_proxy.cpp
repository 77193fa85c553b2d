// SPDX-License-Identifier: MIT
// The native part of the companion layer: what the generated proxy classes are made of.

#include "companion/native_method.h"
#include "companion/native_property.h"
#include "companion/native_slots.h"
#include "host/base/HostApi.h"

namespace {

PyMethodDef functions[] = {
    {"install", companion::install_slots, METH_O,
     "install(cls): gives a class operators that call its native methods directly; returns it."},
    {nullptr, nullptr, 0, nullptr}};

} // namespace

extern "C" {

OPENQUIL_API void init_openquil_proxy();
void init_openquil_proxy() {
    PyObject *module = Py_InitModule("_openquil_proxy", functions);
    const struct {
        const char *name;
        PyTypeObject *type;
    } types[] = {{"Method", companion::method_type()},
                 {"Property", companion::property_type()},
                 {"PartProperty", companion::part_property_type()}};
    for (const auto &[name, type] : types) {
        if (!module || !type)
            return;
        Py_INCREF(type);
        PyModule_AddObject(module, name, reinterpret_cast<PyObject *>(type));
    }
}
}

// SPDX-License-Identifier: MIT
// What there is in scenes, for scripts: types of nodes and their attributes.

#include "devhost/core_module/items.h"
#include "devhost/core_module/scene_values.h"
#include "devhost/scene/Attributes.h"
#include "host/core/ZStringArray.h"

#include <algorithm>
#include <cstring>

namespace {

using namespace binding;

PyObject *text(const char *utf8) {
    return PyUnicode_DecodeUTF8(utf8, static_cast<Py_ssize_t>(std::strlen(utf8)), nullptr);
}

PyObject *description(const devhost::AttributeInfo &attribute) {
    return Py_BuildValue("{s:N,s:N,s:N,s:N,s:N,s:N}", "name", text(attribute.name), "type",
                         text(attribute.valueType()), "unit", text(attribute.unit), "default",
                         attribute_value(attribute.defaultValue()), "settable",
                         PyBool_FromLong(attribute.isSettable()), "meaning",
                         text(attribute.meaning));
}

} // namespace

/// The types of nodes; static functions only.
struct NodeTypes {
    static ZStringArray names() {
        ZStringArray result;
        for (const std::string &type : devhost::nodeTypes())
            result.append(ZString(type.c_str()));
        return result;
    }
    static PyObject *attributes(ZString const &type) {
        const auto &types = devhost::nodeTypes();
        if (std::find(types.begin(), types.end(), type.asChar()) == types.end())
            return PyErr_Format(PyExc_ValueError, "there is no node type '%s'", type.asChar());
        const auto found = devhost::attributesOf(type.asChar());
        swig::SwigPtr_PyObject list(PyList_New(0));
        for (const auto &attribute : found) {
            const swig::SwigPtr_PyObject item(description(attribute));
            if (!list || !item || PyList_Append(list.get(), item.get()) < 0)
                return nullptr;
        }
        return list.release();
    }
};

#define ROW_LIST "devhost/core_module/node_types.def"
#define ROW_TABLE node_type_rows
#include "wrappers/rows/make_rows.h"

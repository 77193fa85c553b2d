// SPDX-License-Identifier: MIT
// Texts. What an operation returns is a Python unicode object; a ZString of its own is needed
// only where the host fills one or a record's member is set.

#include "devhost/core_module/items.h"
#include "host/core/ZStringArray.h"

namespace {

using namespace binding;

/// Reads the other side of a comparison: a text, or another ZString.
bool other_text(PyObject *object, ZString &text) {
    if (const ZString *other = comparable<ZString>(object)) {
        text = *other;
        return true;
    }
    return (PyString_Check(object) || PyUnicode_Check(object)) && !read_item(object, text).failed();
}

PyObject *text_is_equal(ZString &self, PyObject *object) {
    ZString other;
    return other_text(object, other) ? PyBool_FromLong(self == other) : not_implemented();
}

PyObject *text_is_different(ZString &self, PyObject *object) {
    ZString other;
    return other_text(object, other) ? PyBool_FromLong(self != other) : not_implemented();
}

PyObject *text_representation(ZString &self) {
    return represent(type_of<ZString>(), string_result(self));
}

PyObject *character(ZString &self, long index) {
    if (!find_index(index, self.length()))
        return nullptr;
    return PyUnicode_FromWideChar(self.asW() + index, 1);
}

ZStatus split(ZString &self, ZString const &separator, ZStringArray &parts) {
    if (separator.length() != 1 || separator.asW()[0] > 127)
        return ZStatus(ZStatus::kInvalidParameter, "the separator is not one ASCII character");
    return self.split(static_cast<char>(separator.asW()[0]), parts);
}

using Search = int (ZString::*)(wchar_t) const;

template <Search search>
int place_of(ZString &self, ZString const &character) {
    return character.length() == 1 ? (self.*search)(character.asW()[0]) : -1;
}

} // namespace

#define ROW_LIST "devhost/core_module/string.def"
#define ROW_TABLE string_rows
#include "wrappers/rows/make_rows.h"

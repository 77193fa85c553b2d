// Texts. What an operation returns is a Python unicode object; a ZString of its own is needed
// only where the host fills one or a record's member is set.

#include "devhost/core_module/items.h"
#include "host/core/ZStringArray.h"
#include "wrappers/rows/wrapper_table.h"

ROWS_BEGIN

/// Reads the other side of a comparison: a text, or another ZString.
static bool other_text(PyObject *object, ZString &text) {
    if (const ZString *other = comparable<ZString>(object)) {
        text = *other;
        return true;
    }
    return (PyString_Check(object) || PyUnicode_Check(object)) && read_item(object, text) >= 0;
}

static PyObject *text_is_equal(ZString &self, PyObject *object) {
    ZString other;
    return other_text(object, other) ? PyBool_FromLong(self == other) : not_implemented();
}

static PyObject *text_is_different(ZString &self, PyObject *object) {
    ZString other;
    return other_text(object, other) ? PyBool_FromLong(self != other) : not_implemented();
}

static PyObject *text_representation(ZString &self) {
    return represent(type_of<ZString>(), string_result(self));
}

static PyObject *character(ZString &self, long index) {
    if (!find_index(index, self.length()))
        return nullptr;
    return PyUnicode_FromWideChar(self.asW() + index, 1);
}

static ZStatus split(ZString &self, ZString const &separator, ZStringArray &parts) {
    if (separator.length() != 1 || separator.asW()[0] > 127)
        return ZStatus(ZStatus::kInvalidParameter, "the separator is not one ASCII character");
    return self.split(static_cast<char>(separator.asW()[0]), parts);
}

static int last_index(ZString &self, ZString const &character) {
    return character.length() == 1 ? self.rindexW(character.asW()[0]) : -1;
}

CONSTRUCTOR_CASE(ZString, 1, ZString())
CONSTRUCTOR_EXTENSION_CASE(
    ZString, 2, ZString(ZString const &),
    +[](ZString const &text) { return constructed(new ZString(text)); })
CONSTRUCTOR_OVERLOADS(ZString, &new_ZString_1, &new_ZString_2)
METHOD(ZString, length, unsigned int() const)
METHOD(ZString, numBytes, unsigned int() const)
METHOD(ZString, asChar, char const *() const)
METHOD(ZString, asUTF8, char const *() const)
EXTENSION(
    ZString, asUnicode, ZString() const, +[](ZString &self) { return self; })
METHOD(ZString, clear, void())
EXTENSION_CASE(
    ZString, set, 1, ZStatus(double), +[](ZString &self, double value) { return self.set(value); })
EXTENSION_CASE(
    ZString, set, 2, ZStatus(double, int),
    +[](ZString &self, double value, int precision) { return self.set(value, precision); })
EXTENSION_CASE(
    ZString, set, 3, ZStatus(ZString const &), +[](ZString &self, ZString const &text) {
        self = text;
        return ZStatus();
    })
OVERLOADS(ZString, set, &ZString_set_1, &ZString_set_2, &ZString_set_3)
EXTENSION(
    ZString, append, void(ZString const &),
    +[](ZString &self, ZString const &text) { self += text; })
METHOD(ZString, substring, ZString(int, int) const)
EXTENSION(
    ZString, index, int(ZString const &) const,
    +[](ZString &self, ZString const &text) { return self.indexW(text); })
EXTENSION(ZString, rindex, int(ZString const &) const, last_index)
EXTENSION(ZString, split, ZStatus(ZString const &, ZStringArray &) const, split)
EXTENSION(
    ZString, substitute, ZStatus(ZString const &, ZString const &),
    +[](ZString &self, ZString const &old_text, ZString const &new_text) {
        return self.substitute(old_text, new_text);
    })
METHOD(ZString, isInt, bool() const)
METHOD(ZString, asInt, int() const)
METHOD(ZString, isUnsigned, bool() const)
METHOD(ZString, asUnsigned, unsigned int() const)
METHOD(ZString, isDouble, bool() const)
METHOD(ZString, asDouble, double() const)
METHOD(ZString, isFloat, bool() const)
METHOD(ZString, asFloat, float() const)
EXTENSION(
    ZString, toLowerCase, void(), +[](ZString &self) { self.toLowerCase(); })
EXTENSION(
    ZString, toUpperCase, void(), +[](ZString &self) { self.toUpperCase(); })
EXTENSION(
    ZString, __len__, unsigned int() const, +[](ZString &self) { return self.length(); })
EXTENSION(ZString, __getitem__, ZString(long) const, character)
EXTENSION(
    ZString, __add__, ZString(ZString const &) const,
    +[](ZString &self, ZString const &text) { return self + text; })
EXTENSION(
    ZString, __str__, char const *() const, +[](ZString &self) { return self.asChar(); })
EXTENSION(
    ZString, __unicode__, ZString() const, +[](ZString &self) { return self; })
EXTENSION(ZString, __repr__, PyObject *() const, text_representation)
EXTENSION(ZString, __eq__, bool(PyObject *) const, text_is_equal)
EXTENSION(ZString, __ne__, bool(PyObject *) const, text_is_different)
EXTENSION(
    ZString, __lt__, bool(ZString const &) const,
    +[](ZString &self, ZString const &other) { return self < other; })
DESTRUCTOR(ZString)
PROXY(ZString)

ROWS_END(string_rows)

// SPDX-License-Identifier: MIT
// Makes a family's functions and its table out of the list of its rows. Not guarded: a source file
// includes it once, behind the headers of the host's classes and the functions that extensions
// name.
//
//     #define ROW_LIST "wrappers/render/render_view.def"
//     #define ROW_TABLE render_view_rows
//     #include "wrappers/rows/make_rows.h"
//
// row_language.h turns each row of the list into
//     ROW(native, function, description, body)    or    BY_HAND(function, description)
// and the list is read four times, with another meaning of these two each time. So every wrapper is
// an ordinary function with a name of its own, which debuggers and profilers show, and a record
// that names it; the record's place in the table is a constant that the function's body knows.

#include "runtime/registration.h"
#include "wrappers/rows/call.h"
#include "wrappers/rows/row_language.h"

// A source file includes this once. NOLINTBEGIN(misc-definitions-in-headers)
namespace {

using namespace binding; // NOLINT(google-build-using-namespace): the family's own file

// The places in the table.
#define ROW(native, function, ...) at_##function,
#define BY_HAND(function, ...) at_##function,
enum RowPlace {
#include ROW_LIST
};
#undef ROW
#undef BY_HAND

// The functions' declarations.
#define ROW(native, ...) PyObject *native(PyObject *, PyObject *);
#define BY_HAND(function, ...) PyObject *_wrap_##function(PyObject *, PyObject *);
#include ROW_LIST
#undef ROW
#undef BY_HAND

// The table.
#define ROW(native, function, description, ...) description,
#define BY_HAND(function, description) description,
constexpr Description row_descriptions[] = {
#include ROW_LIST
};
constexpr auto row_table = functions_of(row_descriptions);
static_assert(is_well_formed(row_table), "an overloaded function stands right behind its cases");
#undef ROW
#undef BY_HAND

// The functions.
#define ROW(native, function, description, ...)                                               \
    PyObject *native([[maybe_unused]] PyObject *self, [[maybe_unused]] PyObject *arguments) { \
        __VA_ARGS__                                                                           \
    }
#define BY_HAND(...)
#include ROW_LIST
#undef ROW
#undef BY_HAND

} // namespace

extern constinit const binding::Rows ROW_TABLE = row_table;
// NOLINTEND(misc-definitions-in-headers)

#undef ROW_LIST
#undef ROW_TABLE

// The row language.
#undef TEXTS
#undef RECORD
#undef CASE_PROBES
#undef STATIC_ROW
#undef METHOD_ROW
#undef CONSTRUCTOR_ROW
#undef EXTENSION_ROW
#undef CONSTRUCTOR_EXTENSION_ROW
#undef STATIC
#undef METHOD
#undef CONSTRUCTOR
#undef EXTENSION
#undef CONSTRUCTOR_EXTENSION
#undef ASSIGNMENT
#undef DESTRUCTOR
#undef MEMBER
#undef STATIC_CASE
#undef METHOD_CASE
#undef CONSTRUCTOR_CASE
#undef EXTENSION_CASE
#undef CONSTRUCTOR_EXTENSION_CASE
#undef OVERLOADS
#undef CONSTRUCTOR_OVERLOADS
#undef PROXY
#undef REGISTRATION
#undef METHOD_BY_HAND
#undef CONSTRUCTOR_BY_HAND
#undef DISOWN_BY_HAND
#undef OVERLOADS_BY_HAND

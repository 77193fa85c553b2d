// SPDX-License-Identifier: MIT
#pragma once

// The native types that cross into Python, and the ring through which all binding modules of one
// interpreter share them.
//
// A module describes each native type by one static record. The records of a module form its type
// table, sorted by mangled name, and the tables of all modules are linked in a ring, a circular
// singly linked list, whose head is published in the interpreter as
// "swig_runtime_data4"."type_pointer". When a module starts, it takes over records of equal name
// that are in the ring already; that is why a pointer object made by one module converts in
// another, and why wrappers must read a type through their module's swig_types slot and never
// through its own record.
//
// The cast list of a type is doubly linked, and a successful check moves its entry to the front
// (the move-to-front heuristic of self-organising lists): the next conversion of the same class, by
// far the likeliest, then takes one comparison. So nobody may keep a pointer to an entry, and every
// check is a write.
//
// What a table goes through in a process:
//
//   state        swig_module.next   swig_types              left by
//   not started  null               null                    the first import
//   in the ring  its successor      this module's records,  an import in another interpreter: only
//                                   or those of a module    links the table into that ring too
//                                   that came before
//   torn down    as it was          as it was               the head's holder dies with its
//                                                           interpreter; client data are released
//
// The layouts are shared with every other module of the ring and must not change. All of this runs
// under the interpreter lock, which is its only protection.

#include <Python.h>

#include <cstddef>
#include <string_view>

struct swig_type_info;

using swig_converter_func = void *(*)(void *pointer, int *new_memory);
using swig_dycast_func = swig_type_info *(*)(void **pointer);

/// One type whose pointers convert to the type that owns the list.
struct swig_cast_info {
    swig_type_info *type;          ///< the source type; null ends an initial array
    swig_converter_func converter; ///< adjusts the pointer; null where none is due
    swig_cast_info *next;
    swig_cast_info *prev;
};

/// One native type.
struct swig_type_info {
    const char *name;       ///< mangled: "_p_ZDagPath"
    const char *str;        ///< readable alternatives separated by '|', or null
    swig_dycast_func dcast; ///< unused: null for every type
    swig_cast_info *cast;   ///< types convertible to this one, most recently used first
    void *clientdata;       ///< SwigPyClientData of a registered class
    int owndata;            ///< 1 when the client data are released at teardown
};

/// One module's types.
struct swig_module_info {
    swig_type_info **types; ///< sorted by name in byte order; a null slot follows the last
    size_t size;
    swig_module_info *next; ///< next module of the ring; itself in a ring of one
    swig_type_info **type_initial;
    swig_cast_info **cast_initial;
    void *clientdata; ///< unused: null
};

static_assert(sizeof(swig_cast_info) == 32 && sizeof(swig_type_info) == 48 &&
              sizeof(swig_module_info) == 48);
static_assert(offsetof(swig_type_info, cast) == 24 && offsetof(swig_type_info, owndata) == 40);
static_assert(offsetof(swig_module_info, next) == 16 &&
              offsetof(swig_module_info, cast_initial) == 32);

/// The table of the module that this copy of the runtime is linked into, and its parts.
extern swig_module_info swig_module;
extern swig_type_info *swig_type_initial[];
extern swig_cast_info *swig_cast_initial[];
namespace binding {
/// Fills swig_cast_initial, once in the process.
void make_initial_cast_lists();
} // namespace binding

/// Joins swig_module to the interpreter's ring (making the ring when there is none) and, the first
/// time in the process, chooses the record of each type and links the cast lists.
/// False with an exception set when memory is short; the next call then starts anew.
bool SWIG_InitializeModule();

/// The entry of `target`'s cast list whose type has the given mangled name, moved to the front of
/// the list; null when pointers of that type do not convert.
swig_cast_info *SWIG_TypeCheck(const char *name, swig_type_info *target);

/// The pointer as the entry's owner sees it.
inline void *SWIG_TypeCast(swig_cast_info *entry, void *pointer, int *new_memory) {
    return entry->converter ? entry->converter(pointer, new_memory) : pointer;
}

/// True when two readable names are the same but for blanks.
bool SWIG_TypeNameComp(std::string_view a, std::string_view b);

/// Finds a type by mangled name in the modules from `start` up to but not including `end`; all
/// modules of the ring when both are the same.
swig_type_info *SWIG_MangledTypeQueryModule(swig_module_info *start, swig_module_info *end,
                                            const char *name);

/// The same, and failing that by any readable alternative, blanks ignored.
swig_type_info *SWIG_TypeQueryModule(swig_module_info *start, swig_module_info *end,
                                     const char *name);

/// Finds a type anywhere in the interpreter's ring; a hit is remembered for the next query.
swig_type_info *SWIG_TypeQuery(const char *name);

/// Attaches per-class data to a type and to the types equivalent to it that have none. Types that
/// convert through a converter are bases or derived classes and are left alone.
void SWIG_TypeClientData(swig_type_info *type, void *data);

/// The same for data that the type is to release at teardown.
void SWIG_TypeNewClientData(swig_type_info *type, void *data);

/// The last readable alternative, or the mangled name when there is none.
const char *SWIG_TypePrettyName(const swig_type_info *type);

// SPDX-License-Identifier: MIT
// The type table of one module, most of it constant data: compiled once for every module, against
// its own class_types.def.

#include "runtime/module_types.h"

#include <array>
#include <string_view>

using namespace binding;

// Converters. Every conversion is an upcast in a single-inheritance tree, where the address stays
// the same; the functions exist so that a base at another offset would need no new mechanism.
#define TO_BASE(id, base)                             \
    static void *id##To##base(void *pointer, int *) { \
        return pointer;                               \
    }
#define CONVERTERS_NO_BASE(id)
#define CONVERTERS_FN_BASE(id) TO_BASE(id, _p_ZFnBase)
#define CONVERTERS_NODE_BASE(id) TO_BASE(id, _p_ZFnBase) TO_BASE(id, _p_ZFnDependencyNode)
#define TYPE(id, readable, bases, ...) CONVERTERS_##bases(id)
#include "runtime/types.def"

namespace {

constinit std::array<swig_type_info, kTypeCount> records = {{
#define TYPE(id, readable, bases, ...) {#id, readable, nullptr, nullptr, nullptr, 0},
#include "runtime/types.def"
}};

constexpr const char *names[kTypeCount] = {
#define TYPE(id, readable, bases, ...) #id,
#include "runtime/types.def"
};

constexpr bool is_sorted() {
    for (int i = 1; i < kTypeCount; ++i)
        if (std::string_view(names[i - 1]) >= names[i])
            return false;
    return true;
}
static_assert(is_sorted(), "lookup by name is a binary search: keep class_types.def in byte order");

/// The converters of one type.
struct Line {
    swig_converter_func to_fn_base;
    swig_converter_func to_node_base;
};

constexpr Line lines[kTypeCount] = {
#define BASES_NO_BASE(id) nullptr, nullptr
#define BASES_FN_BASE(id) id##To_p_ZFnBase, nullptr
#define BASES_NODE_BASE(id) id##To_p_ZFnBase, id##To_p_ZFnDependencyNode
#define TYPE(id, readable, bases, ...) {BASES_##bases(id)},
#include "runtime/types.def"
};

/// How a line's pointers convert to the type at `target`; null when they do not.
constexpr swig_converter_func converter_to(int target, const Line &line) {
    if (target == type_index<class ZFnBase>)
        return line.to_fn_base;
    if (target == type_index<class ZFnDependencyNode>)
        return line.to_node_base;
    return nullptr;
}

constexpr int conversion_count() {
    int count = 0;
    for (const Line &line : lines)
        count += (line.to_fn_base != nullptr) + (line.to_node_base != nullptr);
    return count;
}

constexpr int kEntryCount = 2 * kTypeCount + conversion_count();

/// All initial cast lists one behind the other: each has the type itself, the types that convert
/// to it, and an entry without a type.
constinit std::array<swig_cast_info, kEntryCount> list_entries{};

} // namespace

constinit swig_type_info *swig_types[kTypeCount + 1] = {};

constinit swig_type_info *swig_type_initial[] = {
#define TYPE(id, readable, bases, ...) &records[k##id],
#include "runtime/types.def"
};

constinit swig_cast_info *swig_cast_initial[kTypeCount] = {};

// Made on initialisation: as data they would be a fortieth of the module.
void binding::make_initial_cast_lists() {
    swig_cast_info *entry = list_entries.data();
    for (int target = 0; target < kTypeCount; ++target) {
        swig_cast_initial[target] = entry;
        *entry++ = {&records[target], nullptr, nullptr, nullptr};
        for (int source = 0; source < kTypeCount; ++source)
            if (swig_converter_func converter = converter_to(target, lines[source]))
                *entry++ = {&records[source], converter, nullptr, nullptr};
        ++entry;
    }
}

constinit swig_module_info swig_module = {swig_types, kTypeCount, nullptr,
                                          nullptr,    nullptr,    nullptr};

// The layout that the ring's modules agree on; the counts are this product's.
#ifdef EXPECTED_TYPE_COUNT
static_assert(kTypeCount == EXPECTED_TYPE_COUNT);
static_assert(conversion_count() == EXPECTED_CONVERSION_COUNT);
#endif

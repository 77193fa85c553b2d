// SPDX-License-Identifier: MIT
// Prints the wrapper tables of the module it is linked with as JSON, for generate.py. The tables
// are constant data: no interpreter is started.

#include "runtime/type_registry.h"
#include "wrappers/rows/module_tables.h"

#include <nlohmann/json.hpp>

#include <iostream>
#include <map>
#include <set>
#include <string_view>
#include <vector>

using Json = nlohmann::ordered_json;
using namespace binding;

static const char *name_of(Kind kind) {
    switch (kind) {
    case Kind::kStatic:
        return "static";
    case Kind::kMethod:
        return "method";
    case Kind::kConstructor:
        return "constructor";
    case Kind::kDestructor:
        return "destructor";
    case Kind::kDisown:
        return "disown";
    case Kind::kSetter:
        return "setter";
    case Kind::kGetter:
        return "getter";
    case Kind::kRegister:
        return "register";
    case Kind::kInitialise:
        return "initialise";
    case Kind::kOverloads:
        break; // goes by its cases
    }
    return "unknown";
}

static bool has_member(Kind kind) {
    return kind == Kind::kStatic || kind == Kind::kMethod || kind == Kind::kSetter ||
           kind == Kind::kGetter;
}

/// "member" of "Class_member", without the "_set" and "_get" of accessors.
static std::string member_of(const Function &function) {
    std::string_view member = function.member();
    if (function.kind == Kind::kSetter || function.kind == Kind::kGetter)
        member.remove_suffix(4);
    return std::string(member);
}

static Json describe_case(const Function &function) {
    std::vector<int> defaults;
    for (int i = function.min; i < function.max; ++i)
        defaults.push_back(function.default_of(i));
    return {{"declaration", function.declaration()},
            {"min", function.min},
            {"max", function.max},
            {"defaults", defaults}};
}

static Json describe_row(const Function &function) {
    Json overloads = Json::array();
    for (const Function &overload : function.cases())
        overloads.push_back(describe_case(overload));
    if (overloads.empty())
        overloads.push_back(describe_case(function));
    const Function &shown = function.cases().empty() ? function : function.cases().front();
    return {{"name", function.name},   {"kind", name_of(shown.kind)},
            {"class", shown.owner()},  {"member", has_member(shown.kind) ? member_of(shown) : ""},
            {"flags", function.flags}, {"overloads", overloads}};
}

static Json describe_functions() {
    Json functions = Json::array();
    for (const Rows *rows : method_tables)
        for (const Function &function : *rows)
            if (!function.is_case)
                functions.push_back(describe_row(function));
    return functions;
}

static Json describe_constants() {
    Json result = Json::array();
    for (const Constants *constants : constant_tables)
        for (const Constant constant : *constants)
            result.push_back({{"name", constant.name}, {"value", constant.value}});
    return result;
}

/// The types, each with the types that its pointers convert to.
static Json describe_types() {
    std::map<std::string_view, std::set<std::string_view>> bases;
    make_initial_cast_lists();
    for (size_t i = 0; i < swig_module.size; ++i)
        for (const swig_cast_info *entry = swig_cast_initial[i]; entry->type; ++entry)
            if (entry->type != swig_type_initial[i])
                bases[entry->type->name].insert(swig_type_initial[i]->name);
    Json types = Json::array();
    for (size_t i = 0; i < swig_module.size; ++i) {
        const swig_type_info &type = *swig_type_initial[i];
        types.push_back({{"mangled", type.name},
                         {"readable", type.str ? type.str : ""},
                         {"bases", bases[type.name]}});
    }
    return types;
}

int main() { // NOLINT(bugprone-exception-escape): it ends the build step, as it should
    const Json description = {{"functions", describe_functions()},
                              {"constants", describe_constants()},
                              {"types", describe_types()}};
    std::cout << description.dump(1) << '\n';
    return std::cout ? 0 : 1;
}

// SPDX-License-Identifier: MIT
#pragma once

// What a wrapper knows about itself beyond its native types. All of it is constant data; only the
// bounds and the defaults are read on a success path, the texts when something is wrong.

#include <Python.h>

#include <array>
#include <span>
#include <string_view>

namespace binding {

enum class Kind : unsigned char {
    kStatic,      ///< "Class_member", no object
    kMethod,      ///< "Class_member", the object first
    kConstructor, ///< "new_Class"
    kDestructor,  ///< "delete_Class"
    kDisown,      ///< "disown_Class"
    kSetter,      ///< "Class_member_set"
    kGetter,      ///< "Class_member_get"
    kOverloads,   ///< in front of the cases that stand before it in its table
    kRegister,    ///< "Class_swigregister"
    kInitialise   ///< "Class_swiginit"
};

/// Tells whether an object could be an argument, without converting it.
using Probe = bool (*)(PyObject *);

/// Most parameters with a default.
inline constexpr int kMaxDefaults = 6;
/// Most cases of an overloaded function.
inline constexpr int kMaxCases = 8;

/// One native function: a row of the method table, or a case of an overloaded one.
struct Function {
    const char *name;   ///< the Python name, used in every message; the declaration follows it
    PyCFunction native; ///< "_wrap_" and the Python name
    Kind kind;
    unsigned char owner_size;           ///< characters of the class's name
    unsigned char min;                  ///< parameters without a default, the object included
    unsigned char max;                  ///< all parameters, but not a hidden status
    unsigned char flags;                ///< METH_NOARGS, METH_O or METH_VARARGS
    unsigned char case_count;           ///< how many records before this one are its cases
    bool is_case;                       ///< scripts reach it through the overloaded function only
    signed char defaults[kMaxDefaults]; ///< of the last max - min parameters

    /// The type, as in the row: "ZStatus(unsigned int, bool) const". It is told in messages only,
    /// and a pointer to it would cost every record 32 bytes of the loaded module.
    constexpr const char *declaration() const { return name + std::string_view(name).size() + 1; }
    /// The class, as spelled in C++; empty for functions without one.
    constexpr std::string_view owner() const;
    /// "member" of "Class_member"; constructors go by the name of their class.
    constexpr std::string_view member() const;

    bool has_object() const {
        return kind == Kind::kMethod || kind == Kind::kSetter || kind == Kind::kGetter;
    }
    /// The cases of an overloaded function, in declaration order; none for others.
    constexpr std::span<const Function> cases() const { return {this - case_count, case_count}; }
    /// Of a parameter that has a default.
    signed char default_of(int index) const { return defaults[index - min]; }
};

/// A family's functions, each overloaded one behind its cases.
using Rows = std::span<const Function>;

/// One probe per parameter of a case.
using Probes = const Probe *;

/// A row as the compiler sees it. Few functions are cases, so that the records have no room for
/// probes: the overloaded function alone knows those of its cases.
struct Description {
    Function function;
    Probes probes; ///< null for what is no case
};

template <size_t count>
consteval std::array<Function, count> functions_of(const Description (&rows)[count]) {
    std::array<Function, count> functions{};
    for (size_t i = 0; i < count; ++i)
        functions[i] = rows[i].function;
    return functions;
}

/// The probes of the cases of the overloaded function at a place of its family, case by case.
template <const auto &rows, size_t place>
inline constexpr auto probes_of_cases = [] {
    constexpr size_t count = rows[place].function.case_count;
    std::array<Probes, count> probes{};
    for (size_t i = 0; i < count; ++i)
        probes[i] = rows[place - count + i].probes;
    return probes;
}();

// Failures. Each sets the exception and returns what its caller is to return.

/// What came of reading one argument: the runtime's result code, and what a message is to say that
/// the code does not.
struct ReadResult {
    enum Remark : int {
        kNone,
        kNullReference, ///< None where the host expects a reference
        kNamedByValue,  ///< the message tells `T` for a parameter declared `T const &`
        kRaised         ///< the exception is set already
    };
    int code;
    Remark remark = kNone;

    constexpr ReadResult(int code, Remark remark = kNone) : code(code), remark(remark) {}
    constexpr bool failed() const { return code < 0; }
};

/// An argument (counted from 1, the object included) did not convert: returns false.
bool raise_argument(const Function &function, int position, ReadResult result);

/// A string argument could not be read. The call goes on with an empty string.
void raise_expected_string(int position);

/// No overload takes these arguments: returns null.
PyObject *raise_no_overload(const Function &overloaded);

/// Calls the first case whose arguments fit: by their number alone where that decides, else by
/// probing the arguments that tell the candidates apart. The last candidate is not probed; it
/// reports its own conversion errors. The probes are those of its cases, case by case.
PyObject *dispatch(const Function &overloaded, const Probes *probes, PyObject *self,
                   PyObject *arguments);

/// What stands before the class in the names of constructors and the like.
constexpr std::string_view prefix_of(std::string_view name) {
    for (std::string_view prefix : {"new_", "delete_", "disown_"})
        if (name.starts_with(prefix))
            return prefix;
    return "";
}

constexpr std::string_view Function::owner() const {
    return {name + prefix_of(name).size(), owner_size};
}

constexpr std::string_view Function::member() const {
    if (!prefix_of(name).empty())
        return owner();
    return owner_size ? name + owner_size + 1 : name;
}

/// True when every overloaded function stands behind its cases, all of one name, and every case
/// before its overloaded function.
constexpr bool is_well_formed(Rows rows) {
    int waiting = 0;
    for (const Function &function : rows) {
        if (function.is_case) {
            ++waiting;
            continue;
        }
        if (function.case_count != waiting || waiting > kMaxCases)
            return false;
        for (const Function &overload : rows.subspan(&function - rows.data() - waiting, waiting))
            if (std::string_view(overload.name) != function.name)
                return false;
        waiting = 0;
    }
    return waiting == 0;
}

} // namespace binding

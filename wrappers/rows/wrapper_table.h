#pragma once

// The row language. A wrapper is one row, and the row is the only place where it is described: the
// native function, the line of the method table with its flag, the texts of all messages, and the
// proxy method, stub and documentation that are generated from the table all follow from it.
//
//     ROWS_BEGIN
//     CONSTRUCTOR(ZRenderView, ZRenderView())
//     DESTRUCTOR(ZRenderView)
//     STATIC(ZRenderView, startRender, ZStatus(unsigned int, unsigned int, bool, bool), false,
//     false) METHOD(ZCommonRenderSettingsData, isAnimated, bool() const) MEMBER(RV_PIXEL, r, float)
//     PROXY(ZRenderView)
//     ROWS_END(render_view_rows)
//
// A row gives the member and its declared type, followed by the defaults of its last parameters.
// The compiler checks the type against the host's declaration; its text is what messages show, so
// it is written as users are to read it ("short const", "ZGLclampf"). A trailing ZStatus * is the
// wrapper's own and no argument. A default is a number or a truth value; 0 stands for an empty
// string and a null pointer.
//
// Overloads are cases, numbered in declaration order, behind one row:
//
//     STATIC_CASE(ZRenderUtil, raytrace, 1, ZStatus(ZFloatVector const &, ...), true)
//     STATIC_CASE(ZRenderUtil, raytrace, 2, ZStatus(ZFloatVectorArray const &, ...), true)
//     OVERLOADS(ZRenderUtil, raytrace, &ZRenderUtil_raytrace_1, &ZRenderUtil_raytrace_2)
//
// An extension is a free function that is presented as a method, or as a constructor. It takes the
// object as a reference (None raises) and may return PyObject * in place of the declared result;
// null then stands for the exception that it has set:
//
//     EXTENSION(ZTimeArray, __len__, unsigned int() const, length<ZTimeArray>)
//     EXTENSION(ZTimeArray, __getitem__, ZTime(long) const, item_at<ZTimeArray>)
//     CONSTRUCTOR_EXTENSION_CASE(ZTimeArray, 2, ZTimeArray(PyObject *), from_items<ZTimeArray>)
//
// A parameter of the type PyObject * is any Python object, as it is. A text that cannot be read
// raises without a call.
//
// A function whose body is written by hand takes DESCRIBE or DESCRIBE_METHOD before it and ROW
// behind it. All names of native functions are "_wrap_" and the Python name.

#include "runtime/registration.h"
#include "wrappers/rows/call.h"
#include "wrappers/rows/constants.h"

// Descriptions: a constant named like the function, and the function's declaration.

#define DESCRIBE(function, kind, parameters, Class, name, declaration, ...)     \
    PyObject *_wrap_##function(PyObject *, PyObject *);                         \
    constexpr auto function =                                                   \
        describe(parameters, Kind::kind, name, declaration, sizeof(#Class) - 1, \
                 _wrap_##function __VA_OPT__(, ) __VA_ARGS__);
#define DESCRIBE_METHOD(Class, member, declared, ...)                                  \
    DESCRIBE(Class##_##member, Method, (Method<Class, declared>::Parameters()), Class, \
             #Class "_" #member, #declared, nullptr, defaults_of(__VA_ARGS__))

// Functions: a description and a body, without a row.

#define STATIC_FUNCTION(function, probes, Class, member, declared, ...)                     \
    DESCRIBE(function, Static, Static<declared>::Parameters(), Class, #Class "_" #member,   \
             #declared, probes, defaults_of(__VA_ARGS__))                                   \
    PyObject *_wrap_##function(PyObject *, PyObject *arguments) {                           \
        return Static<declared>::call<function.flags>(function, arguments, &Class::member); \
    }
#define METHOD_FUNCTION(function, probes, Class, member, declared, ...)                            \
    DESCRIBE(function, Method, (Method<Class, declared>::Parameters()), Class, #Class "_" #member, \
             #declared, probes, defaults_of(__VA_ARGS__))                                          \
    PyObject *_wrap_##function(PyObject *, PyObject *arguments) {                                  \
        return Method<Class, declared>::call<function.flags>(function, arguments, &Class::member); \
    }
#define CONSTRUCTOR_FUNCTION(function, probes, Class, declared, ...)                           \
    DESCRIBE(function, Constructor, Constructor<declared>::Parameters(), Class, "new_" #Class, \
             #declared, probes, defaults_of(__VA_ARGS__))                                      \
    PyObject *_wrap_##function(PyObject *, PyObject *arguments) {                              \
        return Constructor<declared>::call<function.flags>(function, arguments);               \
    }

#define STATIC_CASE(Class, member, number, declared, ...)                                        \
    STATIC_FUNCTION(Class##_##member##_##number, probes_of<Static<declared>::Parameters>, Class, \
                    member, declared, __VA_ARGS__)
#define METHOD_CASE(Class, member, number, declared, ...)                                          \
    METHOD_FUNCTION(Class##_##member##_##number, (probes_of<Method<Class, declared>::Parameters>), \
                    Class, member, declared, __VA_ARGS__)
#define CONSTRUCTOR_CASE(Class, number, declared, ...)                                         \
    CONSTRUCTOR_FUNCTION(new_##Class##_##number, probes_of<Constructor<declared>::Parameters>, \
                         Class, declared, __VA_ARGS__)
#define EXTENSION_FUNCTION(function, probes, Class, member, declared, implementation, ...) \
    DESCRIBE(function, Method, (Extension<Class, declared>::Parameters()), Class,          \
             #Class "_" #member, #declared, probes, defaults_of(__VA_ARGS__))              \
    PyObject *_wrap_##function(PyObject *, PyObject *arguments) {                          \
        return Extension<Class, declared>::call<function.flags>(function, arguments,       \
                                                                implementation);           \
    }
#define CONSTRUCTOR_EXTENSION_FUNCTION(function, probes, Class, declared, implementation, ...)   \
    DESCRIBE(function, Constructor, Constructor<declared>::Parameters(), Class, "new_" #Class,   \
             #declared, probes, defaults_of(__VA_ARGS__))                                        \
    PyObject *_wrap_##function(PyObject *, PyObject *arguments) {                                \
        return Constructor<declared>::make<function.flags>(function, arguments, implementation); \
    }

#define EXTENSION_CASE(Class, member, number, declared, implementation, ...)               \
    EXTENSION_FUNCTION(Class##_##member##_##number,                                        \
                       (probes_of<Extension<Class, declared>::Parameters>), Class, member, \
                       declared, implementation, __VA_ARGS__)
#define CONSTRUCTOR_EXTENSION_CASE(Class, number, declared, implementation, ...)                  \
    CONSTRUCTOR_EXTENSION_FUNCTION(new_##Class##_##number,                                        \
                                   probes_of<Constructor<declared>::Parameters>, Class, declared, \
                                   implementation, __VA_ARGS__)

// Rows

#define STATIC(Class, member, declared, ...)                                         \
    STATIC_FUNCTION(Class##_##member, nullptr, Class, member, declared, __VA_ARGS__) \
    ROW(Class##_##member)
#define METHOD(Class, member, declared, ...)                                         \
    METHOD_FUNCTION(Class##_##member, nullptr, Class, member, declared, __VA_ARGS__) \
    ROW(Class##_##member)
#define EXTENSION(Class, member, declared, implementation, ...)                            \
    EXTENSION_FUNCTION(Class##_##member, nullptr, Class, member, declared, implementation, \
                       __VA_ARGS__)                                                        \
    ROW(Class##_##member)
#define CONSTRUCTOR(Class, declared, ...)                                    \
    CONSTRUCTOR_FUNCTION(new_##Class, nullptr, Class, declared, __VA_ARGS__) \
    ROW(new_##Class)
#define CONSTRUCTOR_EXTENSION(Class, declared, implementation, ...)                       \
    CONSTRUCTOR_EXTENSION_FUNCTION(new_##Class, nullptr, Class, declared, implementation, \
                                   __VA_ARGS__)                                           \
    ROW(new_##Class)
/// "Class_assign": the host's assignment, whose result is the object itself.
#define ASSIGNMENT(Class)                                                 \
    DESCRIBE_METHOD(Class, assign, Class &(Class const &))                \
    PyObject *_wrap_##Class##_assign(PyObject *, PyObject *arguments) {   \
        return Method<Class, Class &(Class const &)>::call<METH_VARARGS>( \
            Class##_assign, arguments, &Class::operator=);                \
    }                                                                     \
    ROW(Class##_assign)
#define DESTRUCTOR(Class)                                                                 \
    DESCRIBE(delete_##Class, Destructor, Pack<Given<Class *>>(), Class, "delete_" #Class, \
             "void(" #Class " *)")                                                        \
    PyObject *_wrap_delete_##Class(PyObject *, PyObject *argument) {                      \
        return destroy<Class>(delete_##Class, argument);                                  \
    }                                                                                     \
    ROW(delete_##Class)

#define MEMBER(Class, field, Type)                                                            \
    static_assert(std::is_same_v<decltype(Class::field), Type>);                              \
    DESCRIBE(Class##_##field##_set, Setter, (Member<Class, Type>::SetParameters()), Class,    \
             #Class "_" #field "_set",                                                        \
             std::is_class_v<Type> ? "void(" #Type " *)" : "void(" #Type ")")                 \
    DESCRIBE(Class##_##field##_get, Getter, Pack<Class *>(), Class, #Class "_" #field "_get", \
             std::is_class_v<Type> ? #Type " *()" : #Type "()")                               \
    PyObject *_wrap_##Class##_##field##_set(PyObject *, PyObject *arguments) {                \
        return Member<Class, Type>::set(Class##_##field##_set, arguments, &Class::field);     \
    }                                                                                         \
    PyObject *_wrap_##Class##_##field##_get(PyObject *, PyObject *argument) {                 \
        return Member<Class, Type>::get(Class##_##field##_get, argument, &Class::field);      \
    }                                                                                         \
    ROW(Class##_##field##_set)                                                                \
    ROW(Class##_##field##_get)

#define OVERLOADS(Class, member, ...) OVERLOADED(Class##_##member, __VA_ARGS__)
#define CONSTRUCTOR_OVERLOADS(Class, ...) OVERLOADED(new_##Class, __VA_ARGS__)
#define OVERLOADED(function, ...)                                               \
    constexpr const Function *const function##_overloads[] = {__VA_ARGS__};     \
    PyObject *_wrap_##function(PyObject *self, PyObject *arguments) {           \
        return dispatch(function##_overloads, self, arguments);                 \
    }                                                                           \
    constexpr Dispatcher function =                                             \
        describe_dispatcher(#function, _wrap_##function, function##_overloads); \
    ROW(function)

// The proxy protocol: registration for every class, the initialiser for those that are constructed.

#define PROXY(Class)                                              \
    REGISTRATION(Class)                                           \
    PyObject *Class##_swiginit(PyObject *, PyObject *arguments) { \
        return SWIG_InitialiseProxy(arguments);                   \
    }                                                             \
    PROXY_ROW(Class##_swiginit, Initialise, Class)
#define REGISTRATION(Class)                                           \
    PyObject *Class##_swigregister(PyObject *, PyObject *arguments) { \
        return SWIG_RegisterProxy(arguments, type_of<Class>());       \
    }                                                                 \
    PROXY_ROW(Class##_swigregister, Register, Class)
#define PROXY_ROW(function, kind, Class)                                         \
    constexpr Function function##_row =                                          \
        describe_proxy_row(Kind::kind, #function, sizeof(#Class) - 1, function); \
    ROW(function##_row)

/// A row for a described function whose body stands before it.
#define ROW(function) \
    template <>       \
    constexpr Row row_at<__COUNTER__ - kFirstRow> = &function;

// A file's rows in order. Each row is a specialisation, numbered by the compiler's counter;
// everything between the first and the last row is the file's own.

namespace {
template <int index>
constexpr Row row_at = nullptr;
template <class Indices>
constexpr Row row_table[] = {nullptr};
template <int... i> // NOLINTNEXTLINE(misc-definitions-in-headers): the file's own
constexpr Row row_table<std::integer_sequence<int, i...>>[] = {row_at<i>...};
} // namespace

#define ROWS_BEGIN \
    namespace {    \
    constexpr int kFirstRow = __COUNTER__ + 1;
#define ROWS_END(name)                                 \
    }                                                  \
    extern constinit const std::span<const Row> name = \
        row_table<std::make_integer_sequence<int, __COUNTER__ - kFirstRow>>;

/// A constant named after its class and enumerator.
#define ENUMERATOR(Class, enumerator) \
    { #Class "_" #enumerator, Class::enumerator }
#define CONSTANTS(name, ...)                                 \
    static constexpr Constant name##_list[] = {__VA_ARGS__}; \
    PACK_CONSTANTS(name, name##_list)

// SPDX-License-Identifier: MIT
// The row language. A wrapper is one row, and the row is the only place where it is described: the
// native function, the line of the method table with its flag, the texts of all messages, and the
// proxy method, stub and documentation that are generated from the table all follow from it.
//
// clang-format off
//     STATIC(ZRenderView, startRender, ZStatus(unsigned int, unsigned int, bool, bool), false, false)
//     CONSTRUCTOR(ZRenderView, ZRenderView())
//     DESTRUCTOR(ZRenderView)
//     METHOD(ZCommonRenderSettingsData, isAnimated, bool() const)
//     MEMBER(RV_PIXEL, r, float)
//     PROXY(ZRenderView)
// clang-format on
//
// A row gives the member and its declared type, followed by the defaults of its last parameters.
// The compiler checks the type against the host's declaration; its text is what messages show, so
// it is written as users are to read it ("short const", "ZGLclampf"). A trailing ZStatus * is the
// wrapper's own and no argument. A default is a number or a truth value; 0 stands for an empty
// string and a null pointer.
//
// The cases of an overloaded function, numbered in declaration order, come right before its row,
// which tells how many they are:
//
//     STATIC_CASE(ZRenderUtil, raytrace, 1, ZStatus(ZFloatVector const &, ...), true)
//     STATIC_CASE(ZRenderUtil, raytrace, 2, ZStatus(ZFloatVectorArray const &, ...), true)
//     OVERLOADS(ZRenderUtil, raytrace, 2)
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
// METHOD_BY_HAND and OVERLOADS_BY_HAND are the rows of functions whose bodies stand in the family's
// source file.
//
// All names of native functions are "_wrap_" and the Python name, but for the proxy protocol's.
// Only make_rows.h includes this file; it undefines all of it again.

// Each macro is a sentence of its own:
// clang-format off
#define TEXTS(Class, name, declared) Texts{name "\0" declared, sizeof(#Class) - 1}
#define RECORD(function) row_table[at_##function]
#define CASE_PROBES(function) probes_of_cases<row_descriptions, at_##function>.data()

// Rows with one function.

#define STATIC_ROW(function, probes, Class, member, declared, ...) \
    ROW(_wrap_##function, function, \
        describe(Kind::kStatic, TEXTS(Class, #Class "_" #member, #declared), _wrap_##function, \
                 Static<declared>::Parameters(), probes, defaults_of(__VA_ARGS__)), \
        return Static<declared>::call<RECORD(function).flags>(RECORD(function), arguments, \
                                                              &Class::member);)
#define METHOD_ROW(function, probes, Class, member, declared, ...) \
    ROW(_wrap_##function, function, \
        describe(Kind::kMethod, TEXTS(Class, #Class "_" #member, #declared), _wrap_##function, \
                 Method<Class, declared>::Parameters(), probes, defaults_of(__VA_ARGS__)), \
        return Method<Class, declared>::call<RECORD(function).flags>(RECORD(function), arguments, \
                                                                     &Class::member);)
#define CONSTRUCTOR_ROW(function, probes, Class, declared, ...) \
    ROW(_wrap_##function, function, \
        describe(Kind::kConstructor, TEXTS(Class, "new_" #Class, #declared), _wrap_##function, \
                 Constructor<declared>::Parameters(), probes, defaults_of(__VA_ARGS__)), \
        return Constructor<declared>::call<RECORD(function).flags>(RECORD(function), arguments);)
#define EXTENSION_ROW(function, probes, Class, member, declared, implementation, ...) \
    ROW(_wrap_##function, function, \
        describe(Kind::kMethod, TEXTS(Class, #Class "_" #member, #declared), _wrap_##function, \
                 Extension<Class, declared>::Parameters(), probes, defaults_of(__VA_ARGS__)), \
        return Extension<Class, declared>::call<RECORD(function).flags>( \
            RECORD(function), arguments, implementation);)
#define CONSTRUCTOR_EXTENSION_ROW(function, probes, Class, declared, implementation, ...) \
    ROW(_wrap_##function, function, \
        describe(Kind::kConstructor, TEXTS(Class, "new_" #Class, #declared), _wrap_##function, \
                 Constructor<declared>::Parameters(), probes, defaults_of(__VA_ARGS__)), \
        return Constructor<declared>::make<RECORD(function).flags>(RECORD(function), arguments, \
                                                                   implementation);)

#define STATIC(Class, member, declared, ...) \
    STATIC_ROW(Class##_##member, nullptr, Class, member, declared, __VA_ARGS__)
#define METHOD(Class, member, declared, ...) \
    METHOD_ROW(Class##_##member, nullptr, Class, member, declared, __VA_ARGS__)
#define CONSTRUCTOR(Class, declared, ...) \
    CONSTRUCTOR_ROW(new_##Class, nullptr, Class, declared, __VA_ARGS__)
#define EXTENSION(Class, member, declared, implementation, ...) \
    EXTENSION_ROW(Class##_##member, nullptr, Class, member, declared, implementation, __VA_ARGS__)
#define CONSTRUCTOR_EXTENSION(Class, declared, implementation, ...) \
    CONSTRUCTOR_EXTENSION_ROW(new_##Class, nullptr, Class, declared, implementation, __VA_ARGS__)

/// "Class_assign": the host's assignment, whose result is the object itself.
#define ASSIGNMENT(Class) \
    ROW(_wrap_##Class##_assign, Class##_assign, \
        describe(Kind::kMethod, TEXTS(Class, #Class "_assign", #Class " &(" #Class " const &)"), \
                 _wrap_##Class##_assign, Method<Class, Class &(Class const &)>::Parameters()), \
        return Method<Class, Class &(Class const &)>::call<METH_VARARGS>( \
            RECORD(Class##_assign), arguments, &Class::operator=);)
#define DESTRUCTOR(Class) \
    ROW(_wrap_delete_##Class, delete_##Class, \
        describe(Kind::kDestructor, TEXTS(Class, "delete_" #Class, "void(" #Class " *)"), \
                 _wrap_delete_##Class, Pack<Released<Class *>>()), \
        return destroy<Class>(RECORD(delete_##Class), arguments);)

// A data member's two rows.

#define MEMBER(Class, field, Type) \
    ROW(_wrap_##Class##_##field##_set, Class##_##field##_set, \
        describe(Kind::kSetter, \
                 std::is_class_v<Type> \
                     ? TEXTS(Class, #Class "_" #field "_set", "void(" #Type " *)") \
                     : TEXTS(Class, #Class "_" #field "_set", "void(" #Type ")"), \
                 _wrap_##Class##_##field##_set, Member<Class, Type>::SetParameters()), \
        static_assert(std::is_same_v<decltype(Class::field), Type>); \
        return Member<Class, Type>::set(RECORD(Class##_##field##_set), arguments, \
                                        &Class::field);) \
    ROW(_wrap_##Class##_##field##_get, Class##_##field##_get, \
        describe(Kind::kGetter, \
                 std::is_class_v<Type> ? TEXTS(Class, #Class "_" #field "_get", #Type " *()") \
                                       : TEXTS(Class, #Class "_" #field "_get", #Type "()"), \
                 _wrap_##Class##_##field##_get, Pack<Class *>()), \
        return Member<Class, Type>::get(RECORD(Class##_##field##_get), arguments, &Class::field);)

// Overloads.

#define STATIC_CASE(Class, member, number, declared, ...) \
    STATIC_ROW(Class##_##member##_##number, probes_of<Static<declared>::Parameters>, Class, \
               member, declared, __VA_ARGS__)
#define METHOD_CASE(Class, member, number, declared, ...) \
    METHOD_ROW(Class##_##member##_##number, (probes_of<Method<Class, declared>::Parameters>), \
               Class, member, declared, __VA_ARGS__)
#define CONSTRUCTOR_CASE(Class, number, declared, ...) \
    CONSTRUCTOR_ROW(new_##Class##_##number, probes_of<Constructor<declared>::Parameters>, Class, \
                    declared, __VA_ARGS__)
#define EXTENSION_CASE(Class, member, number, declared, implementation, ...) \
    EXTENSION_ROW(Class##_##member##_##number, \
                  (probes_of<Extension<Class, declared>::Parameters>), Class, member, declared, \
                  implementation, __VA_ARGS__)
#define CONSTRUCTOR_EXTENSION_CASE(Class, number, declared, implementation, ...) \
    CONSTRUCTOR_EXTENSION_ROW(new_##Class##_##number, \
                              probes_of<Constructor<declared>::Parameters>, Class, declared, \
                              implementation, __VA_ARGS__)

#define OVERLOADS(Class, member, count) \
    ROW(_wrap_##Class##_##member, Class##_##member, \
        describe(Kind::kOverloads, TEXTS(Class, #Class "_" #member, ""), \
                 _wrap_##Class##_##member, count), \
        return dispatch(RECORD(Class##_##member), CASE_PROBES(Class##_##member), self, arguments);)
#define CONSTRUCTOR_OVERLOADS(Class, count) \
    ROW(_wrap_new_##Class, new_##Class, \
        describe(Kind::kOverloads, TEXTS(Class, "new_" #Class, ""), _wrap_new_##Class, count), \
        return dispatch(RECORD(new_##Class), CASE_PROBES(new_##Class), self, arguments);)

// The proxy protocol: registration for every class, the initialiser for those that are constructed.

#define PROXY(Class) \
    REGISTRATION(Class) \
    ROW(Class##_swiginit, Class##_swiginit, \
        describe(Kind::kInitialise, TEXTS(Class, #Class "_swiginit", ""), Class##_swiginit), \
        return SWIG_InitialiseProxy(arguments);)
#define REGISTRATION(Class) \
    ROW(Class##_swigregister, Class##_swigregister, \
        describe(Kind::kRegister, TEXTS(Class, #Class "_swigregister", ""), Class##_swigregister), \
        return SWIG_RegisterProxy(arguments, type_of<Class>());)

// Rows whose function is written by hand.

#define METHOD_BY_HAND(Class, member, declared, ...) \
    BY_HAND(Class##_##member, \
            describe(Kind::kMethod, TEXTS(Class, #Class "_" #member, #declared), \
                     _wrap_##Class##_##member, Method<Class, declared>::Parameters(), nullptr, \
                     defaults_of(__VA_ARGS__)))
#define CONSTRUCTOR_BY_HAND(Class, declared) \
    BY_HAND(new_##Class, describe(Kind::kConstructor, TEXTS(Class, "new_" #Class, #declared), \
                                  _wrap_new_##Class, Constructor<declared>::Parameters()))
#define DISOWN_BY_HAND(Class) \
    BY_HAND(disown_##Class, \
            describe(Kind::kDisown, TEXTS(Class, "disown_" #Class, "void(" #Class " *)"), \
                     _wrap_disown_##Class, Pack<Class *>()))
#define OVERLOADS_BY_HAND(Class, member, count) \
    BY_HAND(Class##_##member, describe(Kind::kOverloads, TEXTS(Class, #Class "_" #member, ""), \
                                       _wrap_##Class##_##member, count))
// clang-format on

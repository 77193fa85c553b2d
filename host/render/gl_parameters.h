// SPDX-License-Identifier: MIT
#pragma once

// What the lines of gl_functions.def write as "(type) name, (type) name", taken apart:
//   ZGL_PARAMETERS(...)  type name, type name
//   ZGL_TYPES(...)       type, type
//   ZGL_NAMES(...)       name, name

#define ZGL_PARAMETERS(...) __VA_OPT__(ZGL_EACH(ZGL_PARAMETER, __VA_ARGS__))
#define ZGL_TYPES(...) __VA_OPT__(ZGL_EACH(ZGL_TYPE, __VA_ARGS__))
#define ZGL_NAMES(...) __VA_OPT__(ZGL_EACH(ZGL_NAME, __VA_ARGS__))

#define ZGL_PARAMETER(parameter) ZGL_BARE parameter
#define ZGL_BARE(...) __VA_ARGS__
#define ZGL_TYPE(parameter) ZGL_FIRST(ZGL_SEPARATED parameter)
#define ZGL_SEPARATED(...) __VA_ARGS__,
#define ZGL_FIRST(...) ZGL_FIRST_OF(__VA_ARGS__)
#define ZGL_FIRST_OF(first, ...) first
#define ZGL_NAME(parameter) ZGL_DROP parameter
#define ZGL_DROP(...)

#define ZGL_EACH(f, ...)                                                                        \
    ZGL_FOURTEENTH(__VA_ARGS__, ZGL_EACH_13, ZGL_EACH_12, ZGL_EACH_11, ZGL_EACH_10, ZGL_EACH_9, \
                   ZGL_EACH_8, ZGL_EACH_7, ZGL_EACH_6, ZGL_EACH_5, ZGL_EACH_4, ZGL_EACH_3,      \
                   ZGL_EACH_2, ZGL_EACH_1)                                                      \
    (f, __VA_ARGS__)
#define ZGL_FOURTEENTH(_1, _2, _3, _4, _5, _6, _7, _8, _9, _10, _11, _12, _13, each, ...) each
#define ZGL_EACH_1(f, a) f(a)
#define ZGL_EACH_2(f, a, ...) f(a), ZGL_EACH_1(f, __VA_ARGS__)
#define ZGL_EACH_3(f, a, ...) f(a), ZGL_EACH_2(f, __VA_ARGS__)
#define ZGL_EACH_4(f, a, ...) f(a), ZGL_EACH_3(f, __VA_ARGS__)
#define ZGL_EACH_5(f, a, ...) f(a), ZGL_EACH_4(f, __VA_ARGS__)
#define ZGL_EACH_6(f, a, ...) f(a), ZGL_EACH_5(f, __VA_ARGS__)
#define ZGL_EACH_7(f, a, ...) f(a), ZGL_EACH_6(f, __VA_ARGS__)
#define ZGL_EACH_8(f, a, ...) f(a), ZGL_EACH_7(f, __VA_ARGS__)
#define ZGL_EACH_9(f, a, ...) f(a), ZGL_EACH_8(f, __VA_ARGS__)
#define ZGL_EACH_10(f, a, ...) f(a), ZGL_EACH_9(f, __VA_ARGS__)
#define ZGL_EACH_11(f, a, ...) f(a), ZGL_EACH_10(f, __VA_ARGS__)
#define ZGL_EACH_12(f, a, ...) f(a), ZGL_EACH_11(f, __VA_ARGS__)
#define ZGL_EACH_13(f, a, ...) f(a), ZGL_EACH_12(f, __VA_ARGS__)

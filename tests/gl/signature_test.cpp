// SPDX-License-Identifier: MIT
// The list of entry points against the system's OpenGL headers, which know the true types, and the
// intended differences.

#define GL_GLEXT_PROTOTYPES
#include "host/render/ZGLFunctionTable.h"

#include <GL/gl.h>
#include <GL/glext.h>
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <type_traits>

namespace {

template <class T>
struct WithoutConst : std::remove_const<T> {};
template <class T>
requires std::is_pointer_v<T>
struct WithoutConst<T>
    : std::add_pointer<typename WithoutConst<std::remove_pointer_t<std::remove_const_t<T>>>::type> {
};

template <class Signature>
struct Parts;
template <class R, class... A>
struct Parts<R(A...)> {
    using Result = typename WithoutConst<R>::type;
    using BareParameters = void(typename WithoutConst<A>::type...);
};

/// How a signature differs from the header's: empty for not at all. Whether data that the driver
/// only reads are declared so makes no difference for scripts.
template <class Ours, class Headers>
std::string difference() {
    using Result = typename Parts<Ours>::Result;
    if (!std::is_same_v<typename Parts<Ours>::BareParameters,
                        typename Parts<Headers>::BareParameters>)
        return "other parameters";
    if (std::is_same_v<Result, typename Parts<Headers>::Result>)
        return "";
    return std::is_void_v<Result>         ? "no result"
           : std::is_same_v<Result, bool> ? "outcome"
                                          : "result";
}

using Names = std::set<std::string>;

const std::map<std::string, Names> intendedDifferences = {
    // Buffers may be larger than the driver's memory, so these tell whether it had room.
    {"outcome", {"glBufferDataARB", "glBufferSubDataARB"}},
    // Declared without its answer from the first release on.
    {"no result", {"glIsOcclusionQueryNV"}},
};

TEST(GlSignatures, AreThoseOfTheSystemsHeaders) {
    std::map<std::string, Names> differences;
    int members = 0;
    const auto compare = [&](const char *member, const std::string &kind) {
        ++members;
        if (!kind.empty())
            differences[kind].insert(member);
    };
#define GL(since, result, member, ...) \
    GL_AS(member, since, result, member __VA_OPT__(, ) __VA_ARGS__)
#define GL_AS(entry, since, result, member, ...) \
    compare(#member, difference<result(ZGL_TYPES(__VA_ARGS__)), decltype(::entry)>());
#include "host/render/gl_functions.def"
    EXPECT_EQ(members, 736);
    EXPECT_EQ(differences, intendedDifferences);
}

} // namespace

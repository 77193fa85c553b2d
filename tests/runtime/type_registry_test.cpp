// SPDX-License-Identifier: MIT
// The module's type table, its cast graph, and lookups by name.

#include "runtime/module_types.h"
#include "tests/runtime/python_fixture.h"

#include <algorithm>
#include <vector>

using namespace pytest;

namespace {

class TypeRegistry : public pytest::Test {};

std::vector<std::string> names(const swig_type_info *target) {
    std::vector<std::string> result;
    for (const swig_cast_info *entry = target->cast; entry; entry = entry->next) {
        result.emplace_back(entry->type->name);
        EXPECT_EQ(entry->prev == nullptr, entry == target->cast) << entry->type->name;
        if (entry->next) {
            EXPECT_EQ(entry->next->prev, entry) << entry->type->name;
        }
    }
    return result;
}

} // namespace

TEST_F(TypeRegistry, HoldsTheSortedTypesAndTheCastGraph) {
    for (size_t i = 0; i < swig_module.size; ++i) {
        const swig_type_info *target = swig_types[i];
        EXPECT_EQ(type(target->name), target);
        int itself = 0;
        for (swig_cast_info *entry = target->cast; entry; entry = entry->next)
            itself += !entry->converter && entry->type == target;
        EXPECT_EQ(itself, 1) << target->name;
    }
    // Every node class converts to both bases, the other classes to the first only.
    const auto nodes = names(type("_p_ZFnDependencyNode")), all = names(type("_p_ZFnBase"));
    EXPECT_EQ(nodes.size(), 34u);
    EXPECT_EQ(all.size(), 72u);
    for (const std::string &name : nodes)
        EXPECT_EQ(std::count(all.begin(), all.end(), name), 1) << name;
}

TEST_F(TypeRegistry, ACheckMovesTheEntryFoundToTheFront) {
    swig_type_info *target = type("_p_ZFnDependencyNode");
    std::vector<std::string> expected = names(target);
    const size_t size = expected.size();
    for (size_t place : {size / 2, size - 1, size_t{0}, size_t{1}}) {
        SCOPED_TRACE(place);
        const std::string name = expected[place];
        ASSERT_EQ(SWIG_TypeCheck(name.c_str(), target), target->cast);
        std::rotate(expected.begin(), expected.begin() + static_cast<long>(place),
                    expected.begin() + static_cast<long>(place) + 1);
        EXPECT_EQ(names(target), expected);
    }
    for (const char *absent : {"_p_ZFnBase", "_p_ZFnMeshData", "_p_ZFnMes", ""})
        EXPECT_FALSE(SWIG_TypeCheck(absent, target)) << absent;
}

TEST_F(TypeRegistry, QueriesAcceptMangledNamesAndEveryReadableAlternative) {
    // By what is found; nothing for the last.
    const std::pair<const char *, std::vector<const char *>> rows[] = {
        {"_p_char", {"_p_char", "char *", "ZGLcharARB *", "char  *", "char*", "  char * "}},
        {"_p_p_char", {"char **", "ZGLcharARB * *"}},
        {"_p_int", {"ZGLint *", "GLsizei *", "ZGLsizeiptrARB *"}},
        {"_p_a_2__double", {"double (*)[2]", "Zdouble2 *"}},
        {nullptr, {"char *|ZGLcharARB *", "char", "_p_", "_p_zzz", "ZFnMesh *", ""}}};
    for (const auto &[found, queries] : rows)
        for (const char *query : queries) {
            const swig_type_info *expected = found ? type(found) : nullptr;
            EXPECT_EQ(SWIG_TypeQuery(query), expected) << query;
            EXPECT_EQ(SWIG_TypeQuery(query), expected) << query << " again";
        }
}

TEST_F(TypeRegistry, ClientDataReachEquivalentTypesButNoBase) {
    const auto converter = [](void *pointer, int *) { return pointer; };
    // a and b are equivalent, b and c are, d has data already, and e derives from a.
    swig_type_info a{"a", nullptr, nullptr, nullptr, nullptr, 0}, b = a, c = a, d = a, e = a;
    int mine, theirs;
    d.clientdata = &theirs;
    swig_cast_info in_a[] = {{&a, nullptr, &in_a[1], nullptr},
                             {&e, converter, &in_a[2], nullptr},
                             {&d, nullptr, &in_a[3], nullptr},
                             {&b, nullptr, nullptr, nullptr}};
    swig_cast_info in_b[] = {{&b, nullptr, &in_b[1], nullptr}, {&c, nullptr, nullptr, nullptr}};
    a.cast = in_a;
    b.cast = in_b;
    SWIG_TypeNewClientData(&a, &mine);
    const void *expected[] = {&mine, &mine, &mine, &theirs, nullptr};
    const swig_type_info *types[] = {&a, &b, &c, &d, &e};
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(types[i]->clientdata, expected[i]) << i;
        EXPECT_EQ(types[i]->owndata, i == 0) << i;
    }
}

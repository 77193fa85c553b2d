// The module's type table, its cast graph, and lookups by name.

#include "python_fixture.h"
#include "runtime/module_types.h"

#include <algorithm>
#include <set>
#include <sstream>
#include <vector>

using namespace pytest;

namespace {

class TypeRegistry : public pytest::Test {};

std::vector<std::string> names(const swig_type_info *target) {
    std::vector<std::string> result;
    for (const swig_cast_info *entry = target->cast; entry; entry = entry->next) {
        result.push_back(entry->type->name);
        EXPECT_EQ(entry->prev == nullptr, entry == target->cast) << entry->type->name;
        if (entry->next) {
            EXPECT_EQ(entry->next->prev, entry) << entry->type->name;
        }
    }
    return result;
}

std::multiset<std::string> mangled(const char *list, const char *itself) {
    std::multiset<std::string> result{itself};
    std::istringstream stream(list);
    for (std::string name; stream >> name;)
        result.insert("_p_ZFn" + name);
    return result;
}

constexpr char kNodes[] =
    "AmbientLight AnisotropyShader AreaLight Assembly BlinnShader Camera CameraSet ContainerNode "
    "DagNode DirectionalLight Expression ImageSource LambertShader LayeredShader Light Mesh "
    "NonAmbientLight NonExtendedLight NurbsCurve NurbsSurface Partition PhongEShader PhongShader "
    "PointLight Reference ReflectShader RenderLayer RenderPass Set SpotLight Subd Transform "
    "VolumeLight ";
constexpr char kOthers[] =
    "ArrayAttrsData Attribute Component ComponentListData CompoundAttribute Data DependencyNode "
    "DoubleArrayData DoubleIndexedComponent EnumAttribute FloatArrayData GenericAttribute "
    "GeometryData IntArrayData LatticeData LightDataAttribute MatrixArrayData MatrixAttribute "
    "MatrixData MeshData MessageAttribute NumericAttribute NumericData NurbsCurveData "
    "NurbsSurfaceData PluginData PointArrayData SingleIndexedComponent SphereData StringArrayData "
    "StringData SubdData TripleIndexedComponent TypedAttribute UInt64ArrayData "
    "Uint64SingleIndexedComponent UnitAttribute VectorArrayData";

} // namespace

TEST_F(TypeRegistry, HoldsTheSortedTypesAndExactlyTheCastGraph) {
    ASSERT_EQ(swig_module.size, 179u);
    EXPECT_EQ(swig_module.types, swig_types);
    EXPECT_FALSE(swig_types[179]);
    EXPECT_FALSE(swig_module.clientdata);
    int conversions = 0, unreadable = 0;
    std::set<std::string> classes;
    for (int i = 0; i < 179; ++i) {
        const swig_type_info *target = swig_types[i];
        SCOPED_TRACE(target->name);
        if (i) {
            EXPECT_LT(std::string(swig_types[i - 1]->name), target->name);
        }
        EXPECT_FALSE(target->dcast);
        unreadable += !target->str;
        int itself = 0;
        for (swig_cast_info *entry = target->cast; entry; entry = entry->next) {
            if (!entry->converter) {
                EXPECT_EQ(entry->type, target);
                ++itself;
                continue;
            }
            ++conversions;
            classes.insert({entry->type->name, target->name});
            int new_memory = 0;
            EXPECT_EQ(SWIG_TypeCast(entry, address(0x77), &new_memory), address(0x77));
            EXPECT_EQ(new_memory, 0);
        }
        EXPECT_EQ(itself, 1);
    }
    EXPECT_EQ(conversions, 104);
    EXPECT_EQ(classes.size(), 72u);
    EXPECT_EQ(unreadable, 67);
    const auto sources = [](const char *base) {
        const auto list = names(type(base));
        return std::multiset<std::string>(list.begin(), list.end());
    };
    EXPECT_EQ(sources("_p_ZFnDependencyNode"), mangled(kNodes, "_p_ZFnDependencyNode"));
    EXPECT_EQ(sources("_p_ZFnBase"),
              mangled((std::string(kNodes) + kOthers).c_str(), "_p_ZFnBase"));
}

TEST_F(TypeRegistry, ACheckMovesTheEntryFoundToTheFront) {
    swig_type_info *target = type("_p_ZFnDependencyNode");
    std::vector<std::string> expected = names(target);
    const size_t size = expected.size();
    ASSERT_EQ(size, 34u);
    for (size_t place : {size / 2, size - 1, size - 1, size_t{0}, size_t{1}, size - 2}) {
        SCOPED_TRACE(place);
        const std::string name = expected[place];
        const swig_cast_info *entry = SWIG_TypeCheck(name.c_str(), target);
        ASSERT_TRUE(entry);
        EXPECT_EQ(entry->type->name, name);
        EXPECT_EQ(entry, target->cast);
        std::rotate(expected.begin(), expected.begin() + static_cast<long>(place),
                    expected.begin() + static_cast<long>(place) + 1);
        EXPECT_EQ(names(target), expected);
    }
    for (const char *absent : {"_p_ZFnBase", "_p_ZFnMeshData", "_p_ZFnMes", ""})
        EXPECT_FALSE(SWIG_TypeCheck(absent, target)) << absent;
    EXPECT_EQ(names(target), expected);
    EXPECT_FALSE(SWIG_TypeCheck("_p_ZFnBase", type("_p_ZFnMesh")));
    EXPECT_FALSE(SWIG_TypeCheck("_p_ZFnDependencyNode", type("_p_ZFnMesh")));
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
            EXPECT_EQ(SWIG_TypeQueryModule(&swig_module, &swig_module, query), expected) << query;
            EXPECT_EQ(SWIG_TypeQuery(query), expected) << query;
            EXPECT_EQ(SWIG_TypeQuery(query), expected) << query << " again";
        }
    for (int i = 0; i < 179; ++i)
        EXPECT_EQ(type(swig_types[i]->name), swig_types[i]);
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
    SWIG_TypeClientData(&c, &theirs);
    EXPECT_EQ(c.clientdata, &theirs);
    EXPECT_EQ(c.owndata, 0);
}

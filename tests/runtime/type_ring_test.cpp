// SPDX-License-Identifier: MIT
// How the module meets others of its kind in one interpreter. All of this is process-wide state:
// every case has a process of its own.

#include "runtime/client_data.h"
#include "runtime/module_types.h"
#include "tests/runtime/python_fixture.h"

#include <deque>
#include <map>
#include <vector>

using namespace binding;

extern "C" void init_OpenQuilRender();

using namespace pytest;

namespace {

/// Another extension module's table, made by hand. Every type converts to itself.
struct OtherModule {
    explicit OtherModule(const std::vector<const char *> &names) {
        for (const char *name : names) {
            records.push_back({name, nullptr, nullptr, nullptr, nullptr, 0});
            types.push_back(&records.back());
            add_cast(name, name);
        }
        types.push_back(nullptr);
        module = {types.data(), names.size(), &module, nullptr, nullptr, nullptr};
    }
    OtherModule(const OtherModule &) = delete;

    swig_type_info *operator[](const std::string &name) {
        for (swig_type_info &record : records)
            if (name == record.name)
                return &record;
        return nullptr;
    }
    void add_cast(const char *source, const char *target) {
        swig_type_info *owner = (*this)[target];
        casts.push_back({(*this)[source], nullptr, owner->cast, nullptr});
        if (owner->cast)
            owner->cast->prev = &casts.back();
        owner->cast = &casts.back();
    }
    /// Makes this module the head of the interpreter's ring.
    void publish() {
        PyObject *holder = PyImport_AddModule("swig_runtime_data4");
        PyModule_AddObject(holder, "type_pointer", PyCObject_FromVoidPtr(&module, nullptr));
    }

    std::deque<swig_type_info> records;
    std::deque<swig_cast_info> casts;
    std::vector<swig_type_info *> types;
    swig_module_info module;
};

swig_module_info *published_head() {
    return static_cast<swig_module_info *>(PyCObject_Import(
        const_cast<char *>("swig_runtime_data4"), const_cast<char *>("type_pointer")));
}

using Ring = std::vector<swig_module_info *>;

Ring ring() {
    Ring result{published_head()};
    while (result.size() < 9 && result.back()->next != result.front())
        result.push_back(result.back()->next);
    return result;
}

/// Every entry of every cast list, in order.
std::vector<swig_cast_info *> all_casts() {
    std::vector<swig_cast_info *> result;
    for (int i = 0; i < kTypeCount; ++i)
        for (swig_cast_info *entry = swig_types[i]->cast; entry; entry = entry->next)
            result.push_back(entry);
    return result;
}

/// The types on a cast list by name, each of which must be there once.
std::map<std::string, swig_type_info *> cast_map(const swig_type_info *target) {
    std::map<std::string, swig_type_info *> result;
    for (swig_cast_info *entry = target->cast; entry; entry = entry->next) {
        EXPECT_TRUE(result.insert({entry->type->name, entry->type}).second) << entry->type->name;
        EXPECT_EQ(entry->prev ? entry->prev->next : target->cast, entry) << entry->type->name;
    }
    return result;
}

/// This module's own record, and the one in use, for a mangled name.
size_t place(const std::string &name) {
    size_t place = 0;
    while (name != swig_type_initial[place]->name)
        ++place;
    return place;
}
swig_type_info *initial(const char *name) {
    return swig_type_initial[place(name)];
}
swig_type_info *in_use(const char *name) {
    return swig_types[place(name)];
}

bool converts(swig_type_info *source, swig_type_info *target) {
    const Ref object(SwigPyObject_New(address(0x10), source, 0));
    return SWIG_Python_ConvertPtrAndOwn(object, nullptr, target, 0) == 0;
}

class TypeRing : public testing::Test {};

} // namespace

TEST_F(TypeRing, RecordsAndCastsOfAnEarlierModuleAreTakenOver) {
    EXPECT_SURVIVES({
        start_python();
        OtherModule other({"_p_ZDagPath", "_p_ZFnBase", "_p_ZFnMesh", "_p_ZFnSet", "_p_extra"});
        OtherModule second({"_p_ZFnMesh", "_p_ZImage"});
        other.add_cast("_p_ZFnMesh", "_p_ZFnBase");
        other.module.next = &second.module;
        second.module.next = &other.module;
        other.publish();
        int mine;
        initial("_p_ZDagPath")->clientdata = &mine;
        import_module();

        EXPECT_EQ(ring(), (Ring{&other.module, &swig_module, &second.module}));
        for (const char *name : {"_p_ZDagPath", "_p_ZFnBase", "_p_ZFnSet"})
            EXPECT_EQ(in_use(name), other[name]) << name;
        for (const char *name : {"_p_ZFnMesh", "_p_ZImage"})
            EXPECT_EQ(in_use(name), second[name]) << "the nearest behind in the ring: " << name;
        EXPECT_EQ(in_use("_p_ZObject"), initial("_p_ZObject"));
        EXPECT_EQ(other["_p_ZDagPath"]->clientdata, &mine);

        // A list that is the other module's own has each source once: entries that it had stay,
        // missing ones join it.
        const auto base = cast_map(other["_p_ZFnBase"]);
        EXPECT_EQ(base.size(), 72u);
        EXPECT_EQ(base.at("_p_ZFnMesh"), other["_p_ZFnMesh"]);
        // The list of a record of this module's own names the other modules' records.
        const auto node = cast_map(in_use("_p_ZFnDependencyNode"));
        EXPECT_EQ(node.size(), 34u);
        EXPECT_EQ(node.at("_p_ZFnMesh"), second["_p_ZFnMesh"]);
        EXPECT_EQ(node.at("_p_ZFnCamera"), initial("_p_ZFnCamera"));
        EXPECT_TRUE(converts(other["_p_ZFnSet"], in_use("_p_ZFnDependencyNode")));
        EXPECT_TRUE(converts(in_use("_p_ZFnCamera"), other["_p_ZFnBase"]));

        const auto casts = all_casts();
        init_OpenQuilRender();
        EXPECT_EQ(ring().size(), 3u);
        EXPECT_EQ(all_casts(), casts) << "initialising again changes nothing";
    });
}

TEST_F(TypeRing, AHolderThatIsNoModuleIsReplaced) {
    for (const char *holder : {"None", "5"})
        EXPECT_SURVIVES({
            start_python();
            run((std::string("import sys; sys.modules['swig_runtime_data4'] = ") + holder).c_str());
            import_module();
            EXPECT_EQ(published_head(), &swig_module);
        });
}

TEST_F(TypeRing, QueriesSeeModulesThatJoinLaterAndRememberHitsOnly) {
    EXPECT_SURVIVES({
        import_module();
        OtherModule late({"_p_late"});
        late["_p_late"]->str = "Late *|Later *";
        EXPECT_FALSE(SWIG_TypeQuery("Later *"));
        late.module.next = &swig_module;
        swig_module.next = &late.module;
        EXPECT_EQ(SWIG_TypeQuery("Later *"), late["_p_late"]);
        // The end of the search is exclusive.
        EXPECT_FALSE(SWIG_MangledTypeQueryModule(&swig_module, &late.module, "_p_late"));
        EXPECT_FALSE(SWIG_TypeQueryModule(&late.module, &swig_module, "char *"));
        swig_module.next = &swig_module;
        EXPECT_EQ(SWIG_TypeQuery("Later *"), late["_p_late"]) << "memoised";
        EXPECT_FALSE(SWIG_TypeQuery("Late *"));
    });
}

TEST_F(TypeRing, TeardownDropsTheReferencesOfOwnedClientData) {
    EXPECT_SURVIVES({
        import_module();
        run("class New(object):\n"
            "    __new__ = staticmethod(lambda cls: object.__new__(cls))\n"
            "    destroyed = []\n"
            "    __swig_destroy__ = staticmethod(lambda p: New.destroyed.append(int(p)))\n"
            "class Classic: pass\n"
            "_r.ZRenderData_swigregister(New)\n"
            "keep = New.__new__, New.__swig_destroy__\n");
        const Py_ssize_t unregistered = eval("Classic").count();
        run("_r.ZRenderView_swigregister(Classic)");
        EXPECT_EQ(eval("Classic").count(), unregistered + 2)
            << "as class, and to make instances of";
        // Attached, but not owned: left alone.
        SWIG_TypeClientData(in_use("_p_ZImage"), SwigPyClientData_New(eval("New")));
        const auto counts = [] {
            return std::vector{eval("keep[0]").count(), eval("keep[1]").count(),
                               eval("New").count(), eval("Classic").count(),
                               SWIG_This()->ob_refcnt};
        };
        auto expected = counts();
        Py_INCREF(SWIG_This());
        run("import swig_runtime_data4\ndel swig_runtime_data4.type_pointer");
        // __new__, __swig_destroy__, the argument tuple, which held New, the class of the old kind,
        // which is what its instances are made from, and the name "this".
        for (Py_ssize_t &count : expected)
            count -= 1;
        expected[4] += 2; // this test's reference, and the name asked for anew
        EXPECT_EQ(counts(), expected);
        // Pointer objects may live on, and destroy as long as the class can tell how.
        const auto drop_owner = [] {
            Ref(SwigPyObject_New(address(0x10), in_use("_p_ZRenderData"), 1)).drop();
        };
        drop_owner();
        expect({{"New.destroyed", "[16]"}});
        run("New.__swig_destroy__ = len");
        testing::internal::CaptureStdout();
        drop_owner();
        EXPECT_NE(testing::internal::GetCapturedStdout().find("no destructor found"),
                  std::string::npos);
        init_OpenQuilRender();
        EXPECT_EQ(published_head(), &swig_module) << "a holder without a head gets one again";
    });
}

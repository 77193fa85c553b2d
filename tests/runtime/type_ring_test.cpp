// How the module meets others of its kind in one interpreter. All of this is process-wide state:
// every case has a process of its own.

#include "python_fixture.h"
#include "runtime/client_data.h"
#include "runtime/module_types.h"

#include <algorithm>
#include <deque>
#include <map>
#include <vector>

extern "C" void init_OpenQuilRender();

using namespace pytest;

namespace {

/// Another extension module's table, made by hand. Every type converts to itself.
struct OtherModule {
    explicit OtherModule(std::vector<const char *> names) {
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

std::vector<swig_module_info *> ring() {
    std::vector<swig_module_info *> result{published_head()};
    while (result.size() < 9 && result.back()->next != result.front())
        result.push_back(result.back()->next);
    return result;
}

using Ring = std::vector<swig_module_info *>;

/// Every entry of every cast list with its type, in order.
std::vector<std::pair<swig_cast_info *, swig_type_info *>> all_casts() {
    std::vector<std::pair<swig_cast_info *, swig_type_info *>> result;
    for (int i = 0; i < kTypeCount; ++i)
        for (swig_cast_info *entry = swig_types[i]->cast; entry; entry = entry->next)
            result.push_back({entry, entry->type});
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
    return static_cast<size_t>(std::find_if(swig_type_initial, swig_type_initial + kTypeCount,
                                            [&](auto *own) { return name == own->name; }) -
                               swig_type_initial);
}
swig_type_info *initial(const char *name) {
    return swig_type_initial[place(name)];
}
swig_type_info *in_use(const char *name) {
    return swig_types[place(name)];
}

class TypeRing : public testing::Test {};

} // namespace

TEST_F(TypeRing, AloneTheModuleMakesTheRingAndInitialisingAgainChangesNothing) {
    // A holder without the attribute, or with one of another kind, means that there is no ring.
    for (const char *before : {"", "sys.modules['swig_runtime_data4'] = type(sys)('empty')",
                               "sys.modules['swig_runtime_data4'] = m = type(sys)('m')\n"
                               "m.type_pointer = 5"})
        EXPECT_SURVIVES({
            start_python();
            run((std::string("import sys\n") + before).c_str());
            import_module();
            EXPECT_EQ(ring(), Ring{&swig_module});
            EXPECT_EQ(in_use("_p_ZDagPath"), initial("_p_ZDagPath"));
            const auto casts = all_casts();
            for (int i = 0; i < 3; ++i)
                init_OpenQuilRender();
            EXPECT_EQ(pending(), "");
            EXPECT_EQ(ring(), Ring{&swig_module});
            EXPECT_EQ(all_casts(), casts);
        });
}

TEST_F(TypeRing, RecordsAndCastsOfAnEarlierModuleAreTakenOver) {
    EXPECT_SURVIVES({
        start_python();
        OtherModule other({"_p_ZDagPath", "_p_ZFnBase", "_p_ZFnMesh", "_p_ZFnSet", "_p_extra"});
        other.add_cast("_p_ZFnMesh", "_p_ZFnBase");
        other.publish();
        int mine;
        initial("_p_ZDagPath")->clientdata = &mine;
        import_module();
        EXPECT_EQ(pending(), "");

        EXPECT_EQ(ring(), (Ring{&other.module, &swig_module}));
        for (const char *name : {"_p_ZDagPath", "_p_ZFnBase", "_p_ZFnMesh", "_p_ZFnSet"})
            EXPECT_EQ(in_use(name), other[name]) << name;
        EXPECT_EQ(in_use("_p_ZObject"), initial("_p_ZObject"));
        EXPECT_FALSE(swig_types[kTypeCount]);
        EXPECT_EQ(other["_p_ZDagPath"]->clientdata, &mine);
        EXPECT_FALSE(other["_p_ZFnMesh"]->clientdata);

        // A list that is the other module's own has each source once: entries that it had stay,
        // missing ones join it.
        const auto base = cast_map(other["_p_ZFnBase"]);
        EXPECT_EQ(base.size(), 72u);
        EXPECT_EQ(base.at("_p_ZFnBase"), other["_p_ZFnBase"]);
        EXPECT_EQ(base.at("_p_ZFnMesh"), other["_p_ZFnMesh"]);
        EXPECT_EQ(cast_map(other["_p_ZDagPath"]).size(), 1u);
        // The list of a record of this module's own names the other module's records.
        const auto node = cast_map(in_use("_p_ZFnDependencyNode"));
        EXPECT_EQ(node.size(), 34u);
        EXPECT_EQ(node.at("_p_ZFnMesh"), other["_p_ZFnMesh"]);
        EXPECT_EQ(node.at("_p_ZFnSet"), other["_p_ZFnSet"]);
        EXPECT_EQ(node.at("_p_ZFnCamera"), initial("_p_ZFnCamera"));

        // Pointer objects of either module convert in the other.
        const Ref set(SwigPyObject_New(address(0x10), other["_p_ZFnSet"], 0));
        const Ref camera(SwigPyObject_New(address(0x20), in_use("_p_ZFnCamera"), 0));
        EXPECT_EQ(SWIG_Python_ConvertPtrAndOwn(set, nullptr, in_use("_p_ZFnDependencyNode"), 0), 0);
        EXPECT_EQ(SWIG_Python_ConvertPtrAndOwn(camera, nullptr, other["_p_ZFnBase"], 0), 0);

        const auto casts = all_casts();
        init_OpenQuilRender();
        EXPECT_EQ(ring(), (Ring{&other.module, &swig_module}));
        EXPECT_EQ(all_casts(), casts);
    });
}

TEST_F(TypeRing, TheNearestModuleBehindInTheRingWins) {
    EXPECT_SURVIVES({
        start_python();
        OtherModule head({"_p_ZDagPath", "_p_ZObject"});
        OtherModule second({"_p_ZImage", "_p_ZObject"});
        head.module.next = &second.module;
        second.module.next = &head.module;
        head.publish();
        import_module();
        EXPECT_EQ(ring(), (Ring{&head.module, &swig_module, &second.module}));
        EXPECT_EQ(in_use("_p_ZDagPath"), head["_p_ZDagPath"]);
        EXPECT_EQ(in_use("_p_ZImage"), second["_p_ZImage"]);
        EXPECT_EQ(in_use("_p_ZObject"), second["_p_ZObject"]);
    });
}

TEST_F(TypeRing, QueriesSeeModulesThatJoinLaterAndRememberHitsOnly) {
    EXPECT_SURVIVES({
        import_module();
        OtherModule late({"_p_late"});
        late["_p_late"]->str = "Late *|Later *";
        OtherModule empty({});
        EXPECT_FALSE(SWIG_TypeQuery("Later *"));
        late.module.next = &empty.module;
        empty.module.next = &swig_module;
        swig_module.next = &late.module;
        EXPECT_EQ(SWIG_TypeQuery("Later *"), late["_p_late"]);
        EXPECT_EQ(SWIG_TypeQuery("_p_late"), late["_p_late"]);
        // The end of the search is exclusive.
        EXPECT_FALSE(SWIG_MangledTypeQueryModule(&swig_module, &late.module, "_p_late"));
        EXPECT_TRUE(SWIG_MangledTypeQueryModule(&late.module, &swig_module, "_p_late"));
        EXPECT_FALSE(SWIG_TypeQueryModule(&late.module, &swig_module, "char *"));
        swig_module.next = &swig_module;
        EXPECT_EQ(SWIG_TypeQuery("Later *"), late["_p_late"]) << "memoised";
        EXPECT_FALSE(SWIG_TypeQuery("Late *"));
    });
}

TEST_F(TypeRing, InterpretersComeAndGo) {
    EXPECT_SURVIVES({
        import_module();
        const auto casts = all_casts();
        PyThreadState *main = PyThreadState_Get();
        PyThreadState *second = Py_NewInterpreter();
        init_OpenQuilRender();
        EXPECT_EQ(pending(), "");
        EXPECT_EQ(all_casts(), casts);
        EXPECT_EQ(ring(), Ring{&swig_module});
        EXPECT_TRUE(PyImport_ImportModule("_OpenQuilRender"));
        Py_EndInterpreter(second);
        PyThreadState_Swap(main);
        const Ref mesh(SwigPyObject_New(address(0x10), in_use("_p_ZFnMesh"), 0));
        EXPECT_EQ(SWIG_Python_ConvertPtrAndOwn(mesh, nullptr, in_use("_p_ZFnBase"), 0), 0);
        // The interpreter ends with proxies alive.
        run("class ZRenderData(object): __swig_destroy__ = _r.delete_ZRenderData\n"
            "_r.ZRenderData_swigregister(ZRenderData)\n"
            "sys.modules['kept'] = data = ZRenderData()\n"
            "_r.ZRenderData_swiginit(data, _r.new_ZRenderData())\n");
        Py_Finalize();
    });
}

TEST_F(TypeRing, TeardownDropsTheReferencesOfOwnedClientData) {
    EXPECT_SURVIVES({
        import_module();
        run("class New(object):\n"
            "    __new__ = staticmethod(lambda cls: object.__new__(cls))\n"
            "    __swig_destroy__ = staticmethod(lambda p: None)\n"
            "class Classic: __swig_destroy__ = staticmethod(New.__swig_destroy__)\n"
            "_r.ZRenderData_swigregister(New)\n"
            "_r.ZRenderShadowData_swigregister(Classic)\n"
            "keep = New.__new__, New.__swig_destroy__\n");
        // Attached, but not owned: left alone.
        swig_type_info *shared = in_use("_p_ZImage");
        SWIG_TypeClientData(shared, SwigPyClientData_New(eval("New")));
        const auto counts = [] {
            return std::vector{eval("keep[0]").count(), eval("keep[1]").count(),
                               eval("New").count(), eval("Classic").count()};
        };
        auto expected = counts();
        PyObject *name = SWIG_This();
        Py_INCREF(name);
        const Py_ssize_t name_count = name->ob_refcnt;
        run("import swig_runtime_data4\ndel swig_runtime_data4.type_pointer");
        expected[0] -= 1; // __new__
        expected[1] -= 2; // __swig_destroy__ of two classes
        expected[2] -= 1; // the argument tuple, which held New
        expected[3] -= 1; // a classic class itself
        EXPECT_EQ(counts(), expected);
        EXPECT_EQ(name->ob_refcnt, name_count - 1);
        EXPECT_EQ(str(SWIG_This()), "this");
        // Pointer objects may live on.
        testing::internal::CaptureStdout();
        Ref(SwigPyObject_New(address(0x10), in_use("_p_ZRenderData"), 1)).drop();
        EXPECT_EQ(testing::internal::GetCapturedStdout(),
                  "swig/python detected a memory leak of type 'ZRenderData *', "
                  "no destructor found.\n");
    });
}

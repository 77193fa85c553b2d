// Python classes that override the host's callbacks.

#include "host/base/TpythonInterpreter.h"
#include "python_fixture.h"
#include "runtime/module_types.h"
#include "wrappers/render/render_callback_director.h"

#include <thread>
#include <vector>

using namespace pytest;

namespace {

class Director : public pytest::Test {
  protected:
    static void SetUpTestSuite() {
        pytest::Test::SetUpTestSuite();
        run(R"(
class ZRenderCallback(object):
    __swig_destroy__ = _r.delete_ZRenderCallback
    def __init__(self):
        me = None if type(self) is ZRenderCallback else self
        _r.ZRenderCallback_swiginit(self, _r.new_ZRenderCallback(me))
    def shadowCastCallback(self, d): return _r.ZRenderCallback_shadowCastCallback(self, d)
    def renderCallback(self, d): return _r.ZRenderCallback_renderCallback(self, d)
    def postProcessCallback(self, d): return _r.ZRenderCallback_postProcessCallback(self, d)
class ZRenderData(object):
    __swig_destroy__ = _r.delete_ZRenderData
    def __init__(self): _r.ZRenderData_swiginit(self, _r.new_ZRenderData())
_r.ZRenderCallback_swigregister(ZRenderCallback)
_r.ZRenderData_swigregister(ZRenderData)

class Callback(ZRenderCallback):
    def called(self, d): return self.action(d)
    shadowCastCallback = renderCallback = postProcessCallback = called
def make(action):
    callback = Callback()
    callback.action = action
    return callback
def throw(exception): raise exception
class Untrue(object):
    def __nonzero__(self): raise ValueError('no truth')
)");
    }
};

ZRenderCallback *native(PyObject *object) {
    void *pointer = nullptr;
    EXPECT_EQ(SWIG_Python_ConvertPtrAndOwn(object, &pointer, type_of<ZRenderCallback>(), 0), 0);
    return static_cast<ZRenderCallback *>(pointer);
}
ZRenderCallback *native(const char *expression) {
    return native(eval(expression));
}

/// One of the three callbacks, on data of its own.
bool call(ZRenderCallback &callback, int which) {
    static ZRenderData data;
    static ZRenderShadowData shadow;
    return which == 0   ? callback.shadowCastCallback(shadow)
           : which == 1 ? callback.renderCallback(data)
                        : callback.postProcessCallback(data);
}

/// All three throw exactly E, and leave an exception of the same text.
template <class E>
void expect_thrown(ZRenderCallback &callback, const char *type, const char *message) {
    for (int which : {0, 1, 2}) {
        try {
            call(callback, which);
            ADD_FAILURE() << "nothing thrown";
        } catch (const Swig::DirectorException &exception) {
            EXPECT_EQ(typeid(exception), typeid(E));
            EXPECT_STREQ(exception.what(), message);
        }
        EXPECT_EQ(pending(), std::string(type) + ": " + message);
    }
}

constexpr char kMismatch[] = "SWIG director type mismatch in output value of type 'bool'";

} // namespace

TEST_F(Director, ForwardsACallAndReadsTheTruthOfItsResult) {
    const struct {
        const char *action;
        bool result;
        std::string reported; // part of what is written to standard error
    } rows[] = {{"lambda d: True", true, ""},
                {"lambda d: None", false, ""},
                {"lambda d: []", false, ""},
                {"lambda d: 'no'", true, ""},
                {"lambda d: throw(ValueError('inside'))", false, "ValueError: inside"},
                {"lambda d: throw(SystemExit(3))", false, "SystemExit"},
                {"lambda: True", false, "TypeError"}};
    for (const auto &row : rows)
        for (int which : {0, 1, 2}) {
            SCOPED_TRACE(std::string(row.action) + " " + std::to_string(which));
            const Ref callback = eval(std::string("make(") + row.action + ")");
            const Py_ssize_t count = callback.count();
            const unsigned reported = TpythonInterpreter::reportedCount();
            testing::internal::CaptureStderr();
            EXPECT_EQ(call(*native(callback), which), row.result);
            const std::string text = testing::internal::GetCapturedStderr();
            EXPECT_EQ(pending(), "");
            EXPECT_EQ(TpythonInterpreter::reportedCount(), reported + !row.reported.empty());
            EXPECT_NE(text.find(row.reported), std::string::npos) << text;
            run("sys.exc_clear(); sys.last_traceback = None");
            EXPECT_EQ(callback.count(), count);
        }
}

TEST_F(Director, FailedCallsThrow) {
    const Ref untrue = eval("make(lambda d: Untrue())");
    expect_thrown<Swig::DirectorTypeMismatchException>(*native(untrue), "TypeError", kMismatch);
    SwigDirector_ZRenderCallback none(nullptr);
    expect_thrown<Swig::DirectorException>(
        none, "RuntimeError",
        "'self' uninitialized, maybe you forgot to call ZRenderCallback.__init__.");
    const Swig::Director &base = none;
    base.swig_set_inner(std::string("renderCallback").c_str(), true);
    EXPECT_TRUE(base.swig_get_inner("renderCallback"));
    EXPECT_FALSE(base.swig_get_inner("shadowCastCallback"));
    for (const auto &[text, message] : {std::pair{"text", "header text"}, {"", "header"}}) {
        EXPECT_STREQ(Swig::DirectorException(PyExc_ValueError, "header", text).what(), message);
        EXPECT_EQ(pending(), std::string("ValueError: ") + message);
        const KeepsEarlierException earlier;
        EXPECT_STREQ(Swig::DirectorException(PyExc_ValueError, "header", text).what(), message);
    }
}

TEST_F(Director, TheMethodSeesTheHostsDataUnderItsProxy) {
    run("seen = []; callback = make(lambda d: seen.append((type(d), d.this.own(), int(d.this))))");
    ZRenderData data;
    native("callback")->renderCallback(data);
    expect({{"seen", "[(<class 'tests.ZRenderData'>, False, " +
                         std::to_string(reinterpret_cast<size_t>(&data)) + ")]"}});
}

TEST_F(Director, TheBaseClassMethodReachesTheHostsOwn) {
    run(R"(
class Silent(ZRenderCallback): pass
class Up(ZRenderCallback):
    calls = 0
    def renderCallback(self, d):
        self.calls += 1
        return not ZRenderCallback.renderCallback(self, d)
up, untrue, data = Up(), make(lambda d: Untrue()), ZRenderData()
)");
    const Ref silent = eval("Silent()");
    for (int which : {0, 1, 2})
        EXPECT_FALSE(call(*native(silent), which));
    EXPECT_TRUE(call(*native("up"), 1));
    // Called on anything but the instance itself it is an ordinary virtual call.
    expect({{"up.calls", "1"},
            {"_r.ZRenderCallback_renderCallback(up.this, data)", "True"},
            {"_r.ZRenderCallback_renderCallback(up, data)", "False"},
            {"ZRenderCallback().renderCallback(data)", "False"},
            {"up.calls", "2"},
            {"_r.ZRenderCallback_renderCallback(untrue.this, data)",
             std::string("<TypeError: ") + kMismatch + ">"}});
}

TEST_F(Director, OnceDisownedItKeepsItsInstance) {
    run("plain, callback = ZRenderCallback(), make(lambda d: True)\n"
        "watch = weakref.ref(callback)\n"
        "callback.this.disown()\n");
    ZRenderCallback *callback = native("callback");
    const Py_ssize_t count = eval("callback").count();
    expect({{"_r.disown_ZRenderCallback(callback)", "None"},
            {"_r.disown_ZRenderCallback(callback)", "None"},
            {"_r.disown_ZRenderCallback(plain)", "None"}}); // no director
    EXPECT_EQ(eval("callback").count(), count + 1);
    run("del callback; assert watch()");
    EXPECT_TRUE(call(*callback, 1));
    delete callback;
    run("assert not watch()");
    // One that was never disowned goes with its instance.
    run("watch = weakref.ref(make(None)); assert not watch()");
}

TEST_F(Director, NativeThreadsCallWhileTheMainThreadHasReleasedTheLock) {
    run(R"(
seen = []
good = make(lambda d: seen.append(captured()) or True)
bad = make(lambda d: throw(ValueError('on a thread')))
untrue = make(lambda d: Untrue())
kept = make(lambda d: True)
kept.this.disown()
_r.disown_ZRenderCallback(kept)
watch = weakref.ref(kept)
)");
    ZRenderCallback *good = native("good"), *bad = native("bad"), *untrue = native("untrue"),
                    *kept = native("kept");
    run("del kept");
    const unsigned reported = TpythonInterpreter::reportedCount();
    testing::internal::CaptureStderr();
    PyThreadState *state = PyEval_SaveThread();
    std::thread([&] {
        EXPECT_TRUE(call(*good, 0));
        delete kept;
    }).join();
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&, i] {
            for (int round = 0; round < 25; ++round) {
                EXPECT_TRUE(call(*good, (i + round) % 3));
                EXPECT_FALSE(call(*bad, 1));
                EXPECT_THROW(call(*untrue, 1), Swig::DirectorTypeMismatchException);
            }
        });
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(getLockCaptureCount(), 0);
    PyEval_RestoreThread(state);
    testing::internal::GetCapturedStderr();
    expect({{"(seen[0], len(seen))", "(1, 101)"}, {"watch()", "None"}});
    EXPECT_EQ(TpythonInterpreter::reportedCount(), reported + 100);
    run("del good, bad, untrue");
}

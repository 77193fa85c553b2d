// SPDX-License-Identifier: MIT
// Python classes that override the host's callbacks.

#include "devhost/process/InterpreterGate.h"
#include "runtime/module_types.h"
#include "tests/runtime/python_fixture.h"
#include "wrappers/render/render_callback_director.h"

#include <memory>
#include <thread>

using namespace binding;

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
        _r.ZRenderCallback_swiginit(self, _r.new_ZRenderCallback(self))
_r.ZRenderCallback_swigregister(ZRenderCallback)

class Callback(ZRenderCallback):
    def called(self, d): return self.action(d)
    shadowCastCallback = renderCallback = postProcessCallback = called
def make(action):
    callback = Callback()
    callback.action = action
    return callback
)");
    }
};

ZRenderCallback *native(const char *expression) {
    void *pointer = nullptr;
    EXPECT_EQ(
        SWIG_Python_ConvertPtrAndOwn(eval(expression), &pointer, type_of<ZRenderCallback>(), 0), 0);
    return static_cast<ZRenderCallback *>(pointer);
}

bool call(ZRenderCallback &callback) {
    return callback.renderCallback(ZRenderData());
}

} // namespace

TEST_F(Director, MethodsAreFoundAsTheInstanceFindsThem) {
    run(R"(
class CallableObject(Callback):
    class Yes(object):
        def __call__(self, d): return True
    renderCallback = Yes()
class Intercepted(Callback):
    def __getattribute__(self, name):
        if name == 'renderCallback': return lambda d: True
        return object.__getattribute__(self, name)
hidden = make(lambda d: False)
hidden.renderCallback = lambda d: True
found = [CallableObject(), Intercepted(), hidden]
)");
    for (const char *callback : {"found[0]", "found[1]", "found[2]"})
        EXPECT_TRUE(call(*native(callback))) << callback;
    run("del found, hidden");
}

TEST_F(Director, FailsWithoutAnInstance) {
    SwigDirector_ZRenderCallback none(nullptr);
    EXPECT_THROW(call(none), Swig::DirectorException);
    EXPECT_EQ(pending(), "RuntimeError: 'self' uninitialized, maybe you forgot to call "
                         "ZRenderCallback.__init__.");
    Ref gone = eval("type('Gone', (object,), {})()");
    SwigDirector_ZRenderCallback left(gone);
    gone.drop();
    left.swig_disown(); // keeps nothing
    EXPECT_THROW(call(left), Swig::DirectorException);
    PyErr_Clear();
    const KeepsEarlierException earlier;
    EXPECT_STREQ(Swig::DirectorException(PyExc_ValueError, "header", "text").what(), "header text");
}

TEST_F(Director, AnInstanceWithoutWeakReferencesIsHeld) {
    run("class Bare(object):\n"
        "    __slots__ = 'this'\n"
        "    died = []\n"
        "    def renderCallback(self, d): return True\n"
        "    def __del__(self): self.died.append(1)");
    for (const bool disowned : {false, true}) {
        Ref bare = eval("Bare()");
        auto director = std::make_unique<SwigDirector_ZRenderCallback>(bare);
        for (int times = 0; disowned && times < 2; ++times)
            director->swig_disown();
        bare.drop();
        expect({{"Bare.died", "[]"}});
        EXPECT_TRUE(call(*director));
        director.reset();
        expect({{"Bare.died", "[1]"}});
        run("del Bare.died[:]");
    }
}

TEST_F(Director, NothingIsLetGoOfOnceTheInterpreterEnds) {
    EXPECT_SURVIVES({
        run("kept = make(None); kept.this.disown(); _r.disown_ZRenderCallback(kept)\n"
            "import atexit; atexit.register(lambda: end(kept))");
        static ZRenderCallback *callback = native("kept");
        static Py_ssize_t before = 0, after = 0;
        static PyMethodDef end = {"end",
                                  [](PyObject *, PyObject *kept) {
                                      before = Py_REFCNT(kept);
                                      // The lock is taken, and not to be had any more.
                                      std::thread([] { delete callback; }).join();
                                      after = Py_REFCNT(kept);
                                      Py_RETURN_NONE;
                                  },
                                  METH_O, nullptr};
        define(end);
        devhost::endInterpreter();
        EXPECT_GT(before, 0);
        EXPECT_EQ(after, before);
    });
}

// SPDX-License-Identifier: MIT
// The modules in interpreters that end, begin again and stand side by side. Every case has a
// process of its own and a few seconds.

#include "devhost/session/RenderCallbacks.h"
#include "host/base/TpythonLock.h"
#include "host/render/ZRenderData.h"
#include "tests/child_process.h"

#include <string>
#include <thread>
#include <vector>

namespace {

using Code = std::string;

/// Text in and out, objects by value and by reference, directors, casts, failures.
const Code kUse = R"(
import OpenQuil as c, OpenQuilRender as r
class Callback(r.ZRenderCallback):
    made = []
    calls = property(lambda self: len(self.made))
    def renderCallback(self, data):
        self.made.append(1)  # counts on several threads as well
        return len(c.ZString(u'text')) == 4
def use():
    for text in u'caf\xe9', 'plain', u'\U0001f40d' * 2000:
        assert unicode(c.ZString(text)) == (text if isinstance(text, unicode) else unicode(text))
    profile = r.ZRenderProfile()
    profile.addRenderer('mine', 2.0)
    assert profile.hasRenderer(u'mine', 2.0)
    total = c.ZVector(1, 2, 3) + c.ZVector(1, 1, 1)
    assert (total.x, total.y, total.z) == (2, 3, 4), total
    assert type(total).__name__ == 'ZVector', type(total)
    data = r.ZRenderData()
    assert r._native.ZRenderCallback_renderCallback(callback.this, data) is True
    try:
        r._native.ZRenderCallback_renderCallback(None, 5)
    except TypeError:
        pass
callback = Callback()
r.ZRenderCallback.addCallback(callback, 0)
assert type(c.ZVector() + c.ZVector()) is c.ZVector
use()
)";

void run(const Code &code) {
    EXPECT_EQ(PyRun_SimpleString(code.c_str()), 0) << code;
}

void find_modules() {
    run("import sys; sys.path.insert(0, '" MODULES "')");
}

void start() {
    static char home[] = PYTHON2_HOME;
    Py_NoSiteFlag = Py_DontWriteBytecodeFlag = 1;
    Py_SetPythonHome(home);
    Py_InitializeEx(0);
    PyEval_InitThreads();
    find_modules();
}

/// What the host does with registered callbacks, on a native thread.
void call_from_native_thread() {
    PyThreadState *const state = PyEval_SaveThread();
    std::thread([] { devhost::runRenderCallbacks(ZRenderData()); }).join();
    PyEval_RestoreThread(state);
    EXPECT_FALSE(PyErr_Occurred());
}

PyThreadState *start_second() {
    PyThreadState *const state = Py_NewInterpreter();
    find_modules();
    return state;
}

void end_second(PyThreadState *state, PyThreadState *main) {
    // Threads are joined a little before they are gone.
    while (PyThreadState_Next(PyInterpreterState_ThreadHead(state->interp))) {
        PyEval_SaveThread();
        std::this_thread::yield();
        PyEval_RestoreThread(state);
    }
    Py_EndInterpreter(state);
    PyThreadState_Swap(main);
}

#define IN_CHILD(...) EXPECT_SURVIVES(__VA_ARGS__; EXPECT_EQ(TpythonLock::fsCapturedCount, 0))

const char *const kFirst[] = {"", "import _OpenQuil", "import _OpenQuilRender"};

} // namespace

TEST(Interpreters, EndAndBeginAgain) {
    for (const Code first : kFirst)
        IN_CHILD(for (int round = 0; round < 5; ++round) {
            start();
            run(first);
            run(kUse);
            call_from_native_thread();
            run("assert callback.calls == 2, callback.calls");
            Py_Finalize();
        });
}

TEST(Interpreters, ModulesAreLoadedAgain) {
    for (const Code again :
         {"import _OpenQuilRender as m; reload(m)", "reload(r); reload(c)",
          "for name in [n for n in sys.modules if 'OpenQuil' in n]: del sys.modules[name]"})
        IN_CHILD(start(); run(kUse); run("old = callback, use"); run(again); run(kUse);
                 call_from_native_thread(); run("assert old[0].calls > 1 and callback.calls == 2");
                 Py_Finalize());
}

/// What is alive when the interpreter ends, in the order in which scripts can arrange it.
TEST(Interpreters, EndInEveryOrder) {
    for (const Code alive :
         {"sys.keep = c.ZVector(), callback, c.FloatBuffer(3), iter(c.ZFloatArray())",
          "import __builtin__; __builtin__.keep = callback, Callback, c.ZVector",
          "vars(sys.modules['_OpenQuilRender']).clear(); vars(sys.modules['_OpenQuil']).clear()",
          "vars(r).clear(); vars(c).clear()", "sys.modules.clear()",
          "sys.swig = sys.modules.pop('swig_runtime_data4'); sys.swig.keep = c.ZVector()",
          "del sys.modules['swig_runtime_data4'].type_pointer; v = c.ZVector() + c.ZVector()",
          "callback.__disown__(); del callback", "callback.this.disown()",
          "keep = callback.this; del callback, r.ZRenderCallback._registered",
          R"(class Late(object):
    def __init__(self): self.vector, self.native = c.ZVector(1, 2, 3), c._native
    def __del__(self): self.native.ZVector_length(self.vector + self.vector)
sys.late = late = Late(); loop = c.ZVector(); loop.loop = loop, late)"})
        for (const Code first : {"", "import _OpenQuilRender"}) // which then owns the ring
            IN_CHILD(start(); run(first); run(kUse); run(alive); Py_Finalize(); start(); run(kUse);
                     Py_Finalize());
}

TEST(Interpreters, SeveralSideBySide) {
    for (const Code first : kFirst)
        for (const bool main_too : {true, false})
            IN_CHILD({
                start();
                PyThreadState *const main = PyThreadState_Get();
                run(first);
                if (main_too)
                    run(kUse);
                for (int round = 0; round < 3; ++round) {
                    PyThreadState *const second = start_second();
                    run(kUse);
                    call_from_native_thread();
                    run("assert callback.calls == 2, callback.calls");
                    PyThreadState_Swap(main);
                    run(main_too || round ? "use()" : kUse);
                    PyThreadState_Swap(second);
                    run("use(); r.ZRenderCallback.removeCallback(callback)");
                    end_second(second, main);
                    run("use()");
                    run("reload(c); reload(r); assert type(c.ZVector() + c.ZVector()) is "
                        "c.ZVector");
                }
                call_from_native_thread();
                Py_Finalize();
            });
}

/// An interpreter whose modules another one loaded finds their types all the same.
TEST(Interpreters, TheSecondOneLoads) {
    IN_CHILD({
        start();
        PyThreadState *const main = PyThreadState_Get();
        PyThreadState *const second = start_second();
        run("import _OpenQuilRender, _OpenQuil");
        end_second(second, main);
        run("import OpenQuil as c, OpenQuilRender as r\n"
            "r.ZGeometryData(c.CharBuffer('uv'), 1, 1, 2, 3, None)");
        run(kUse);
        Py_Finalize();
    });
}

TEST(Interpreters, ThreadsOfASecondOne) {
    IN_CHILD({
        start();
        PyThreadState *const main = PyThreadState_Get();
        PyThreadState *const second = start_second();
        run(kUse + R"(
import threading
threads = [threading.Thread(target=lambda: [use() for _ in range(50)]) for _ in range(4)]
for thread in threads: thread.start()
for thread in threads: thread.join()
assert callback.calls == 201, callback.calls
)");
        end_second(second, main);
        Py_Finalize();
    });
}

// SPDX-License-Identifier: MIT
#pragma once

// Python callbacks of every kind, and host threads that call them.

#include "devhost/process/InterpreterGate.h"
#include "devhost/raytrace/SoftwareRenderer.h"
#include "host/render/ZRenderCallback.h"
#include "runtime/director.h"
#include "runtime/module_types.h"
#include "tests/runtime/python_fixture.h"
#include "tests/test_scene.h"

#include <array>
#include <atomic>
#include <cstdlib>
#include <mutex>
#include <thread>

using namespace binding;

namespace threadtest {

constexpr unsigned kThreads = 16;

/// A number that the environment may set, for the long forms of the tests.
inline unsigned amount(const char *name, unsigned otherwise) {
    const char *text = std::getenv(name);
    return text ? static_cast<unsigned>(std::atoi(text)) : otherwise;
}

/// Entered callbacks, counted natively: the host's count of answers is compared with it.
inline std::atomic<unsigned> entered{0};

/// What came back to the host threads.
struct Answers {
    std::atomic<unsigned> yes{0}, no{0}, mismatches{0};
};

/// Calls one of the three callbacks on data that all threads share.
inline void call(ZRenderCallback &callback, unsigned which, Answers &answers) {
    static const ZRenderData data;
    static const ZRenderShadowData shadow;
    try {
        ++((which % 3 == 0   ? callback.shadowCastCallback(shadow)
            : which % 3 == 1 ? callback.renderCallback(data)
                             : callback.postProcessCallback(data))
               ? answers.yes
               : answers.no);
    } catch (const Swig::DirectorTypeMismatchException &error) {
        EXPECT_STREQ(error.what(), "SWIG director type mismatch in output value of type 'bool'");
        ++answers.mismatches;
    }
}

/// The native callback of a Python expression. The caller has the interpreter lock.
inline ZRenderCallback *native(const std::string &expression) {
    void *pointer = nullptr;
    EXPECT_EQ(SWIG_Python_ConvertPtrAndOwn(pytest::eval(expression), &pointer,
                                           type_of<ZRenderCallback>(), 0),
              0)
        << expression << pytest::pending();
    return static_cast<ZRenderCallback *>(pointer);
}

/// Starts sixteen threads that run body(number).
template <class Body>
std::vector<std::thread> start(Body body) {
    std::vector<std::thread> threads;
    for (unsigned number = 0; number < kThreads; ++number)
        threads.emplace_back([body, number] { body(number); });
    return threads;
}

/// Renders a frame on the calling thread, which does not have the interpreter lock; the renderer
/// has one session.
inline ZStatus render() {
    static std::mutex mutex;
    const std::lock_guard lock(mutex);
    devhost::Frame frame;
    return devhost::renderFrame(frame);
}

/// The interpreter with the callbacks' classes, and a scene of a few pixels.
class Threads : public apptest::SquareScene {
  protected:
    static PyObject *count(PyObject *, PyObject *) {
        ++entered;
        Py_RETURN_NONE;
    }
    static PyObject *hostRenders(PyObject *, PyObject *) {
        PyThreadState *state = PyEval_SaveThread();
        const bool done = !render().error();
        PyEval_RestoreThread(state);
        return PyBool_FromLong(done);
    }

    static void prepare() {
        pytest::import_module();
        build(8, 8, false);
        session().threads = 4;
        session().useGl = false;
        session().callbackGuard = [](const std::function<void()> &call) {
            const TpythonLock lock(kPythonLock);
            if (devhost::runsInterpreter())
                call();
        };
        session().onCallbackError = [](const char *, const char *) {};
        entered = 0;
        static PyMethodDef functions[] = {{"entered", count, METH_NOARGS, nullptr},
                                          {"host_renders", hostRenders, METH_NOARGS, nullptr}};
        for (PyMethodDef &function : functions)
            pytest::define(function);
        pytest::run(R"(
import cStringIO, gc, itertools, re
sys.setcheckinterval(3)
class ZRenderCallback(object):
    __swig_destroy__ = _r.delete_ZRenderCallback
    def __init__(self):
        _r.ZRenderCallback_swiginit(self, _r.new_ZRenderCallback(self))
    def shadowCastCallback(self, data): return _r.ZRenderCallback_shadowCastCallback(self, data)
    def renderCallback(self, data): return _r.ZRenderCallback_renderCallback(self, data)
    def postProcessCallback(self, data): return _r.ZRenderCallback_postProcessCallback(self, data)
_r.ZRenderCallback_swigregister(ZRenderCallback)

class Callback(ZRenderCallback):
    def called(self, data):
        entered()
        return self.action(data)
    shadowCastCallback = renderCallback = postProcessCallback = called

class Good(Callback):
    def action(self, data): return data
class Raises(Callback):
    def action(self, data):
        number = next(numbers)
        raised.append(str(number))
        raise ValueError('number %d' % number)
class Untrue(object):
    def __nonzero__(self): raise ValueError('no truth')
class UntrueToo(object):
    def __len__(self): return -1
class NoTruth(Callback):
    def action(self, data): return next(untruths)
class Reenters(Callback):
    def renderCallback(self, data):
        entered()
        eq(ZRenderCallback.renderCallback(self, data), False) # the host's own
        eq(_r.ZRenderCallback_renderCallback(shared['Inner'].this, data), True)
        if next(numbers) % 16 == 0: eq(host_renders(), True)
        return True
    def shadowCastCallback(self, data):
        entered()
        try: _r.ZRenderCallback_shadowCastCallback(shared['NotTrue'].this, data)
        except TypeError as error: return str(error).startswith('SWIG director type mismatch')
    def action(self, data): return self.shadowCastCallback is not None
class Inner(ZRenderCallback):
    def renderCallback(self, data): return bool(_r.ZRenderUtil_noise1(0.5)) or True
class NotTrue(ZRenderCallback):
    def shadowCastCallback(self, data): return Untrue()
class DropsItself(Callback):
    def action(self, data): return fresh.pop(id(self))
class DeletesItsPointer(Callback):
    def action(self, data):
        del fresh[id(self)], self.this
        return True
class DeletesItself(Callback):
    def action(self, data):
        _r.delete_ZRenderCallback(fresh.pop(id(self)))
        return True
class RaisesAndDropsItself(Raises):
    def action(self, data): raise fresh.pop(id(self)) and Raises.action(self, data)
class Disowned(Callback):
    def action(self, data): return self
class Cyclic(ZRenderCallback):
    def renderCallback(self, data): return self.itself is self # fails on a dead instance
    shadowCastCallback = postProcessCallback = renderCallback

fresh, shared, raised, numbers = {}, {}, [], itertools.count()
untruths = itertools.cycle([Untrue(), UntrueToo()])

def make(kind):
    made = globals()[kind]()
    fresh[id(made)] = made
    return made
def make_disowned(kind):
    made = globals()[kind]()
    made.this.disown()
    _r.disown_ZRenderCallback(made)
    return made
def keep_busy():
    for n in range(10):
        made = Cyclic()
        made.itself = made
        _r.ZRenderCallback_addCallback(made.this, -1)
        if n % 2: _r.ZRenderCallback_removeCallback(made.this)
    gc.collect()
def callbacks_alive():
    gc.collect()
    return sorted(type(o).__name__ for o in gc.get_objects() if isinstance(o, ZRenderCallback))
)");
    }
};

} // namespace threadtest

// SPDX-License-Identifier: MIT
// Sixteen Python threads in the module's functions at once, which change places as often as they
// can. Each piece of work knows its own results.

#include "runtime/packed_object.h"
#include "tests/across/threads/callers.h"

#include <set>

using namespace threadtest;
using namespace pytest;

namespace {

/// base_of(object, type name): the address at which the object is that type.
PyObject *base_of(PyObject *, PyObject *arguments) {
    PyObject *object;
    const char *name;
    void *pointer = nullptr;
    if (!PyArg_ParseTuple(arguments, "Os", &object, &name))
        return nullptr;
    if (SWIG_Python_ConvertPtrAndOwn(object, &pointer, type(name), 0) < 0)
        Py_RETURN_NONE;
    return PyLong_FromVoidPtr(pointer);
}

PyObject *pack(PyObject *, PyObject *bytes) {
    return SwigPyPacked_New(PyString_AS_STRING(bytes), size_t(PyString_GET_SIZE(bytes)),
                            type("_p_ZFnBase"));
}

std::multiset<const swig_type_info *> types_that_convert(const char *name) {
    std::multiset<const swig_type_info *> result;
    for (swig_cast_info *entry = type(name)->cast; entry; entry = entry->next) {
        result.insert(entry->type);
        EXPECT_TRUE(!entry->next || entry->next->prev == entry) << entry->type->name;
    }
    return result;
}

} // namespace

class PythonThreads : public Threads {};

TEST_F(PythonThreads, DoNotDisturbOneAnother) {
    prepare();
    static PyMethodDef functions[] = {{"base_of", base_of, METH_VARARGS, nullptr},
                                      {"pack", pack, METH_O, nullptr}};
    for (PyMethodDef &function : functions)
        define(function);
    const auto casts = types_that_convert("_p_ZFnBase");
    run(("TIMES = " + std::to_string(amount("PYTHON_ROUNDS", 50))).c_str());
    run(R"(
import thread
class Pixel(object): __swig_destroy__ = _r.delete_RV_PIXEL
_r.RV_PIXEL_swigregister(Pixel)
class Text(object):
    def __init__(self, text): self.text = text
    def __unicode__(self): return u''.join(list(self.text))
def raised(function, *arguments):
    try: function(*arguments)
    except Exception as error: return type(error).__name__, str(error)

def strings(mine, i):
    for text in (mine + u'\xe9', mine * 200 + unicode(i), Text(mine), mine.encode()):
        wanted = unicode(text, 'utf-8') if isinstance(text, str) else unicode(text)
        eq(_r.ZRenderUtil_relativeFileName(text), wanted)
def casts(mine, i):
    for name in 'ZFnMesh', 'ZFnCamera', 'ZFnRenderLayer', 'ZFnSet':
        made = pointer(4096 * i + int(mine), '_p_' + name)
        eq(base_of(made, '_p_ZFnDependencyNode'), base_of(made, '_p_ZFnBase'))
        eq(base_of(made, '_p_ZFnBase'), int(made))
        eq(base_of(made, '_p_RV_PIXEL'), None)
def client_data(mine, i):
    class Renderer(object):
        def __new__(cls, *_): return object.__new__(cls)
    _r.ZHardwareRenderer_swigregister(Renderer)
    found = _r.ZHardwareRenderer_theRenderer()
    eq(type(found).__name__, 'Renderer')
    eq(int(found.this), int(the_renderer))
def owned(mine, i):
    pixels = [_r.new_RV_PIXEL() for _ in range(5)]
    for n, pixel in enumerate(pixels): _r.RV_PIXEL_r_set(pixel, n + i)
    eq([_r.RV_PIXEL_r_get(pixel) for pixel in pixels], range(i, i + 5))
    eq(len(set(map(int, pixels))), 5)
def packed(mine, i):
    one, same, other = pack(mine.encode() * 3), pack(mine.encode() * 3), pack('x' * 9)
    eq((one == same, one == other), (True, False))
    eq(repr(one), '<Swig Packed at _%s_p_ZFnBase>' % (mine * 3).encode('hex'))
def gl(mine, i):
    eq(_r.ZGLFunctionTable_glColor3f(table, i, 2, 3), None)
    eq(_r.ZGLFunctionTable_glGetError(table) in (0, 1282), True)
    eq(raised(_r.ZGLFunctionTable_glColor3f, table, i, mine, 3),
       ('TypeError', "in method 'ZGLFunctionTable_glColor3f', argument 3 of type 'ZGLfloat'"))
def registry(mine, i):
    eq(_r.ZSwatchRenderRegister_registerSwatchRender(mine, None), None)
    eq(raised(_r.ZSwatchRenderRegister_registerSwatchRender, mine, None)[0], 'RuntimeError')
    if not raised(_r.ZSwatchRenderRegister_registerSwatchRender, 'shared', None):
        eq(_r.ZSwatchRenderRegister_unregisterSwatchRender('shared'), None)
    eq(_r.ZSwatchRenderRegister_unregisterSwatchRender(mine), None)
def callbacks(mine, i):
    made = Good()
    for priority in i, -i: _r.ZRenderCallback_addCallback(made, priority)
    if i % 2: _r.ZRenderCallback_removeCallback(made)

work = strings, casts, client_data, owned, packed, gl, registry, callbacks
the_renderer = _r.ZHardwareRenderer_theRenderer()
table = _r.ZHardwareRenderer_glFunctionTable(the_renderer)
failures, done = [], []
def worker(mine):
    for i in range(TIMES):
        for each in work[mine % 8:] + work[:mine % 8]:
            try: each(u'%03d' % mine, i)
            except BaseException as error: failures.append((each.__name__, mine, i, error))
    done.append(mine)
before = callbacks_alive()
sys.setcheckinterval(1)
for _i in range(16): thread.start_new_thread(worker, (_i,))
)");
    PyThreadState *state = PyEval_SaveThread();
    render(); // with callbacks that come and go
    PyEval_RestoreThread(state);
    run(R"(
import time
while len(done) < 16: time.sleep(0.001)
sys.setcheckinterval(3)
eq(failures[:3], [])
eq(callbacks_alive(), before)
eq(_r.ZSwatchRenderRegister_registerSwatchRender('shared', None), None)
eq(_r.ZSwatchRenderRegister_unregisterSwatchRender('shared'), None)
)");
    EXPECT_EQ(types_that_convert("_p_ZFnBase"), casts);
}

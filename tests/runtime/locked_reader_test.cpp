// The locked holder of a Python object and its readers of texts.

#include "host/base/TpythonObjectWithLock.h"
#include "python_fixture.h"
#include "runtime/director.h"

#include <thread>
#include <vector>

using namespace pytest;
using Holder = TpythonObjectWithLock<TpythonLock>;

namespace {

/// Reads with and without an exception pending and expects that none comes or goes.
template <class Value>
bool read(PyObject *object, Value &value) {
    const bool readable = Holder(object).getValue(value);
    EXPECT_EQ(pending(), "");
    return readable;
}

PyObject *to_unicode(const Tstring &text) {
    return PyUnicode_FromWideChar(text.asW(), text.numChars());
}

/// text(object): what the reader makes of it; None when it refuses and leaves its target alone.
PyObject *read_text(PyObject *, PyObject *object) {
    Tstring text("before"), again;
    const bool readable = read(object, text);
    const KeepsEarlierException earlier;
    EXPECT_EQ(Holder(object).getValue(again), readable);
    EXPECT_TRUE(readable || text == Tstring("before"));
    return readable ? to_unicode(text) : Py_BuildValue("");
}

/// texts(object): whether it was read, and the array, which was [u'-', u'-'].
PyObject *read_texts(PyObject *, PyObject *object) {
    TstringArray array;
    array.append("-");
    array.append("-");
    const bool readable = read(object, array);
    PyObject *list = PyList_New(0);
    for (unsigned i = 0; i < array.logicalSize(); ++i)
        PyList_Append(list, Ref(to_unicode(array[i])));
    return Py_BuildValue("(NN)", PyBool_FromLong(readable), list);
}

class LockedReader : public pytest::Test {
  protected:
    static void SetUpTestSuite() {
        pytest::Test::SetUpTestSuite();
        static PyMethodDef functions[] = {{"text", read_text, METH_O, nullptr},
                                          {"texts", read_texts, METH_O, nullptr}};
        for (PyMethodDef &function : functions)
            define(function);
    }
};

} // namespace

TEST_F(LockedReader, ReadsTextsAndSequencesOfThem) {
    run(R"(
class Text(object):
    def __init__(self, text): self.text = text
    def __unicode__(self):
        if isinstance(self.text, Exception): raise self.text
        return self.text
class CallableText(Text):
    def __call__(self): pass
class Buffer(bytearray):
    def __unicode__(self): return u'asked'
class CallableBuffer(Buffer):
    def __call__(self): pass
class String(str):
    def __unicode__(self): return u'asked'
class Sequence(object):
    def __init__(self, length, *items): self.length, self.items = length, items
    def __len__(self):
        if self.length is None: raise ValueError('no length')
        return self.length
    def __getitem__(self, i): return self.items[i]
def unchanged(function, value):
    count = sys.getrefcount(value)
    result = function(value)
    eq(sys.getrefcount(value), count + (value is None is result))
    return result

for value, expected in (
        ('abc', u'abc'), ('', u''), ('a\0\xc3\xa9', u'a\0\xe9'), (u'\0\u20ac', u'\0\u20ac'),
        (u'\U0001f600', u'\U0001f600'), ('\xf0\x9f\x98\x80', u'\U0001f600'),
        (type('U', (unicode,), {})(u'sub'), u'sub'), (String('bytes'), u'bytes'), (5, u'5'),
        (1.5, u'1.5'), ([1, u'a'], u"[1, u'a']"), (len, u'<built-in function len>'),
        (Text(u'own'), u'own'), (CallableText(u'own'), u'own'), (Buffer('bytes'), u'bytes'),
        (CallableBuffer('bytes'), u'asked'), # callables come before buffers
        (bytearray('\xc3\xa9'), u'\xe9'), (memoryview('a\0b'), u'a\0b'),
        (None, None), ('\xff', None), (String('\xc3'), None), (bytearray('\xff'), None),
        (memoryview('\xff'), None), (Text(ValueError()), None), (Text(5), None),
        (CallableText(ValueError()), None), (Text('\xff'), None)):
    eq(unchanged(text, value), expected)

for value, readable, expected in (
        ([], True, []), (('a', u'b', 5), True, ['a', 'b', '5']), (bytearray('a'), True, ['97']),
        (Sequence(2, 'a', 'b', 'c'), True, ['a', 'b']),
        (Sequence(2**32 + 1, 'a', 'b'), True, ['a']), # counted in 32 bits
        (('a', None), False, ['a', '-']), (['a', '\xff', 'c'], False, ['a', '-', '']),
        (['a', Text(ValueError()), 'c'], False, ['a', '-', '']),
        (Sequence(3, 'a'), False, ['a', '-', '']), (Sequence(None), False, ['-', '-']),
        ('abc', False, ['-', '-']), (u'abc', False, ['-', '-']), (5, False, ['-', '-']),
        (String('abc'), False, ['-', '-']), (None, False, ['-', '-']),
        ({'a': 1}, False, ['-', '-']), (iter(['a']), False, ['-', '-'])):
    eq(unchanged(texts, value), (readable, expected))
)");
    Tstring text;
    TstringArray array;
    EXPECT_FALSE(Holder().getValue(text) || Holder().getValue(array));
}

TEST_F(LockedReader, TheSharedBufferServesTextsUpToItsSize) {
    for (int size : {1, 1022, 1023, 1024, 1025, 100000}) {
        sPythonObjectCharConvertBuffer[0] = L'-';
        Tstring text;
        EXPECT_TRUE(read(eval("u'\\U0001f600' * " + std::to_string(size)), text));
        EXPECT_EQ(std::wstring(text.asW(), text.numChars()),
                  std::wstring(static_cast<size_t>(size), L'\U0001f600'));
        EXPECT_EQ(sPythonObjectCharConvertBuffer[0] == L'\U0001f600', size <= 1023) << size;
    }
}

TEST_F(LockedReader, TakesTheLockOnThreadsThatDoNotHaveIt) {
    run(R"(
class Counting(object):
    def __unicode__(self): return unicode(captured())
    def __del__(self): died.append(captured())
died, many = [], [Counting()] * 50 + [None]
)");
    const Ref counting = eval("many[0]"), many = eval("many");
    PyObject *dying = PyObject_CallObject(eval("Counting"), nullptr);
    Tstring here, there;
    EXPECT_TRUE(read(counting, here));
    EXPECT_STREQ(here.asUTF8(), "0") << "this thread has the lock anyway";
    const Py_ssize_t counts[] = {counting.count(), many.count()};

    PyThreadState *state = PyEval_SaveThread();
    std::thread([&] {
        const Holder holder(counting), last(dying);
        EXPECT_TRUE(holder.getValue(there));
        TpythonLock lock(kPythonLock);
        Py_DECREF(dying);
    }).join();
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] {
            TstringArray array;
            for (int round = 0; round < 20; ++round)
                EXPECT_FALSE(Holder(many).getValue(array));
            EXPECT_EQ(array.logicalSize(), 51u);
        });
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(getLockCaptureCount(), 0);
    PyEval_RestoreThread(state);

    EXPECT_STREQ(there.asUTF8(), "1");
    expect({{"died", "[1]"}});
    EXPECT_EQ(counting.count(), counts[0]);
    EXPECT_EQ(many.count(), counts[1]);
    run("del many, Counting.__del__");
}

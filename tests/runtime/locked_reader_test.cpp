// SPDX-License-Identifier: MIT
// The locked holder of a Python object and its readers of texts.

#include "host/base/TpythonObjectWithLock.h"
#include "runtime/director.h"
#include "tests/runtime/python_fixture.h"

#include <thread>

using namespace pytest;
using Holder = TpythonObjectWithLock<TpythonLock>;

namespace {

PyObject *to_unicode(const Tstring &text) {
    return PyUnicode_FromWideChar(text.asW(), text.numChars());
}

/// text(object): what the reader makes of it; None when it refuses and leaves its target alone. An
/// exception that is pending stays, and none comes.
PyObject *read_text(PyObject *, PyObject *object) {
    Tstring text("before"), again;
    const bool readable = Holder(object).getValue(text);
    EXPECT_EQ(pending(), "");
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
    const bool readable = Holder(object).getValue(array);
    EXPECT_EQ(pending(), "");
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
class CallableBuffer(bytearray):
    def __unicode__(self): return u'asked'
    def __call__(self): pass
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

long_text = u'\U0001f600' * 2000 # more than the shared buffer holds
for value, expected in (
        ('a\0\xc3\xa9', u'a\0\xe9'), (u'\0\u20ac', u'\0\u20ac'), (long_text, long_text),
        (u'x' * 1024, u'x' * 1024), (5, u'5'), ([1, u'a'], u"[1, u'a']"), (Text(u'own'), u'own'),
        (bytearray('\xc3\xa9'), u'\xe9'), (memoryview('a\0b'), u'a\0b'),
        (buffer('\0c'), u'\0c'), # of the old kind: converted by the interpreter
        (CallableBuffer('bytes'), u'asked'), # callables come before buffers
        (None, None), ('\xff', None), (bytearray('\xff'), None), (Text(ValueError()), None),
        (Text(5), None)):
    eq(unchanged(text, value), expected)

for value, readable, expected in (
        ([], True, []), (('a', u'b', 5), True, ['a', 'b', '5']),
        (Sequence(2, 'a', 'b', 'c'), True, ['a', 'b']),
        (Sequence(2**32 + 1, 'a', 'b'), True, ['a']), # counted in 32 bits
        (['a', None, 'c'], False, ['a', '-', '']), (Sequence(3, 'a'), False, ['a', '-', '']),
        (Sequence(None), False, ['-', '-']), ('abc', False, ['-', '-']),
        (u'abc', False, ['-', '-']), (5, False, ['-', '-']), (None, False, ['-', '-'])):
    eq(unchanged(texts, value), (readable, expected))
)");
    Tstring text;
    EXPECT_FALSE(Holder().getValue(text));
}

TEST_F(LockedReader, BytesAreInTheEncodingOfTheFileSystem) {
    const char *const usual = Py_FileSystemDefaultEncoding;
    const struct {
        const char *encoding, *text;
    } cases[] = {{"UTF-8", "u'\\xe9'"}, {"latin-1", "u'\\xc3\\xa9'"}, {nullptr, "None"}};
    for (const auto &row : cases) {
        Py_FileSystemDefaultEncoding = row.encoding; // null: the interpreter's default, ASCII
        expect({{"text('\\xc3\\xa9')", row.text}});
    }
    Py_FileSystemDefaultEncoding = usual;
}

TEST_F(LockedReader, TakesTheLockOnThreadsThatDoNotHaveIt) {
    run(R"(
class Counting(object):
    def __unicode__(self): return unicode(captured())
    def __len__(self): return captured()
    def __getitem__(self, i): return self
)");
    const Ref counting = eval("Counting()");
    Tstring here, there;
    TstringArray several;
    EXPECT_TRUE(Holder(counting).getValue(here));
    EXPECT_STREQ(here.asUTF8(), "0") << "this thread has the lock anyway";
    const Py_ssize_t count = counting.count();

    PyThreadState *state = PyEval_SaveThread();
    {
        const TpythonLock lock(kPythonLock);
        EXPECT_TRUE(pythonMainThreadIsLocked);
    }
    std::thread([&] {
        const TpythonLock lock(kPythonLock);
        EXPECT_FALSE(pythonMainThreadIsLocked);
    }).join();
    std::thread([&] {
        EXPECT_TRUE(Holder(counting).getValue(there));
        EXPECT_TRUE(Holder(counting).getValue(several));
    }).join();
    PyEval_RestoreThread(state);

    EXPECT_STREQ(there.asUTF8(), "1");
    ASSERT_EQ(several.logicalSize(), 1u) << "the lock is held already when the length is asked for";
    EXPECT_STREQ(several[0].asUTF8(), "1");
    EXPECT_EQ(counting.count(), count);
}

// SPDX-License-Identifier: MIT
// Sixteen host threads call Python callbacks of every kind while the main thread keeps the
// interpreter busy.

#include "devhost/process/ReportedExceptions.h"
#include "tests/across/threads/callers.h"

using namespace threadtest;
using namespace pytest;

namespace {

struct Kind {
    const char *name;
    /// Where a thread gets what it calls: one instance for all calls and threads, a new one for
    /// each call that is gone after it, or a new one that the thread has to delete.
    enum { kShared, kGoesItself, kDisowned } use;
    std::atomic<unsigned> Answers::*outcome;
};
constexpr Kind kKinds[] = {
    {"Good", Kind::kShared, &Answers::yes},
    {"Raises", Kind::kShared, &Answers::no},
    {"NoTruth", Kind::kShared, &Answers::mismatches},
    {"Reenters", Kind::kShared, &Answers::yes},
    {"DropsItself", Kind::kGoesItself, &Answers::yes},
    {"DeletesItsPointer", Kind::kGoesItself, &Answers::yes},
    {"DeletesItself", Kind::kGoesItself, &Answers::yes},
    {"RaisesAndDropsItself", Kind::kGoesItself, &Answers::no},
    {"Disowned", Kind::kDisowned, &Answers::yes},
};
constexpr unsigned kKindCount = std::size(kKinds);

ZRenderCallback *fetch(const Kind &kind) {
    const std::string name = kind.name;
    const TpythonLock lock(kPythonLock);
    return native(kind.use == Kind::kShared       ? "shared['" + name + "']"
                  : kind.use == Kind::kGoesItself ? "make('" + name + "')"
                                                  : "make_disowned('" + name + "')");
}

} // namespace

class Storm : public Threads {};

TEST_F(Storm, EveryCallIsDeliveredOrReported) {
    const unsigned calls = amount("STORM_CALLS", 500);
    prepare();
    run(R"(
for name in 'Good Raises NoTruth Reenters Inner NotTrue'.split(): shared[name] = globals()[name]()
counts = dict((name, sys.getrefcount(shared[name])) for name in shared)
alive = callbacks_alive()
stderr, sys.stderr = sys.stderr, cStringIO.StringIO()
_r.ZRenderCallback_addCallback(shared['Inner'].this, 0)
)");
    const unsigned reported = devhost::reportedExceptions();
    std::array<Answers, kKindCount> answers;
    std::atomic<unsigned> running = kThreads;
    auto threads = start([&](unsigned number) {
        const Kind &kind = kKinds[number % kKindCount];
        for (unsigned i = 0; i < calls; ++i) {
            ZRenderCallback *callback = fetch(kind);
            call(*callback, i, answers[number % kKindCount]);
            if (kind.use == Kind::kDisowned)
                delete callback;
        }
        --running;
    });
    while (running)
        run("keep_busy()");
    PyThreadState *state = PyEval_SaveThread();
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(getLockCaptureCount(), 0);
    PyEval_RestoreThread(state);

    unsigned failed = 0;
    for (unsigned i = 0; i < kKindCount; ++i) {
        const unsigned made = calls * (kThreads / kKindCount + (i < kThreads % kKindCount));
        const Answers &kind = answers[i];
        EXPECT_EQ(kind.*kKinds[i].outcome, made) << kKinds[i].name;
        EXPECT_EQ(kind.yes + kind.no + kind.mismatches, made) << kKinds[i].name;
        failed += kind.no;
    }
    EXPECT_EQ(entered, calls * kThreads);
    EXPECT_EQ(devhost::reportedExceptions(), reported + failed);
    // Each report is whole: threads do not write into one another's.
    run(R"(
_r.ZRenderCallback_removeCallback(shared['Inner'].this)
text, sys.stderr = sys.stderr.getvalue(), stderr
report = re.compile(r'Traceback \(most recent call last\):\n(?:  File "<string>", line \d+, in '
                    r'\w+\n)+ValueError: number (\d+)\n')
eq(report.sub('', text)[:500], '')
eq(sorted(report.findall(text)), sorted(raised))
sys.exc_clear(); sys.last_value = sys.last_traceback = None
eq(fresh, {})
eq(callbacks_alive(), alive)
eq(dict((name, sys.getrefcount(shared[name])) for name in shared), counts)
)");
    EXPECT_EQ(eval("len(raised)") ? PyInt_AsLong(eval("len(raised)")) : -1, long(failed));
    run("del raised[:]; shared.clear()");
}

TEST_F(Storm, ARenderIsCancelledWhileItsCallbacksRaise) {
    const unsigned renders = amount("RENDERS", 40);
    prepare();
    build(64, 48, false);
    addLight(devhost::Light::kPoint, 0, 0, 2);
    run(R"(
stderr, sys.stderr = sys.stderr, cStringIO.StringIO()
shared['Raises'], shared['Good'] = Raises(), Good()
for _each in shared.values(): _r.ZRenderCallback_addCallback(_each.this, 0)
)");
    const unsigned reported = devhost::reportedExceptions();
    std::atomic<bool> over = false;
    unsigned finished = 0, cancelled = 0;
    std::thread renderer([&] {
        for (unsigned i = 0; i < renders; ++i) {
            session().cancelled = false;
            const ZStatus status = render();
            ++(status.error() ? cancelled : finished);
        }
        over = true;
    });
    std::thread canceller([&] {
        for (unsigned i = 0; !over; ++i) {
            std::this_thread::sleep_for(std::chrono::microseconds(i * 997 % 20000));
            session().cancelled = true;
        }
    });
    while (!over)
        run("keep_busy()");
    PyThreadState *state = PyEval_SaveThread();
    renderer.join();
    canceller.join();
    PyEval_RestoreThread(state);
    EXPECT_EQ(finished + cancelled, renders);
    EXPECT_GT(cancelled, 0u);
    // A cancelled render skips the callbacks that were to come; the others all ran.
    const unsigned failed = devhost::reportedExceptions() - reported;
    EXPECT_EQ(entered, 2 * failed);
    EXPECT_GE(failed, 3 * finished);
    EXPECT_EQ(PyInt_AsLong(eval("sys.stderr.getvalue().count('ValueError: number ')")),
              long(failed));
    run("sys.stderr = stderr; sys.exc_clear(); sys.last_value = sys.last_traceback = None\n"
        "del _each; shared.clear()");
    session().cancelled = false;
    EXPECT_FALSE(render().error());
    EXPECT_EQ(entered, 2 * failed) << "dropped callbacks are not registered any more";
}

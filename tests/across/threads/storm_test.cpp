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

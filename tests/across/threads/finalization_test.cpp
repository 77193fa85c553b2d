// SPDX-License-Identifier: MIT
// The interpreter ends while host threads call Python callbacks and render.

#include "devhost/process/InterpreterGate.h"
#include "tests/across/threads/callers.h"

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

using namespace threadtest;
using namespace pytest;

namespace {

/// Callbacks that the host keeps go on being called; what a script still owns ends with it.
class Finalization : public Threads {
  protected:
    void storm(unsigned round) {
        prepare();
        run("sys.stderr = cStringIO.StringIO()\n"
            "for _name in 'Good Raises NoTruth Inner'.split():\n"
            "    shared[_name] = globals()[_name]()\n"
            "    _r.ZRenderCallback_addCallback(shared[_name].this, 0)\n");
        std::vector<ZRenderCallback *> kept;
        for (const char *kind : {"Good", "Raises", "NoTruth", "Disowned"})
            kept.push_back(native("make_disowned('" + std::string(kind) + "')"));
        Answers answers, late;
        std::atomic<bool> over = false, ended = false;
        auto threads = start([&](unsigned number) {
            const auto each = number % (kept.size() + 1);
            for (unsigned made = 0; !over; ++made) {
                const bool isLate = ended;
                if (each < kept.size())
                    call(*kept[each], made, isLate ? late : answers);
                else
                    render();
            }
            if (each < kept.size())
                call(*kept[each], 0, late);
        });
        for (unsigned i = 0; i < round % 8; ++i)
            run("keep_busy()");
        devhost::endInterpreter();
        ended = true;
        const unsigned atEnd = entered;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
        over = true;
        for (std::thread &thread : threads)
            thread.join();
        EXPECT_EQ(entered, atEnd);
        EXPECT_GT(late.no, 0u);
        EXPECT_EQ(late.yes + late.mismatches, 0u);
        EXPECT_EQ(getLockCaptureCount(), 0);
        for (ZRenderCallback *callback : kept)
            delete callback;
    }
};

} // namespace

TEST_F(Finalization, CallsBeforeItAreFinishedAndCallsAfterItAreRefused) {
    const unsigned rounds = amount("FINALIZATIONS", 20);
    for (unsigned round = 0; round < rounds; ++round) {
        const pid_t child = fork();
        if (child == 0)
            in_child([&] { storm(round); });
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_EQ(status, 0) << "in round " << round;
    }
}

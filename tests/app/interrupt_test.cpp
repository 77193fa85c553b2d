// SPDX-License-Identifier: MIT
// Signals while a file is being written, each in a process of its own.
#include "devhost/app/Interrupt.h"
#include "devhost/session/RenderSession.h"
#include "devhost/util/AtomicFile.h"
#include "tests/temporary_folder.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>

namespace {

/// Writes more than may be written while the signal comes; 0 when the program goes on as it should.
int writeAndRaise(const std::string &file, int signal) {
    const quilhost::SignalScope scope;
    rlimit old{};
    getrlimit(RLIMIT_FSIZE, &old);
    const rlimit small{4096, old.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    devhost::AtomicFile atomic(file, devhost::AtomicFile::kNamed);
    std::fputs("half", atomic.stream());
    std::fflush(atomic.stream());
    if (signal != SIGXFSZ)
        std::raise(signal);
    else
        std::fputs(std::string(8192, 'x').c_str(), atomic.stream());
    const bool goesOn = signal == SIGXFSZ ? atomic.commit().error()
                                          : atomic.commit() && devhost::renderSession().cancelled;
    setrlimit(RLIMIT_FSIZE, &old); // coverage is written when the process ends
    return goesOn ? 0 : 1;
}

TEST(SignalScope, LeavesNoHalfWrittenFile) {
    struct {
        int signal;
        bool isIgnored, ends;
        int files;
    } const cases[] = {{SIGHUP, false, true, 0},
                       {SIGXFSZ, false, false, 0},
                       {SIGINT, false, false, 1}, // the file is finished, the program ends later
                       {SIGTERM, false, false, 1},
                       {SIGHUP, true, false, 1}}; // as under nohup
    for (const auto &each : cases) {
        const TemporaryFolder folder;
        const pid_t child = fork();
        if (child == 0) {
            devhost::renderSession().cancelled = each.isIgnored;
            std::signal(each.signal, each.isIgnored ? SIG_IGN : SIG_DFL);
            _exit(writeAndRaise(folder.file("a"), each.signal));
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        if (each.ends)
            EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == each.signal) << status;
        else
            EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path), {}), each.files)
            << each.signal;
    }
}

} // namespace

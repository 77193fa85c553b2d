// SPDX-License-Identifier: MIT
#include "devhost/process/CrashReport.h"

#include "devhost/process/NativeSymbol.h"
#include "devhost/process/PythonStack.h"
#include "devhost/process/SafeText.h"

#include <fcntl.h>
#include <pthread.h>
#include <sys/mman.h>
#include <unistd.h>

#include <atomic>
#include <csignal>

namespace devhost {
namespace {

/// For unwinding, and for the demangler, which works on the stack.
constexpr size_t kHandlerRoom = 1 << 20;

constexpr struct {
    int signal;
    const char *name;
    bool tellsAddress;
} kSignals[] = {{SIGSEGV, "SIGSEGV", true},
                {SIGBUS, "SIGBUS", true},
                {SIGFPE, "SIGFPE", false},
                {SIGILL, "SIGILL", false},
                {SIGABRT, "SIGABRT", false}};

int output = STDERR_FILENO;
void (*lastWork)() noexcept = nullptr;
std::atomic<pthread_t> reporter{}; ///< the thread that reports, once there is one

void writeReport(int signal, const siginfo_t &info) {
    SafeText line;
    line << "quilhost: fatal signal ";
    for (const auto &each : kSignals)
        if (each.signal == signal) {
            line << each.name;
            if (each.tellsAddress && info.si_code > 0) // from the processor, not from a process
                line << " at address ", line.address(reinterpret_cast<uintptr_t>(info.si_addr));
        }
    line.writeLine(output);
    line << "  in ";
    if (addRunningFunction(line))
        line.writeLine(output);
    writePythonStack(output);
}

extern "C" void reportAndEnd(int signal, siginfo_t *info, void *) {
    pthread_t none{};
    if (reporter.compare_exchange_strong(none, pthread_self())) {
        writeReport(signal, *info);
        lastWork();
    } else if (none != pthread_self()) {
        while (true) // the other thread's report ends this one
            pause();
    }
    std::signal(signal, SIG_DFL);
    raise(signal); // takes effect when the handler returns
}

} // namespace

void startCrashReports(void (*last)() noexcept) {
    static const AlternateStack stack;
    lastWork = last;
    const int copy = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3); // scripts may redirect it
    output = copy < 0 ? STDERR_FILENO : copy;
    prepareNativeSymbols();
    for (const auto &each : kSignals) {
        struct sigaction earlier, action = {};
        sigaction(each.signal, nullptr, &earlier);
        if ((earlier.sa_flags & SA_SIGINFO) || earlier.sa_handler != SIG_DFL)
            continue;
        action.sa_sigaction = reportAndEnd;
        action.sa_flags = SA_SIGINFO | SA_ONSTACK;
        sigfillset(&action.sa_mask);
        sigaction(each.signal, &action, nullptr);
    }
}

AlternateStack::AlternateStack()
    : memory_(mmap(nullptr, kHandlerRoom, PROT_READ | PROT_WRITE,
                   MAP_PRIVATE | MAP_ANONYMOUS | MAP_STACK | MAP_NORESERVE, -1, 0)) {
    stack_t stack = {};
    stack.ss_sp = memory_;
    stack.ss_size = kHandlerRoom;
    if (memory_ != MAP_FAILED)
        sigaltstack(&stack, nullptr);
}

AlternateStack::~AlternateStack() {
    if (memory_ == MAP_FAILED)
        return;
    stack_t none = {};
    none.ss_flags = SS_DISABLE;
    sigaltstack(&none, nullptr);
    munmap(memory_, kHandlerRoom);
}

} // namespace devhost

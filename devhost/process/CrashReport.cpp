// SPDX-License-Identifier: MIT
#include "devhost/process/CrashReport.h"

#include "devhost/process/NativeSymbol.h"
#include "devhost/process/PythonStack.h"
#include "devhost/util/SafeText.h"

#include <fcntl.h>
#include <pthread.h>
#include <sys/mman.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <iterator>

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
ExplainAddress explainAccess = nullptr;
void (*lastWork)() noexcept = nullptr;
uintptr_t accessed = 0;            ///< what the processor could not access; 0 where that is not it
std::atomic<pthread_t> reporter{}; ///< the thread that reports, once there is one

void writeSignal(int signal, const siginfo_t &info) {
    SafeText line;
    line << "quilhost: fatal signal ";
    for (const auto &each : kSignals)
        if (each.signal == signal) {
            line << each.name;
            // From the processor, not from a process; SI_KERNEL is an access without an address.
            if (each.tellsAddress && info.si_code > 0 && info.si_code != SI_KERNEL) {
                accessed = reinterpret_cast<uintptr_t>(info.si_addr);
                line << " at address ", line.address(accessed);
            }
        }
    line.writeLine(output);
}

void writeAccess() {
    SafeText line;
    line << "  that is ";
    if (accessed && explainAccess(line, accessed))
        line.writeLine(output);
}

void writeFunction() {
    SafeText line;
    line << "  in ";
    if (addRunningFunction(line))
        line.writeLine(output);
}

/// What is told behind the signal. A part that crashes itself, over a broken stack, ends with that,
/// and the next one has its turn.
void (*const kParts[])() = {writeAccess, writeFunction, [] { writePythonStack(output); },
                            [] { lastWork(); }};
volatile size_t nextPart = 0;

extern "C" void reportAndEnd(int signal, siginfo_t *info, void *) {
    pthread_t none{};
    if (reporter.compare_exchange_strong(none, pthread_self())) {
        writeSignal(signal, *info);
    } else {
        while (none != pthread_self()) // the other thread's report ends this one
            pause();
    }
    while (nextPart < std::size(kParts)) {
        const size_t part = nextPart;
        nextPart = part + 1;
        kParts[part]();
    }
    std::signal(signal, SIG_DFL);
    raise(signal);
}

} // namespace

void startCrashReports(ExplainAddress explain, void (*last)() noexcept) {
    static const AlternateStack stack;
    explainAccess = explain;
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
        action.sa_flags = SA_SIGINFO | SA_ONSTACK | SA_NODEFER;
        sigfillset(&action.sa_mask);
        for (const auto &fatal : kSignals)
            sigdelset(&action.sa_mask, fatal.signal);
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

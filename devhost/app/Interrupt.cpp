// SPDX-License-Identifier: MIT
#include "devhost/app/Interrupt.h"

#include "devhost/session/RenderSession.h"
#include "devhost/util/TemporaryName.h"

#include <atomic>
#include <initializer_list>
#include <iterator>

namespace quilhost {
namespace {

devhost::RenderSession *session = nullptr;
std::atomic<int> ending = 0;

/// What the interpreter does, while an InterruptScope stands in front of it.
struct {
    int signal;
    void (*handler)(int);
} ofInterpreter[] = {{SIGINT, nullptr}, {SIGTERM, nullptr}};

extern "C" void stopRender(int signal) {
    ending = signal;
    session->cancelled = true;
}

extern "C" void stopRenderAndScript(int signal) {
    stopRender(signal);
    for (const auto &each : ofInterpreter)
        if (each.signal == signal && each.handler)
            each.handler(signal);
}

extern "C" void endCleanly(int signal) {
    devhost::removeTemporaryFiles();
    std::signal(signal, SIG_DFL);
    std::raise(signal); // takes effect when the handler returns
}

const struct {
    int signal;
    void (*handler)(int);
} handlers[] = {
    {SIGINT, stopRender}, {SIGTERM, stopRender}, {SIGHUP, endCleanly}, {SIGXFSZ, SIG_IGN}};

/// Gives a signal a handler, unless it is ignored, and returns its earlier handling.
struct sigaction handle(int signal, void (*handler)(int)) {
    struct sigaction earlier;
    sigaction(signal, nullptr, &earlier);
    struct sigaction action = {};
    action.sa_handler = handler;
    sigemptyset(&action.sa_mask);
    if (earlier.sa_handler != SIG_IGN)
        sigaction(signal, &action, nullptr);
    return earlier;
}

sigset_t setOf(std::initializer_list<int> signals) {
    sigset_t set;
    sigemptyset(&set);
    for (const int signal : signals)
        sigaddset(&set, signal);
    return set;
}

} // namespace

SignalScope::SignalScope() {
    static_assert(std::size(handlers) == std::size(decltype(earlier_){}));
    // Made beforehand: a signal handler must not.
    session = &devhost::renderSession();
    for (size_t i = 0; i < std::size(handlers); ++i)
        earlier_[i] = {handlers[i].signal, handle(handlers[i].signal, handlers[i].handler)};
}

SignalScope::~SignalScope() {
    for (const Earlier &each : earlier_)
        sigaction(each.signal, &each.action, nullptr);
}

InterruptScope::InterruptScope() {
    static_assert(std::size(ofInterpreter) == std::size(decltype(earlier_){}));
    for (size_t i = 0; i < std::size(ofInterpreter); ++i) {
        sigaction(ofInterpreter[i].signal, nullptr, &earlier_[i]);
        const auto handler = earlier_[i].sa_handler;
        ofInterpreter[i].handler = handler == SIG_DFL || handler == SIG_IGN ? nullptr : handler;
        handle(ofInterpreter[i].signal, stopRenderAndScript);
    }
}

InterruptScope::~InterruptScope() {
    for (size_t i = 0; i < std::size(ofInterpreter); ++i)
        sigaction(ofInterpreter[i].signal, &earlier_[i], nullptr);
}

InterruptHandover::InterruptHandover() {
    const sigset_t signals = setOf({SIGINT, SIGTERM, SIGHUP});
    pthread_sigmask(SIG_BLOCK, &signals, &earlier_);
    // The interpreter takes over only what has no handler, and scripts are told of what it found.
    for (const auto &each : handlers)
        handle(each.signal, SIG_DFL);
}

InterruptHandover::~InterruptHandover() {
    for (const auto &each : handlers)
        if (each.handler != stopRender)
            handle(each.signal, each.handler);
    const sigset_t interrupts = setOf({SIGINT, SIGTERM});
    constexpr timespec noTime = {};
    if (const int signal = sigtimedwait(&interrupts, nullptr, &noTime); signal > 0)
        stopRender(signal);
    pthread_sigmask(SIG_SETMASK, &earlier_, nullptr);
}

void stopEverything(int signal) {
    stopRender(signal);
}

ExitCode interruptCode() {
    return ending == SIGTERM ? kTerminated : kInterrupted;
}

} // namespace quilhost

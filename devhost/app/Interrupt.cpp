// SPDX-License-Identifier: MIT
#include "devhost/app/Interrupt.h"

#include "devhost/session/RenderSession.h"
#include "devhost/util/TemporaryName.h"

#include <Python.h>

#include <initializer_list>
#include <iterator>

namespace quilhost {
namespace {

devhost::RenderSession *session = nullptr;

extern "C" void stopRender(int) {
    session->cancelled = true;
}

extern "C" void stopRenderAndScript(int) {
    session->cancelled = true;
    PyErr_SetInterrupt();
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
    {SIGINT, stopRender}, {SIGTERM, endCleanly}, {SIGHUP, endCleanly}, {SIGXFSZ, SIG_IGN}};

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

InterruptScope::InterruptScope() : earlier_(handle(SIGINT, stopRenderAndScript)) {}

InterruptScope::~InterruptScope() {
    sigaction(SIGINT, &earlier_, nullptr);
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
        if (each.signal != SIGINT)
            handle(each.signal, each.handler);
    const sigset_t interrupts = setOf({SIGINT});
    constexpr timespec noTime = {};
    if (sigtimedwait(&interrupts, nullptr, &noTime) == SIGINT)
        session->cancelled = true;
    pthread_sigmask(SIG_SETMASK, &earlier_, nullptr);
}

} // namespace quilhost

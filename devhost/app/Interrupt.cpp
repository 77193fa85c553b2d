#include "devhost/app/Interrupt.h"

#include "devhost/session/RenderSession.h"

#include <Python.h>

namespace quilhost {
namespace {

std::atomic<bool> interpreterRuns{false};
devhost::RenderSession *session = nullptr;

extern "C" void onInterrupt(int) {
    session->cancelled = true;
    if (interpreterRuns)
        PyErr_SetInterrupt();
}

} // namespace

InterruptScope::InterruptScope(bool withInterpreter) {
    // Made beforehand: a signal handler must not.
    session = &devhost::renderSession();
    interpreterRuns = withInterpreter;
    struct sigaction action = {};
    action.sa_handler = onInterrupt;
    sigemptyset(&action.sa_mask);
    sigaction(SIGINT, &action, &earlier_);
}

InterruptScope::~InterruptScope() {
    sigaction(SIGINT, &earlier_, nullptr);
}

} // namespace quilhost

// SPDX-License-Identifier: MIT
#include "devhost/process/PythonStack.h"

#include "devhost/util/SafeText.h"

#include <Python.h>
#include <frameobject.h>
#include <pythread.h>

namespace devhost {
namespace {

/// Of a recursion without end, the innermost frames tell enough.
constexpr int kMostCallers = 20;

/// The state of this thread, and else of the oldest. Python's own search takes a lock; the lists
/// are as they are because the thread that changes them has the interpreter's lock, and most likely
/// is this one.
PyThreadState *findState(bool &isOwn) {
    const long self = PyThread_get_thread_ident();
    PyThreadState *const current = _PyThreadState_Current;
    isOwn = current && current->thread_id == self;
    if (isOwn || !Py_IsInitialized())
        return current;
    PyThreadState *oldest = nullptr;
    for (auto *interpreter = PyInterpreterState_Head(); interpreter;
         interpreter = PyInterpreterState_Next(interpreter))
        for (auto *state = PyInterpreterState_ThreadHead(interpreter); state;
             state = PyThreadState_Next(state)) {
            oldest = state;
            isOwn = state->thread_id == self;
            if (isOwn)
                return state;
        }
    return oldest;
}

void writeFrame(int descriptor, PyFrameObject &frame) {
    SafeText line;
    const PyCodeObject &code = *frame.f_code;
    line << "  File \"" << PyString_AS_STRING(code.co_filename) << "\", line "
         << PyFrame_GetLineNumber(&frame) << ", in " << PyString_AS_STRING(code.co_name);
    line.writeLine(descriptor);
}

} // namespace

void writePythonStack(int descriptor) {
    bool isOwn = false;
    const PyThreadState *const state = findState(isOwn);
    SafeText line;
    PyFrameObject *frame = state ? state->frame : nullptr;
    if (!frame) {
        line << "no Python function was running";
        line.writeLine(descriptor);
        return;
    }
    line << (isOwn ? "Python stack" : "Python stack of the main thread; this one is the host's own")
         << " (most recent call first):";
    line.writeLine(descriptor);
    for (int count = 0; frame && count < kMostCallers; ++count, frame = frame->f_back)
        writeFrame(descriptor, *frame);
    long long more = 0;
    for (; frame; frame = frame->f_back)
        ++more;
    if (more > 0) {
        line << "  and " << more << " more";
        line.writeLine(descriptor);
    }
}

} // namespace devhost

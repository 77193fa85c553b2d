// SPDX-License-Identifier: MIT
// Which thread has the interpreter's lock.

#include "runtime/interpreter_lock.h"
#include "tests/runtime/python_fixture.h"

#include <future>
#include <thread>

namespace {

class InterpreterLock : public pytest::Test {};

/// What this thread is told while another one runs, which is told that it does.
bool told_while_another_runs() {
    std::promise<void> runs, asked;
    PyThreadState *const own = PyEval_SaveThread();
    EXPECT_FALSE(has_interpreter_lock()) << "nobody runs";
    std::thread other([&] {
        EXPECT_FALSE(has_interpreter_lock()) << "a thread that the interpreter does not know";
        const PyGILState_STATE state = PyGILState_Ensure();
        EXPECT_TRUE(has_interpreter_lock());
        runs.set_value();
        asked.get_future().wait();
        PyGILState_Release(state);
    });
    runs.get_future().wait();
    const bool told = has_interpreter_lock();
    asked.set_value();
    other.join();
    PyEval_RestoreThread(own);
    return told;
}

} // namespace

TEST_F(InterpreterLock, IsWithTheThreadThatRuns) {
    EXPECT_TRUE(has_interpreter_lock());
    EXPECT_FALSE(told_while_another_runs());
    PyThreadState *const own = PyThreadState_Get();
    PyThreadState *const further = Py_NewInterpreter();
    ASSERT_TRUE(further);
    EXPECT_TRUE(has_interpreter_lock()) << "in a further interpreter";
    PyThreadState_Swap(own);
    EXPECT_FALSE(told_while_another_runs()) << "with a further interpreter";
    PyThreadState_Swap(further);
    Py_EndInterpreter(further);
    PyThreadState_Swap(own);
}

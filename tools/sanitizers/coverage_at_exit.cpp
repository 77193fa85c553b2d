// SPDX-License-Identifier: MIT
// Linked into the programs and binding modules of a coverage build. Child processes of tests leave
// by _exit, which would lose what they covered: each file of code has it written first.

#include <cstdlib>

extern "C" void __gcov_dump();

__attribute__((constructor)) static void write_at_quick_exit() {
    std::at_quick_exit(__gcov_dump);
}

extern "C" [[noreturn]] __attribute__((visibility("default"))) void _exit(int status) {
    std::quick_exit(status); // the handlers, and none of the destructors
}

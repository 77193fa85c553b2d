// SPDX-License-Identifier: MIT
#include "devhost/app/StandardStreams.h"

#include <Python.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace quilhost {
namespace {

struct {
    const char *name;
    int descriptor;
    const char *errors;
} const kStreams[] = {{"stdin", STDIN_FILENO, "strict"},
                      {"stdout", STDOUT_FILENO, "strict"},
                      // A message is to be told, whatever is in it.
                      {"stderr", STDERR_FILENO, "backslashreplace"}};

bool isSet(const char *variable) {
    const char *const value = std::getenv(variable);
    return value && *value;
}

} // namespace

void setUpStandardStreams() {
    if (isSet("PYTHONUNBUFFERED"))
        static_cast<void>(std::setvbuf(stdout, nullptr, _IONBF, 0));
    else if (!isatty(STDOUT_FILENO))
        static_cast<void>(std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ));
    if (isSet("PYTHONIOENCODING")) // which the interpreter has read
        return;
    for (const auto &each : kStreams) {
        PyObject *const file = PySys_GetObject(const_cast<char *>(each.name));
        if (file && PyFile_Check(file) && !isatty(each.descriptor))
            PyFile_SetEncodingAndErrors(file, "utf-8", const_cast<char *>(each.errors));
    }
}

} // namespace quilhost

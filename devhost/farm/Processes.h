// SPDX-License-Identifier: MIT
#pragma once

// Other programs, and how shells are told of them.

#include <sys/types.h>

#include <string>
#include <vector>

namespace quilfarm {

using Words = std::vector<std::string>;

/// A word as a shell reads it back, whatever bytes it has.
std::string shellWord(const std::string &word);
std::string shellLine(const Words &words);

/// This program's own file, and another program beside it.
std::string ownProgram();
std::string programBeside(const std::string &name);

/// True where a program of that name is on the PATH.
bool isInstalled(const std::string &program);

/// Starts a program, with the usual handling of signals. Throws Failure when it cannot be.
pid_t start(const Words &words);

/// Becomes another program; returns only where that fails.
void become(const Words &words);

struct Ended {
    int code = 0;
    std::string output, errors;
};

/// Runs a program on the PATH with that standard input to its end. Throws Failure when it cannot
/// be.
Ended run(const Words &words, const std::string &input = "");

/// The exit code of a process as shells have it, 128 and the signal where one ended it.
int exitCode(int waitStatus);

} // namespace quilfarm

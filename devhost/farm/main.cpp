// SPDX-License-Identifier: MIT
// quilfarm: renders on more than one machine, by engines that exist.
#include "devhost/app/Errors.h"
#include "devhost/farm/Commands.h"
#include "devhost/util/Terminal.h"
#include "devhost/util/Version.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <exception>

namespace {

using namespace quilfarm;

const struct {
    const char *name;
    int (*run)(const Arguments &);
    const char *about;
} kCommands[] = {
    {"submit", submit, "submit frames as one job of many tasks"},
    {"status", status, "tell how far a job is"},
    {"check", check, "tell which pictures are there and whole"},
    {"assemble", assemble, "put the tiles of pictures together"},
    {"template", writeTemplate, "write an Open Job Description template"},
    {"task", task, "render one task; engines call it"},
};

void printHelp() {
    std::puts("Usage: quilfarm COMMAND [options]    (quilfarm COMMAND --help tells them)\n");
    for (const auto &each : kCommands)
        std::printf("  %-10s %s\n", each.name, each.about);
    std::puts(
        "\nExit codes: 0 success; 2 a mistake on the command line, nothing is submitted; 3 not "
        "all\n"
        "pictures are there and whole, or something could not be read, written or started. The\n"
        "engine local ends with the exit code of the first task that failed.");
}

int runCommand(const Arguments &words) {
    const std::string name = words.empty() ? "" : words.front();
    if (name == "--help" || name == "-h") {
        printHelp();
        return quilhost::kOk;
    }
    if (name == "--version") {
        std::printf("quilfarm %s\n", devhost::version());
        return quilhost::kOk;
    }
    const auto *const command = std::find_if(std::begin(kCommands), std::end(kCommands),
                                             [&](const auto &each) { return each.name == name; });
    if (command == std::end(kCommands))
        throw quilhost::Failure(quilhost::kUsageError, "'" + name +
                                                           "' is no command of quilfarm "
                                                           "(quilfarm --help tells them)");
    return command->run({words.begin() + 1, words.end()});
}

} // namespace

int main(int argc, char **argv) {
    // Whoever started us may ignore it: then nobody could ask how programs ended.
    std::signal(SIGCHLD, SIG_DFL);
    try {
        return runCommand(Arguments(argv + std::min(argc, 1), argv + argc));
    } catch (const quilhost::Failure &failure) {
        std::string line = failure.what();
        std::replace(line.begin(), line.end(), '\n', ' ');
        devhost::writeLine("quilfarm: " + line);
        return failure.code();
    } catch (const std::exception &error) {
        devhost::writeLine(std::string("quilfarm: ") + error.what());
        return quilhost::kRenderError;
    }
}

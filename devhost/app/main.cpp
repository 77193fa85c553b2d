// SPDX-License-Identifier: MIT
// quilhost: the development host's program.
#include "devhost/app/CommandLine.h"
#include "devhost/app/Errors.h"
#include "devhost/app/Interrupt.h"
#include "devhost/app/ObjectCensus.h"
#include "devhost/app/Progress.h"
#include "devhost/app/RenderJob.h"
#include "devhost/process/CrashReport.h"
#include "devhost/util/TemporaryName.h"
#include "devhost/util/Terminal.h"

#include <exception>
#include <new>
#include <string>

namespace {

/// Tells what is left over of the host objects that were made since the script began.
bool tellLeaks() {
    bool leaked = false;
    for (const auto &[name, count] : quilhost::objectCensus())
        if (count > 0) {
            leaked = true;
            devhost::tell("left over: " + std::to_string(count) + " " + name);
        }
    return leaked;
}

} // namespace

int main(int argc, char **argv) {
    using namespace quilhost;
    devhost::startCrashReports(devhost::removeTemporaryFiles);
    const SignalScope signals;
    int code = kOk;
    std::string progress, why;
    try {
        const auto options = readCommandLine(argc, argv);
        if (!options)
            return kOk;
        progress = options->progress;
        RenderJob job(*options);
        try {
            code = job.run();
        } catch (const Failure &failure) {
            job.clearProgress();
            throw;
        }
        job.clearProgress();
        if (code == kInterrupted)
            devhost::tell("interrupted");
        if (code == kTerminated)
            devhost::tell("terminated");
    } catch (const Failure &failure) {
        why = failure.what();
        code = failure.code();
    } catch (const std::bad_alloc &) {
        why = "there is not enough memory";
        code = kRenderError;
    } catch (const std::exception &error) {
        why = error.what();
        code = kRenderError;
    }
    if (!why.empty())
        devhost::tell(why);
    if (tellLeaks() && code == kOk)
        code = kLeaked;
    tellEnd(progress, code, why);
    return code;
}

// SPDX-License-Identifier: MIT
// quilhost: the development host's program.
#include "devhost/app/CommandLine.h"
#include "devhost/app/Errors.h"
#include "devhost/app/Interrupt.h"
#include "devhost/app/ObjectCensus.h"
#include "devhost/app/Plugins.h"
#include "devhost/app/Progress.h"
#include "devhost/app/RenderJob.h"
#include "devhost/app/TraceFile.h"
#include "devhost/process/CrashReport.h"
#include "devhost/util/GuardedMemory.h"
#include "devhost/util/TemporaryName.h"
#include "devhost/util/Terminal.h"
#include "devhost/util/Timeline.h"

#include <cstdio>
#include <exception>
#include <new>
#include <optional>
#include <string>

namespace {

/// Writes what was noted since the program began; false when it could not be written.
bool tellTimeline(const quilhost::Options &options) {
    devhost::stopTimeline();
    if (options.stats)
        std::fputs(quilhost::statsTable().c_str(), stderr);
    if (options.trace.empty())
        return true;
    if (const auto count = devhost::timelineLeftOut())
        devhost::tell("the trace leaves out " + std::to_string(count) + " calls, as it is full");
    const ZStatus status = quilhost::writeTrace(options.trace);
    if (status.error())
        devhost::tell(status.errorString().asChar());
    return !status.error();
}

/// Runs the job that the options ask for, and returns the exit code.
int run(const quilhost::Options &options) {
    const quilhost::Plugins plugins(options.plugins);
    quilhost::RenderJob job(options);
    int code = quilhost::kOk;
    try {
        code = job.run();
    } catch (const quilhost::Failure &failure) {
        job.clearProgress();
        throw;
    }
    job.clearProgress();
    if (code == quilhost::kInterrupted)
        devhost::tell("interrupted");
    if (code == quilhost::kTerminated)
        devhost::tell("terminated");
    return code;
}

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
    devhost::startCrashReports(devhost::explainAddress, devhost::removeTemporaryFiles);
    const SignalScope signals;
    int code = kOk;
    std::optional<Options> options;
    std::string why;
    try {
        options = readCommandLine(argc, argv);
        if (!options)
            return kOk;
        if (options->guard)
            devhost::startGuard();
        if (options->stats || !options->trace.empty())
            devhost::startTimeline(!options->trace.empty());
        code = run(*options);
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
    if (devhost::timelineRuns && !tellTimeline(*options) && code == kOk)
        code = kRenderError;
    if (tellLeaks() && code == kOk)
        code = kLeaked;
    tellEnd(options ? options->progress : "", code, why);
    return code;
}

// quilhost: the development host's program.
#include "devhost/app/CommandLine.h"
#include "devhost/app/Errors.h"
#include "devhost/app/ObjectCensus.h"
#include "devhost/app/RenderJob.h"

#include <cstdio>
#include <exception>

namespace {

/// Tells what is left over of the host objects that were made since the script began.
bool tellLeaks() {
    bool leaked = false;
    for (const auto &[name, count] : quilhost::objectCensus())
        if (count > 0) {
            leaked = true;
            std::fprintf(stderr, "quilhost: left over: %ld %s\n", count, name.c_str());
        }
    return leaked;
}

} // namespace

int main(int argc, char **argv) {
    using namespace quilhost;
    int code = kOk;
    try {
        const auto options = readCommandLine(argc, argv);
        if (!options)
            return kOk;
        RenderJob job(*options);
        try {
            code = job.run();
        } catch (const Failure &failure) {
            job.clearProgress();
            throw;
        }
        job.clearProgress();
        if (code == kInterrupted)
            std::fputs("quilhost: interrupted\n", stderr);
    } catch (const Failure &failure) {
        std::fprintf(stderr, "quilhost: %s\n", failure.what());
        code = failure.code();
    } catch (const std::exception &error) {
        std::fprintf(stderr, "quilhost: %s\n", error.what());
        code = kRenderError;
    }
    return tellLeaks() && code == kOk ? kLeaked : code;
}

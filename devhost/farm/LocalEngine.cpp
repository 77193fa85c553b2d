// SPDX-License-Identifier: MIT
#include "devhost/farm/Engines.h"
#include "devhost/farm/Processes.h"
#include "devhost/util/Terminal.h"

#include <sys/wait.h>

#include <csignal>
#include <map>

namespace quilfarm {
namespace {

Words taskWords(const Job &job, const std::string &logs, size_t index) {
    Words words = {ownProgram(), "task", "--index", std::to_string(index)};
    const Words more = taskArguments(job, logs);
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

bool isIgnored(int signal) {
    struct sigaction action;
    return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

/// Runs tasks, so many at once. Signals are taken one by one here and not by handlers, so that none
/// comes between.
class LocalRun {
  public:
    LocalRun(const Job &job, const JobFolder &folder) : job_(job), folder_(folder) {
        sigemptyset(&signals_);
        sigaddset(&signals_, SIGCHLD);
        for (const int signal : {SIGINT, SIGTERM, SIGHUP})
            if (!isIgnored(signal)) // else waiting would take it, as under nohup
                sigaddset(&signals_, signal);
        sigprocmask(SIG_BLOCK, &signals_, &earlier_);
    }
    ~LocalRun() { sigprocmask(SIG_SETMASK, &earlier_, nullptr); }

    int run(unsigned atOnce) {
        const size_t count = job_.taskCount();
        while (next_ < count || !running_.empty()) {
            while (next_ < count && running_.size() < atOnce) {
                running_[start(taskWords(job_, folder_.path(), next_))] = next_;
                ++next_;
            }
            const int signal = sigwaitinfo(&signals_, nullptr);
            if (signal == SIGCHLD)
                reap();
            else if (signal > 0)
                stop(signal, count);
        }
        return code_;
    }

  private:
    void reap() {
        int status = 0;
        for (pid_t child; (child = waitpid(-1, &status, WNOHANG)) > 0;) {
            const auto ended = running_.find(child);
            if (ended == running_.end())
                continue;
            tellEnd(ended->second, exitCode(status));
            running_.erase(ended);
        }
    }

    void tellEnd(size_t task, int code) {
        const std::string name = "task " + std::to_string(task) + " (frames " +
                                 devhost::printFrames(job_.task(task).frames) + ")";
        devhost::writeLine(
            "quilfarm: " + name +
            (code ? ": exit code " + std::to_string(code) + ", see " + folder_.log(task)
                  : " is done"));
        if (code && !code_)
            code_ = code;
    }

    /// Hands the signal on, and starts no more.
    void stop(int signal, size_t count) {
        next_ = count;
        code_ = code_ ? code_ : 128 + signal;
        for (const auto &[child, task] : running_)
            kill(child, signal);
    }

    const Job &job_;
    const JobFolder &folder_;
    sigset_t signals_, earlier_;
    std::map<pid_t, size_t> running_;
    size_t next_ = 0;
    int code_ = 0;
};

} // namespace

std::string localScript(const Job &job, const std::string &logs) {
    std::string lines;
    for (size_t index = 0; index < job.taskCount(); ++index)
        lines += shellLine(taskWords(job, logs, index)) + "\n";
    return lines;
}

int runLocally(const Job &job, unsigned atOnce, const JobFolder &folder) {
    return LocalRun(job, folder).run(atOnce);
}

} // namespace quilfarm

// SPDX-License-Identifier: MIT
#include "devhost/util/Notices.h"

#include "devhost/util/Terminal.h"

#include <filesystem>
#include <mutex>
#include <set>
#include <tuple>

namespace devhost {

namespace {

struct Told {
    std::mutex mutex;
    std::set<std::tuple<std::string, std::string, std::string>> places; // kind, file, place
    std::function<void(const Notice &)> listener;
};

Told &told() {
    // Never destroyed: scripts may still load scenes while the process exits.
    static auto *const instance = new Told;
    return *instance;
}

} // namespace

std::string Notice::line() const {
    std::string result;
    for (const std::string &part : {file, place})
        if (!part.empty())
            result += part + ": ";
    return result + found + "; " + instead;
}

FileNotices::FileNotices(const std::string &path)
    : file_(std::filesystem::path(path).filename().string()) {}

void FileNotices::add(const std::string &kind, const std::string &place, const std::string &found,
                      const std::string &instead) {
    notices_.push_back({kind, file_, place, found, instead});
}

void FileNotices::addFor(const std::string &path, const std::string &kind, const std::string &place,
                         const std::string &found, const std::string &instead) {
    const std::string file = std::filesystem::path(path).filename().string();
    notices_.push_back({kind, file, place, found, instead});
}

void FileNotices::tellAll() const {
    for (const Notice &each : notices_)
        tell(each);
}

void tell(const Notice &notice) {
    Told &all = told();
    const std::lock_guard lock(all.mutex);
    if (!all.places.emplace(notice.kind, notice.file, notice.place).second)
        return;
    if (all.listener)
        all.listener(notice);
    else
        writeLine("OpenQuil: " + notice.line());
}

std::size_t noticesTold() {
    const std::lock_guard lock(told().mutex);
    return told().places.size();
}

void setNoticeListener(std::function<void(const Notice &)> listener) {
    const std::lock_guard lock(told().mutex);
    told().listener = std::move(listener);
}

} // namespace devhost

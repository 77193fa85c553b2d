// SPDX-License-Identifier: MIT
#include "devhost/farm/PictureCheck.h"

#include "devhost/image/PictureFile.h"
#include "devhost/session/Parallel.h"

#include <algorithm>
#include <filesystem>
#include <unordered_set>

namespace fs = std::filesystem;

namespace quilfarm {
namespace {

/// The names in a folder: asked for once, as most files of a job that has just begun are not there.
std::unordered_set<std::string> namesIn(const fs::path &folder) {
    std::unordered_set<std::string> names;
    std::error_code ignored;
    for (const auto &entry : fs::directory_iterator(folder.empty() ? "." : folder, ignored))
        names.insert(entry.path().filename());
    return names;
}

class Files {
  public:
    explicit Files(const Pictures &pictures)
        : present_(namesIn(fs::path(pictures.output).parent_path())) {}
    bool has(const std::string &file) const { return present_.contains(fs::path(file).filename()); }

  private:
    std::unordered_set<std::string> present_;
};

struct State {
    enum { kWhole, kMissing, kDamaged } kind = kWhole;
    std::string damage;
};

State stateOf(const std::vector<std::string> &files, const Files &present,
              const std::vector<unsigned> &resolution) {
    if (!std::all_of(files.begin(), files.end(), [&](auto &file) { return present.has(file); }))
        return {State::kMissing, ""};
    for (const std::string &file : files) {
        auto picture = devhost::inspectPicture(file);
        if (picture.damage.empty() && !resolution.empty() &&
            resolution != std::vector{picture.width, picture.height})
            picture.damage = "it has " + std::to_string(picture.width) + " x " +
                             std::to_string(picture.height) + " pixels";
        if (!picture.damage.empty())
            return {State::kDamaged, "'" + file + "': " + picture.damage};
    }
    return {};
}

std::string countText(const std::string &what, const devhost::FrameList &frames) {
    constexpr size_t kMostText = 200;
    std::string list = devhost::printFrames(frames);
    if (list.size() > kMostText)
        list.replace(list.rfind(',', kMostText), std::string::npos, ",...");
    return frames.empty() ? ""
                          : ", " + std::to_string(frames.size()) + " " + what + " (" + list + ")";
}

} // namespace

devhost::FrameList PictureCheck::unfinished(const Pictures &pictures) const {
    const auto whole = devhost::subtract(pictures.frames, devhost::unite(missing, damaged));
    return devhost::subtract(pictures.frames, whole);
}

std::string PictureCheck::summary() const {
    return std::to_string(frames) + (frames == 1 ? " frame: " : " frames: ") +
           std::to_string(frames - missing.size() - damaged.size()) + " whole" +
           countText("missing", missing) + countText("damaged", damaged);
}

PictureCheck checkFiles(const Pictures &pictures, const std::vector<unsigned> &resolution) {
    const Files present(pictures);
    std::vector<State> states(pictures.frames.size());
    constexpr size_t kBlock = 256;
    devhost::forBlocks(states.size(), kBlock, [&](size_t begin, size_t end) {
        for (size_t i = begin; i < end; ++i)
            states[i] = stateOf(pictures.filesOf(pictures.frames[i]), present, resolution);
    });
    PictureCheck check;
    check.frames = states.size();
    for (size_t i = 0; i < states.size(); ++i) {
        if (states[i].kind == State::kMissing)
            check.missing.push_back(pictures.frames[i]);
        if (states[i].kind != State::kDamaged)
            continue;
        check.damaged.push_back(pictures.frames[i]);
        if (check.firstDamage.empty())
            check.firstDamage = states[i].damage;
    }
    return check;
}

std::vector<std::string> presentFiles(const Pictures &pictures) {
    const Files present(pictures);
    std::vector<std::string> found;
    for (const int frame : pictures.frames)
        for (const std::string &file : pictures.filesOf(frame))
            if (present.has(file))
                found.push_back(file);
    return found;
}

} // namespace quilfarm

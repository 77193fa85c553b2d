// SPDX-License-Identifier: MIT
#include "host/render/ZRenderProfile.h"

#include "devhost/util/Hidden.h"
#include "host/core/ZString.h"

#include <algorithm>
#include <vector>

using devhost::contents;

namespace {

constexpr int kNotStandard = -1;

/// A standard renderer has no name.
struct Entry {
    int standard;
    ZString name;
    float version;
    bool operator==(const Entry &) const = default;
};

} // namespace

struct ZRenderProfile::Entries : std::vector<Entry> {
    bool has(const Entry &entry) const { return std::find(begin(), end(), entry) != end(); }
    void add(const Entry &entry) {
        if (!has(entry))
            push_back(entry);
    }
};

ZRenderProfile::ZRenderProfile() : entries_(nullptr) {}

ZRenderProfile::~ZRenderProfile() {
    delete entries_;
}

unsigned int ZRenderProfile::numberOfRenderers() const {
    return static_cast<unsigned int>(contents(entries_).size());
}

void ZRenderProfile::addRenderer(ZStandardRenderer renderer) {
    if (renderer >= kQuilSoftware && renderer <= kQuilD3D)
        devhost::made(entries_).add({renderer, {}, 0});
}

void ZRenderProfile::addRenderer(ZString const &name, float version) {
    if (name.length())
        devhost::made(entries_).add({kNotStandard, name, version});
}

bool ZRenderProfile::hasRenderer(ZStandardRenderer renderer) const {
    return contents(entries_).has({renderer, {}, 0});
}

bool ZRenderProfile::hasRenderer(ZString const &name, float version) const {
    return contents(entries_).has({kNotStandard, name, version});
}

#include "host/render/ZRenderProfile.h"

#include <algorithm>

namespace {

constexpr int kNotStandard = -1;

} // namespace

ZRenderProfile::ZRenderProfile() = default;
ZRenderProfile::~ZRenderProfile() = default;

bool ZRenderProfile::Entry::operator==(const Entry &other) const {
    return standard == other.standard && name == other.name && version == other.version;
}

bool ZRenderProfile::has(const Entry &entry) const {
    return std::find(entries_.begin(), entries_.end(), entry) != entries_.end();
}

unsigned int ZRenderProfile::numberOfRenderers() const {
    return static_cast<unsigned int>(entries_.size());
}

void ZRenderProfile::addRenderer(ZStandardRenderer renderer) {
    const Entry entry{renderer, {}, 0};
    if (renderer >= kQuilSoftware && renderer <= kQuilD3D && !has(entry))
        entries_.push_back(entry);
}

void ZRenderProfile::addRenderer(ZString const &name, float version) {
    const Entry entry{kNotStandard, name, version};
    if (name.length() && !has(entry))
        entries_.push_back(entry);
}

bool ZRenderProfile::hasRenderer(ZStandardRenderer renderer) const {
    return has({renderer, {}, 0});
}

bool ZRenderProfile::hasRenderer(ZString const &name, float version) const {
    return has({kNotStandard, name, version});
}

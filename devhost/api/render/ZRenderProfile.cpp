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
    return std::find(fEntries.begin(), fEntries.end(), entry) != fEntries.end();
}

unsigned int ZRenderProfile::numberOfRenderers() const {
    return static_cast<unsigned int>(fEntries.size());
}

void ZRenderProfile::addRenderer(ZStandardRenderer renderer) {
    const Entry entry{renderer, {}, 0};
    if (renderer >= kQuilSoftware && renderer <= kQuilD3D && !has(entry))
        fEntries.push_back(entry);
}

void ZRenderProfile::addRenderer(ZString const &name, float version) {
    const Entry entry{kNotStandard, name, version};
    if (name.length() && !has(entry))
        fEntries.push_back(entry);
}

bool ZRenderProfile::hasRenderer(ZStandardRenderer renderer) const {
    return has({renderer, {}, 0});
}

bool ZRenderProfile::hasRenderer(ZString const &name, float version) const {
    return has({kNotStandard, name, version});
}

// SPDX-License-Identifier: MIT
#include "devhost/scene/PassKind.h"

namespace devhost {

std::span<const PassKind> passKinds() {
    static constexpr PassKind kinds[] = {
        {"beauty", 4, true}, {"diffuse", 3, true}, {"specular", 3, true},
        {"shadow", 3, true}, {"normal", 3, false}, {"depth", 1, false},
    };
    return kinds;
}

const PassKind *findPassKind(const std::string &name) {
    for (const PassKind &kind : passKinds())
        if (name == kind.name)
            return &kind;
    return nullptr;
}

} // namespace devhost

// SPDX-License-Identifier: MIT
#include "devhost/util/Version.h"

namespace devhost {

const char *version() {
    return OPENQUIL_VERSION;
}

} // namespace devhost

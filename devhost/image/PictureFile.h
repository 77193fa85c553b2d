// SPDX-License-Identifier: MIT
#pragma once

// How a picture file looks from outside, without its pixels.

#include "host/base/HostApi.h"

#include <string>

namespace devhost {

struct PictureFile {
    /// Empty where the file is whole, else what is wrong with it.
    std::string damage;
    /// The size of the whole image, be the file a region of it or not.
    unsigned width = 0, height = 0;
};

/// Looks at the beginning and the end of a file as this host writes them, PNG or scan lines of
/// OpenEXR, which tell whether anything is missing between: a few reads, however large it is.
OPENQUIL_API PictureFile inspectPicture(const std::string &path);

} // namespace devhost

// SPDX-License-Identifier: MIT
// Pictures out of their tiles.
#include "devhost/app/Errors.h"
#include "devhost/farm/Commands.h"
#include "devhost/farm/PictureCheck.h"
#include "devhost/image/TileAssembly.h"
#include "devhost/util/Statuses.h"
#include "host/core/ZString.h"

#include <CLI/CLI.hpp>

namespace quilfarm {

int assemble(const Arguments &arguments) {
    CLI::App app("Puts the tiles of pictures together, as --tiles and --output of their job say",
                 "quilfarm assemble");
    Pictures tiles;
    addPictureOptions(app, tiles);
    if (!parse(app, arguments))
        return quilhost::kOk;
    checkPictures(tiles);
    if (!tiles.tiles)
        throw quilhost::Failure(quilhost::kUsageError, "--tiles is required");

    const PictureCheck check = checkFiles(tiles);
    Pictures whole = tiles;
    whole.tiles.reset();
    for (const int frame : devhost::subtract(tiles.frames, check.unfinished(tiles))) {
        const ZStatus status =
            devhost::assembleTiles(tiles.filesOf(frame), whole.filesOf(frame)[0]);
        if (status.error())
            throw quilhost::Failure(quilhost::kRenderError,
                                    devhost::withoutCode(status.errorString().asChar()));
    }
    if (!check.isWhole())
        throw quilhost::Failure(quilhost::kRenderError,
                                "without all tiles there is no picture; " + check.summary());
    return quilhost::kOk;
}

} // namespace quilfarm

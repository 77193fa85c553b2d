// SPDX-License-Identifier: MIT
// The frames of the render, for scripts.

#include "devhost/session/RenderSession.h"
#include "host/core/ZTime.h"

/// The frames that the development host renders; static functions only.
struct Frames {
    static ZTime current() { return ZTime(devhost::renderSession().frame); }
};

#define ROW_LIST "devhost/core_module/frames.def"
#define ROW_TABLE frame_rows
#include "wrappers/rows/make_rows.h"

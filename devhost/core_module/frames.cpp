// SPDX-License-Identifier: MIT
// The frames of the render, for scripts.

#include "devhost/api/render/Picture.h"
#include "devhost/session/FrameRenderer.h"
#include "devhost/session/RenderSession.h"
#include "host/core/ZTime.h"

/// The frames that the development host renders; static functions only.
struct Frames {
    static ZTime current() { return ZTime(devhost::renderSession().frame); }
    static ZString renderer() { return ZString(devhost::renderSession().renderer.c_str()); }
    static ZStatus setRenderer(ZString const &name) {
        return devhost::chooseRenderer(name.asChar());
    }
    static ZStatus render(ZString const &file_name) {
        return devhost::renderToFile(file_name.asChar());
    }
};

#define ROW_LIST "devhost/core_module/frames.def"
#define ROW_TABLE frame_rows
#include "wrappers/rows/make_rows.h"

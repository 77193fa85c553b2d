// The frames of the render, for scripts.

#include "devhost/session/RenderSession.h"
#include "host/core/ZTime.h"
#include "wrappers/rows/wrapper_table.h"

/// The frames that the development host renders; static functions only.
struct Frames {
    static ZTime current() { return ZTime(devhost::renderSession().frame); }
};

ROWS_BEGIN

STATIC(Frames, current, ZTime())
REGISTRATION(Frames)

ROWS_END(frame_rows)

// SPDX-License-Identifier: MIT
// Viewports for scripts: the renderers that native code has registered, and images of the scene
// that they draw.

#include "devhost/api/render/Picture.h"
#include "devhost/session/Viewport.h"
#include "host/core/ZStringArray.h"
#include "host/render/ZViewportRenderer.h"

/// The development host's viewports; static functions only.
struct Viewports {
    static ZStringArray renderers() {
        ZStringArray names;
        for (const std::string &name : devhost::viewportRenderers())
            names.append(ZString(name.c_str()));
        return names;
    }
    static ZViewportRenderer *renderer(ZString const &name, ZStatus *status) {
        ZViewportRenderer *found = devhost::findViewportRenderer(name.asChar());
        if (!found)
            *status = ZStatus(ZStatus::kNotFound, "there is no such viewport renderer");
        return found;
    }
    static ZStatus render(ZString const &name, unsigned int width, unsigned int height,
                          ZString const &file_name) {
        return devhost::renderViewportToFile(name.asChar(), width, height, file_name.asChar());
    }
};

#define ROW_LIST "devhost/core_module/viewports.def"
#define ROW_TABLE viewport_rows
#include "wrappers/rows/make_rows.h"

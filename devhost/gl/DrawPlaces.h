// SPDX-License-Identifier: MIT
#pragma once

// The hardware renderer's side of the registered draw procedures.

namespace devhost {

/// Where in a frame they are executed.
enum class DrawPlace { kPreRendering, kPreExposure, kPostExposure, kPostRendering };

/// Executes the enabled procedures of a place, in their order, on the calling thread. One that
/// returns false or throws is reported through the render session, and the others go on.
void runDrawProcedures(DrawPlace place);

} // namespace devhost

// SPDX-License-Identifier: MIT
#pragma once

// The hardware renderer's lists of draw procedures. Like all of the hardware renderer they belong
// to the thread that draws.

#include "host/render/ZDrawProcedureBase.h"
#include "host/render/ZHardwareRenderer.h"

#include <array>
#include <cstddef>
#include <vector>

namespace devhost {

/// The procedures of one location, in the order of execution; no procedure is in it twice.
class DrawProcedureList {
  public:
    using Code = ZHardwareRenderer::DrawProcedureReturnCode;

    /// Puts a procedure before the place; the place behind the last puts it at the end.
    Code insert(ZDrawProcedureBase *procedure, size_t place);
    Code remove(ZDrawProcedureBase *procedure);
    bool contains(const ZDrawProcedureBase *procedure) const;
    /// The first procedure of the name, or null.
    ZDrawProcedureBase *find(const ZString &name) const;
    const std::vector<ZDrawProcedureBase *> &procedures() const { return procedures_; }

    /// Executes the procedures that are enabled. One that returns false or throws is reported
    /// through the render session, and the others go on.
    void execute() const;

  private:
    std::vector<ZDrawProcedureBase *> procedures_;
};

/// One list for each location.
using DrawProcedureLists = std::array<DrawProcedureList, 4>;
DrawProcedureLists &drawProcedureLists();

} // namespace devhost

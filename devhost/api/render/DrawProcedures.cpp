// SPDX-License-Identifier: MIT
#include "devhost/api/render/DrawProcedures.h"

#include "devhost/gl/DrawPlaces.h"
#include "devhost/session/CallbackRegistry.h"

#include <algorithm>

namespace devhost {

DrawProcedureList::Code DrawProcedureList::insert(ZDrawProcedureBase *procedure, size_t place) {
    if (!procedure)
        return ZHardwareRenderer::kFailure;
    if (contains(procedure))
        return ZHardwareRenderer::kItemExists;
    if (place > procedures_.size())
        return ZHardwareRenderer::kItemNotFound;
    procedures_.insert(procedures_.begin() + static_cast<std::ptrdiff_t>(place), procedure);
    return ZHardwareRenderer::kSuccess;
}

DrawProcedureList::Code DrawProcedureList::remove(ZDrawProcedureBase *procedure) {
    return std::erase(procedures_, procedure) ? ZHardwareRenderer::kSuccess
                                              : ZHardwareRenderer::kItemNotFound;
}

bool DrawProcedureList::contains(const ZDrawProcedureBase *procedure) const {
    return std::find(procedures_.begin(), procedures_.end(), procedure) != procedures_.end();
}

ZDrawProcedureBase *DrawProcedureList::find(const ZString &name) const {
    const auto found =
        std::find_if(procedures_.begin(), procedures_.end(),
                     [&](const ZDrawProcedureBase *each) { return each->name() == name; });
    return found == procedures_.end() ? nullptr : *found;
}

void DrawProcedureList::execute() const {
    const auto snapshot = procedures_;
    for (ZDrawProcedureBase *procedure : snapshot)
        // An earlier procedure may have taken this one out, or deleted it.
        if (contains(procedure) && procedure->enabled())
            runGuarded("execute", [&] {
                if (!procedure->execute())
                    reportCallbackError("execute", "the draw procedure returned false");
            });
}

DrawProcedureLists &drawProcedureLists() {
    // Never destroyed: procedures may take themselves out while the process exits.
    static auto *const instance = new DrawProcedureLists;
    return *instance;
}

void runDrawProcedures(DrawPlace place) {
    using enum DrawPlace;
    static_assert(int(kPreRendering) == ZHardwareRenderer::kPreRendering &&
                  int(kPreExposure) == ZHardwareRenderer::kPreExposure &&
                  int(kPostExposure) == ZHardwareRenderer::kPostExposure &&
                  int(kPostRendering) == ZHardwareRenderer::kPostRendering);
    drawProcedureLists()[size_t(place)].execute();
}

} // namespace devhost

ZDrawProcedureBase::ZDrawProcedureBase() = default;
ZDrawProcedureBase::~ZDrawProcedureBase() {
    for (auto &list : devhost::drawProcedureLists())
        list.remove(this);
}

void ZDrawProcedureBase::setEnabled(bool value) {
    enabled_ = value;
}
bool ZDrawProcedureBase::enabled() const {
    return enabled_;
}
void ZDrawProcedureBase::setName(ZString const &name) {
    name_ = name;
}
ZString ZDrawProcedureBase::name() const {
    return name_;
}

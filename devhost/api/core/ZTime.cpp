// A time of the animation, in one of several units.
#include "host/core/ZTime.h"

#include <atomic>
#include <iterator>

namespace {

/// Ticks of 1/6000 second in each unit, so that every unit is a whole number of ticks and whole
/// frames of different rates compare exactly.
constexpr double kTicks[] = {0,   6000.0 * 3600, 6000.0 * 60, 6000, 6,   400,
                             250, 240,           200,         125,  120, 100};
static_assert(std::size(kTicks) == ZTime::kLast);

std::atomic<ZTime::Unit> theUIUnit{ZTime::kFilm};

bool isKnown(ZTime::Unit unit) {
    return unit > ZTime::kInvalid && unit < ZTime::kLast;
}

ZStatus unknownUnit() {
    return ZStatus(ZStatus::kInvalidParameter, "the time unit is not known");
}

} // namespace

ZTime::ZTime(double value, Unit unit) : value_(value), unit_(isKnown(unit) ? unit : uiUnit()) {}

double ZTime::ticks() const {
    return value_ * kTicks[unit_];
}

double ZTime::as(Unit unit) const {
    if (unit == unit_)
        return value_;
    return isKnown(unit) ? ticks() / kTicks[unit] : 0.0;
}

ZStatus ZTime::setValue(double value) {
    value_ = value;
    return ZStatus();
}

ZStatus ZTime::setUnit(Unit unit) {
    if (!isKnown(unit))
        return unknownUnit();
    unit_ = unit;
    return ZStatus();
}

ZTime::Unit ZTime::uiUnit() {
    return theUIUnit.load(std::memory_order_relaxed);
}

ZStatus ZTime::setUIUnit(Unit unit) {
    if (!isKnown(unit))
        return unknownUnit();
    theUIUnit.store(unit, std::memory_order_relaxed);
    return ZStatus();
}

// SPDX-License-Identifier: MIT
// A time of the animation, in one of several units.
#include "host/core/ZTime.h"

#include "host/core/ZStatus.h"

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

ZTime::ZTime() : value_(0.0), unit_(uiUnit()) {}

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

double ZTime::value() const {
    return value_;
}

ZTime::Unit ZTime::unit() const {
    return unit_;
}

double ZTime::asUnits(Unit unit) const {
    return as(unit);
}

ZTime ZTime::operator+(const ZTime &other) const {
    return ZTime(value_ + other.as(unit_), unit_);
}

ZTime ZTime::operator-(const ZTime &other) const {
    return ZTime(value_ - other.as(unit_), unit_);
}

ZTime ZTime::operator+(double amount) const {
    return ZTime(value_ + amount, unit_);
}

ZTime ZTime::operator-(double amount) const {
    return ZTime(value_ - amount, unit_);
}

ZTime ZTime::operator*(double factor) const {
    return ZTime(value_ * factor, unit_);
}

ZTime ZTime::operator/(double divisor) const {
    return ZTime(value_ / divisor, unit_);
}

ZTime &ZTime::operator+=(const ZTime &other) {
    return *this = *this + other;
}

ZTime &ZTime::operator-=(const ZTime &other) {
    return *this = *this - other;
}

bool ZTime::operator==(const ZTime &other) const {
    return ticks() == other.ticks();
}

bool ZTime::operator<(const ZTime &other) const {
    return ticks() < other.ticks();
}

bool ZTime::operator>(const ZTime &other) const {
    return other < *this;
}

bool ZTime::operator<=(const ZTime &other) const {
    return ticks() <= other.ticks();
}

bool ZTime::operator>=(const ZTime &other) const {
    return other <= *this;
}

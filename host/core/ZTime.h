// SPDX-License-Identifier: MIT
#pragma once

// A time of the animation, in one of several units.

#include "host/base/HostApi.h"

class ZStatus;

/// A time of the animation: a value and the unit it is counted in. Times of different units
/// compare and add correctly.
class OPENQUIL_API ZTime {
  public:
    /// What the value counts: hours to milliseconds, or frames at 15, 24, 25, 30, 48, 50 or 60 a
    /// second.
    enum Unit : int {
        kInvalid = 0,
        kHours = 1,
        kMinutes = 2,
        kSeconds = 3,
        kMilliseconds = 4,
        kGames = 5,
        kFilm = 6,
        kPALFrame = 7,
        kNTSCFrame = 8,
        kShowScan = 9,
        kPALField = 10,
        kNTSCField = 11,
        kLast = 12
    };

    /// Makes the time 0 in the unit of the user interface.
    ZTime();
    /// Makes a time; an unknown unit means the unit of the user interface.
    explicit ZTime(double value, Unit unit = uiUnit());

    /// Returns the value in this time's unit.
    double value() const;
    /// Returns this time's unit.
    Unit unit() const;
    /// Returns the value in the given unit; 0 when the unit is unknown.
    double as(Unit unit) const;
    /// Returns the value in the given unit; 0 when the unit is unknown.
    double asUnits(Unit unit) const;
    /// Sets the value and keeps the unit.
    ZStatus setValue(double value);
    /// Sets the unit and keeps the value; fails with kInvalidParameter when the unit is unknown.
    ZStatus setUnit(Unit unit);

    /// Returns the unit of the user interface, kFilm (24 frames a second) at first.
    static Unit uiUnit();
    /// Sets the unit of the user interface; fails with kInvalidParameter when the unit is unknown.
    static ZStatus setUIUnit(Unit unit);

    /// Returns the sum in this time's unit.
    ZTime operator+(const ZTime &other) const;
    /// Returns the difference in this time's unit.
    ZTime operator-(const ZTime &other) const;
    /// Returns the time with the given amount of its own unit added.
    ZTime operator+(double amount) const;
    /// Returns the time with the given amount of its own unit taken off.
    ZTime operator-(double amount) const;
    /// Returns the time scaled by the factor.
    ZTime operator*(double factor) const;
    /// Returns the time divided by the divisor.
    ZTime operator/(double divisor) const;
    /// Adds the other time.
    ZTime &operator+=(const ZTime &other);
    /// Subtracts the other time.
    ZTime &operator-=(const ZTime &other);

    /// Returns true when both are the same time, in whatever units.
    bool operator==(const ZTime &other) const;
    /// Returns true when this is the earlier time.
    bool operator<(const ZTime &other) const;
    /// Returns true when this is the later time.
    bool operator>(const ZTime &other) const;
    /// Returns true when this time is not later.
    bool operator<=(const ZTime &other) const;
    /// Returns true when this time is not earlier.
    bool operator>=(const ZTime &other) const;

  private:
    double ticks() const;

    double value_;
    Unit unit_;
};

// SPDX-License-Identifier: MIT
#pragma once

// A colour with opacity.

#include "host/base/HostApi.h"

class ZStatus;

/// A colour: linear red, green and blue, usually 0 to 1, and the opacity alpha.
class OPENQUIL_API ZColor {
  public:
    /// Red.
    float r;
    /// Green.
    float g;
    /// Blue.
    float b;
    /// Opacity: 0 is clear, 1 covers what is behind.
    float a;

    /// Makes opaque black.
    constexpr ZColor() : r(0), g(0), b(0), a(1) {}
    /// Makes a colour from its components.
    constexpr ZColor(float rr, float gg, float bb, float aa = 1.0f) : r(rr), g(gg), b(bb), a(aa) {}

    /// Returns r, g, b or a for the index 0 to 3.
    float &operator[](unsigned index) {
        return index == 0 ? r : index == 1 ? g : index == 2 ? b : a;
    }
    /// Returns r, g, b or a for the index 0 to 3.
    float operator[](unsigned index) const { return const_cast<ZColor &>(*this)[index]; }
    /// Copies r, g, b and a to the destination.
    ZStatus get(float destination[4]) const;

    /// Returns the sum of red, green and blue; alpha is this colour's.
    ZColor operator+(const ZColor &c) const { return {r + c.r, g + c.g, b + c.b, a}; }
    /// Returns the difference of red, green and blue; alpha is this colour's.
    ZColor operator-(const ZColor &c) const { return {r - c.r, g - c.g, b - c.b, a}; }
    /// Returns the product of red, green and blue, one by one; alpha is this colour's.
    ZColor operator*(const ZColor &c) const { return {r * c.r, g * c.g, b * c.b, a}; }
    /// Returns the colour with red, green and blue scaled by the factor; alpha stays.
    ZColor operator*(float factor) const { return {r * factor, g * factor, b * factor, a}; }
    /// Returns the colour with red, green and blue divided by the divisor; alpha stays.
    ZColor operator/(float divisor) const { return {r / divisor, g / divisor, b / divisor, a}; }
    /// Adds the other colour's red, green and blue.
    ZColor &operator+=(const ZColor &c) { return *this = *this + c; }
    /// Scales red, green and blue by the factor.
    ZColor &operator*=(float factor) { return *this = *this * factor; }
    /// Returns true when all four components are the same.
    bool operator==(const ZColor &c) const { return r == c.r && g == c.g && b == c.b && a == c.a; }
};

/// Returns the colour with red, green and blue scaled by the factor.
inline ZColor operator*(float factor, const ZColor &c) {
    return c * factor;
}

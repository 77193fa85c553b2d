// SPDX-License-Identifier: MIT
#pragma once

// A view: an orthonormal frame that looks along a direction, and the rays that go into it.

#include "devhost/raytrace/Vectors.h"
#include "host/core/ZFloatVector.h"
#include "host/core/ZMatrix.h"
#include "host/core/ZVector.h"

#include <cmath>

namespace devhost {

/// x right, y up, -z into the picture.
struct ViewFrame {
    ZVector right, up, forward, eye;

    /// `roughlyUp` need not be at a right angle to the direction, nor even differ from it.
    ViewFrame(const ZVector &position, const ZVector &direction, const ZVector &roughlyUp)
        : eye(position) {
        forward = direction.normal();
        ZVector side = forward ^ roughlyUp;
        if (side.length() < 1e-6 * roughlyUp.length())
            side = forward ^ (std::abs(forward.y) < 0.9 ? ZVector(0, 1, 0) : ZVector(0, 0, 1));
        right = side.normal();
        up = right ^ forward;
    }

    ZMatrix worldToView() const {
        ZMatrix result;
        const ZVector *axes[] = {&right, &up, &forward};
        for (unsigned column = 0; column < 3; ++column) {
            const double sign = column == 2 ? -1 : 1;
            const ZVector axis = *axes[column] * sign;
            result(0, column) = axis.x;
            result(1, column) = axis.y;
            result(2, column) = axis.z;
            result(3, column) = -(eye * axis);
        }
        return result;
    }
};

/// The rays through the points of a view, whose borders lie at -1 and 1 both ways. A ray's
/// direction is one unit of depth long. Made in double precision: far from the world's origin, the
/// difference of two float points would be too coarse for a pixel.
struct ViewRays {
    ViewFrame frame;
    bool perspective;
    /// Half the size of the view: at depth 1 when it is in perspective, else at any depth.
    double halfWidth, halfHeight;

    ZFloatVector origin(double x, double y) const {
        return rounded(perspective ? frame.eye : frame.eye + offset(x, y));
    }
    ZFloatVector direction(double x, double y) const {
        return rounded(perspective ? frame.forward + offset(x, y) : frame.forward);
    }

  private:
    ZVector offset(double x, double y) const {
        return frame.right * (x * halfWidth) + frame.up * (y * halfHeight);
    }
};

} // namespace devhost

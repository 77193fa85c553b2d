// Vectors, points, matrices, quaternions and boxes against values worked out by hand.
#include "host/core/ZBoundingBox.h"
#include "host/core/ZFloatMatrix.h"
#include "host/core/ZFloatPoint.h"
#include "host/core/ZFloatVector.h"
#include "host/core/ZMatrix.h"
#include "host/core/ZPoint.h"
#include "host/core/ZQuaternion.h"
#include "host/core/ZVector.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace {

constexpr double kPi = std::numbers::pi;

struct Single {
    using Scalar = float;
    using Vector = ZFloatVector;
    using Point = ZFloatPoint;
    using Matrix = ZFloatMatrix;
};
struct Double {
    using Scalar = double;
    using Vector = ZVector;
    using Point = ZPoint;
    using Matrix = ZMatrix;
};

template <class Precision>
class Math : public testing::Test {
  public:
    using Scalar = typename Precision::Scalar;
    using Vector = typename Precision::Vector;
    using Point = typename Precision::Point;
    using Matrix = typename Precision::Matrix;

    // A quarter turn around z, counter-clockwise: x goes to y.
    static constexpr Scalar kTurn[4][4] = {{0, 1, 0, 0}, {-1, 0, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
    static constexpr Scalar kMove[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {1, 2, 3, 1}};
    static constexpr Scalar kScaleMove[4][4] = {
        {2, 0, 0, 0}, {0, 4, 0, 0}, {0, 0, 8, 0}, {1, 2, 3, 1}};
    static constexpr Scalar kScaleMoveInverse[4][4] = {
        {.5, 0, 0, 0}, {0, .25, 0, 0}, {0, 0, .125, 0}, {-.5, -.5, -.375, 1}};
    static constexpr Scalar kLens[4][4] = {
        {1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, -1, -1}, {0, 0, -2, 0}};
    static constexpr Scalar kLensInverse[4][4] = {
        {1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 0, -.5}, {0, 0, -1, .5}};
    static constexpr Scalar kFlat[4][4] = {{1, 2, 0, 0}, {2, 4, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
};
using Precisions = testing::Types<Single, Double>;
TYPED_TEST_SUITE(Math, Precisions);

TYPED_TEST(Math, VectorsAddScaleAndMultiply) {
    using Vector = typename TestFixture::Vector;
    const Vector a(1, 2, 3), b(4, -5, 6);
    EXPECT_EQ(a + b, Vector(5, -3, 9));
    EXPECT_EQ(a - b, Vector(-3, 7, -3));
    EXPECT_EQ(-a, Vector(-1, -2, -3));
    EXPECT_EQ(a * 2, Vector(2, 4, 6));
    EXPECT_EQ(2 * a, Vector(2, 4, 6));
    EXPECT_EQ(b / 2, Vector(2, -2.5, 3));
    EXPECT_EQ(a * b, 12);
    EXPECT_EQ(a ^ b, Vector(27, 6, -13));
    EXPECT_EQ(Vector(2, 3, 6).length(), 7);
    EXPECT_TRUE(Vector(0, 3, 4).normal().isEquivalent(Vector(0, 0.6, 0.8)));
    EXPECT_EQ(Vector().normal(), Vector());
    Vector c(a);
    c += b;
    c -= a;
    c *= 4;
    c /= 2;
    EXPECT_EQ(c, b * 2);
    EXPECT_EQ(c[0], 8);
    c[2] = 1;
    EXPECT_EQ(c.z, 1);
    EXPECT_TRUE(c.normalize());
    Vector zero;
    EXPECT_EQ(zero.normalize().statusCode(), ZStatus::kFailure);
}

TYPED_TEST(Math, VectorsCompareDirections) {
    using Vector = typename TestFixture::Vector;
    EXPECT_NEAR(Vector(1, 0, 0).angle(Vector(0, 5, 0)), kPi / 2, 1e-6);
    EXPECT_NEAR(Vector(1, 0, 0).angle(Vector(-2, 0, 0)), kPi, 1e-6);
    EXPECT_NEAR(Vector(1, 0, 0).angle(Vector(3, 3, 0)), kPi / 4, 1e-6);
    EXPECT_TRUE(Vector(1, 2, 3).isParallel(Vector(-2, -4, -6)));
    EXPECT_FALSE(Vector(1, 2, 3).isParallel(Vector(1, 2, 3.1)));
    EXPECT_FALSE(Vector(1, 2, 3).isEquivalent(Vector(1, 2, 3.1)));
}

TYPED_TEST(Math, RowsStandLeftOfMatrices) {
    using Vector = typename TestFixture::Vector;
    using Point = typename TestFixture::Point;
    using Matrix = typename TestFixture::Matrix;
    const Matrix turn(TestFixture::kTurn), move(TestFixture::kMove);
    EXPECT_EQ(Vector(1, 0, 0) * turn, Vector(0, 1, 0));
    EXPECT_EQ(Vector(1, 1, 1) * move, Vector(1, 1, 1));
    EXPECT_EQ(Point(1, 1, 1) * move, Point(2, 3, 4));
    // The left factor acts first.
    EXPECT_EQ(Point(1, 0, 0) * (turn * move), Point(1, 3, 3));
    EXPECT_EQ(Point(1, 0, 0) * (move * turn), Point(-2, 2, 3));
    EXPECT_EQ(Matrix().setToProduct(turn, move), turn * move);
    EXPECT_EQ((turn * move)(3, 1), 2);
    EXPECT_EQ((turn * move)[3][2], 3);
    EXPECT_EQ(turn.transpose()(0, 1), -1);
}

TYPED_TEST(Math, PointsDivideTheirWeightOut) {
    using Vector = typename TestFixture::Vector;
    using Point = typename TestFixture::Point;
    using Matrix = typename TestFixture::Matrix;
    Point seen = Point(1, 2, -2) * Matrix(TestFixture::kLens);
    EXPECT_EQ(seen, Point(1, 2, 0, 2));
    EXPECT_EQ(seen - Point(0, 0, 0), Vector(0.5, 1, 0));
    EXPECT_EQ(seen + Vector(1, 1, 1), Point(1.5, 2, 1));
    EXPECT_TRUE(seen.isEquivalent(Point(0.5, 1, 0)));
    EXPECT_TRUE(seen.cartesianize());
    EXPECT_EQ(seen, Point(0.5, 1, 0, 1));
    Point farAway(1, 0, 0, 0);
    EXPECT_EQ(farAway.cartesianize().statusCode(), ZStatus::kFailure);
    EXPECT_EQ(Point(1, 2, 3).distanceTo(Point(3, 5, 9)), 7);
}

TYPED_TEST(Math, MatricesInvert) {
    using Matrix = typename TestFixture::Matrix;
    const Matrix scaleMove(TestFixture::kScaleMove), lens(TestFixture::kLens);
    EXPECT_TRUE(scaleMove.inverse().isEquivalent(Matrix(TestFixture::kScaleMoveInverse)));
    EXPECT_TRUE(lens.inverse().isEquivalent(Matrix(TestFixture::kLensInverse)));
    EXPECT_EQ(scaleMove.det4x4(), 64);
    EXPECT_EQ(scaleMove.det3x3(), 64);
    EXPECT_EQ(lens.det4x4(), -2);
    EXPECT_EQ(lens.det3x3(), -1);
    EXPECT_FALSE(lens.isSingular());
    const Matrix flat(TestFixture::kFlat);
    EXPECT_TRUE(flat.isSingular());
    EXPECT_EQ(flat.inverse(), Matrix());
    EXPECT_TRUE((lens + lens).isEquivalent(lens * 2));
    EXPECT_TRUE((lens - lens).isEquivalent(Matrix() * 0));
}

TYPED_TEST(Math, NormalsStayAtRightAnglesToTheirSurface) {
    using Vector = typename TestFixture::Vector;
    using Matrix = typename TestFixture::Matrix;
    const Matrix scaleMove(TestFixture::kScaleMove);
    const Vector normal = Vector(1, 1, 0).transformAsNormal(scaleMove);
    EXPECT_TRUE(normal.isEquivalent(Vector(2, 1, 0).normal()));
    EXPECT_NEAR(normal * (Vector(1, -1, 0) * scaleMove), 0, 1e-6);
    const Vector turned = Vector(5, 0, 0).transformAsNormal(Matrix(TestFixture::kTurn));
    EXPECT_TRUE(turned.isEquivalent(Vector(0, 1, 0)));
}

TEST(MathConversions, KeepTheCoordinates) {
    EXPECT_EQ(ZVector(ZFloatVector(1, 2, 3)), ZVector(1, 2, 3));
    EXPECT_EQ(ZFloatVector(ZVector(1, 2, 3)), ZFloatVector(1, 2, 3));
    EXPECT_EQ(ZFloatPoint(ZPoint(1, 2, 3, 4)), ZFloatPoint(1, 2, 3, 4));
    EXPECT_EQ(ZFloatPoint(ZFloatVector(1, 2, 3)), ZFloatPoint(1, 2, 3, 1));
    EXPECT_EQ(ZVector(ZPoint(1, 2, 3, 4)), ZVector(1, 2, 3));
    const ZMatrix m(Math<Double>::kScaleMove);
    EXPECT_EQ(ZMatrix(ZFloatMatrix(m)), m);
}

TEST(Quaternion, TurnsLikeItsMatrix) {
    const ZQuaternion aroundZ(kPi / 2, ZVector(0, 0, 2)), aroundX(kPi / 2, ZVector(1, 0, 0));
    EXPECT_TRUE(ZVector(1, 0, 0).rotateBy(aroundZ).isEquivalent(ZVector(0, 1, 0)));
    EXPECT_TRUE(aroundZ.asMatrix().isEquivalent(ZMatrix(Math<Double>::kTurn)));
    // x to y around z, then y to z around x.
    EXPECT_TRUE(ZVector(1, 0, 0).rotateBy(aroundZ * aroundX).isEquivalent(ZVector(0, 0, 1)));
    EXPECT_TRUE(
        (aroundZ * aroundX).asMatrix().isEquivalent(aroundZ.asMatrix() * aroundX.asMatrix()));
    EXPECT_TRUE(ZQuaternion(aroundX.asMatrix()).isEquivalent(aroundX));
    EXPECT_TRUE((aroundX * aroundX.inverse()).isEquivalent(ZQuaternion()));

    ZVector axis;
    double angle = 0;
    EXPECT_TRUE(aroundZ.getAxisAngle(axis, angle));
    EXPECT_TRUE(axis.isEquivalent(ZVector(0, 0, 1)));
    EXPECT_NEAR(angle, kPi / 2, 1e-12);
    EXPECT_FALSE(ZQuaternion().getAxisAngle(axis, angle));
    EXPECT_EQ(angle, 0);
}

TEST(Quaternion, TurnsOneDirectionToAnotherAndPartOfTheWay) {
    const ZQuaternion xToY(ZVector(3, 0, 0), ZVector(0, 1, 0));
    EXPECT_TRUE(ZVector(1, 0, 0).rotateBy(xToY).isEquivalent(ZVector(0, 1, 0)));
    const ZQuaternion opposite(ZVector(1, 0, 0), ZVector(-1, 0, 0));
    EXPECT_TRUE(ZVector(1, 0, 0).rotateBy(opposite).isEquivalent(ZVector(-1, 0, 0)));
    const ZQuaternion half = ZQuaternion::slerp(ZQuaternion(), xToY, 0.5);
    EXPECT_TRUE(half.isEquivalent(ZQuaternion(kPi / 4, ZVector(0, 0, 1))));
    ZQuaternion zero(0, 0, 0, 0);
    EXPECT_EQ(zero.normalize().statusCode(), ZStatus::kFailure);
    EXPECT_EQ(zero.inverse(), ZQuaternion());
    EXPECT_EQ(ZQuaternion(1.0, ZVector()), ZQuaternion());
}

TEST(BoundingBox, EnclosesTransformsAndIntersects) {
    ZBoundingBox box;
    EXPECT_TRUE(box.isEmpty());
    EXPECT_FALSE(box.contains(ZPoint()));
    EXPECT_EQ(box.width(), 0);
    box.expand(ZBoundingBox());
    EXPECT_TRUE(box.isEmpty());
    box.expand(ZPoint(1, 5, 2));
    box.expand(ZPoint(3, 2, 8));
    EXPECT_EQ(box.min(), ZPoint(1, 2, 2));
    EXPECT_EQ(box.center(), ZPoint(2, 3.5, 5));
    EXPECT_EQ(box.height(), 3);
    EXPECT_TRUE(box.contains(ZPoint(3, 5, 8)));
    EXPECT_FALSE(box.contains(ZPoint(3, 5, 8.01)));
    const ZBoundingBox beside(ZPoint(4, 2, 2), ZPoint(5, 5, 5));
    EXPECT_FALSE(box.intersects(beside, 0.5));
    EXPECT_TRUE(box.intersects(beside, 1.0));

    box.transformUsing(ZMatrix(Math<Double>::kTurn) * ZMatrix(Math<Double>::kMove));
    EXPECT_TRUE(box.min().isEquivalent(ZPoint(-4, 3, 5)));
    EXPECT_TRUE(box.max().isEquivalent(ZPoint(-1, 5, 11)));
}

} // namespace

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

#include <numbers>

namespace {

constexpr double kPi = std::numbers::pi;

template <class ScalarType, class VectorType, class PointType, class MatrixType>
struct Types {
    using Scalar = ScalarType;
    using Vector = VectorType;
    using Point = PointType;
    using Matrix = MatrixType;
};
using Single = Types<float, ZFloatVector, ZFloatPoint, ZFloatMatrix>;
using Double = Types<double, ZVector, ZPoint, ZMatrix>;

template <class Precision>
class Math : public testing::Test, public Precision {
  public:
    using Scalar = typename Precision::Scalar;

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

// The operators that make a new vector are tested through scripts.
TYPED_TEST(Math, VectorsChangeInPlaceAndHaveALength) {
    using Vector = typename TestFixture::Vector;
    const Vector a(1, 2, 3), b(4, -5, 6);
    Vector c(a);
    c += b;
    c -= a;
    c *= 4;
    c /= 2;
    EXPECT_EQ(c, b * 2);
    EXPECT_EQ(Vector(2, 3, 6).length(), 7);
    EXPECT_TRUE(Vector(0, 3, 4).normal().isEquivalent(Vector(0, 0.6, 0.8)));
    EXPECT_EQ(Vector().normal(), Vector());
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
}

TYPED_TEST(Math, MatricesInvert) {
    using Matrix = typename TestFixture::Matrix;
    const Matrix scaleMove(TestFixture::kScaleMove), lens(TestFixture::kLens);
    EXPECT_TRUE(scaleMove.inverse().isEquivalent(Matrix(TestFixture::kScaleMoveInverse)));
    EXPECT_TRUE(lens.inverse().isEquivalent(Matrix(TestFixture::kLensInverse)));
    EXPECT_EQ(scaleMove.det4x4(), 64);
    EXPECT_EQ(lens.det3x3(), -1);
    const Matrix flat(TestFixture::kFlat);
    EXPECT_TRUE(flat.isSingular());
    EXPECT_EQ(flat.inverse(), Matrix());
}

TYPED_TEST(Math, NormalsStayAtRightAnglesToTheirSurface) {
    using Vector = typename TestFixture::Vector;
    using Matrix = typename TestFixture::Matrix;
    const Matrix scaleMove(TestFixture::kScaleMove);
    const Vector normal = Vector(1, 1, 0).transformAsNormal(scaleMove);
    EXPECT_TRUE(normal.isEquivalent(Vector(2, 1, 0).normal()));
    EXPECT_NEAR(normal * (Vector(1, -1, 0) * scaleMove), 0, 1e-6);
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
}

TEST(BoundingBox, EnclosesTransformsAndIntersects) {
    ZBoundingBox box;
    EXPECT_TRUE(box.isEmpty());
    EXPECT_FALSE(box.contains(ZPoint()));
    box.expand(ZBoundingBox());
    EXPECT_TRUE(box.isEmpty());
    box.expand(ZPoint(1, 5, 2));
    box.expand(ZPoint(3, 2, 8));
    EXPECT_EQ(box.min(), ZPoint(1, 2, 2));
    EXPECT_EQ(box.max(), ZPoint(3, 5, 8));
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

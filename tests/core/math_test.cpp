// SPDX-License-Identifier: MIT
// Vectors, points, matrices and rotations against results worked out by hand; what scripts can do
// with them is tested through the core module.
#include "host/core/ZBoundingBox.h"
#include "host/core/ZFloatMatrix.h"
#include "host/core/ZFloatPoint.h"
#include "host/core/ZFloatVector.h"
#include "host/core/ZMatrix.h"
#include "host/core/ZPoint.h"
#include "host/core/ZQuaternion.h"
#include "host/core/ZStatus.h"
#include "host/core/ZVector.h"

#include <gtest/gtest.h>

#include <numbers>

namespace {

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
class Math : public testing::Test, public Precision {};
using Precisions = testing::Types<Single, Double>;
TYPED_TEST_SUITE(Math, Precisions);

template <class Matrix>
Matrix matrix(std::initializer_list<double> values) {
    Matrix result;
    std::copy(values.begin(), values.end(), result.matrix[0]);
    return result;
}

// A quarter turn around z, counter-clockwise: x goes to y.
constexpr auto kTurn = {0., 1., 0., 0., -1., 0., 0., 0., 0., 0., 1., 0., 0., 0., 0., 1.};
constexpr auto kScaleMove = {2., 0., 0., 0., 0., 4., 0., 0., 0., 0., 8., 0., 1., 2., 3., 1.};
constexpr auto kScaleMoveInverse = {.5, 0., 0.,   0., 0.,  .25, 0.,    0.,
                                    0., 0., .125, 0., -.5, -.5, -.375, 1.};
constexpr auto kLens = {1., 0., 0., 0., 0., 1., 0., 0., 0., 0., -1., -1., 0., 0., -2., 0.};
constexpr auto kFlat = {1., 2., 0., 0., 2., 4., 0., 0., 0., 0., 1., 0., 0., 0., 0., 1.};

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
    for (const auto size : {1e-30f, 1e30f}) {
        EXPECT_FLOAT_EQ(float(Vector(0, 3 * size, 4 * size).length()), 5 * size);
        EXPECT_FLOAT_EQ(float(Vector(0, 3 * size, 4 * size).normal().y), 0.6f);
    }
}

TYPED_TEST(Math, PointsDivideTheirWeightOut) {
    using Vector = typename TestFixture::Vector;
    using Point = typename TestFixture::Point;
    Point seen = Point(1, 2, -2) * matrix<typename TestFixture::Matrix>(kLens);
    EXPECT_EQ(seen, Point(1, 2, 0, 2));
    EXPECT_EQ(seen - Point(0, 0, 0), Vector(0.5, 1, 0));
    EXPECT_EQ(seen + Vector(1, 1, 1), Point(1.5, 2, 1));
    EXPECT_TRUE(seen.isEquivalent(Point(0.5, 1, 0)));
    EXPECT_TRUE(seen.cartesianize());
    EXPECT_EQ(seen, Point(0.5, 1, 0, 1));
}

TYPED_TEST(Math, MatricesInvertAndCarryNormals) {
    using Vector = typename TestFixture::Vector;
    using Matrix = typename TestFixture::Matrix;
    const auto scaleMove = matrix<Matrix>(kScaleMove), lens = matrix<Matrix>(kLens);
    EXPECT_TRUE(scaleMove.inverse().isEquivalent(matrix<Matrix>(kScaleMoveInverse)));
    EXPECT_TRUE((lens * lens.inverse()).isEquivalent(Matrix()));
    EXPECT_EQ(scaleMove.det4x4(), 64);
    EXPECT_EQ(lens.det3x3(), -1);
    EXPECT_TRUE(matrix<Matrix>(kFlat).isSingular());
    EXPECT_EQ(matrix<Matrix>(kFlat).inverse(), Matrix());
    EXPECT_EQ(scaleMove.transpose()(0, 3), 1);
    EXPECT_EQ(Vector(1, 1, 1) * scaleMove, Vector(2, 4, 8)) << "a direction does not move";
    const Vector normal = Vector(1, 1, 0).transformAsNormal(scaleMove);
    EXPECT_TRUE(normal.isEquivalent(Vector(2, 1, 0).normal()));
}

TEST(Quaternion, TurnsLikeItsMatrix) {
    constexpr double kRight = std::numbers::pi / 2;
    const ZQuaternion aroundZ(kRight, ZVector(0, 0, 2)), aroundX(kRight, ZVector(1, 0, 0));
    EXPECT_TRUE(aroundZ.asMatrix().isEquivalent(matrix<ZMatrix>(kTurn)));
    // x to y around z, then y to z around x.
    EXPECT_TRUE(ZVector(1, 0, 0).rotateBy(aroundZ * aroundX).isEquivalent(ZVector(0, 0, 1)));
    EXPECT_TRUE(ZQuaternion(aroundX.asMatrix()).isEquivalent(aroundX));
    EXPECT_TRUE((aroundX * aroundX.inverse()).isEquivalent(ZQuaternion()));
}

TEST(BoundingBox, EnclosesTransformsAndIntersects) {
    ZBoundingBox box;
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
    box.transformUsing(matrix<ZMatrix>(kTurn));
    EXPECT_TRUE(box.min().isEquivalent(ZPoint(-5, 1, 2)));
    EXPECT_TRUE(box.max().isEquivalent(ZPoint(-2, 3, 8)));
}

} // namespace

// The arrays of numbers and small values.
#include "host/core/ZColorArray.h"
#include "host/core/ZDoubleArray.h"
#include "host/core/ZFloatArray.h"
#include "host/core/ZFloatPointArray.h"
#include "host/core/ZFloatVectorArray.h"
#include "host/core/ZIntArray.h"
#include "host/core/ZMatrixArray.h"
#include "host/core/ZPointArray.h"
#include "host/core/ZTimeArray.h"
#include "host/core/ZUint64Array.h"
#include "host/core/ZUintArray.h"
#include "host/core/ZVectorArray.h"

#include <gtest/gtest.h>

namespace {

template <class T>
T sample(int i) {
    if constexpr (std::is_arithmetic_v<T>)
        return static_cast<T>(i);
    else if constexpr (std::is_same_v<T, ZMatrix>)
        return ZMatrix() * static_cast<double>(i);
    else if constexpr (std::is_same_v<T, ZTime>)
        return ZTime(i, ZTime::kSeconds);
    else
        return T(static_cast<float>(i), 2, 3);
}

template <class Array>
class Arrays : public testing::Test {};

using ArrayTypes = testing::Types<ZFloatArray, ZDoubleArray, ZIntArray, ZUintArray, ZUint64Array,
                                  ZFloatVectorArray, ZVectorArray, ZFloatPointArray, ZPointArray,
                                  ZColorArray, ZMatrixArray, ZTimeArray>;
TYPED_TEST_SUITE(Arrays, ArrayTypes);

TYPED_TEST(Arrays, GrowShrinkAndCheckIndices) {
    using T = std::decay_t<decltype(std::declval<TypeParam>()[0])>;
    TypeParam array;
    array.setSizeIncrement(3);
    EXPECT_EQ(array.sizeIncrement(), 3u);
    for (int i = 1; i <= 20; ++i)
        ASSERT_TRUE(array.append(sample<T>(i)));
    ASSERT_EQ(array.length(), 20u);
    EXPECT_TRUE(array.append(array[0])); // an element of its own, also when the room moves
    EXPECT_TRUE(array.insert(array[1], 0));
    EXPECT_TRUE(array[0] == sample<T>(2));
    EXPECT_TRUE(array[1] == sample<T>(1));
    EXPECT_TRUE(array[21] == sample<T>(1));

    EXPECT_TRUE(array.insert(sample<T>(9), 22));
    EXPECT_EQ(array.insert(sample<T>(9), 24).statusCode(), ZStatus::kInvalidParameter);
    EXPECT_EQ(array.set(sample<T>(9), 23).statusCode(), ZStatus::kInvalidParameter);
    EXPECT_EQ(array.remove(23).statusCode(), ZStatus::kInvalidParameter);
    EXPECT_EQ(array.length(), 23u);
    EXPECT_TRUE(array.remove(0));
    EXPECT_TRUE(array.set(sample<T>(50), 0));
    EXPECT_TRUE(array[0] == sample<T>(50));
    EXPECT_TRUE(array[1] == sample<T>(2));

    ASSERT_TRUE(array.setLength(2));
    ASSERT_TRUE(array.setLength(3));
    T copied[3] = {sample<T>(7), sample<T>(7), sample<T>(7)};
    array.get(copied);
    EXPECT_TRUE(copied[1] == sample<T>(2));
    EXPECT_TRUE(copied[2] == T());

    TypeParam other(copied, 2);
    EXPECT_FALSE(other == array);
    EXPECT_TRUE(other.copy(array));
    EXPECT_TRUE(other == array);
    EXPECT_TRUE(array.clear());
    EXPECT_EQ(array.length(), 0u);
    EXPECT_EQ(array.remove(0).statusCode(), ZStatus::kInvalidParameter);
    EXPECT_EQ(other.length(), 3u);
    EXPECT_EQ(TypeParam(4, sample<T>(5)).length(), 4u);
}

} // namespace

// SPDX-License-Identifier: MIT
// Times.
#include "host/core/ZStatus.h"
#include "host/core/ZTime.h"

#include <gtest/gtest.h>

namespace {

TEST(ZTime, ConvertsBetweenUnits) {
    // One and a half seconds in each unit.
    const struct {
        ZTime::Unit unit;
        double value;
    } cases[] = {
        {ZTime::kHours, 1.5 / 3600},  {ZTime::kMinutes, 0.025}, {ZTime::kSeconds, 1.5},
        {ZTime::kMilliseconds, 1500}, {ZTime::kGames, 22.5},    {ZTime::kFilm, 36},
        {ZTime::kPALFrame, 37.5},     {ZTime::kNTSCFrame, 45},  {ZTime::kShowScan, 72},
        {ZTime::kPALField, 75},       {ZTime::kNTSCField, 90},
    };
    for (const auto &from : cases)
        for (const auto &to : cases)
            EXPECT_DOUBLE_EQ(ZTime(from.value, from.unit).as(to.unit), to.value)
                << from.unit << " to " << to.unit;
    EXPECT_EQ(ZTime(1, ZTime::kSeconds).as(static_cast<ZTime::Unit>(99)), 0.0);
}

TEST(ZTime, UsesTheUnitOfTheUserInterface) {
    ASSERT_TRUE(ZTime::setUIUnit(ZTime::kPALFrame));
    EXPECT_EQ(ZTime(5).unit(), ZTime::kPALFrame);
    EXPECT_EQ(ZTime::setUIUnit(ZTime::kInvalid).statusCode(), ZStatus::kInvalidParameter);
    EXPECT_EQ(ZTime::uiUnit(), ZTime::kPALFrame);
    ZTime::setUIUnit(ZTime::kFilm);
}

} // namespace

// Times and colours.
#include "host/core/ZColor.h"
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
    EXPECT_EQ(ZTime(1, ZTime::kSeconds).as(ZTime::kInvalid), 0.0);
    EXPECT_EQ(ZTime(1, ZTime::kSeconds).as(static_cast<ZTime::Unit>(99)), 0.0);
}

TEST(ZTime, WholeFramesCompareExactlyAcrossUnits) {
    for (int second = 1; second < 1000; ++second) {
        const ZTime film(24.0 * second, ZTime::kFilm), field(60.0 * second, ZTime::kNTSCField);
        ASSERT_TRUE(film == field);
        ASSERT_TRUE(film + 1.0 > field);
        ASSERT_TRUE(film - 1.0 < field);
        ASSERT_TRUE(film <= field && film >= field);
    }
    const ZTime sum = ZTime(12, ZTime::kFilm) + ZTime(0.5, ZTime::kSeconds);
    EXPECT_EQ(sum.value(), 24.0);
    EXPECT_EQ(sum.unit(), ZTime::kFilm);
    EXPECT_EQ((ZTime(1, ZTime::kMinutes) - ZTime(15, ZTime::kSeconds)).value(), 0.75);
    EXPECT_EQ((ZTime(3, ZTime::kFilm) * 4 / 2).value(), 6.0);
}

TEST(ZTime, UsesTheUnitOfTheUserInterface) {
    EXPECT_EQ(ZTime(5).unit(), ZTime::kFilm);
    EXPECT_EQ(ZTime(5, ZTime::kLast).unit(), ZTime::kFilm);
    ASSERT_TRUE(ZTime::setUIUnit(ZTime::kPALFrame));
    EXPECT_EQ(ZTime(5).unit(), ZTime::kPALFrame);
    EXPECT_EQ(ZTime().unit(), ZTime::kPALFrame);
    EXPECT_EQ(ZTime::setUIUnit(ZTime::kInvalid).statusCode(), ZStatus::kInvalidParameter);
    EXPECT_EQ(ZTime::uiUnit(), ZTime::kPALFrame);
    ZTime::setUIUnit(ZTime::kFilm);

    ZTime time(5, ZTime::kFilm);
    EXPECT_TRUE(time.setUnit(ZTime::kSeconds));
    EXPECT_TRUE(time.setValue(7));
    EXPECT_EQ(time.as(ZTime::kFilm), 168.0);
    EXPECT_EQ(time.setUnit(static_cast<ZTime::Unit>(-1)).statusCode(), ZStatus::kInvalidParameter);
    EXPECT_EQ(time.unit(), ZTime::kSeconds);
}

TEST(ZColor, CalculatesWithoutTouchingOpacity) {
    const ZColor half(0.5f, 0.25f, 1, 0.5f), tint(2, 4, 0, 9);
    EXPECT_EQ(half + tint, ZColor(2.5f, 4.25f, 1, 0.5f));
    EXPECT_EQ(half - tint, ZColor(-1.5f, -3.75f, 1, 0.5f));
    EXPECT_EQ(half * tint, ZColor(1, 1, 0, 0.5f));
    EXPECT_EQ(2 * half / 4, ZColor(0.25f, 0.125f, 0.5f, 0.5f));
    EXPECT_EQ(ZColor(), ZColor(0, 0, 0, 1));
    float components[4];
    half.get(components);
    EXPECT_EQ(components[3], 0.5f);
}

} // namespace

#include "time/Instant.h"

#include <gtest/gtest.h>

using orv::Instant;

TEST(Instant, CivilConversionRoundTripsAcrossEras)
{
    struct Case { int y, mo, d, h, mi, s; double epoch; };
    const Case cases[] = {
        {1970, 1, 1, 0, 0, 0, 0.0},
        {1904, 1, 1, 0, 0, 0, -2082844800.0},
        {1, 1, 2, 0, 0, 0, -62135510400.0},
        {4999, 12, 31, 23, 59, 59, 95617583999.0},
        {2024, 2, 29, 12, 34, 56, 1709210096.0},
        {1969, 12, 31, 23, 59, 59, -1.0},
    };
    for (const Case &c : cases) {
        const Instant i = Instant::fromUtc(c.y, c.mo, c.d, c.h, c.mi, c.s);
        EXPECT_DOUBLE_EQ(i.secondsSinceEpoch(), c.epoch) << c.y;
        const Instant::Civil civil = i.toUtcCivil();
        EXPECT_EQ(civil.year, c.y);
        EXPECT_EQ(civil.month, c.mo);
        EXPECT_EQ(civil.day, c.d);
        EXPECT_EQ(civil.hour, c.h);
        EXPECT_EQ(civil.minute, c.mi);
        EXPECT_EQ(civil.second, c.s);
    }
}

TEST(Instant, NegativeFractionsFloorToTheEarlierSecond)
{
    const Instant::Civil civil = Instant(-0.25).toUtcCivil();
    EXPECT_EQ(civil.year, 1969);
    EXPECT_EQ(civil.second, 59);
    EXPECT_DOUBLE_EQ(civil.fraction, 0.75);
}

TEST(Instant, SentinelsLieOutsideTheDateBounds)
{
    EXPECT_LT(Instant::distantPast(), Instant::minDate());
    EXPECT_GT(Instant::distantFuture(), Instant::fromUtc(4000, 12, 31));
    EXPECT_LT(Instant::distantFuture(), Instant::maxDate());
    EXPECT_TRUE(Instant::distantPast().isDistantPast());
    EXPECT_FALSE(Instant::minDate().isSentinel());
}

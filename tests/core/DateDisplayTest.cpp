#include "core/DateDisplay.h"

#include "support/Zones.h"

#include <gtest/gtest.h>

using orv::DateDisplay;
using orv::Instant;
using orv::TimeZone;

namespace {
TimeZone berlin() { return orv::test::zone("Europe/Berlin"); }
} // namespace

TEST(DateDisplay, WallClockWithTheAbbreviationInForceAtThatMoment)
{
    EXPECT_EQ(DateDisplay::localDateTime(Instant::fromUtc(2024, 7, 1, 8, 0, 5), berlin()),
              QStringLiteral("2024-07-01 10:00:05 CEST"));
    EXPECT_EQ(DateDisplay::localDateTime(Instant::fromUtc(2024, 1, 1, 8, 0, 5), berlin()),
              QStringLiteral("2024-01-01 09:00:05 CET"));
    EXPECT_EQ(DateDisplay::localDateTime(Instant::fromUtc(2024, 1, 1, 8, 0, 5), TimeZone::utc()),
              QStringLiteral("2024-01-01 08:00:05 UTC"));
}

TEST(DateDisplay, FractionsOfASecondAreCutNotRounded)
{
    EXPECT_EQ(DateDisplay::localDateTime(Instant::fromUtc(1999, 12, 31, 23, 59, 59.9), TimeZone::utc()),
              QStringLiteral("1999-12-31 23:59:59 UTC"));
}

TEST(DateDisplay, MissingAndSentinelDatesAreWords)
{
    EXPECT_EQ(DateDisplay::localDateTime(std::nullopt, berlin()), QStringLiteral("no date"));
    EXPECT_EQ(DateDisplay::localDateTime(Instant::distantPast(), berlin()), QStringLiteral("no date"));
    EXPECT_EQ(DateDisplay::localDateTime(Instant::distantFuture(), berlin()), QStringLiteral("when saved"));
}

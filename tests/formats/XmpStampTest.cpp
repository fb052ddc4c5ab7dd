// The XMP stamp forms decide how a date is read and rewritten in place; a wrong class would
// shift a time by its zone or break a value's length.

#include "formats/XmpLocator.h"
#include "time/DateStampCodec.h"

#include <gtest/gtest.h>

using namespace orv;

namespace {

struct StampCase
{
    const char *stamp;
    int type;
    int subtype;
};

class XmpStampClasses : public testing::TestWithParam<StampCase>
{
};

TEST_P(XmpStampClasses, ClassifyByZoneAndSeconds)
{
    const StampCase &c = GetParam();
    const XmpStampKind kind = DateStampCodec::verifiedXmpDateDataType(QByteArray(c.stamp));
    EXPECT_EQ(kind.type, c.type) << c.stamp;
    EXPECT_EQ(kind.subtype, c.subtype) << c.stamp;
}

INSTANTIATE_TEST_SUITE_P(
    WithSeconds, XmpStampClasses,
    testing::Values(StampCase{"2020-01-02T03:04:05Z", 1, 0},
                    StampCase{"2020-01-02T03:04:05+02:00", 2, 0},
                    StampCase{"2020-01-02T03:04:05-0530", 2, 1},
                    StampCase{"2020-01-02T03:04:05", 3, 0},
                    StampCase{"2020-01-02T03:04:05.123", 3, 0},
                    StampCase{"2020-01-02T03:04:05.123+01:00", 2, 0},
                    StampCase{"2020-01-02T03:04:05.5Z", 1, 0}));

INSTANTIATE_TEST_SUITE_P(
    WithoutSeconds, XmpStampClasses,
    testing::Values(StampCase{"2020-01-02T03:04Z", 1, 2}, StampCase{"2020-01-02T03:04", 3, 2},
                    StampCase{"2020-01-02T03:04+02:00", 2, 2},
                    StampCase{"2020-01-02T03:04-0500", 2, 3}));

INSTANTIATE_TEST_SUITE_P(
    NoStamp, XmpStampClasses,
    testing::Values(StampCase{"", 0, 0}, StampCase{"2020-01-02", 0, 0},
                    StampCase{"2020:01:02 03:04:05", 0, 0},
                    StampCase{"2020-01-02 03:04:05", 0, 0},
                    StampCase{"2020-01-02T03:04:05+02", 0, 0},
                    StampCase{"2020-01-02T03:04:05X", 0, 0},
                    StampCase{"2020-01-02T03:04:05.12345678901", 0, 0},
                    StampCase{"2020-01-02T03:04:05.1234+01:00", 0, 0},
                    StampCase{"2020-01-02T03:04+02:00:00:00:00", 0, 0},
                    StampCase{"20a0-01-02T03:04:05", 0, 0}));

TEST(XmpLocationValues, RefsAreOneCompassLetter)
{
    for (const char *ref : {"N", "S", "E", "W"})
        EXPECT_TRUE(verifiedXmpLocationRefDataType(ref)) << ref;
    for (const char *ref : {"", "n", "NE", "X"})
        EXPECT_FALSE(verifiedXmpLocationRefDataType(ref)) << ref;
}

TEST(XmpLocationValues, CoordinatesAreDegreesWithMinutesOrDecimals)
{
    EXPECT_EQ(verifiedXmpLocationDataType("48,51.2567N"), 1);
    EXPECT_EQ(verifiedXmpLocationDataType("2,17,40W"), 1);
    EXPECT_EQ(verifiedXmpLocationDataType("48.8566"), 2);
    EXPECT_EQ(verifiedXmpLocationDataType("48,51.2567"), 0);   // minutes need their letter
    EXPECT_EQ(verifiedXmpLocationDataType("48,51.2.5N"), 0);
    EXPECT_EQ(verifiedXmpLocationDataType("48,5,1,2N"), 0);
    EXPECT_EQ(verifiedXmpLocationDataType("48"), 0);
    EXPECT_EQ(verifiedXmpLocationDataType("4a.1"), 0);
}

TEST(XmpLocationValues, PositioningErrorIsANumberOrOneFraction)
{
    EXPECT_TRUE(isVerifiedXmpPosErrorDataType("65"));
    EXPECT_TRUE(isVerifiedXmpPosErrorDataType("4696615/1000000"));
    EXPECT_FALSE(isVerifiedXmpPosErrorDataType("1/2/3"));
    EXPECT_FALSE(isVerifiedXmpPosErrorDataType("4.7"));
    EXPECT_FALSE(isVerifiedXmpPosErrorDataType(""));
}

} // namespace

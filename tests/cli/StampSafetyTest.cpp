#include "support/CliRun.h"
#include "support/Exiftool.h"
#include "support/MediaFileBuilder.h"
#include "support/SaveFixture.h"

#include <QTemporaryDir>
#include <QtEndian>
#include <gtest/gtest.h>

using namespace orv;
using namespace orv::test;

namespace {

// The computer's zone must not leak into a file that names its own clock.
class StampSafety : public ::testing::Test
{
protected:
    QTemporaryDir home;
    QTemporaryDir work;
    QByteArray previousZone = qgetenv("TZ");

    void SetUp() override { qputenv("TZ", "UTC"); }
    void TearDown() override
    {
        if (previousZone.isEmpty())
            qunsetenv("TZ");
        else
            qputenv("TZ", previousZone);
    }

    CliResult shiftByAnHour(const QString &path)
    {
        return runCli({"shift", "--by", "+1:00:00", path}, home.path());
    }
};

TiffShape stampsAt132410()
{
    TiffShape tags;
    tags.dateTime = Stamp::text("2024:05:01 13:24:10");
    tags.dateTimeOriginal = Stamp::text("2024:05:01 13:24:10");
    tags.dateTimeDigitized = Stamp::text("2024:05:01 13:24:10");
    return tags;
}

} // namespace

TEST_F(StampSafety, StampsWithoutAnOffsetTagKeepTheCameraClockThatAnotherTagNames)
{
    struct Case
    {
        const char *name;
        Stamp original, digitized, modified; // offset tags, empty: absent
    };
    const Case cases[] = {
        {"original", Stamp::text("-07:00"), {}, {}},
        {"digitized", {}, Stamp::text("-07:00"), {}},
        {"modified only", {}, {}, Stamp::text("-07:00")},
        // The first tag that reads names the clock; a damaged one names none.
        {"original damaged", Stamp::raw(QByteArray("-07:00\x08", 7)), Stamp::text("-07:00"), {}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        TiffShape tags = stampsAt132410();
        const auto tag = [](const Stamp &s) {
            return s.bytes.isEmpty() ? std::optional<Stamp>() : std::optional<Stamp>(s);
        };
        tags.offsetTimeOriginal = tag(c.original);
        tags.offsetTimeDigitized = tag(c.digitized);
        tags.offsetTime = tag(c.modified);
        const QString path = buildJpeg({.exif = tags}).write(work.path(), QString::fromLatin1(c.name));

        shiftByAnHour(path);

        const ExiftoolTags read = exiftoolTags(path);
        for (const char *key : {"EXIF:CreateDate", "EXIF:ModifyDate"})
            EXPECT_EQ(read.string(QLatin1String(key)), "2024:05:01 14:24:10") << key;
        const bool originalReadable = !c.original.bytes.isEmpty() && c.original.bytes.back() == '\0';
        EXPECT_EQ(read.string("EXIF:DateTimeOriginal"),
                  originalReadable || c.original.bytes.isEmpty() ? "2024:05:01 14:24:10"
                                                                  : "2024:05:01 13:24:10");
    }
}

TEST_F(StampSafety, ADamagedStampOrOffsetTagIsLeftAndReportedWhileTheOtherStampsSave)
{
    struct Case
    {
        const char *name;
        Stamp original, offsetOriginal;
        QByteArray damage; // the bytes that must stay
        const char *originalAfter;
        bool reported; // the scan keeps no stamp that is not a date: nothing to report
    };
    const Case cases[] = {
        {"offset", Stamp::text("2024:05:01 13:24:10"), Stamp::raw(QByteArray("-07:00\x08", 7)),
         QByteArray("-07:00\x08", 7), "2024:05:01 13:24:10", true},
        {"stamp", Stamp::text("2024:05:01 1x:24:10"), Stamp::text("-07:00"),
         QByteArray("2024:05:01 1x:24:10"), "2024:05:01 1x:24:10", false},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        TiffShape tags = stampsAt132410();
        tags.dateTimeOriginal = c.original;
        tags.offsetTimeOriginal = c.offsetOriginal;
        const QString path =
            buildJpeg({.exif = tags}).write(work.path(), QLatin1String("damaged_") + c.name);
        const QByteArray before = fileBytes(path);

        const CliResult result = shiftByAnHour(path);

        EXPECT_EQ(result.exitCode, c.reported ? 1 : 0);
        EXPECT_EQ(result.err.contains(path.toUtf8()), c.reported) << result.err.toStdString();
        EXPECT_EQ(result.err.contains("does not read exactly"), c.reported);
        const qint64 damaged = before.indexOf(c.damage);
        ASSERT_GT(damaged, 0);
        EXPECT_EQ(fileBytes(path).mid(damaged, c.damage.size()), c.damage)
            << "a value is never made up";
        const ExiftoolTags read = exiftoolTags(path);
        EXPECT_EQ(read.string("EXIF:DateTimeOriginal"), c.originalAfter);
        EXPECT_EQ(read.string("EXIF:CreateDate"), "2024:05:01 14:24:10");
        EXPECT_EQ(read.string("EXIF:ModifyDate"), "2024:05:01 14:24:10");
    }
}

TEST_F(StampSafety, AGpsTimeKeepsItsFractionAndItsDenominators)
{
    struct Case
    {
        ByteOrder order;
        RationalTriple time;
        RationalTriple moved;
    };
    const Case cases[] = {
        {ByteOrder::Intel, {{{8, 1}, {0, 1}, {724, 100}}}, {{{9, 1}, {0, 1}, {724, 100}}}},
        {ByteOrder::Motorola, {{{230, 10}, {590, 10}, {59999, 1000}}},
         {{{0, 10}, {590, 10}, {59999, 1000}}}},
    };
    for (const Case &c : cases) {
        TiffShape tags = stampsAt132410();
        tags.order = c.order;
        tags.gps = GpsShape::at(48.2, 16.4);
        tags.gps->timeStamp = c.time;
        tags.gps->dateStamp = Stamp::text("2024:05:01");
        const QString path = buildJpeg({.exif = tags}).write(work.path(), "gps");
        const std::map<QString, ExiftoolValueLocation> at = exiftoolValueLocations(path);
        ASSERT_TRUE(at.count("GPS:GPSTimeStamp"));

        shiftByAnHour(path);

        const QByteArray stored = fileBytes(path).mid(at.at("GPS:GPSTimeStamp").offset, 24);
        for (int i = 0; i < 3; ++i) {
            const auto word = [&](int k) {
                const char *p = stored.constData() + 4 * k;
                return c.order == ByteOrder::Intel ? qFromLittleEndian<quint32>(p)
                                                   : qFromBigEndian<quint32>(p);
            };
            EXPECT_EQ(word(2 * i), c.moved[size_t(i)].numerator) << "rational " << i;
            EXPECT_EQ(word(2 * i + 1), c.moved[size_t(i)].denominator) << "rational " << i;
        }
    }
}

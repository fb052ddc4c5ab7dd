#include "time/DateStampCodec.h"

#include "support/Zones.h"

#include <QtEndian>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>

namespace orv {
// Seconds and the UTC calendar, so that a failing date reads as one.
static void PrintTo(const Instant &instant, std::ostream *out)
{
    const Instant::Civil c = instant.toUtcCivil();
    *out << instant.secondsSinceEpoch() << " (" << c.year << "-" << c.month << "-" << c.day << " "
         << c.hour << ":" << c.minute << ":" << c.second + c.fraction << " UTC)";
}
} // namespace orv

using orv::Instant;
using orv::OptionalDate;
using orv::TimeZone;
using orv::XmpStampKind;
using C = orv::DateStampCodec;

namespace {

using orv::test::zone;

TimeZone fixed(int secondsAheadOfUtc)
{
    return *TimeZone::fromOffsetSeconds(secondsAheadOfUtc);
}

// Bytes with their NULs, which a string literal alone would cut.
QByteArray bytes(const char *text, qsizetype size)
{
    return QByteArray(text, size);
}

QByteArray cString(const char *text)
{
    return QByteArray(text).append('\0');
}

constexpr int NoColon = XmpStampKind::OffsetWithoutColon;
constexpr int NoSeconds = XmpStampKind::WithoutSeconds;

} // namespace

TEST(DateStampCodec, EveryStampKindRoundTripsInEveryZone)
{
    // A leap day, fractions, dates before 1970 and 1904, the bounds; none in a repeated hour.
    const Instant dates[] = {
        Instant::fromUtc(2024, 2, 29, 12, 34, 56),     Instant::fromUtc(2024, 7, 1, 23, 59, 59.75),
        Instant::fromUtc(1969, 12, 31, 23, 59, 59.25), Instant::fromUtc(1950, 6, 15, 4, 5, 6),
        Instant::fromUtc(1903, 12, 31, 22, 0, 0),      Instant::minDate(),
        Instant::maxDate().addingSeconds(-86400),
    };
    const TimeZone zones[] = {TimeZone::utc(), zone("Europe/Berlin"), zone("America/New_York"),
                              fixed(-12600),   fixed(20700),          zone("Pacific/Kiritimati")};

    using RoundTrip = std::function<OptionalDate(Instant, const TimeZone &)>;
    const auto mdta = [](int length) -> RoundTrip {
        return [length](Instant date, const TimeZone &tz) {
            const TimeZone writeZone = length == 17 ? TimeZone::utc() : tz; // only "Z" fits 17
            const QByteArray data = C::mdtaDataOfLength(length, date, writeZone);
            EXPECT_EQ(data.size(), length);
            return C::dateFromMDTATimeStamp(QString::fromLatin1(data), writeZone);
        };
    };
    const auto xmp = [](int type, int subtype) -> RoundTrip {
        return [type, subtype](Instant date, const TimeZone &tz) {
            const bool utc = type == XmpStampKind::Utc;
            QByteArray stamp = C::xmpTimeStampFromDate(date, utc ? TimeZone::utc() : tz,
                                                       type != XmpStampKind::OwnOffset, subtype)
                                   .toLatin1();
            if (utc)
                stamp += 'Z';
            const XmpStampKind kind = C::verifiedXmpDateDataType(stamp);
            EXPECT_EQ(kind, (XmpStampKind{type, subtype})) << stamp.toStdString();
            return C::xmpDateFromStampInfos(stamp, kind, tz);
        };
    };
    const auto gps = [](QSysInfo::Endian order) -> RoundTrip {
        return [order](Instant date, const TimeZone &) {
            return C::updatedGpsDateWithCreationDate(C::gpsDateDataFromTimeStamp(date),
                                                     C::gpsTimeDataFromTimeStamp(date, order),
                                                     order, std::nullopt);
        };
    };
    // A form without seconds drops those of the clock it is written in: the zone's own clock for
    // a stamp without offset (in local mean time that is not a whole UTC minute).
    struct Kind
    {
        const char *name;
        double resolution;
        RoundTrip roundTrip;
        bool inZoneClock = false;
    };
    const Kind kinds[] = {
        {"exif", 1,
         [](Instant date, const TimeZone &tz) {
             return OptionalDate(C::dateFromExifData(C::exifDataFromDate(date, tz), tz));
         }},
        {"exif with offset", 1,
         [](Instant date, const TimeZone &tz) {
             const orv::ExifStampWithOffset written = C::exifWithOffsetDatasFromDate(date, tz);
             return OptionalDate(C::dateFromExifData(written.stamp, written.offset, fixed(3600)));
         }},
        {"mdta 16", 60, mdta(16), true},
        {"mdta 17", 60, mdta(17)},
        {"mdta 19", 1, mdta(19)},
        {"mdta 20", 1, mdta(20)},
        {"mdta 21", 60, mdta(21)},
        {"mdta 22", 60, mdta(22)},
        {"mdta 24", 1, mdta(24)},
        {"mdta 25", 1, mdta(25)},
        {"riff", 1,
         [](Instant date, const TimeZone &tz) {
             const QString text = C::riffTimeStampFromDate(date, tz);
             EXPECT_EQ(C::riffDataFromTimeStamp(text).size(), 26);
             return C::dateFromRIFFTimeStamp(text, tz);
         }},
        {"xmp Z", 1, xmp(XmpStampKind::Utc, 0)},
        {"xmp Z without seconds", 60, xmp(XmpStampKind::Utc, NoSeconds)},
        {"xmp +hh:mm", 1, xmp(XmpStampKind::OwnOffset, 0)},
        {"xmp +hhmm", 1, xmp(XmpStampKind::OwnOffset, NoColon)},
        {"xmp +hh:mm without seconds", 60, xmp(XmpStampKind::OwnOffset, NoSeconds)},
        {"xmp +hhmm without seconds", 60, xmp(XmpStampKind::OwnOffset, NoSeconds | NoColon)},
        {"xmp local", 1, xmp(XmpStampKind::Local, 0)},
        {"xmp local without seconds", 60, xmp(XmpStampKind::Local, NoSeconds), true},
        {"gps big-endian", 1, gps(QSysInfo::BigEndian)},
        {"gps little-endian", 1, gps(QSysInfo::LittleEndian)},
    };
    for (const Kind &kind : kinds) {
        for (const TimeZone &tz : zones) {
            for (const Instant date : dates) {
                const double seconds = date.secondsSinceEpoch();
                const int clock = kind.inZoneClock ? tz.secondsFromGMTForDate(date) : 0;
                const Instant expected(
                    std::floor((seconds + clock) / kind.resolution) * kind.resolution - clock);
                EXPECT_EQ(kind.roundTrip(date, tz), expected)
                    << kind.name << " in " << tz.name().toStdString() << " at " << seconds;
            }
        }
    }
}

TEST(DateStampCodec, WritersProduceTheBytesOfTheFileForms)
{
    const Instant date = Instant::fromUtc(2024, 2, 29, 12, 34, 56.5);
    const TimeZone minus0330 = fixed(-12600);
    const TimeZone plus0545 = fixed(20700);

    EXPECT_EQ(C::exifDataFromDate(date, minus0330), cString("2024:02:29 09:04:56"));
    const orv::ExifStampWithOffset withOffset = C::exifWithOffsetDatasFromDate(date, plus0545);
    EXPECT_EQ(withOffset.stamp, cString("2024:02:29 18:19:56"));
    EXPECT_EQ(withOffset.offset, cString("+05:45"));
    EXPECT_EQ(C::exifWithOffsetDatasFromDate(date, TimeZone::utc()).offset, cString("+00:00"));

    const std::pair<int, const char *> mdta[] = {
        {16, "2024-02-29T09:04"},
        {17, ""}, // "Z" cannot carry -03:30
        {19, "2024-02-29T09:04:56"},
        {20, "2024-02-29T12:34:56Z"},
        {21, "2024-02-29T09:04-0330"},
        {22, "2024-02-29T09:04-03:30"},
        {24, "2024-02-29T09:04:56-0330"},
        {25, "2024-02-29T09:04:56-03:30"},
        {18, ""},
        {23, ""},
    };
    for (const auto &[length, text] : mdta)
        EXPECT_EQ(C::mdtaDataOfLength(length, date, minus0330), QByteArray(text)) << length;
    EXPECT_EQ(C::mdtaDataOfLength(17, date, TimeZone::utc()), QByteArray("2024-02-29T12:34Z"));

    EXPECT_EQ(C::riffTimeStampFromDate(date, minus0330),
              QStringLiteral("Thu Feb 29 09:04:56 2024\n"));
    EXPECT_EQ(C::riffDataFromTimeStamp(u"Thu Feb 29 09:04:56 2024\n"),
              bytes("Thu Feb 29 09:04:56 2024\n\0", 26));
    EXPECT_TRUE(C::riffDataFromTimeStamp(u"Thu Feb 29 09:04:56 2024").isEmpty());
    // Weekdays on both sides of the epoch.
    EXPECT_TRUE(C::riffTimeStampFromDate(Instant::fromUtc(1969, 7, 20), TimeZone::utc())
                    .startsWith(u"Sun Jul 20"));
    EXPECT_TRUE(C::riffTimeStampFromDate(Instant::fromUtc(1900, 1, 1), TimeZone::utc())
                    .startsWith(u"Mon Jan 01"));

    EXPECT_EQ(C::xmpTimeStampFromDate(date, plus0545, false, 0), u"2024-02-29T18:19:56+05:45");
    EXPECT_EQ(C::xmpTimeStampFromDate(date, minus0330, false, NoSeconds | NoColon),
              u"2024-02-29T09:04-0330");
    EXPECT_EQ(C::xmpTimeStampFromDate(date, minus0330, true, 0), u"2024-02-29T09:04:56");

    EXPECT_EQ(C::gpsDateDataFromTimeStamp(date), cString("2024:02:29"));
    EXPECT_EQ(C::gpsTimeDataFromTimeStamp(date, QSysInfo::BigEndian),
              bytes("\0\0\0\x0C\0\0\0\x01\0\0\0\x22\0\0\0\x01\0\0\0\x38\0\0\0\x01", 24));
    EXPECT_EQ(C::gpsTimeDataFromTimeStamp(date, QSysInfo::LittleEndian),
              bytes("\x0C\0\0\0\x01\0\0\0\x22\0\0\0\x01\0\0\0\x38\0\0\0\x01\0\0\0", 24));

    EXPECT_EQ(C::unterminatedStringDataFromData(bytes("ab\0cd", 5)), "ab");
    EXPECT_EQ(C::terminatedStringDataFromData(bytes("abc\0\0", 5)), bytes("abc\0", 4));
    EXPECT_EQ(C::terminatedStringDataFromData(QByteArray("abc")), bytes("abc\0", 4));
}

TEST(DateStampCodec, WritersRefuseSentinelsAndDatesOutsideTheBounds)
{
    const TimeZone utc = TimeZone::utc();
    const std::function<QByteArray(Instant)> writers[] = {
        [&](Instant d) { return C::exifDataFromDate(d, utc); },
        [&](Instant d) { return C::exifWithOffsetDatasFromDate(d, utc).offset; },
        [&](Instant d) { return C::mdtaDataOfLength(25, d, utc); },
        [&](Instant d) { return C::riffTimeStampFromDate(d, utc).toLatin1(); },
        [&](Instant d) { return C::xmpTimeStampFromDate(d, utc, true, 0).toLatin1(); },
        [&](Instant d) { return C::gpsDateDataFromTimeStamp(d); },
        [&](Instant d) { return C::gpsTimeDataFromTimeStamp(d, QSysInfo::BigEndian); },
    };
    for (const auto &write : writers) {
        for (const Instant refused :
             {Instant::distantPast(), Instant::distantFuture(),
              Instant::minDate().addingSeconds(-0.5), Instant::maxDate().addingSeconds(1)})
            EXPECT_TRUE(write(refused).isEmpty()) << refused.secondsSinceEpoch();
        EXPECT_FALSE(write(Instant::minDate()).isEmpty());
        EXPECT_FALSE(write(Instant::maxDate().addingSeconds(0.5)).isEmpty());
    }
    EXPECT_EQ(C::exifDataFromDate(Instant::minDate(), utc), cString("0001:01:02 00:00:00"));
    EXPECT_EQ(C::exifDataFromDate(Instant::maxDate(), utc), cString("4999:12:31 23:59:59"));
    EXPECT_EQ(C::dateFromExifData(cString("4999:12:31 23:59:59"), utc), Instant::maxDate());
}

TEST(DateStampCodecExif, ShortAndUnusableStamps)
{
    EXPECT_EQ(C::exifTimeStampFromData(cString("2024:02:29 12:34:56")), u"2024:02:29 12:34:56");
    EXPECT_EQ(C::exifTimeStampFromData(bytes("2024:02:29 12:34:5\0\0", 20)),
              u"2024:02:29 12:34:50");
    EXPECT_EQ(C::exifTimeStampFromData(bytes("2024:02:29 12:34:\0\0\0", 20)),
              u"2024:02:29 12:34:00");
    for (const QByteArray &data :
         {bytes("2024:02:29 12:34\0\0\0\0", 20), bytes("2024:02:29 12:34:5\0x", 20),
          bytes("2024:02:29 12:34:56x", 20), cString("2024:02:29 12:34:5"), QByteArray(20, '\0')})
        EXPECT_TRUE(C::exifTimeStampFromData(data).isNull()) << data.toHex().toStdString();

    // Blanks, zeros and dates no calendar has are tags to fill.
    for (const char *stamp : {"    :  :     :  :  ", "0000:00:00 00:00:00", "2023:02:29 12:00:00",
                              "1900:02:29 12:00:00", "2024:04:31 12:00:00", "2024:01:01 24:00:00",
                              "2024:01:01 12:00:60", "2024-01-01 12:00:00", ""}) {
        EXPECT_TRUE(C::isValidZeroStamp(QString::fromLatin1(stamp))) << stamp;
        EXPECT_EQ(C::dateFromExifData(QByteArray(stamp).leftJustified(19, '\0').append('\0'),
                                      cString("+01:00"), TimeZone::utc()),
                  Instant::distantPast())
            << stamp;
    }
    EXPECT_FALSE(C::isValidZeroStamp(u"2000:02:29 12:00:00"));
    EXPECT_FALSE(C::isValidZeroStamp(QString::fromLatin1("2024:02:29 12:00:00\0", 20)));
    EXPECT_EQ(C::dateFromExifData(QByteArray(), TimeZone::utc()), Instant::distantPast());
}

TEST(DateStampCodecExif, OffsetTagsAndDaylightSavingChanges)
{
    const TimeZone berlin = zone("Europe/Berlin");
    const QByteArray winterNoon = cString("2024:02:29 12:00:00");
    const Instant inBerlin = Instant::fromUtc(2024, 2, 29, 11);
    EXPECT_EQ(C::dateFromExifData(winterNoon, cString("-03:30"), berlin),
              Instant::fromUtc(2024, 2, 29, 15, 30));
    EXPECT_EQ(C::dateFromEXIFTimeStamp(u"2024:02:29 12:00:00", u"+05:45", berlin),
              Instant::fromUtc(2024, 2, 29, 6, 15));
    // A broken offset tag leaves the stamp to the zone rather than losing the date.
    EXPECT_EQ(C::dateFromExifData(winterNoon, QByteArray(), berlin), inBerlin);
    EXPECT_EQ(C::dateFromExifData(winterNoon, cString("+99:99"), berlin), inBerlin);
    EXPECT_TRUE(C::exifOffsetFromData(QByteArray("+01:00")).isNull());

    struct Case
    {
        const char *zone, *stamp;
        Instant readAs;
        const char *writtenBack;
    };
    const Case cases[] = {
        // Skipped hour: moved forward by the jump, so it writes back as another stamp.
        {"Europe/Berlin", "2024:03:31 02:30:00", Instant::fromUtc(2024, 3, 31, 1, 30),
         "2024:03:31 03:30:00"},
        {"America/New_York", "2024:03:10 02:30:00", Instant::fromUtc(2024, 3, 10, 7, 30),
         "2024:03:10 03:30:00"},
        // Repeated hour: the later moment, which writes back unchanged.
        {"Europe/Berlin", "2024:10:27 02:30:00", Instant::fromUtc(2024, 10, 27, 1, 30),
         "2024:10:27 02:30:00"},
        {"America/New_York", "2024:11:03 01:30:00", Instant::fromUtc(2024, 11, 3, 6, 30),
         "2024:11:03 01:30:00"},
    };
    for (const Case &c : cases) {
        const Instant read = C::dateFromExifData(cString(c.stamp), zone(c.zone));
        EXPECT_EQ(read, c.readAs) << c.zone << " " << c.stamp;
        EXPECT_EQ(C::exifDataFromDate(read, zone(c.zone)), cString(c.writtenBack));
    }

    // The first pass of a repeated hour keeps its identity only with an offset tag.
    const Instant firstPass = Instant::fromUtc(2024, 10, 27, 0, 30);
    const orv::ExifStampWithOffset tagged = C::exifWithOffsetDatasFromDate(firstPass, berlin);
    EXPECT_EQ(tagged.offset, cString("+02:00"));
    EXPECT_EQ(C::dateFromExifData(tagged.stamp, tagged.offset, berlin), firstPass);
    EXPECT_EQ(C::dateFromExifData(tagged.stamp, berlin), firstPass.addingSeconds(3600));
}

TEST(DateStampCodecMvhd, SecondsSince1904AndTheZoneCorrection)
{
    const Instant base = C::mvhdBaseDate();
    const TimeZone utc = TimeZone::utc();
    EXPECT_EQ(C::myDateWithString(u"1904-01-01 00:00:00 +0000"), base);
    EXPECT_EQ(C::myDateWithString(u"1904-01-01 00:00:00 -0130"), base.addingSeconds(5400));
    EXPECT_FALSE(C::myDateWithString(u"1904-01-01 00:00:00 +00:00"));

    // 2024-01-01 00:00:00 UTC, as exiftool reads the same header.
    const QByteArray newYear = bytes("\xE1\xB7\xB1\x00", 4);
    EXPECT_EQ(C::dateFromMVHDData(newYear), Instant::fromUtc(2024, 1, 1));
    EXPECT_EQ(C::mvhdDataFromDate(Instant::fromUtc(2024, 1, 1, 0, 0, 0.9), false, utc), newYear);
    EXPECT_FALSE(C::dateFromMVHDData(bytes("\x00\x00\x01", 3)));
    // Zero marks an unset header, so nothing at or before the base may write it.
    const QByteArray one = bytes("\0\0\0\x01", 4);
    EXPECT_EQ(C::mvhdDataFromDate(base, false, utc), one);
    EXPECT_EQ(C::mvhdDataFromDate(base.addingSeconds(0.5), true, utc), one);
    EXPECT_EQ(C::mvhdDataFromDate(base.addingSeconds(-86400), false, utc), one);
    EXPECT_EQ(C::mvhdDataFromDate(base.addingSeconds(2), false, utc), bytes("\0\0\0\x02", 4));
    const Instant lastOf32Bits = Instant::fromUtc(2040, 2, 6, 6, 28, 15);
    EXPECT_EQ(C::mvhdDataFromDate(lastOf32Bits, false, utc), bytes("\xFF\xFF\xFF\xFF", 4));
    EXPECT_TRUE(C::mvhdDataFromDate(lastOf32Bits.addingSeconds(1), false, utc).isEmpty());

    // With the correction the header holds the wall clock of the zone as if it were UTC.
    const Instant noon = Instant::fromUtc(2024, 7, 1, 12);
    const std::pair<TimeZone, Instant> heldAs[] = {
        {zone("Europe/Berlin"), Instant::fromUtc(2024, 7, 1, 14)},
        {zone("America/New_York"), Instant::fromUtc(2024, 7, 1, 8)},
        {fixed(-12600), Instant::fromUtc(2024, 7, 1, 8, 30)},
        {fixed(20700), Instant::fromUtc(2024, 7, 1, 17, 45)},
    };
    for (const auto &[tz, held] : heldAs) {
        const QByteArray corrected = C::mvhdDataFromDate(noon, true, tz);
        EXPECT_EQ(C::dateFromMVHDData(corrected), held) << tz.name().toStdString();
        EXPECT_EQ(C::finalDateFromMVHDData(corrected, true, tz), noon);
        EXPECT_EQ(C::finalDateFromMVHDData(corrected, false, tz), held);
        EXPECT_EQ(C::finalDateFromMVHDData(C::mvhdDataFromDate(noon, false, tz), false, tz), noon);
    }
    // A wall clock the spring change skipped comes back an hour later, as any local stamp does.
    const TimeZone berlin = zone("Europe/Berlin");
    EXPECT_EQ(C::correctedDateFromMVHDDate(Instant::fromUtc(2024, 3, 31, 2, 30), berlin),
              Instant::fromUtc(2024, 3, 31, 1, 30));
    EXPECT_EQ(C::mvhdDateFromCorrectedDate(Instant::fromUtc(2024, 3, 31, 1, 30), berlin),
              Instant::fromUtc(2024, 3, 31, 3, 30));
}

TEST(DateStampCodec, ReadersRefuseWhatDoesNotFitTheirForm)
{
    const TimeZone berlin = zone("Europe/Berlin");
    for (const char *stamp :
         {"2024-02-29T13:34:5", "2024-02-29T13:34:56.12+01", "2024-02-29T13:34:56+01:0",
          "2024-02-29 13:34:56+01:00", "2024-02-29T13:34:56+24:00", "2024-02-29T13:34:56+01:00 "})
        EXPECT_FALSE(C::dateFromMDTATimeStamp(QString::fromLatin1(stamp), berlin)) << stamp;
    // The digits alone, whatever offset follows them.
    EXPECT_EQ(
        C::dateIgnoringFromMDTATimeStamp(u"2024-07-01T14:00:00+0200", zone("America/New_York")),
        Instant::fromUtc(2024, 7, 1, 18));
    EXPECT_EQ(C::dateIgnoringFromMDTATimeStamp(u"2024-07-01T14:00:00", berlin),
              Instant::fromUtc(2024, 7, 1, 12));
    EXPECT_FALSE(C::dateIgnoringFromMDTATimeStamp(u"2024-07-01T14:00+02:00", berlin));

    const Instant october7 = Instant::fromUtc(2005, 10, 7, 9, 50, 33);
    EXPECT_EQ(C::dateFromRIFFTimeStamp(u"FRI OCT 07 11:50:33 2005\n", berlin), october7);
    EXPECT_EQ(C::dateFromRIFFTimeStamp(u"Fri Oct  7 11:50:33 2005\n", berlin), october7);
    for (const char *digits : {"2005/10/07 11:50:33", "2005:10:07 11:50:33\n", "2005-10-07 11:50:33  "})
        EXPECT_EQ(C::dateFromRIFFTimeStamp(QString::fromLatin1(digits, qsizetype(qstrlen(digits) + 1)), berlin),
                  october7)
            << digits;
    for (const char *stamp : {"FRI OKT 07 11:50:33 2005\n", "FRI OCT 32 11:50:33 2005\n",
                              "FRI OCT 07 11:50:33 200", "", "2005/10-07 11:50:33", "2005/10/07 11:50:3",
                              "2005/10/07 11:50:33 PM", "2001/ 1/27  1:42PM"})
        EXPECT_FALSE(C::dateFromRIFFTimeStamp(QString::fromLatin1(stamp), berlin)) << stamp;
}

TEST(DateStampCodecRiff, ANewStampTakesTheFormSeparatorsCaseAndLengthOfTheStoredOne)
{
    const TimeZone berlin = zone("Europe/Berlin");
    const Instant date = Instant::fromUtc(2024, 2, 29, 8, 4, 56);
    const std::pair<QByteArray, QByteArray> cases[] = {
        {bytes("Mon Mar 10 15:04:43 2003\n\0", 26), bytes("Thu Feb 29 09:04:56 2024\n\0", 26)},
        {bytes("MON SEP 10 20:52:00 2012\n\0", 26), bytes("THU FEB 29 09:04:56 2024\n\0", 26)},
        {bytes("Mon Mar 10 15:04:43 2003\0\0\0\0", 28), bytes("Thu Feb 29 09:04:56 2024\0\0\0\0", 28)},
        {bytes("2009/10/27 12:14:34\0", 20), bytes("2024/02/29 09:04:56\0", 20)},
        {bytes("2009:10:27 12:14:34", 19), bytes("2024:02:29 09:04:56", 19)},
        {bytes("2002-12-16 15:35:01\0\0", 21), bytes("2024-02-29 09:04:56\0\0", 21)},
        {bytes("2001/ 1/27  1:42PM\0\0", 20), {}},
        {bytes("CanonMVI01\0", 11), {}},
    };
    for (const auto &[stored, written] : cases) {
        EXPECT_EQ(C::riffDataLike(stored, date, berlin), written) << stored.toStdString();
        if (!written.isEmpty()) {
            EXPECT_EQ(C::dateFromRIFFTimeStamp(QString::fromLatin1(written), berlin), date);
        }
    }
}

TEST(DateStampCodecXmp, StampKindsAsFoundInPackets)
{
    const std::pair<const char *, XmpStampKind> cases[] = {
        {"2024-07-01T14:00:00.25Z", {XmpStampKind::Utc, 0}},
        {"2024-07-01T14:00:00.123-03:30", {XmpStampKind::OwnOffset, 0}},
        {"2024-07-01T14:00:00.123", {XmpStampKind::Local, 0}},
        {"2024-07-01T14:00-0330", {XmpStampKind::OwnOffset, NoSeconds | NoColon}},
        {"2024-07-01", {}},
        {"2024-07-01T14:0", {}},
        {"2024-07-01T14:00:00 ", {}},
        {"2024-07-01T14:00:00+02", {}},
        {"2024/07/01T14:00:00", {}},
        {"2024-07-01T14:00:00.1234567890", {}}, // 30 characters
        {"2024-07-01T14:00+02", {}},
        {"2024-07-01T14:00.0000000000", {}}, // 27 characters without seconds
    };
    for (const auto &[stamp, kind] : cases)
        EXPECT_EQ(C::verifiedXmpDateDataType(QByteArray(stamp)), kind) << stamp;

    // Fractions between the seconds and the zone are skipped.
    const QByteArray fraction("2024-07-01T14:00:00.999+05:45");
    EXPECT_EQ(C::xmpDateFromStampInfos(fraction, C::verifiedXmpDateDataType(fraction), fixed(0)),
              Instant::fromUtc(2024, 7, 1, 8, 15));
    EXPECT_FALSE(C::xmpDateFromStampInfos(QByteArray("2024-07-01T14:00"),
                                          {XmpStampKind::OwnOffset, 0}, fixed(0)));

    EXPECT_TRUE(C::seemsValidXMPString(u"2024-07-01T14:00", NoSeconds));
    for (const char *text : {"2024-07-01T14:00", "2024-07-01 14:00:00", "2024:07:01T14:00:00",
                             "2024-07-01T14-00:00", "2024-07-01T14:00-00"})
        EXPECT_FALSE(C::seemsValidXMPString(QString::fromLatin1(text), 0)) << text;
}

TEST(DateStampCodecGps, RationalsAreNormalisedAndMissingHalvesCompleted)
{
    const auto time = [](quint32 hn, quint32 hd, quint32 mn, quint32 md, quint32 sn, quint32 sd) {
        QByteArray data(24, '\0');
        const quint32 values[] = {hn, hd, mn, md, sn, sd};
        for (int i = 0; i < 6; ++i)
            qToLittleEndian(values[i], data.data() + i * 4);
        return data;
    };
    const auto onLeapDay = [](const QByteArray &t) {
        return C::updatedGpsDateWithCreationDate(cString("2024:02:29"), t, QSysInfo::LittleEndian,
                                                 std::nullopt);
    };
    const auto leapDayAt = [](int h, int m, int s) {
        return Instant::fromUtc(2024, 2, 29, h, m, s);
    };
    EXPECT_EQ(onLeapDay(time(12, 1, 34, 1, 5678, 100)), leapDayAt(12, 34, 56));
    EXPECT_EQ(onLeapDay(time(12, 0, 34, 0, 56, 0)), leapDayAt(12, 34, 56));
    EXPECT_EQ(onLeapDay(time(0, 1, 0, 1, 3725, 1)), leapDayAt(1, 2, 5));
    EXPECT_EQ(onLeapDay(time(10, 1, 61, 1, 0, 1)), leapDayAt(11, 1, 0));
    EXPECT_FALSE(onLeapDay(time(0, 1, 1439, 1, 60, 1))); // carried over into a 25th hour
    EXPECT_FALSE(onLeapDay(time(24, 1, 0, 1, 0, 1)));
    EXPECT_FALSE(onLeapDay(time(12, 1, 0, 1, 0, 1).left(23)));

    // A time without its day takes the creation's UTC day, moved by a day when that puts it more
    // than twelve hours away.
    const auto onlyTime = [](int hour, int minute, Instant creation) {
        return C::updatedGpsDateWithCreationDate(
            QByteArray(),
            C::gpsTimeDataFromTimeStamp(Instant::fromUtc(2000, 1, 1, hour, minute),
                                        QSysInfo::BigEndian),
            QSysInfo::BigEndian, creation);
    };
    const std::pair<Instant, Instant> creationAndRead[] = {
        {Instant::fromUtc(2024, 7, 1, 10), Instant::fromUtc(2024, 7, 1, 0, 10)},
        {Instant::fromUtc(2024, 7, 1, 12, 10), Instant::fromUtc(2024, 7, 1, 0, 10)},
        {Instant::fromUtc(2024, 7, 1, 12, 10, 1), Instant::fromUtc(2024, 7, 2, 0, 10)},
        {Instant::fromUtc(2024, 7, 1, 11, 50), Instant::fromUtc(2024, 7, 1, 23, 50)},
        {Instant::fromUtc(2024, 3, 1, 0, 5), Instant::fromUtc(2024, 2, 29, 23, 50)},
    };
    for (const auto &[creation, read] : creationAndRead)
        EXPECT_EQ(onlyTime(read.toUtcCivil().hour, read.toUtcCivil().minute, creation), read);

    // A date alone takes the creation's UTC time of day, with no day correction.
    EXPECT_EQ(C::updatedGpsDateWithCreationDate(cString("2024:07:03"), QByteArray(),
                                                QSysInfo::BigEndian,
                                                Instant::fromUtc(2024, 7, 1, 23, 30, 15.5)),
              Instant::fromUtc(2024, 7, 3, 23, 30, 15));
    const QByteArray tenPast = time(0, 1, 10, 1, 0, 1);
    EXPECT_FALSE(C::updatedGpsDateWithCreationDate(QByteArray(), tenPast, QSysInfo::LittleEndian,
                                                   std::nullopt));
    EXPECT_FALSE(C::updatedGpsDateWithCreationDate(QByteArray(), QByteArray(),
                                                   QSysInfo::LittleEndian, Instant()));
    EXPECT_FALSE(C::updatedGpsDateWithCreationDate(cString("    :  :  "), tenPast,
                                                   QSysInfo::LittleEndian, Instant()));
}

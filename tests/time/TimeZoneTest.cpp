#include "time/TimeZone.h"

#include "support/Zones.h"

#include <QtConcurrent/QtConcurrent>
#include <gtest/gtest.h>

#include <vector>

using orv::Instant;
using orv::TimeZone;

namespace {

using orv::test::zone;

Instant::Civil civil(int year, int month, int day, int hour, int minute, int second = 0)
{
    return {year, month, day, hour, minute, second, 0.0};
}

} // namespace

TEST(TimeZone, FactoriesRefuseWhatTheDatabaseDoesNotHold)
{
    EXPECT_FALSE(TimeZone::fromName(QStringLiteral("Nowhere/Atlantis")));
    EXPECT_FALSE(TimeZone::fromName(QString()));
    EXPECT_FALSE(TimeZone::fromOffsetSeconds(15 * 3600));
    EXPECT_FALSE(TimeZone::fromOffsetSeconds(-15 * 3600));
    EXPECT_EQ(zone("Europe/Berlin").name(), QStringLiteral("Europe/Berlin"));
    EXPECT_EQ(TimeZone::utc().name(), QStringLiteral("UTC"));
    EXPECT_EQ(TimeZone::systemZone().qTimeZone(), QTimeZone::systemTimeZone());
    EXPECT_FALSE(zone("Europe/Berlin") == TimeZone::utc());
}

TEST(TimeZone, OffsetsAndDaylightSavingAtAnInstant)
{
    const Instant january = Instant::fromUtc(2024, 1, 15, 12);
    const Instant july = Instant::fromUtc(2024, 7, 15, 12);
    struct Case
    {
        TimeZone zone;
        Instant at;
        int offset, daylight;
        const char *abbreviation;
    };
    const Case cases[] = {
        {zone("Europe/Berlin"), january, 3600, 0, "CET"},
        {zone("Europe/Berlin"), july, 7200, 3600, "CEST"},
        {zone("Australia/Sydney"), january, 11 * 3600, 3600, "AEDT"},
        {zone("Australia/Lord_Howe"), january, 11 * 3600, 1800, "+11"},
        {zone("America/New_York"), Instant::fromUtc(1950, 7, 1), -4 * 3600, 3600, "EDT"},
        {zone("America/St_Johns"), january, -12600, 0, "NST"},
        {zone("Asia/Kathmandu"), july, 20700, 0, "+0545"},
        {*TimeZone::fromOffsetSeconds(-12600), july, -12600, 0, "UTC-03:30"},
        {*TimeZone::fromOffsetSeconds(14 * 3600), july, 14 * 3600, 0, "UTC+14"},
    };
    for (const Case &c : cases) {
        EXPECT_EQ(c.zone.secondsFromGMTForDate(c.at), c.offset) << c.abbreviation;
        EXPECT_EQ(c.zone.daylightSavingTimeOffsetForDate(c.at), c.daylight) << c.abbreviation;
        EXPECT_EQ(c.zone.isDaylightSavingTimeForDate(c.at), c.daylight != 0) << c.abbreviation;
        EXPECT_EQ(c.zone.abbreviationForDate(c.at), QLatin1String(c.abbreviation));
    }
}

TEST(TimeZone, NextTransitionIsTheNextChangeOfOffset)
{
    const TimeZone berlin = zone("Europe/Berlin");
    EXPECT_EQ(berlin.nextDaylightSavingTimeTransitionAfterDate(Instant::fromUtc(2024, 1, 1)),
              Instant::fromUtc(2024, 3, 31, 1));
    EXPECT_EQ(berlin.nextDaylightSavingTimeTransitionAfterDate(Instant::fromUtc(2024, 3, 31, 1)),
              Instant::fromUtc(2024, 10, 27, 1));
    // Years past the last listed transition follow the zone's standing rule.
    EXPECT_EQ(berlin.nextDaylightSavingTimeTransitionAfterDate(Instant::fromUtc(2071, 1, 1)),
              Instant::fromUtc(2071, 3, 29, 1));
    EXPECT_FALSE(TimeZone::utc().nextDaylightSavingTimeTransitionAfterDate(Instant(0)));
    EXPECT_FALSE(zone("Asia/Kathmandu")
                     .nextDaylightSavingTimeTransitionAfterDate(Instant::fromUtc(2024, 1, 1)));
}

TEST(TimeZone, LocalTimesOfDaylightSavingChanges)
{
    struct Case
    {
        const char *zone;
        Instant::Civil local;
        Instant expected;
    };
    const Case cases[] = {
        // Ordinary hours either side.
        {"Europe/Berlin", civil(2024, 3, 31, 1, 59, 59), Instant::fromUtc(2024, 3, 31, 0, 59, 59)},
        {"Europe/Berlin", civil(2024, 3, 31, 3, 0), Instant::fromUtc(2024, 3, 31, 1)},
        // Spring: 02:00-03:00 never happened; the reading moves forward by the jump.
        {"Europe/Berlin", civil(2024, 3, 31, 2, 0), Instant::fromUtc(2024, 3, 31, 1)},
        {"Europe/Berlin", civil(2024, 3, 31, 2, 30), Instant::fromUtc(2024, 3, 31, 1, 30)},
        {"America/New_York", civil(2024, 3, 10, 2, 30), Instant::fromUtc(2024, 3, 10, 7, 30)},
        // Autumn: 02:00-03:00 happened twice in Berlin, 01:00-02:00 in New York; the later one
        // (standard time) is taken.
        {"Europe/Berlin", civil(2024, 10, 27, 2, 30), Instant::fromUtc(2024, 10, 27, 1, 30)},
        {"Europe/Berlin", civil(2024, 10, 27, 1, 59, 59),
         Instant::fromUtc(2024, 10, 26, 23, 59, 59)},
        {"America/New_York", civil(2024, 11, 3, 1, 30), Instant::fromUtc(2024, 11, 3, 6, 30)},
        {"America/New_York", civil(2024, 11, 3, 0, 59), Instant::fromUtc(2024, 11, 3, 4, 59)},
        // Half-hour offsets and a half-hour summer time.
        {"America/St_Johns", civil(2024, 1, 10, 12, 0), Instant::fromUtc(2024, 1, 10, 15, 30)},
        {"Asia/Kathmandu", civil(2024, 1, 10, 12, 0), Instant::fromUtc(2024, 1, 10, 6, 15)},
        {"Australia/Lord_Howe", civil(2024, 10, 6, 2, 15), Instant::fromUtc(2024, 10, 5, 15, 45)},
        // Around the date line and before the epoch.
        {"Pacific/Kiritimati", civil(2024, 1, 1, 0, 0), Instant::fromUtc(2023, 12, 31, 10)},
        {"America/New_York", civil(1950, 7, 1, 12, 0), Instant::fromUtc(1950, 7, 1, 16)},
    };
    for (const Case &c : cases) {
        const Instant got = zone(c.zone).instantFromLocalCivil(c.local);
        EXPECT_EQ(got, c.expected)
            << c.zone << " " << c.local.month << "-" << c.local.day << " " << c.local.hour << ":"
            << c.local.minute << " got " << got.secondsSinceEpoch();
    }
}

TEST(TimeZone, LocalCivilAndItsInstantAgreeEveryQuarterHourOfAYear)
{
    // A wall-clock reading must name an instant that shows that reading, and the later one when
    // there are two; so only an instant in the first pass of a repeated hour may come back moved.
    for (const char *name : {"Europe/Berlin", "America/New_York", "Australia/Lord_Howe"}) {
        const TimeZone tz = zone(name);
        int movedToTheRepeat = 0;
        for (double t = Instant::fromUtc(2023, 1, 1).secondsSinceEpoch();
             t < Instant::fromUtc(2024, 1, 1).secondsSinceEpoch(); t += 900.25) {
            const Instant instant(t);
            const Instant::Civil local = tz.localCivil(instant);
            const Instant back = tz.instantFromLocalCivil(local);
            EXPECT_EQ(Instant::fromUtc(tz.localCivil(back)), Instant::fromUtc(local)) << name << t;
            EXPECT_GE(back, instant) << name << " " << t;
            EXPECT_LE(back.secondsSince(instant), 3600.0) << name << " " << t;
            movedToTheRepeat += back != instant;
        }
        EXPECT_GT(movedToTheRepeat, 0) << name;
    }
}

TEST(TimeZone, SharedZonesAnswerAlikeFromManyThreads)
{
    const std::vector<TimeZone> zones = {zone("Europe/Berlin"), zone("America/New_York"),
                                         zone("Australia/Lord_Howe"), TimeZone::systemZone()};
    QList<Instant> instants;
    for (double t = Instant::fromUtc(1960, 1, 1).secondsSinceEpoch();
         t < Instant::fromUtc(2060, 1, 1).secondsSinceEpoch(); t += 86400.0 * 3.7)
        instants.append(Instant(t));
    const auto answers = [&zones](Instant at) {
        QStringList out;
        for (const TimeZone &tz : zones) {
            const orv::OptionalDate next = tz.nextDaylightSavingTimeTransitionAfterDate(at);
            out << QString::number(tz.secondsFromGMTForDate(at))
                << QString::number(tz.daylightSavingTimeOffsetForDate(at))
                << QString::number(tz.isDaylightSavingTimeForDate(at)) << tz.abbreviationForDate(at)
                << QString::number(tz.instantFromLocalCivil(at.toUtcCivil()).secondsSinceEpoch())
                << QString::number(next ? next->secondsSinceEpoch() : 0.0);
        }
        return out.join(u' ');
    };
    QStringList serial;
    for (const Instant at : instants)
        serial << answers(at);
    QThreadPool pool;
    pool.setMaxThreadCount(8);
    EXPECT_EQ(QtConcurrent::blockingMapped<QStringList>(&pool, instants, answers), serial);
}

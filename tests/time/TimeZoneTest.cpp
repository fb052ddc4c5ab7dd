#include "time/TimeZone.h"

#include <QtConcurrent/QtConcurrent>

#include <gtest/gtest.h>

#include <vector>

using orv::Instant;
using orv::TimeZone;

namespace {

TimeZone zone(const char *name)
{
    const std::optional<TimeZone> found = TimeZone::fromName(QString::fromLatin1(name));
    if (!found)
        throw std::runtime_error(std::string("time zone missing from the tz database: ") + name);
    return *found;
}

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
    EXPECT_EQ(zone("Europe/Berlin"), zone("Europe/Berlin"));
    EXPECT_FALSE(zone("Europe/Berlin") == TimeZone::utc());
}

TEST(TimeZone, OffsetsAndDaylightSavingAcrossTheYear)
{
    const TimeZone berlin = zone("Europe/Berlin");
    const Instant winter = Instant::fromUtc(2024, 1, 15, 12);
    const Instant summer = Instant::fromUtc(2024, 7, 15, 12);
    EXPECT_EQ(berlin.secondsFromGMTForDate(winter), 3600);
    EXPECT_EQ(berlin.secondsFromGMTForDate(summer), 7200);
    EXPECT_FALSE(berlin.isDaylightSavingTimeForDate(winter));
    EXPECT_TRUE(berlin.isDaylightSavingTimeForDate(summer));
    EXPECT_EQ(berlin.daylightSavingTimeOffsetForDate(winter), 0);
    EXPECT_EQ(berlin.daylightSavingTimeOffsetForDate(summer), 3600);
    EXPECT_EQ(berlin.abbreviationForDate(winter), QStringLiteral("CET"));
    EXPECT_EQ(berlin.abbreviationForDate(summer), QStringLiteral("CEST"));

    // Southern hemisphere: summer time in January.
    const TimeZone sydney = zone("Australia/Sydney");
    EXPECT_TRUE(sydney.isDaylightSavingTimeForDate(winter));
    EXPECT_EQ(sydney.secondsFromGMTForDate(winter), 11 * 3600);

    // Daylight saving of half an hour.
    const TimeZone lordHowe = zone("Australia/Lord_Howe");
    EXPECT_EQ(lordHowe.daylightSavingTimeOffsetForDate(winter), 1800);

    // Before 1970: New York kept summer time in 1950 too.
    const TimeZone newYork = zone("America/New_York");
    EXPECT_EQ(newYork.secondsFromGMTForDate(Instant::fromUtc(1950, 7, 1)), -4 * 3600);
    EXPECT_EQ(newYork.abbreviationForDate(Instant::fromUtc(1950, 7, 1)), QStringLiteral("EDT"));
}

TEST(TimeZone, FixedOffsetsOfOddSizes)
{
    for (const int offset : {-12600, 20700, 0, 14 * 3600, -14 * 3600}) {
        const std::optional<TimeZone> fixed = TimeZone::fromOffsetSeconds(offset);
        ASSERT_TRUE(fixed) << offset;
        EXPECT_EQ(fixed->secondsFromGMTForDate(Instant::fromUtc(2024, 7, 1)), offset);
        EXPECT_FALSE(fixed->isDaylightSavingTimeForDate(Instant::fromUtc(2024, 7, 1)));
        EXPECT_FALSE(fixed->nextDaylightSavingTimeTransitionAfterDate(Instant::fromUtc(2024, 1, 1)));
    }
    EXPECT_EQ(zone("Asia/Kathmandu").secondsFromGMTForDate(Instant::fromUtc(2024, 7, 1)), 20700);
    EXPECT_EQ(zone("America/St_Johns").secondsFromGMTForDate(Instant::fromUtc(2024, 1, 1)), -12600);
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
    EXPECT_FALSE(zone("Asia/Kathmandu").nextDaylightSavingTimeTransitionAfterDate(
        Instant::fromUtc(2024, 1, 1)));
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
        {"Europe/Berlin", civil(2024, 10, 27, 1, 59, 59), Instant::fromUtc(2024, 10, 26, 23, 59, 59)},
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
        EXPECT_EQ(got, c.expected) << c.zone << " " << c.local.month << "-" << c.local.day << " "
                                   << c.local.hour << ":" << c.local.minute << " got "
                                   << got.secondsSinceEpoch();
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
    std::vector<Instant> instants;
    for (double t = Instant::fromUtc(1960, 1, 1).secondsSinceEpoch();
         t < Instant::fromUtc(2060, 1, 1).secondsSinceEpoch(); t += 86400.0 * 3.7)
        instants.emplace_back(t);

    struct Answer
    {
        int offset;
        int daylight;
        bool isDaylight;
        QString abbreviation;
        Instant fromLocal;
        orv::OptionalDate next;
        bool operator==(const Answer &) const = default;
    };
    const auto answer = [&zones](Instant at) {
        std::vector<Answer> answers;
        for (const TimeZone &tz : zones)
            answers.push_back({tz.secondsFromGMTForDate(at), tz.daylightSavingTimeOffsetForDate(at),
                               tz.isDaylightSavingTimeForDate(at), tz.abbreviationForDate(at),
                               tz.instantFromLocalCivil(at.toUtcCivil()),
                               tz.nextDaylightSavingTimeTransitionAfterDate(at)});
        return answers;
    };

    std::vector<std::vector<Answer>> serial;
    for (const Instant at : instants)
        serial.push_back(answer(at));
    QThreadPool pool;
    pool.setMaxThreadCount(8);
    const QList<std::vector<Answer>> parallel =
        QtConcurrent::blockingMapped<QList<std::vector<Answer>>>(&pool, instants, answer);
    ASSERT_EQ(size_t(parallel.size()), serial.size());
    for (size_t i = 0; i < serial.size(); ++i)
        EXPECT_TRUE(parallel[qsizetype(i)] == serial[i]) << instants[i].secondsSinceEpoch();
}

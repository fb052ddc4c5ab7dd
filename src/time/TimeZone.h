#pragma once

#include "time/Instant.h"

#include <QString>
#include <QTimeZone>
#include <optional>

namespace orv {

// A time zone as the rest of the system asks of it: offsets and daylight-saving facts at an
// instant, and the step from a wall-clock reading back to an instant. A cheap value: copies share
// the zone data, every operation is const, and one instance may be used by several threads at
// once (the import threads test daylight saving while the main thread draws).
class TimeZone
{
public:
    static TimeZone systemZone();
    static TimeZone utc();
    // An IANA name such as "Europe/Berlin"; nothing for a name the tz database does not know.
    static std::optional<TimeZone> fromName(const QString &ianaName);
    // A fixed offset that never observes daylight saving; nothing outside -14 h to +14 h.
    static std::optional<TimeZone> fromOffsetSeconds(int secondsAheadOfUtc);

    // The IANA name, or "UTC+05:45" and the like for a fixed offset.
    QString name() const;
    // "CET", "EDT", ...: what a clock in this zone showed beside the time at that instant.
    QString abbreviationForDate(Instant at) const;
    int secondsFromGMTForDate(Instant at) const;
    bool isDaylightSavingTimeForDate(Instant at) const;
    // The seconds daylight saving adds at that instant; 0 in standard time.
    int daylightSavingTimeOffsetForDate(Instant at) const;
    // The first instant after `after` at which the offset changes; nothing for a zone without
    // transitions or past its last one.
    OptionalDate nextDaylightSavingTimeTransitionAfterDate(Instant after) const;

    // Whether another instant shows the same wall clock: the hour that a change back to standard
    // time repeats, on either side of the change. A local stamp written then cannot say which of
    // the two moments it means.
    bool isWallClockRepeatedAtDate(Instant at) const;

    // The wall clock of this zone at an instant, seconds floored, the rest in `fraction`.
    Instant::Civil localCivil(Instant at) const;
    // The instant a wall-clock reading of this zone names. A reading that a daylight-saving
    // change repeats (autumn) is taken as the later of its two moments, the one in standard
    // time. A reading that the change skips (spring) is moved forward by the length of the jump,
    // so 02:30 on a spring-forward night in Berlin becomes 03:30 summer time.
    Instant instantFromLocalCivil(const Instant::Civil &local) const;

    // For the UI edge, where QDateTime is wanted.
    const QTimeZone &qTimeZone() const { return m_zone; }

    bool operator==(const TimeZone &other) const { return m_zone == other.m_zone; }

private:
    explicit TimeZone(QTimeZone zone) : m_zone(std::move(zone)) {}

    QTimeZone m_zone;
};

} // namespace orv

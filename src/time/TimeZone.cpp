#include "time/TimeZone.h"

#include <QDateTime>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <string>

namespace orv {

namespace {

QDateTime utcDateTime(Instant at)
{
    return QDateTime::fromMSecsSinceEpoch(qint64(std::floor(at.secondsSinceEpoch() * 1000.0)),
                                          Qt::UTC);
}

} // namespace

// Asking the system for its zone costs three file system calls, and a scan asks several times
// per file. Each thread keeps the answer for a second: a zone changed by the user (a traveller's
// laptop) is still seen at once on a human scale. A TZ setting changed in the process itself is
// seen at the next call.
TimeZone TimeZone::systemZone()
{
    using Clock = std::chrono::steady_clock;
    thread_local std::optional<TimeZone> cached;
    thread_local Clock::time_point takenAt;
    thread_local std::optional<std::string> takenForTz;
    const Clock::time_point now = Clock::now();
    const char *tz = std::getenv("TZ");
    const bool tzChanged = tz ? !takenForTz || *takenForTz != tz : takenForTz.has_value();
    if (!cached || now - takenAt > std::chrono::seconds(1) || tzChanged) {
        cached = TimeZone(QTimeZone::systemTimeZone());
        takenAt = now;
        takenForTz = tz ? std::optional<std::string>(tz) : std::nullopt;
    }
    return *cached;
}

TimeZone TimeZone::utc()
{
    return TimeZone(QTimeZone::utc());
}

std::optional<TimeZone> TimeZone::fromName(const QString &ianaName)
{
    // Qt reads an empty name as the system zone; here it is no name at all.
    if (ianaName.isEmpty())
        return std::nullopt;
    QTimeZone zone(ianaName.toUtf8());
    if (!zone.isValid())
        return std::nullopt;
    return TimeZone(std::move(zone));
}

std::optional<TimeZone> TimeZone::fromOffsetSeconds(int secondsAheadOfUtc)
{
    QTimeZone zone(secondsAheadOfUtc);
    if (!zone.isValid())
        return std::nullopt;
    return TimeZone(std::move(zone));
}

QString TimeZone::name() const
{
    return QString::fromUtf8(m_zone.id());
}

QString TimeZone::abbreviationForDate(Instant at) const
{
    return m_zone.abbreviation(utcDateTime(at));
}

int TimeZone::secondsFromGMTForDate(Instant at) const
{
    return m_zone.offsetFromUtc(utcDateTime(at));
}

bool TimeZone::isDaylightSavingTimeForDate(Instant at) const
{
    return m_zone.isDaylightTime(utcDateTime(at));
}

int TimeZone::daylightSavingTimeOffsetForDate(Instant at) const
{
    return m_zone.daylightTimeOffset(utcDateTime(at));
}

OptionalDate TimeZone::nextDaylightSavingTimeTransitionAfterDate(Instant after) const
{
    if (!m_zone.hasTransitions())
        return std::nullopt;
    // The tz data lists moments at which the clocks do nothing (the end of 32-bit time, for one);
    // nobody looking at a clock would call them a transition.
    constexpr int MaxSilentTransitions = 8;
    QDateTime from = utcDateTime(after);
    for (int i = 0; i <= MaxSilentTransitions; ++i) {
        const QTimeZone::OffsetData next = m_zone.nextTransition(from);
        if (!next.atUtc.isValid())
            return std::nullopt;
        const QTimeZone::OffsetData before = m_zone.offsetData(next.atUtc.addMSecs(-1));
        if (before.offsetFromUtc != next.offsetFromUtc ||
            before.daylightTimeOffset != next.daylightTimeOffset)
            return Instant(double(next.atUtc.toMSecsSinceEpoch()) / 1000.0);
        from = next.atUtc;
    }
    return std::nullopt;
}

bool TimeZone::isWallClockRepeatedAtDate(Instant at) const
{
    // Offsets change at most once within a day, so the offsets a day before and a day after are
    // the only other ones that can give this wall clock to a second instant.
    const Instant whole(at.wholeSeconds());
    const Instant wall = whole.addingSeconds(secondsFromGMTForDate(whole));
    for (const double probe : {-86400.0, 86400.0}) {
        const int offset = secondsFromGMTForDate(whole.addingSeconds(probe));
        const Instant other = wall.addingSeconds(-offset);
        if (other != whole && secondsFromGMTForDate(other) == offset)
            return true;
    }
    return false;
}

Instant::Civil TimeZone::localCivil(Instant at) const
{
    return at.addingSeconds(secondsFromGMTForDate(at)).toUtcCivil();
}

Instant TimeZone::instantFromLocalCivil(const Instant::Civil &local) const
{
    // Which offset turns the reading into an instant is known only once the instant is. Every
    // offset in force within a day of the reading is a candidate; a candidate is right when the
    // instant it gives has that very offset. Of two right ones (a repeated hour) the later is
    // taken; with none (a skipped hour) the latest candidate, which lies past the jump.
    const Instant wall = Instant::fromUtc(local);
    std::optional<Instant> latestRight;
    std::optional<Instant> latest;
    for (const double probe : {-86400.0, 0.0, 86400.0}) {
        const int offset = secondsFromGMTForDate(wall.addingSeconds(probe));
        const Instant candidate = wall.addingSeconds(-offset);
        latest = std::max(latest.value_or(candidate), candidate);
        if (secondsFromGMTForDate(candidate) == offset)
            latestRight = std::max(latestRight.value_or(candidate), candidate);
    }
    return latestRight.value_or(*latest);
}

} // namespace orv

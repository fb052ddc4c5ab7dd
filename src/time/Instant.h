#pragma once

#include <cmath>
#include <compare>
#include <cstdint>
#include <optional>

namespace orv {

// A calendar-free point in time: seconds since 1970-01-01 00:00:00 UTC, with sub-second
// precision. Two sentinel values stand apart from every real date: distantPast marks a tag
// whose stamp is empty, distantFuture the save time that is not yet known.
class Instant
{
public:
    constexpr Instant() = default;
    constexpr explicit Instant(double secondsSinceEpoch) : m_seconds(secondsSinceEpoch) {}

    static constexpr Instant distantPast() { return Instant(-62135596800.0); }    // 0001-01-01 UTC
    static constexpr Instant distantFuture() { return Instant(64092211200.0); }   // 4001-01-01 UTC
    static constexpr Instant minDate() { return Instant(-62135510400.0); }        // 0001-01-02 UTC
    static constexpr Instant maxDate() { return Instant(95617583999.0); }         // 4999-12-31 23:59:59 UTC

    // Proleptic Gregorian calendar in UTC; month 1-12, day 1-31. No range checks.
    static constexpr Instant fromUtc(int year, int month, int day, int hour = 0, int minute = 0,
                                     double second = 0.0)
    {
        return Instant(double(daysFromCivil(year, month, day)) * 86400.0 + hour * 3600.0
                       + minute * 60.0 + second);
    }

    constexpr double secondsSinceEpoch() const { return m_seconds; }
    // Dates are compared in whole seconds; fractions never decide equality.
    double wholeSeconds() const { return std::floor(m_seconds); }

    constexpr bool isDistantPast() const { return m_seconds == distantPast().m_seconds; }
    constexpr bool isDistantFuture() const { return m_seconds == distantFuture().m_seconds; }
    constexpr bool isSentinel() const { return isDistantPast() || isDistantFuture(); }

    constexpr Instant addingSeconds(double seconds) const { return Instant(m_seconds + seconds); }
    constexpr double secondsSince(Instant other) const { return m_seconds - other.m_seconds; }

    constexpr auto operator<=>(const Instant &) const = default;
    constexpr bool operator==(const Instant &) const = default;

    // Days since 1970-01-01 of a proleptic Gregorian date (H. Hinnant's algorithm).
    static constexpr std::int64_t daysFromCivil(int y, int m, int d)
    {
        y -= m <= 2;
        const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
        const std::int64_t yoe = y - era * 400;
        const std::int64_t doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
        const std::int64_t doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
        return era * 146097 + doe - 719468;
    }

    static constexpr bool isLeapYear(int year)
    {
        return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
    }
    static constexpr int daysInMonth(int year, int month)
    {
        constexpr int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
        return month == 2 && isLeapYear(year) ? 29 : days[month - 1];
    }

    struct Civil
    {
        int year, month, day, hour, minute, second;
        double fraction;
    };
    static constexpr Instant fromUtc(const Civil &civil)
    {
        return fromUtc(civil.year, civil.month, civil.day, civil.hour, civil.minute,
                       civil.second + civil.fraction);
    }
    // The UTC calendar fields of this instant, seconds floored.
    constexpr Civil toUtcCivil() const
    {
        const double floored = m_seconds >= 0 ? double(std::int64_t(m_seconds))
                                              : -double(std::int64_t(-m_seconds));
        std::int64_t whole = std::int64_t(floored > m_seconds ? floored - 1 : floored);
        std::int64_t days = whole >= 0 ? whole / 86400 : -((-whole + 86399) / 86400);
        std::int64_t secs = whole - days * 86400;
        const std::int64_t z = days + 719468;
        const std::int64_t era = (z >= 0 ? z : z - 146096) / 146097;
        const std::int64_t doe = z - era * 146097;
        const std::int64_t yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
        const std::int64_t doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
        const std::int64_t mp = (5 * doy + 2) / 153;
        const int d = int(doy - (153 * mp + 2) / 5 + 1);
        const int m = int(mp < 10 ? mp + 3 : mp - 9);
        const int y = int(yoe + era * 400 + (m <= 2));
        return {y, m, d, int(secs / 3600), int(secs / 60 % 60), int(secs % 60),
                m_seconds - double(whole)};
    }

private:
    double m_seconds = 0.0;
};

// A date slot: empty when the file has no such value.
using OptionalDate = std::optional<Instant>;

} // namespace orv

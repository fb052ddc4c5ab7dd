#include "selection/RelativeTimes.h"

namespace orv {

namespace {

// The local civil day that lies days after (or before) that one.
Instant::Civil dayMoved(const Instant::Civil &day, int days)
{
    const Instant::Civil moved = Instant::fromUtc({day.year, day.month, day.day, 0, 0, 0, 0.0})
                                     .addingSeconds(days * 86400.0)
                                     .toUtcCivil();
    return {moved.year, moved.month, moved.day, 0, 0, 0, 0.0};
}

Instant::Civil monthMoved(const Instant::Civil &day, int months)
{
    const int index = day.year * 12 + (day.month - 1) + months;
    return {index / 12, index % 12 + 1, 1, 0, 0, 0, 0.0};
}

} // namespace

RelativeTimes::RelativeTimes(Instant now, const TimeZone &zone)
{
    const Instant::Civil today = zone.localCivil(now);
    // Index 0 is where the present range ends (the next one's start), index k + 1 where the
    // range k steps back starts.
    for (int k = 0; k <= rangesPerScale[Days]; ++k)
        m_bounds[Days][size_t(k)] = zone.instantFromLocalCivil(dayMoved(today, 1 - k));
    for (int k = 0; k <= rangesPerScale[Months]; ++k)
        m_bounds[Months][size_t(k)] = zone.instantFromLocalCivil(monthMoved(today, 1 - k));
    for (int k = 0; k <= rangesPerScale[Years]; ++k)
        m_bounds[Years][size_t(k)] =
            zone.instantFromLocalCivil({today.year + 1 - k, 1, 1, 0, 0, 0, 0.0});
}

std::optional<int> RelativeTimes::stepsBack(Scale scale, Instant date) const
{
    const std::array<Instant, 9> &bounds = m_bounds[size_t(scale)];
    const Instant whole(date.wholeSeconds());
    // A camera's clock may say tomorrow: that is no time ago, even within this month.
    if (whole >= m_bounds[Days][0])
        return std::nullopt;
    for (int k = 0; k < rangesPerScale[size_t(scale)]; ++k)
        if (whole >= bounds[size_t(k) + 1])
            return k;
    return std::nullopt;
}

} // namespace orv

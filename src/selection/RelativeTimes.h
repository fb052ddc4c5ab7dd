#pragma once

#include "time/TimeZone.h"

#include <array>
#include <optional>

namespace orv {

// Where a date stands from today in the calendar of a zone: today, yesterday or the day before;
// this month or one of the seven before it; this year or one of the seven before it. The ranges'
// starts are the zone's midnights, found once, so placing 100,000 dates costs comparisons alone.
// A date after today or further back than a scale reaches stands in no range of it.
class RelativeTimes
{
public:
    enum Scale : int { Days, Months, Years };
    static constexpr std::array<int, 3> rangesPerScale = {3, 8, 8};
    static constexpr int rangeCount =
        rangesPerScale[Days] + rangesPerScale[Months] + rangesPerScale[Years];
    // The place of a range among all, the days' first, each scale from the present one back.
    static constexpr int indexOf(Scale scale, int stepsBack)
    {
        int index = stepsBack;
        for (int before = Days; before < scale; ++before)
            index += rangesPerScale[size_t(before)];
        return index;
    }

    RelativeTimes(Instant now, const TimeZone &zone);

    // How many days, months or years before the present one the date's lies; none outside the
    // scale's ranges.
    std::optional<int> stepsBack(Scale scale, Instant date) const;
    // When today ends, and every range with it moves on.
    Instant endOfToday() const { return m_bounds[Days][0]; }

private:
    // Per scale, from the end of the present day, month or year back: the start of the present
    // one, then the start of each before it.
    std::array<std::array<Instant, 9>, 3> m_bounds{};
};

} // namespace orv

#pragma once

#include "time/Instant.h"
#include "time/TimeZone.h"

#include <QString>

namespace orv {

// The date texts that lists show: the wall clock of a zone with the abbreviation that clock
// showed at that moment, so a summer photo reads CEST even when looked at in winter. Digits in
// the order year, month, day, which reads the same everywhere and sorts as text.
class DateDisplay
{
public:
    // "2024-05-01 10:00:00 CEST"; the sentinels and a missing date in words.
    static QString localDateTime(const OptionalDate &date, const TimeZone &zone);
    // A shift of a date in whole seconds, signed, with days beside the clock: "+1 d 02:00:00",
    // "−00:30:00".
    static QString offset(double seconds);
};

} // namespace orv

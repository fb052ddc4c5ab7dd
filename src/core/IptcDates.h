#pragma once

#include "formats/PicAttributes.h"
#include "time/Instant.h"
#include "time/TimeZone.h"

#include <optional>

namespace orv {

// IPTC's creation date and time as a date: "CCYYMMDD" and "HHMMSS+HHMM". A time with an offset
// names its own instant; one without, or a date without a time, is clock time in a zone.
class IptcDates
{
public:
    IptcDates() = delete;

    // Midnight for a date without a time; nothing for a date that cannot be read (a year 0000,
    // a month 13).
    static OptionalDate dateFrom(const IptcDateRecord &record, const TimeZone &local);
    // The record holding `date` in its own form: the same lengths and the same offset, or the
    // clock of `local` where the time has no offset. Nothing when the date does not fit.
    static std::optional<IptcDateRecord> withDate(const IptcDateRecord &record, Instant date,
                                                  const TimeZone &local);
    // The fixed zone of a time with an offset.
    static std::optional<TimeZone> zoneOf(const IptcDateRecord &record);
};

} // namespace orv

#pragma once

#include "time/Instant.h"
#include "time/TimeZone.h"

#include <QtGlobal>

#include <optional>

namespace orv {

class MySinglePic;

// Why a stamp with its own offset, compared with the zone, proves nothing: its digits name an
// hour the zone has twice, or one the zone skips.
enum class DstSpecialCase { None = 0, Ambiguous = 1, Invalid = 2 };

// The stamps of an item that a zone cannot read plainly, as bits of DateSlotBits: `divergence`
// names an hour the zone skips (reading it moved it), `ambiguity` an hour the zone repeats.
struct DstFindings
{
    quint64 divergence = 0;
    quint64 ambiguity = 0;
    bool operator==(const DstFindings &) const = default;
};

// How the zone bears on the item: the zone its local stamps are read in, and whether its movie
// header times are local clock time written as UTC (the folder's correction setting).
struct ZoneReading
{
    const TimeZone &zone;
    bool movieHeaderCorrection = true;
};

// Daylight-saving analysis of one item: local stamps that name a skipped or a repeated hour,
// offset stamps that disagree with the zone, new dates that a local stamp cannot hold, and the
// user's choice of the other moment of a repeated hour. Every answer comes from the item's
// stored stamps and the tz database; the functions that only answer are safe on any thread (the
// import threads run them), those that store into an item belong to the item's owner.
class DaylightSaving
{
public:
    DaylightSaving() = delete;

    // The core test on the given dates of the three slots, each compared with its stored stamp.
    static DstFindings checkDSTDivergence(const MySinglePic &pic, const ZoneReading &reading,
                                          OptionalDate creaDate, OptionalDate digiDate,
                                          OptionalDate modDate);
    // The same on the item's stored dates.
    static DstFindings checkDSTDivergence(const MySinglePic &pic, const ZoneReading &reading);
    // Whether `date`, read from the item's date source, is one of two moments of a repeated hour.
    static bool hasImportAmbiguityForDate(const MySinglePic &pic, Instant date, const ZoneReading &reading);

    // Only dates within a few hours of a transition can fail the export test.
    static bool isDSTAmbiguityAtExportPossibleForDate(Instant date, const TimeZone &zone);
    // Whether a new date, written as a local stamp in the target zone, reads back as another
    // moment. `type`: 1 creation, 2 digitized, 3 modification, 0 the slot of the date source.
    static bool hasDSTAmbiguityForDate(const MySinglePic &pic, Instant date, int type,
                                       const ZoneReading &target, bool preFilter = true);
    // The export state of the date in force against the target zone: the bit of the date
    // source's slot, 0 when no offset applies or the date reads back.
    static quint64 dstAmbiguityAtExportState(const MySinglePic &pic, const ZoneReading &target);

    // Seconds by which a stamp's own offset disagrees with what its digits mean in the zone;
    // 0 for agreement, for nothing to compare, and for the special cases.
    static double checkMDTADateWithTimeZone(const MySinglePic &pic, const TimeZone &zone,
                                            DstSpecialCase *special = nullptr);
    static double checkEXOFTimeWithTimeZone(const MySinglePic &pic, const TimeZone &zone,
                                            DstSpecialCase *special = nullptr);
    static double checkXmpTZTimeWithTimeZone(const MySinglePic &pic, const TimeZone &zone,
                                             DstSpecialCase *special = nullptr);

    // Recomputes every finding of the item in its source zone and the export state against its
    // target zone; without a target (at import, where no offset applies yet) the export state
    // stays. True when the major or the minor difference flag changed.
    static bool validateDateDifferencesUsingTimeZone(MySinglePic &pic, const ZoneReading &source,
                                                     const std::optional<TimeZone> &target);
    // The bit of the first date that exists (creation, digitized, modification) is ambiguous.
    static bool isDateSourceAmbiguousAtImport(const MySinglePic &pic);

    // Moves the dates of the ambiguous slots; the item's date follows.
    static void correctAmbiguousDatesBy(MySinglePic &pic, double seconds);
    // On: the earlier of the two moments (the stored reading is the later one). Off: back to it.
    static void changeAmbiguityCorrectionStateTo(MySinglePic &pic, qint64 state);
    // After dates were read anew, the choice in force is applied again.
    static void reapplyAmbiguityCorrection(MySinglePic &pic);

    // Timeline marks: -1 the next item has the same daylight-saving offset, 1 the next has
    // more, 2 this one has more. Cached in dstOffsetState until the source is rebuilt.
    static qint64 validatedDSTOffsetStateWithNext(MySinglePic &pic, const MySinglePic &next,
                                                  const TimeZone &system);
};

} // namespace orv

#pragma once

#include "core/DaylightSaving.h"
#include "formats/PicAttributes.h"

#include <QByteArray>

#include <optional>

namespace orv {

class MySinglePic;

// The offset an EXIF stamp was written in: its own tag when that reads exactly, else the camera
// clock's, which another stamp's tag names. Empty for a stamp of local clock time.
QByteArray offsetOfStamp(const std::optional<OffsetTagRecord> &own, const std::optional<OffsetTagRecord> &original,
                         const std::optional<OffsetTagRecord> &digitized,
                         const std::optional<OffsetTagRecord> &modified);

// A GPS stamp with only a date or only a time takes the other half from the item's date: after
// that date moved, the GPS date follows.
void updateGpsDateWithCreationDate(MySinglePic &pic);

// The dates of one item read anew from its stored stamps in another source zone: local stamps
// move, stamps with an offset of their own stay. The item's date source follows, including the
// switch between a modification date and the file's creation date that the scan makes.
class ZoneRereading
{
public:
    ZoneRereading() = delete;

    struct Dates
    {
        int spType = 0;
        OptionalDate source, creation, digitized, modification;
        bool operator==(const Dates &) const = default;
    };
    // What the stamps say in the zone, the item untouched (a preview); nothing for an item whose
    // dates no zone reads. `dateComparisonThresold` is the folder's margin of the scan.
    static std::optional<Dates> datesInZone(const MySinglePic &pic, const ZoneReading &reading,
                                            int dateComparisonThresold);
    // The item takes them. True when a date changed.
    static bool rereadDates(MySinglePic &pic, const ZoneReading &reading, int dateComparisonThresold);
};

} // namespace orv

#pragma once

#include "core/DaylightSaving.h"
#include "folders/FolderTimeZones.h"
#include "time/TimeZone.h"

#include <QList>

namespace orv {

class MySingleFolder;
class MySinglePic;

// Time zone correction on the folder side: the zones an item is read and written in, the
// re-reading of its dates when its source zone changes, and the daylight-saving findings in
// those zones. The target zone changes nothing here; it is applied when a save writes stamps.
// Main thread only, like every change of a folder's items.
// One item as it would stand under working zones that are not the folder's yet: what the time
// zone sheet shows in a row, and what a save after confirming writes.
struct ZonePreview
{
    TimeZone source = TimeZone::systemZone();
    TimeZone target = TimeZone::systemZone();
    OptionalDate dateInSource; // the date source read in the source zone, the hour choice applied
    OptionalDate newDate;      // with the offset in force
    DstFindings findings;
    bool isAmbiguousAtImport = false; // the date source itself lies in a repeated hour
    bool isAmbiguousAtExport = false; // the new date cannot be written as a local stamp
    double offsetDifference = 0.0;    // a stored offset against the source zone, seconds
    DstSpecialCase offsetSpecialCase = DstSpecialCase::None;
    double gpsDifference = 0.0;
};

class ZoneCorrection
{
public:
    ZoneCorrection() = delete;

    // The item's zones with every special name resolved; an unknown name gives the system zone.
    static TimeZone sourceZoneOf(const MySinglePic &pic);
    static TimeZone targetZoneOf(const MySinglePic &pic);

    // All findings of the item in its zones; true when a difference flag changed.
    static bool validateDateDifferences(MySinglePic &pic);
    // The item and its dependent read anew in the item's source zone; an ambiguity choice made
    // before survives where the date is still ambiguous. True when a date or a flag changed.
    static bool updateAllDatesAfterUpdatingTimezone(MySinglePic &pic);

    // The item under the zones of `zones` with `ambiguityChoice` as its choice of the other hour;
    // the item is not touched.
    static ZonePreview preview(const MySinglePic &pic, const ZoneProvider &zones, qint64 ambiguityChoice);

    // The folder takes both dictionaries; items whose source zone changed are read anew, and
    // every item's unsaved state follows. Answers the items whose dates changed.
    static QList<MySinglePic *> setTimeZones(MySingleFolder &folder, const FolderTimeZones &source,
                                             const FolderTimeZones &target);
    // Every item of the folders read anew after the system zone changed under them (a working
    // set kept in another zone), as an import now would read it; folders that ignore the files'
    // dates are left alone. Answers how many items' dates or flags changed.
    static int updateEveryFileDate(const QList<MySingleFolder *> &folders);
};

} // namespace orv

#pragma once

#include "formats/PicAttributes.h"
#include "time/Instant.h"

namespace orv {

class TimeZone;

// Which XMP stamp stands for which date slot, and its date. Within a slot the more specific
// tag wins: Photoshop's creation date before the EXIF original twin, the XMP create date before
// the EXIF digitized twin, the XMP modify date before the TIFF twin.
class XmpDates
{
public:
    static const XmpStampRecord *xmpCreaDictFrom(const XmpDateInfos &infos);
    static const XmpStampRecord *xmpDigiDictFrom(const XmpDateInfos &infos);
    static const XmpStampRecord *xmpModDictFrom(const XmpDateInfos &infos);

    static bool hasXmpCrea(const XmpDateInfos &infos) { return xmpCreaDictFrom(infos); }
    static bool hasXmpDigi(const XmpDateInfos &infos) { return xmpDigiDictFrom(infos); }
    static bool hasXmpMod(const XmpDateInfos &infos) { return xmpModDictFrom(infos); }

    // Local stamps (type 3) are read in the given zone.
    static OptionalDate xmpCreaDateFrom(const XmpDateInfos &infos, const TimeZone &zone);
    static OptionalDate xmpDigiDateFrom(const XmpDateInfos &infos, const TimeZone &zone);
    static OptionalDate xmpModDateFrom(const XmpDateInfos &infos, const TimeZone &zone);
    static OptionalDate xmpGpsDateFrom(const XmpDateInfos &infos, const TimeZone &zone);
    static OptionalDate xmpDateFromStampInfos(const XmpStampRecord *record, const TimeZone &zone);
};

} // namespace orv

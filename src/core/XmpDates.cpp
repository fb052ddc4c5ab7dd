#include "core/XmpDates.h"

#include "time/DateStampCodec.h"
#include "time/TimeZone.h"

namespace orv {

namespace {

const XmpStampRecord *firstOf(const XmpDateInfos &infos, const char *preferred, const char *fallback)
{
    for (const char *key : {preferred, fallback}) {
        const auto it = infos.find(QLatin1String(key));
        if (it != infos.end() && it->second.type != 0)
            return &it->second;
    }
    return nullptr;
}

} // namespace

const XmpStampRecord *XmpDates::xmpCreaDictFrom(const XmpDateInfos &infos)
{
    return firstOf(infos, "PhotoshopDateCreated", "ExifDateTimeOriginal");
}

const XmpStampRecord *XmpDates::xmpDigiDictFrom(const XmpDateInfos &infos)
{
    return firstOf(infos, "XmpCreateDate", "ExifDateTimeDigitized");
}

const XmpStampRecord *XmpDates::xmpModDictFrom(const XmpDateInfos &infos)
{
    return firstOf(infos, "XmpModifyDate", "TiffDateTime");
}

OptionalDate XmpDates::xmpCreaDateFrom(const XmpDateInfos &infos, const TimeZone &zone)
{
    return xmpDateFromStampInfos(xmpCreaDictFrom(infos), zone);
}

OptionalDate XmpDates::xmpDigiDateFrom(const XmpDateInfos &infos, const TimeZone &zone)
{
    return xmpDateFromStampInfos(xmpDigiDictFrom(infos), zone);
}

OptionalDate XmpDates::xmpModDateFrom(const XmpDateInfos &infos, const TimeZone &zone)
{
    return xmpDateFromStampInfos(xmpModDictFrom(infos), zone);
}

OptionalDate XmpDates::xmpGpsDateFrom(const XmpDateInfos &infos, const TimeZone &zone)
{
    return xmpDateFromStampInfos(firstOf(infos, "GPSTimeStamp", "GPSTimeStamp"), zone);
}

OptionalDate XmpDates::xmpDateFromStampInfos(const XmpStampRecord *record, const TimeZone &zone)
{
    if (!record)
        return std::nullopt;
    return DateStampCodec::xmpDateFromStampInfos(record->data, XmpStampKind{record->type, record->subtype}, zone);
}

} // namespace orv

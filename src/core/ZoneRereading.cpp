#include "core/ZoneRereading.h"

#include "time/DateStampCodec.h"
#include "core/MySinglePic.h"
#include "core/XmpDates.h"
#include "time/TimeZone.h"


namespace orv {

namespace {

QByteArray offsetDataOf(const std::optional<OffsetTagRecord> &offset)
{
    return offset ? offset->offsetData.toByteArray() : QByteArray();
}

// A stamp that exists but is empty keeps its distantPast; an XMP slot is read elsewhere.
void rereadExifSlot(OptionalDate &date, const std::optional<StampRecord> &stamp,
                    const std::optional<OffsetTagRecord> &own, const PicAttributes &a, const TimeZone &zone)
{
    if (!stamp || !date || date->isDistantPast())
        return;
    const Instant read = DateStampCodec::dateFromExifData(
        stamp->dateData,
        offsetOfStamp(own, a.ExifOffsetTimeOriginal, a.ExifOffsetTimeDigitized, a.TIFFOffsetTime), zone);
    if (!read.isDistantPast())
        date = read;
}

void rereadXmpSlot(OptionalDate &date, bool isXmp, const XmpStampRecord *record, const TimeZone &zone)
{
    if (isXmp && record)
        date = XmpDates::xmpDateFromStampInfos(record, zone);
}

void rereadMovieHeader(OptionalDate &date, const BoxedOptional<MovieStampRecord> &stamp, const ZoneReading &reading)
{
    if (!stamp || !date || date->isDistantPast())
        return;
    if (const OptionalDate read =
            DateStampCodec::finalDateFromMVHDData(stamp->dateData, reading.movieHeaderCorrection, reading.zone))
        date = read;
}

// A modification date that lies after the file's birth is no capture date: the file's
// creation date stands in for it, and the other way round once it no longer does.
void settleModificationSource(ZoneRereading::Dates &dates, const MySinglePic &pic, int plainType, int preferredType,
                              int dateComparisonThresold)
{
    const OptionalDate born = pic.singlePicAttributes.NSFileCreationDate;
    const bool younger = dates.modification && born && dates.modification->secondsSince(*born) > dateComparisonThresold;
    dates.spType = younger ? preferredType : plainType;
    dates.source = younger ? born : dates.modification;
}

} // namespace

QByteArray offsetOfStamp(const std::optional<OffsetTagRecord> &own, const std::optional<OffsetTagRecord> &original,
                         const std::optional<OffsetTagRecord> &digitized,
                         const std::optional<OffsetTagRecord> &modified)
{
    if (own && DateStampCodec::exactExifOffsetSeconds(own->offsetData))
        return own->offsetData;
    return DateStampCodec::cameraClockOffset(offsetDataOf(original), offsetDataOf(digitized), offsetDataOf(modified));
}

void updateGpsDateWithCreationDate(MySinglePic &pic)
{
    const PicAttributes &a = pic.singlePicAttributes;
    if (!pic.spGpsUTCDate || pic.isGpsXmp || a.GPSDateStamp.has_value() == a.GPSTimeStamp.has_value())
        return;
    pic.spGpsUTCDate = DateStampCodec::updatedGpsDateWithCreationDate(
        a.GPSDateStamp ? a.GPSDateStamp->dateData.toByteArray() : QByteArray(),
        a.GPSTimeStamp ? a.GPSTimeStamp->dateData.toByteArray() : QByteArray(),
        a.GPSTimeStamp && a.GPSTimeStamp->needsConv ? QSysInfo::BigEndian : QSysInfo::LittleEndian,
        pic.spDateTimeOriginal);
}

std::optional<ZoneRereading::Dates> ZoneRereading::datesInZone(const MySinglePic &pic, const ZoneReading &reading,
                                                               int dateComparisonThresold)
{
    Dates d{pic.spType, pic.spDateTimeOriginal, pic.exifDateTimeOriginalOLD, pic.exifDateTimeDigitizedOLD,
            pic.tiffDateTimeOLD};
    const PicAttributes &a = pic.singlePicAttributes;
    const TimeZone &zone = reading.zone;
    if (pic.spType >= SpTypeExifOriginal && pic.spType <= SpTypeFileDatePreferredOverTiff) {
        if (a.xmpDateInfos) {
            rereadXmpSlot(d.creation, pic.isCreaXmp, XmpDates::xmpCreaDictFrom(*a.xmpDateInfos), zone);
            rereadXmpSlot(d.digitized, pic.isDigiXmp, XmpDates::xmpDigiDictFrom(*a.xmpDateInfos), zone);
            rereadXmpSlot(d.modification, pic.isModiXmp, XmpDates::xmpModDictFrom(*a.xmpDateInfos), zone);
        }
        if (!pic.isCreaXmp)
            rereadExifSlot(d.creation, a.ExifDateTimeOriginal, a.ExifOffsetTimeOriginal, a, zone);
        if (!pic.isDigiXmp)
            rereadExifSlot(d.digitized, a.ExifDateTimeDigitized, a.ExifOffsetTimeDigitized, a, zone);
        if (!pic.isModiXmp)
            rereadExifSlot(d.modification, a.TIFFDateTime, a.TIFFOffsetTime, a, zone);
        if (pic.spType == SpTypeExifOriginal)
            d.source = d.creation;
        else if (pic.spType == SpTypeExifDigitized)
            d.source = d.digitized;
        else
            settleModificationSource(d, pic, SpTypeTiffDateTime, SpTypeFileDatePreferredOverTiff, dateComparisonThresold);
    } else if (pic.spType >= SpTypeMvhdCreation && pic.spType <= SpTypeFileDatePreferredOverMvhd) {
        rereadMovieHeader(d.creation, a.QTMvhdCreaDate, reading);
        rereadMovieHeader(d.modification, a.QTMvhdModDate, reading);
        if (pic.spType == SpTypeMvhdCreation)
            d.source = d.creation;
        else
            settleModificationSource(d, pic, SpTypeMvhdModification, SpTypeFileDatePreferredOverMvhd,
                                     dateComparisonThresold);
    } else if (pic.spType == SpTypeRiff && a.riffCreaDate) {
        if (const OptionalDate read = DateStampCodec::dateFromRIFFTimeStamp(
                QString::fromLatin1(a.riffCreaDate->dateData.left(24)), zone)) {
            d.creation = read;
            d.source = read;
        }
    } else {
        return std::nullopt;
    }
    return d;
}

bool ZoneRereading::rereadDates(MySinglePic &pic, const ZoneReading &reading, int dateComparisonThresold)
{
    const std::optional<Dates> read = datesInZone(pic, reading, dateComparisonThresold);
    if (!read)
        return false;
    const Dates before{pic.spType, pic.spDateTimeOriginal, pic.exifDateTimeOriginalOLD, pic.exifDateTimeDigitizedOLD,
                       pic.tiffDateTimeOLD};
    pic.spType = read->spType;
    pic.spDateTimeOriginal = read->source;
    pic.exifDateTimeOriginalOLD = read->creation;
    pic.exifDateTimeDigitizedOLD = read->digitized;
    pic.tiffDateTimeOLD = read->modification;
    updateGpsDateWithCreationDate(pic);
    return !(before == *read);
}

} // namespace orv

#include "cli/ItemJson.h"

#include "cli/CompactJson.h"
#include "core/MySinglePic.h"

#include <cmath>
#include <cstdio>

namespace orv {

namespace {

using CompactJson::Object;

// Stamps are text; the trailing NUL is the file's, not the value's.
void addText(Object &out, QByteArrayView key, const QByteArray &data)
{
    const qsizetype nul = data.indexOf('\0');
    out.insertLatin1(key, nul < 0 ? QByteArrayView(data) : QByteArrayView(data).first(nul));
}

void addHex(Object &out, QByteArrayView key, const QByteArray &data)
{
    out.insertLatin1(key, data.toHex());
}

void addNumber(Object &out, QByteArrayView key, const std::optional<double> &value)
{
    if (value)
        out.insert(key, *value);
    else
        out.insert(key, nullptr);
}

// Two digits per field but the year, which a stamp may set to anything.
QByteArray isoUtcText(Instant instant)
{
    const Instant::Civil c = instant.toUtcCivil();
    char text[48];
    int length = std::snprintf(text, sizeof text, "%04d", c.year);
    const std::pair<char, int> fields[] = {
        {'-', c.month}, {'-', c.day}, {'T', c.hour}, {':', c.minute}, {':', c.second}};
    for (const auto &[separator, field] : fields) {
        text[length++] = separator;
        text[length++] = char('0' + field / 10);
        text[length++] = char('0' + field % 10);
    }
    // Milliseconds are the finest a stamp carries; a float's noise below them is not a fraction.
    const long millis = std::lround(c.fraction * 1000.0);
    if (millis > 0 && millis < 1000) {
        text[length++] = '.';
        for (const long digit : {millis / 100, millis / 10 % 10, millis % 10})
            text[length++] = char('0' + digit);
        while (text[length - 1] == '0')
            --length;
    }
    text[length++] = 'Z';
    return QByteArray(text, length);
}

void addDate(Object &out, QByteArrayView key, const OptionalDate &date)
{
    if (const std::optional<QByteArray> text = ItemJson::dateText(date))
        out.insertLatin1(key, *text);
    else
        out.insert(key, nullptr);
}

QByteArray keyWith(const char *key, const char *suffix) { return QByteArray(key) + suffix; }

void addStamp(Object &out, const char *key, const std::optional<StampRecord> &stamp)
{
    if (!stamp)
        return;
    out.insert(keyWith(key, "Offset"), qint64(stamp->dateOffset));
    addText(out, keyWith(key, "Data"), stamp->dateData);
}

void addOffsetTag(Object &out, const char *key, const std::optional<OffsetTagRecord> &tag)
{
    if (!tag)
        return;
    out.insert(keyWith(key, "Offset"), qint64(tag->offsetOffset));
    addText(out, keyWith(key, "Data"), tag->offsetData);
}

// Movie stamps: text ones as text, the movie header's binary times in hex.
void addMovieStamp(Object &out, const char *key, const BoxedOptional<MovieStampRecord> &stamp,
                   bool isText)
{
    if (!stamp)
        return;
    out.insert(keyWith(key, "Offset"), qint64(stamp->dateOffset));
    if (isText)
        addText(out, keyWith(key, "Data"), stamp->dateData);
    else
        addHex(out, keyWith(key, "Data"), stamp->dateData);
}

std::vector<Object> qtLocations(const std::vector<QtLocationRecord> &records)
{
    std::vector<Object> array(records.size());
    for (std::size_t i = 0; i < records.size(); ++i) {
        const QtLocationRecord &r = records[i];
        Object &o = array[i];
        o.insert("type", r.type);
        o.insert("offset", qint64(r.text.dateOffset));
        addText(o, "data", r.text.dateData);
        o.insert("int1", r.int1);
        o.insert("frac1", r.frac1);
        o.insert("int2", r.int2);
        o.insert("frac2", r.frac2);
        o.insert("edit", r.edit);
        if (r.hAccuracy.dateOffset) {
            o.insert("HAccuracyOffset", qint64(r.hAccuracy.dateOffset));
            addText(o, "HAccuracyData", r.hAccuracy.dateData);
        }
    }
    return array;
}

// Track and media header times, in hex like the movie header's, with the time each follows.
std::vector<Object> qtTrackTimes(const std::vector<QtTrackTimeRecord> &records)
{
    std::vector<Object> array(records.size());
    for (std::size_t i = 0; i < records.size(); ++i) {
        array[i].insert("offset", qint64(records[i].time.dateOffset));
        addHex(array[i], "data", records[i].time.dateData);
        array[i].insert("followsModification", records[i].followsModification);
    }
    return array;
}

Object gpsLocation(const GpsLocationRecord &r)
{
    Object o;
    auto part = [&](const char *name, const QByteArray &data, quint32 offset, bool isText) {
        if (offset == 0)
            return;
        if (isText)
            addText(o, keyWith(name, "_Data"), data);
        else
            addHex(o, keyWith(name, "_Data"), data);
        o.insert(keyWith(name, "_Offset"), qint64(offset));
    };
    part("latitudeRef", r.latitudeRef_Data, r.latitudeRef_Offset, true);
    part("latitude", r.latitude_Data, r.latitude_Offset, false);
    part("longitudeRef", r.longitudeRef_Data, r.longitudeRef_Offset, true);
    part("longitude", r.longitude_Data, r.longitude_Offset, false);
    part("altitudeRef", r.altitudeRef_Data, r.altitudeRef_Offset, false);
    part("altitude", r.altitude_Data, r.altitude_Offset, false);
    part("hPositioningError", r.hPositioningError_Data, r.hPositioningError_Offset, false);
    o.insert("needsConv", r.needsConv);
    return o;
}

Object attributes(const PicAttributes &a)
{
    Object o;
    addStamp(o, "ExifDateTimeOriginal", a.ExifDateTimeOriginal);
    addStamp(o, "ExifDateTimeDigitized", a.ExifDateTimeDigitized);
    addStamp(o, "TIFFDateTime", a.TIFFDateTime);
    addOffsetTag(o, "ExifOffsetTimeOriginal", a.ExifOffsetTimeOriginal);
    addOffsetTag(o, "ExifOffsetTimeDigitized", a.ExifOffsetTimeDigitized);
    addOffsetTag(o, "TIFFOffsetTime", a.TIFFOffsetTime);
    if (a.GPSTimeStamp) {
        Object time;
        addHex(time, "dateData", a.GPSTimeStamp->dateData);
        time.insert("dateOffset", qint64(a.GPSTimeStamp->dateOffset));
        time.insert("needsConv", a.GPSTimeStamp->needsConv);
        o.insert("GPSTimeStamp", time);
    }
    if (a.GPSDateStamp) {
        Object date;
        addText(date, "dateData", a.GPSDateStamp->dateData);
        date.insert("dateOffset", qint64(a.GPSDateStamp->dateOffset));
        o.insert("GPSDateStamp", date);
    }
    if (a.GPSLocation)
        o.insert("GPSLocation", gpsLocation(*a.GPSLocation));
    if (a.GPSLocationXmpHPositioningError || a.GPSLocationXmpAltitude) {
        Object xmp;
        if (a.GPSLocationXmpHPositioningError)
            xmp.insert("hPositioningError", *a.GPSLocationXmpHPositioningError);
        if (a.GPSLocationXmpAltitude)
            xmp.insert("altitude", *a.GPSLocationXmpAltitude);
        o.insert("GPSLocationXmp", xmp);
    }
    if (a.xmpDateInfos) {
        Object infos;
        for (const auto &[key, record] : *a.xmpDateInfos) {
            Object info;
            addText(info, "data", record.data);
            info.insert("offset", qint64(record.offset));
            info.insert("type", record.type);
            info.insert("subtype", record.subtype);
            infos.insert(key.toUtf8(), info);
        }
        o.insert("xmpDateInfos", infos);
    }
    if (a.IPTCDateCreated) {
        Object iptc;
        iptc.insert("dateOffset", qint64(a.IPTCDateCreated->dateOffset));
        addText(iptc, "dateData", a.IPTCDateCreated->dateData);
        if (a.IPTCDateCreated->timeOffset) {
            iptc.insert("timeOffset", qint64(a.IPTCDateCreated->timeOffset));
            addText(iptc, "timeData", a.IPTCDateCreated->timeData);
        }
        if (a.IPTCDateCreated->digestOffset) {
            iptc.insert("digestOffset", qint64(a.IPTCDateCreated->digestOffset));
            addHex(iptc, "digestData", a.IPTCDateCreated->digestData);
        }
        o.insert("IPTCDateCreated", iptc);
    }
    if (a.xmpHeaderStartOffset)
        o.insert("xmpHeaderStartOffset", qint64(a.xmpHeaderStartOffset));
    if (a.cr3XmpOffset)
        o.insert("cr3XmpOffset", qint64(a.cr3XmpOffset));
    addMovieStamp(o, "QTMetaDate", a.QTMetaDate, true);
    addMovieStamp(o, "QTMvhdCreaDate", a.QTMvhdCreaDate, false);
    addMovieStamp(o, "QTMvhdModDate", a.QTMvhdModDate, false);
    addMovieStamp(o, "riffCreaDate", a.riffCreaDate, true);
    if (!a.qtLocations.empty())
        o.insert("qtLocations", qtLocations(a.qtLocations));
    if (!a.qtTrackTimes.empty())
        o.insert("qtTrackTimes", qtTrackTimes(a.qtTrackTimes));
    if (a.NSFileCreationDate)
        addDate(o, "NSFileCreationDate", a.NSFileCreationDate);
    if (a.NSFileModificationDate)
        addDate(o, "NSFileModificationDate", a.NSFileModificationDate);
    if (a.NSFileSize)
        o.insert("NSFileSize", *a.NSFileSize);
    return o;
}

void addIfNamed(Object &out, QByteArrayView key, const QString &text)
{
    if (!text.isEmpty())
        out.insert(key, text);
}

// Serials, lens and the shot's settings where the file names them, printed as exiftool prints
// them by default: "1/120", 2.8, "4.2 mm".
void addCameraGearAndShot(Object &item, const MySinglePic &pic)
{
    addIfNamed(item, "bodySerial", pic.pivBodySn());
    addIfNamed(item, "lens", pic.pivMakeModelLens());
    addIfNamed(item, "lensSerial", pic.lensSn());
    const ShotSettings &shot = pic.pivShotSettings;
    if (ShotSettings::has(shot.exposureTime))
        item.insert("exposureTime", ShotSettingsText::exposureTime(shot.exposureTime));
    if (ShotSettings::has(shot.fNumber))
        item.insert("fNumber", ShotSettingsText::fNumber(shot.fNumber).toDouble());
    if (ShotSettings::has(shot.focalLength))
        item.insert("focalLength", ShotSettingsText::focalLength(shot.focalLength));
    if (ShotSettings::has(shot.digitalZoomRatio))
        item.insert("digitalZoomRatio", ShotSettingsText::digitalZoomRatio(shot.digitalZoomRatio).toDouble());
    if (shot.iso != 0)
        item.insert("iso", qint64(shot.iso));
}

Object itemObject(const MySinglePic &pic)
{
    Object item;
    item.insert("path", pic.spPath());
    item.insert("spName", pic.spName);
    item.insert("fileFormatType", qint64(pic.fileFormatType));
    item.insert("spType", pic.spType);
    addDate(item, "spDateTimeOriginal", pic.spDateTimeOriginal);
    addDate(item, "exifDateTimeOriginalOLD", pic.exifDateTimeOriginalOLD);
    addDate(item, "exifDateTimeDigitizedOLD", pic.exifDateTimeDigitizedOLD);
    addDate(item, "tiffDateTimeOLD", pic.tiffDateTimeOLD);
    addDate(item, "fileCreationDateOLD", pic.fileCreationDateOLD);
    addDate(item, "fileModificationDateOLD", pic.fileModificationDateOLD);
    addDate(item, "spGpsUTCDate", pic.spGpsUTCDate);
    addNumber(item, "gpsLat", pic.gpsLat);
    addNumber(item, "gpsLong", pic.gpsLong);
    item.insert("pivMakeModel", pic.pivMakeModel);
    addCameraGearAndShot(item, pic);
    item.insert("pivImageWidth", pic.pivImageWidth);
    item.insert("pivImageHeight", pic.pivImageHeight);
    item.insert("isCreaXmp", pic.isCreaXmp);
    item.insert("isDigiXmp", pic.isDigiXmp);
    item.insert("isModiXmp", pic.isModiXmp);
    // As the filters read it: the XMP rating 5 an import takes as a keeper is 1 here, -1 a reject.
    item.insert("rating", pic.isRejected ? -1 : int(pic.isKeeper));
    item.insert("singlePicAttributes", attributes(pic.singlePicAttributes));
    // A Live Photo's still and movie name the same content identifier.
    if (!pic.UUID.isEmpty())
        item.insert("UUID", pic.UUID);
    if (pic.isMovie()) {
        item.insert("movieType", pic.movieType);
        item.insert("movDuration", pic.movDuration);
    }
    for (const auto &[key, value] : ItemJson::daylightSaving(pic))
        item.insert(key, value);
    // A group is one entry: its master names the files that go with it and carries its dependent.
    if (!pic.spSidecarExtensions.isEmpty())
        item.insert("spSidecarExtensions", pic.spSidecarExtensions);
    if (pic.bundleDependentImage)
        item.insert("dependent", itemObject(*pic.bundleDependentImage));
    return item;
}

} // namespace

std::optional<QByteArray> ItemJson::dateText(const OptionalDate &date)
{
    if (!date)
        return std::nullopt;
    if (date->isDistantPast())
        return QByteArray("distantPast");
    if (date->isDistantFuture())
        return QByteArray("distantFuture");
    return isoUtcText(*date);
}

QJsonValue ItemJson::date(const OptionalDate &date)
{
    const std::optional<QByteArray> text = dateText(date);
    return text ? QJsonValue(QString::fromLatin1(*text)) : QJsonValue(QJsonValue::Null);
}

void ItemJson::writePic(const MySinglePic &pic, std::string &out) { itemObject(pic).writeTo(out); }

std::array<std::pair<const char *, qint64>, 3> ItemJson::daylightSaving(const MySinglePic &pic)
{
    return {{{"dstDivergenceState", qint64(pic.dstDivergenceState)},
             {"dstAmbiguityAtImportState", qint64(pic.dstAmbiguityAtImportState)},
             {"majorDateDifferenceType", qint64(pic.majorDateDifferenceType)}}};
}

void ItemJson::insertDaylightSaving(QJsonObject &object, const MySinglePic &pic)
{
    for (const auto &[key, value] : daylightSaving(pic))
        object.insert(QLatin1String(key), value);
}

} // namespace orv

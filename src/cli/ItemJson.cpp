#include "cli/ItemJson.h"

#include "core/MySinglePic.h"

#include <QJsonArray>

#include <cmath>

namespace orv {

namespace {

// Stamps are text; the trailing NUL is the file's, not the value's.
QJsonValue stampText(const QByteArray &data)
{
    const qsizetype nul = data.indexOf('\0');
    return QString::fromLatin1(nul < 0 ? data : data.left(nul));
}

QJsonValue hex(const QByteArray &data) { return QString::fromLatin1(data.toHex()); }

QJsonValue number(const std::optional<double> &value)
{
    return value ? QJsonValue(*value) : QJsonValue(QJsonValue::Null);
}

void addStamp(QJsonObject &out, const char *key, const std::optional<StampRecord> &stamp)
{
    if (!stamp)
        return;
    out.insert(QLatin1String(key) + QLatin1String("Offset"), qint64(stamp->dateOffset));
    out.insert(QLatin1String(key) + QLatin1String("Data"), stampText(stamp->dateData));
}

void addOffsetTag(QJsonObject &out, const char *key, const std::optional<OffsetTagRecord> &tag)
{
    if (!tag)
        return;
    out.insert(QLatin1String(key) + QLatin1String("Offset"), qint64(tag->offsetOffset));
    out.insert(QLatin1String(key) + QLatin1String("Data"), stampText(tag->offsetData));
}

// Movie stamps: text ones as text, the movie header's binary times in hex.
void addMovieStamp(QJsonObject &out, const char *key, const BoxedOptional<MovieStampRecord> &stamp,
                   bool isText)
{
    if (!stamp)
        return;
    out.insert(QLatin1String(key) + QLatin1String("Offset"), qint64(stamp->dateOffset));
    out.insert(QLatin1String(key) + QLatin1String("Data"), isText ? stampText(stamp->dateData) : hex(stamp->dateData));
}

QJsonArray qtLocations(const std::vector<QtLocationRecord> &records)
{
    QJsonArray array;
    for (const QtLocationRecord &r : records) {
        QJsonObject o{{QStringLiteral("type"), r.type},
                      {QStringLiteral("offset"), qint64(r.text.dateOffset)},
                      {QStringLiteral("data"), stampText(r.text.dateData)},
                      {QStringLiteral("int1"), r.int1},
                      {QStringLiteral("frac1"), r.frac1},
                      {QStringLiteral("int2"), r.int2},
                      {QStringLiteral("frac2"), r.frac2},
                      {QStringLiteral("edit"), r.edit}};
        if (r.hAccuracy.dateOffset) {
            o.insert(QStringLiteral("HAccuracyOffset"), qint64(r.hAccuracy.dateOffset));
            o.insert(QStringLiteral("HAccuracyData"), stampText(r.hAccuracy.dateData));
        }
        array.append(o);
    }
    return array;
}

QJsonObject gpsLocation(const GpsLocationRecord &r)
{
    QJsonObject o;
    auto part = [&](const char *name, const QByteArray &data, quint32 offset, bool isText) {
        if (offset == 0)
            return;
        o.insert(QLatin1String(name) + QLatin1String("_Data"), isText ? stampText(data) : hex(data));
        o.insert(QLatin1String(name) + QLatin1String("_Offset"), qint64(offset));
    };
    part("latitudeRef", r.latitudeRef_Data, r.latitudeRef_Offset, true);
    part("latitude", r.latitude_Data, r.latitude_Offset, false);
    part("longitudeRef", r.longitudeRef_Data, r.longitudeRef_Offset, true);
    part("longitude", r.longitude_Data, r.longitude_Offset, false);
    part("altitudeRef", r.altitudeRef_Data, r.altitudeRef_Offset, false);
    part("altitude", r.altitude_Data, r.altitude_Offset, false);
    part("hPositioningError", r.hPositioningError_Data, r.hPositioningError_Offset, false);
    o.insert(QStringLiteral("needsConv"), r.needsConv);
    return o;
}

QJsonObject attributes(const PicAttributes &a)
{
    QJsonObject o;
    addStamp(o, "ExifDateTimeOriginal", a.ExifDateTimeOriginal);
    addStamp(o, "ExifDateTimeDigitized", a.ExifDateTimeDigitized);
    addStamp(o, "TIFFDateTime", a.TIFFDateTime);
    addOffsetTag(o, "ExifOffsetTimeOriginal", a.ExifOffsetTimeOriginal);
    addOffsetTag(o, "ExifOffsetTimeDigitized", a.ExifOffsetTimeDigitized);
    addOffsetTag(o, "TIFFOffsetTime", a.TIFFOffsetTime);
    if (a.GPSTimeStamp)
        o.insert(QStringLiteral("GPSTimeStamp"),
                 QJsonObject{{QStringLiteral("dateData"), hex(a.GPSTimeStamp->dateData)},
                             {QStringLiteral("dateOffset"), qint64(a.GPSTimeStamp->dateOffset)},
                             {QStringLiteral("needsConv"), a.GPSTimeStamp->needsConv}});
    if (a.GPSDateStamp)
        o.insert(QStringLiteral("GPSDateStamp"),
                 QJsonObject{{QStringLiteral("dateData"), stampText(a.GPSDateStamp->dateData)},
                             {QStringLiteral("dateOffset"), qint64(a.GPSDateStamp->dateOffset)}});
    if (a.GPSLocation)
        o.insert(QStringLiteral("GPSLocation"), gpsLocation(*a.GPSLocation));
    if (a.GPSLocationXmpHPositioningError)
        o.insert(QStringLiteral("GPSLocationXmp"),
                 QJsonObject{{QStringLiteral("hPositioningError"), *a.GPSLocationXmpHPositioningError}});
    if (a.xmpDateInfos) {
        QJsonObject infos;
        for (const auto &[key, record] : *a.xmpDateInfos)
            infos.insert(key, QJsonObject{{QStringLiteral("data"), stampText(record.data)},
                                          {QStringLiteral("offset"), qint64(record.offset)},
                                          {QStringLiteral("type"), record.type},
                                          {QStringLiteral("subtype"), record.subtype}});
        o.insert(QStringLiteral("xmpDateInfos"), infos);
    }
    if (a.xmpHeaderStartOffset)
        o.insert(QStringLiteral("xmpHeaderStartOffset"), qint64(a.xmpHeaderStartOffset));
    if (a.cr3XmpOffset)
        o.insert(QStringLiteral("cr3XmpOffset"), qint64(a.cr3XmpOffset));
    addMovieStamp(o, "QTMetaDate", a.QTMetaDate, true);
    addMovieStamp(o, "QTMvhdCreaDate", a.QTMvhdCreaDate, false);
    addMovieStamp(o, "QTMvhdModDate", a.QTMvhdModDate, false);
    addMovieStamp(o, "riffCreaDate", a.riffCreaDate, true);
    if (!a.qtLocations.empty())
        o.insert(QStringLiteral("qtLocations"), qtLocations(a.qtLocations));
    if (a.NSFileCreationDate)
        o.insert(QStringLiteral("NSFileCreationDate"), ItemJson::date(a.NSFileCreationDate));
    if (a.NSFileModificationDate)
        o.insert(QStringLiteral("NSFileModificationDate"), ItemJson::date(a.NSFileModificationDate));
    if (a.NSFileSize)
        o.insert(QStringLiteral("NSFileSize"), *a.NSFileSize);
    return o;
}

} // namespace

QString ItemJson::isoUtc(Instant instant)
{
    const Instant::Civil c = instant.toUtcCivil();
    QString text = QString::asprintf("%04d-%02d-%02dT%02d:%02d:%02d", c.year, c.month, c.day, c.hour,
                                     c.minute, c.second);
    // Milliseconds are the finest a stamp carries; a float's noise below them is not a fraction.
    const long millis = std::lround(c.fraction * 1000.0);
    if (millis > 0 && millis < 1000) {
        QString fraction = QString::asprintf(".%03ld", millis);
        while (fraction.endsWith(QLatin1Char('0')))
            fraction.chop(1);
        text += fraction;
    }
    return text + QLatin1Char('Z');
}

QJsonValue ItemJson::date(const OptionalDate &date)
{
    if (!date)
        return QJsonValue(QJsonValue::Null);
    if (date->isDistantPast())
        return QStringLiteral("distantPast");
    if (date->isDistantFuture())
        return QStringLiteral("distantFuture");
    return isoUtc(*date);
}

QJsonObject ItemJson::forPic(const MySinglePic &pic)
{
    QJsonObject item{
        {QStringLiteral("path"), pic.spPath()},
        {QStringLiteral("spName"), pic.spName},
        {QStringLiteral("fileFormatType"), qint64(pic.fileFormatType)},
        {QStringLiteral("spType"), pic.spType},
        {QStringLiteral("spDateTimeOriginal"), date(pic.spDateTimeOriginal)},
        {QStringLiteral("exifDateTimeOriginalOLD"), date(pic.exifDateTimeOriginalOLD)},
        {QStringLiteral("exifDateTimeDigitizedOLD"), date(pic.exifDateTimeDigitizedOLD)},
        {QStringLiteral("tiffDateTimeOLD"), date(pic.tiffDateTimeOLD)},
        {QStringLiteral("fileCreationDateOLD"), date(pic.fileCreationDateOLD)},
        {QStringLiteral("fileModificationDateOLD"), date(pic.fileModificationDateOLD)},
        {QStringLiteral("spGpsUTCDate"), date(pic.spGpsUTCDate)},
        {QStringLiteral("gpsLat"), number(pic.gpsLat)},
        {QStringLiteral("gpsLong"), number(pic.gpsLong)},
        {QStringLiteral("pivMakeModel"), pic.pivMakeModel},
        {QStringLiteral("pivImageWidth"), pic.pivImageWidth},
        {QStringLiteral("pivImageHeight"), pic.pivImageHeight},
        {QStringLiteral("isCreaXmp"), pic.isCreaXmp},
        {QStringLiteral("isDigiXmp"), pic.isDigiXmp},
        {QStringLiteral("isModiXmp"), pic.isModiXmp},
        {QStringLiteral("singlePicAttributes"), attributes(pic.singlePicAttributes)},
    };
    // A Live Photo's still and movie name the same content identifier.
    if (!pic.UUID.isEmpty())
        item.insert(QStringLiteral("UUID"), pic.UUID);
    if (pic.isMovie()) {
        item.insert(QStringLiteral("movieType"), pic.movieType);
        item.insert(QStringLiteral("movDuration"), pic.movDuration);
    }
    insertDaylightSaving(item, pic);
    // A group is one entry: its master names the files that go with it and carries its dependent.
    if (!pic.spSidecarExtensions.isEmpty())
        item.insert(QStringLiteral("spSidecarExtensions"), QJsonArray::fromStringList(pic.spSidecarExtensions));
    if (pic.bundleDependentImage)
        item.insert(QStringLiteral("dependent"), forPic(*pic.bundleDependentImage));
    return item;
}

void ItemJson::insertDaylightSaving(QJsonObject &object, const MySinglePic &pic)
{
    object.insert(QStringLiteral("dstDivergenceState"), qint64(pic.dstDivergenceState));
    object.insert(QStringLiteral("dstAmbiguityAtImportState"), qint64(pic.dstAmbiguityAtImportState));
    object.insert(QStringLiteral("majorDateDifferenceType"), qint64(pic.majorDateDifferenceType));
}

} // namespace orv

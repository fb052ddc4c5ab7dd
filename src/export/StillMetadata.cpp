#include "export/StillMetadata.h"

#include "core/FolderFacts.h"
#include "core/MySinglePic.h"
#include "formats/ByteSource.h"
#include "formats/QuickTimeLocator.h"
#include "time/DateStampCodec.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <cmath>

namespace orv {

namespace {

// The offset a metadata creation date names, "2021-04-10T11:43:59+0100" or "...+01:00"; none
// for "Z" or a text without one.
std::optional<TimeZone> zoneOfQtCreationDate(QByteArrayView data)
{
    static const QRegularExpression offset(QStringLiteral("T\\d\\d:\\d\\d:\\d\\d([+-])(\\d\\d):?(\\d\\d)"));
    const QRegularExpressionMatch m = offset.match(QString::fromLatin1(DateStampCodec::unterminatedStringDataFromData(data)));
    if (!m.hasMatch())
        return std::nullopt;
    const int seconds = m.captured(2).toInt() * 3600 + m.captured(3).toInt() * 60;
    return TimeZone::fromOffsetSeconds(m.captured(1) == QLatin1String("-") ? -seconds : seconds);
}

// "yyyy:MM:dd HH:mm:ss" in UTC.
QString utcStamp(Instant date)
{
    return QString::fromLatin1(DateStampCodec::unterminatedStringDataFromData(
        DateStampCodec::exifDataFromDate(date, TimeZone::utc())));
}

QString number(double value)
{
    return QString::number(value, 'f', 8);
}

} // namespace

std::optional<double> altitudeFromIso6709(QByteArrayView text)
{
    static const QRegularExpression parts(QStringLiteral("^[+-][\\d.]+[+-][\\d.]+([+-][\\d.]+)"));
    const QRegularExpressionMatch m = parts.match(QString::fromLatin1(text));
    bool isNumber = false;
    const double altitude = m.captured(1).toDouble(&isNumber);
    return m.hasMatch() && isNumber ? std::optional<double>(altitude) : std::nullopt;
}

std::optional<StillMetadata> StillMetadata::forPosition(const MySinglePic &movie, double position)
{
    const OptionalDate movieDate = movie.spDateTimeModified();
    if (!movieDate || movieDate->isSentinel())
        return std::nullopt;
    StillMetadata meta;
    meta.date = movieDate->addingSeconds(position);

    const FileByteSource source(movie.spPath());
    const bool quickTime = QFileInfo(movie.spName).suffix().compare(QLatin1String("mov"), Qt::CaseInsensitive) == 0;
    const MovieHeaderData header = quicktimeHeaderDataForMovie(source, quickTime);
    meta.make = QString::fromUtf8(header.make).trimmed();
    meta.model = QString::fromUtf8(header.model).trimmed();

    const FolderFacts *folder = movie.spSingleFolder;
    if (folder && folder->targetZoneForSave)
        meta.zone = folder->targetZoneForSave(movie);
    if (!meta.zone && header.QtCreationdate)
        meta.zone = zoneOfQtCreationDate(header.QtCreationdate->data);

    if (movie.gpsLat && movie.gpsLong) {
        meta.latitude = movie.gpsLat;
        meta.longitude = movie.gpsLong;
        // A place the user gave brings its own height; the movie's own place its text's.
        if (movie.hasAddedLocation != 0) {
            if (movie.newLocationAltitude != MySinglePic::notSetAccuracy)
                meta.altitude = movie.newLocationAltitude;
        } else if (header.locationISO6709) {
            meta.altitude = altitudeFromIso6709(header.locationISO6709->data);
        }
    }
    return meta;
}

StillMetadata StillMetadata::atPosition(double seconds) const
{
    StillMetadata later = *this;
    later.date = date.addingSeconds(seconds);
    return later;
}

QString StillMetadata::exifStamp() const
{
    const TimeZone stampZone = zone.value_or(TimeZone::systemZone());
    return QString::fromLatin1(DateStampCodec::unterminatedStringDataFromData(
        DateStampCodec::exifWithOffsetDatasFromDate(date, stampZone).stamp));
}

QString StillMetadata::offsetText() const
{
    if (!zone)
        return {};
    return QString::fromLatin1(DateStampCodec::unterminatedStringDataFromData(
        DateStampCodec::exifWithOffsetDatasFromDate(date, *zone).offset));
}

QString StillMetadata::milliseconds() const
{
    const double fraction = date.secondsSinceEpoch() - date.wholeSeconds();
    // Rounded: a date of some 1.6e9 seconds holds its fraction only to a few tenths of a
    // microsecond, so 0.010 may come back as 0.0099998.
    return QStringLiteral("%1").arg(std::min(999, int(std::lround(fraction * 1000.0))), 3, 10, QLatin1Char('0'));
}

LivePhotoMovieTags StillMetadata::livePhotoMovieTags(const QString &contentIdentifier) const
{
    LivePhotoMovieTags tags;
    tags.contentIdentifier = contentIdentifier;
    tags.make = make;
    tags.model = model;
    if (latitude && longitude) {
        tags.location = QString::asprintf("%+08.4f%+09.4f", *latitude, *longitude);
        if (altitude)
            tags.location += QString::asprintf("%+08.3f", *altitude);
        tags.location += QLatin1Char('/');
    }
    // A movie's metadata date always names its offset: the computer's where the zone is unknown.
    tags.creationDate =
        QString::fromLatin1(DateStampCodec::mdtaDataOfLength(24, date, zone.value_or(TimeZone::systemZone())));
    const QString utc = utcStamp(date);
    tags.creationTime = utc.left(10).replace(QLatin1Char(':'), QLatin1Char('-')) + QLatin1Char('T') + utc.mid(11)
                        + QStringLiteral(".000000Z");
    return tags;
}

QStringList StillMetadata::exiftoolArguments() const
{
    const QString stamp = exifStamp();
    QStringList lines{QStringLiteral("-EXIF:DateTimeOriginal=") + stamp, QStringLiteral("-EXIF:CreateDate=") + stamp,
                      QStringLiteral("-EXIF:ModifyDate=") + stamp,
                      QStringLiteral("-EXIF:SubSecTimeOriginal=") + milliseconds(),
                      QStringLiteral("-EXIF:SubSecTimeDigitized=") + milliseconds()};
    const QString offset = offsetText();
    if (!offset.isEmpty())
        lines << QStringLiteral("-EXIF:OffsetTimeOriginal=") + offset
              << QStringLiteral("-EXIF:OffsetTimeDigitized=") + offset << QStringLiteral("-EXIF:OffsetTime=") + offset;
    if (latitude && longitude) {
        const QString utc = utcStamp(date);
        lines << QStringLiteral("-EXIF:GPSLatitude=") + number(std::abs(*latitude))
              << QStringLiteral("-EXIF:GPSLatitudeRef=") + (*latitude < 0 ? QLatin1Char('S') : QLatin1Char('N'))
              << QStringLiteral("-EXIF:GPSLongitude=") + number(std::abs(*longitude))
              << QStringLiteral("-EXIF:GPSLongitudeRef=") + (*longitude < 0 ? QLatin1Char('W') : QLatin1Char('E'))
              << QStringLiteral("-EXIF:GPSDateStamp=") + utc.left(10)
              << QStringLiteral("-EXIF:GPSTimeStamp=") + utc.mid(11);
        if (altitude)
            lines << QStringLiteral("-EXIF:GPSAltitude=") + number(std::abs(*altitude))
                  // The tool reads the ref from the altitude's sign.
                  << QStringLiteral("-EXIF:GPSAltitudeRef=") + number(*altitude);
    }
    if (!make.isEmpty())
        lines << QStringLiteral("-EXIF:Make=") + make;
    if (!model.isEmpty())
        lines << QStringLiteral("-EXIF:Model=") + model;
    return lines;
}

} // namespace orv

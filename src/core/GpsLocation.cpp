#include "core/GpsLocation.h"

#include <QtEndian>

#include <cmath>

namespace orv {

double GpsLocation::degreesFromRationals(const QByteArray &data, bool motorola)
{
    if (data.size() < 24)
        return 0.0;
    auto part = [&](int index) {
        const uchar *p = reinterpret_cast<const uchar *>(data.constData()) + index * 8;
        const quint32 numerator = motorola ? qFromBigEndian<quint32>(p) : qFromLittleEndian<quint32>(p);
        const quint32 denominator = motorola ? qFromBigEndian<quint32>(p + 4) : qFromLittleEndian<quint32>(p + 4);
        return double(numerator) / double(denominator == 0 ? 1 : denominator);
    };
    return part(0) + part(1) / 60.0 + part(2) / 3600.0;
}

std::optional<Coordinate> GpsLocation::fromDegrees(double latitude, const QString &latitudeRef,
                                                   double longitude, const QString &longitudeRef)
{
    if (latitude == 0.0 && longitude == 0.0)
        return std::nullopt;
    if (latitude > 90.0 || latitude < -90.0 || longitude > 180.0 || longitude < -180.0)
        return std::nullopt;
    Coordinate c{latitude, longitude};
    if (latitudeRef != QLatin1String("N"))
        c.latitude = -c.latitude;
    if (longitudeRef != QLatin1String("E"))
        c.longitude = -c.longitude;
    return c;
}

std::optional<Coordinate> GpsLocation::setLocationFromData(const GpsLocationRecord &record)
{
    auto ref = [](const QByteArray &bytes) {
        return QString::fromLatin1(bytes.left(bytes.indexOf('\0') < 0 ? bytes.size() : bytes.indexOf('\0')));
    };
    return fromDegrees(degreesFromRationals(record.latitude_Data, record.needsConv),
                       ref(record.latitudeRef_Data),
                       degreesFromRationals(record.longitude_Data, record.needsConv),
                       ref(record.longitudeRef_Data));
}

namespace {

// Degrees and the hemisphere letter of one XMP coordinate; the letter of a decimal comes from
// its ref.
std::optional<std::pair<double, QString>> xmpDegrees(const std::optional<XmpTextValue> &value, int type,
                                                     const std::optional<XmpTextValue> &ref)
{
    if (!value)
        return std::nullopt;
    if (type == 2) {
        bool ok = false;
        const double degrees = value->text.toDouble(&ok);
        if (!ok || !ref)
            return std::nullopt;
        return std::pair{std::abs(degrees), QString::fromLatin1(ref->text)};
    }
    const QList<QByteArray> parts = value->text.chopped(1).split(',');
    double degrees = 0.0, scale = 1.0;
    for (const QByteArray &part : parts) {
        bool ok = false;
        degrees += part.toDouble(&ok) / scale;
        if (!ok)
            return std::nullopt;
        scale *= 60.0;
    }
    return std::pair{degrees, QString(QLatin1Char(value->text.back()))};
}

} // namespace

std::optional<Coordinate> GpsLocation::fromXmp(const XmpSidecarMetadata &xmp)
{
    const auto latitude = xmpDegrees(xmp.gpsLat, xmp.gpsLatType, xmp.gpsLatRef);
    const auto longitude = xmpDegrees(xmp.gpsLon, xmp.gpsLonType, xmp.gpsLonRef);
    if (!latitude || !longitude)
        return std::nullopt;
    return fromDegrees(latitude->first, latitude->second, longitude->first, longitude->second);
}

std::optional<double> GpsLocation::xmpRational(const QByteArray &text)
{
    const QList<QByteArray> parts = text.split('/');
    bool ok = false;
    const double numerator = parts.front().toDouble(&ok);
    if (!ok)
        return std::nullopt;
    const double denominator = parts.size() == 2 ? parts.back().toDouble(&ok) : 1.0;
    if (!ok || denominator == 0.0)
        return std::nullopt;
    return numerator / denominator;
}

std::optional<double> GpsLocation::altitudeFromXmp(const XmpSidecarMetadata &xmp)
{
    const std::optional<double> metres = xmp.gpsAltitude ? xmpRational(xmp.gpsAltitude->text) : std::nullopt;
    if (!metres)
        return std::nullopt;
    return xmp.gpsAltitudeRef && xmp.gpsAltitudeRef->text == "1" ? -*metres : *metres;
}

} // namespace orv

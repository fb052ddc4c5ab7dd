#include "core/GpsLocation.h"

#include <QtEndian>

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

} // namespace orv

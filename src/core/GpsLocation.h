#pragma once

#include "formats/PicAttributes.h"
#include "formats/XmpLocator.h"

#include <optional>

namespace orv {

struct Coordinate
{
    double latitude = 0.0;
    double longitude = 0.0;
    bool operator==(const Coordinate &) const = default;
};

// Turns the GPS tags' bytes into a signed coordinate. Both 0.0 is no location (a camera without
// a fix writes zeros), and values outside the globe are rejected.
class GpsLocation
{
public:
    static std::optional<Coordinate> setLocationFromData(const GpsLocationRecord &record);
    static std::optional<Coordinate> fromDegrees(double latitude, const QString &latitudeRef,
                                                 double longitude, const QString &longitudeRef);
    // Degrees, minutes and seconds as three unsigned rationals; a zero denominator counts as 1.
    static double degreesFromRationals(const QByteArray &data, bool motorola);

    // An XMP packet's place: "DD,MM.mmN" or "DD,MM,SSN", or a decimal signed by its ref.
    static std::optional<Coordinate> fromXmp(const XmpSidecarMetadata &xmp);
    // Its altitude in metres, negative below sea level.
    static std::optional<double> altitudeFromXmp(const XmpSidecarMetadata &xmp);
    // A rational "n/d" or a whole number; nothing for a zero denominator.
    static std::optional<double> xmpRational(const QByteArray &text);
};

} // namespace orv

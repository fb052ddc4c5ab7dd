#include "places/LocationAlignment.h"

#include "core/MySinglePic.h"

namespace orv {

QList<GeoCoordinate> LocationAlignment::innerPlaces(const QList<MySinglePic *> &sortedPics, bool byTime)
{
    if (sortedPics.size() < 3)
        return {};
    const MySinglePic &first = *sortedPics.first();
    const MySinglePic &last = *sortedPics.last();
    if (!first.gpsLat || !first.gpsLong || !last.gpsLat || !last.gpsLong)
        return {};
    const GeoCoordinate from{*first.gpsLat, *first.gpsLong}, to{*last.gpsLat, *last.gpsLong};
    const OptionalDate start = first.spDateTimeModified(), end = last.spDateTimeModified();
    const double span = start && end ? end->secondsSince(*start) : 0.0;
    if (byTime && span <= 0.0)
        return {};
    QList<GeoCoordinate> places;
    const qsizetype inner = sortedPics.size() - 2;
    for (qsizetype i = 1; i <= inner; ++i) {
        double fraction = double(i) / double(inner + 1);
        if (byTime) {
            const OptionalDate date = sortedPics[i]->spDateTimeModified();
            if (!date)
                return {};
            fraction = date->secondsSince(*start) / span;
        }
        places.append(MyGpxTrack::coordinateBetweenCoordinate(from, to, fraction));
    }
    return places;
}

} // namespace orv

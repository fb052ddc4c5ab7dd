#pragma once

#include <QtGlobal>

#include <optional>

namespace orv {

class MySinglePic;

// Every location field of an item as one value: what a track keeps to put back when it lets go
// of the item, and what an undo step restores.
struct PicLocation
{
    std::optional<double> gpsLat, gpsLong;
    std::optional<double> gpsLatOld, gpsLongOld;
    double newLocationHAccuracy = 0.0;
    double newLocationAltitude = 0.0;
    qint8 hasAddedLocation = 0;

    static PicLocation of(const MySinglePic &pic);
    void applyTo(MySinglePic &pic) const;
    bool operator==(const PicLocation &) const = default;
};

} // namespace orv

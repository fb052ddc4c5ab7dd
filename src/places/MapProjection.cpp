#include "places/MapProjection.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace orv::MapProjection {

double worldSize(double zoom)
{
    return tileSize * std::exp2(zoom);
}

double wrappedLongitude(double longitude)
{
    if (longitude >= -180.0 && longitude <= 180.0)
        return longitude;
    const double wrapped = std::fmod(longitude + 180.0, 360.0);
    return (wrapped < 0 ? wrapped + 360.0 : wrapped) - 180.0;
}

QPointF worldPixel(GeoCoordinate coordinate, double zoom)
{
    const double size = worldSize(zoom);
    const double latitude = std::clamp(coordinate.latitude, -maxLatitude, maxLatitude) * std::numbers::pi / 180.0;
    const double x = (wrappedLongitude(coordinate.longitude) + 180.0) / 360.0 * size;
    const double y = (1.0 - std::log(std::tan(latitude) + 1.0 / std::cos(latitude)) / std::numbers::pi) / 2.0 * size;
    return {x, std::clamp(y, 0.0, size)};
}

GeoCoordinate coordinate(QPointF worldPixel, double zoom)
{
    const double size = worldSize(zoom);
    const double y = std::clamp(worldPixel.y(), 0.0, size);
    const double n = std::numbers::pi * (1.0 - 2.0 * y / size);
    return {std::atan(std::sinh(n)) * 180.0 / std::numbers::pi, wrappedLongitude(worldPixel.x() / size * 360.0 - 180.0)};
}

int wrappedColumn(int column, int zoom)
{
    const int count = 1 << zoom;
    return ((column % count) + count) % count;
}

QPoint tile(GeoCoordinate coordinate, int zoom)
{
    const QPointF pixel = worldPixel(coordinate, zoom);
    const int last = (1 << zoom) - 1;
    // The east edge (180 degrees) and the south edge belong to the last tile.
    return {std::min(int(std::floor(pixel.x() / tileSize)), last), std::min(int(std::floor(pixel.y() / tileSize)), last)};
}

} // namespace orv::MapProjection

#pragma once

#include "places/MyGpxTrack.h"

#include <QPoint>
#include <QPointF>

namespace orv {

// Web Mercator as tile servers cut it: at zoom z the world is a square of 256 * 2^z pixels,
// x growing east from the 180th meridian, y growing south from the latitude where the square
// ends (about 85.0511 degrees, beyond which the projection runs to infinity). Pure arithmetic.
namespace MapProjection {

inline constexpr int tileSize = 256;
inline constexpr double maxLatitude = 85.05112877980659;
inline constexpr int minZoom = 0;
inline constexpr int maxZoom = 19;

double worldSize(double zoom);
// The coordinate's pixel in the world square; latitudes beyond the square clamp to its edge and
// longitudes outside -180..180 are taken round the globe.
QPointF worldPixel(GeoCoordinate coordinate, double zoom);
// The coordinate of a world pixel; y clamps to the square, x is taken round the globe.
GeoCoordinate coordinate(QPointF worldPixel, double zoom);
// The tile holding the coordinate at an integer zoom.
QPoint tile(GeoCoordinate coordinate, int zoom);
// A tile column taken round the globe into 0 .. 2^zoom - 1.
int wrappedColumn(int column, int zoom);
// A longitude into -180..180 (180 stays 180).
double wrappedLongitude(double longitude);

} // namespace MapProjection

} // namespace orv

#pragma once

#include <QImage>
#include <QString>

namespace orv {

// The world with no network: land, sea and coastlines drawn from the zone map of Debian's
// libtimezonemap-data (an equirectangular raster, 2048 by 1024, whose sea is one colour),
// reprojected once into a Web Mercator square that the map scales like a tile.
namespace MapBaseLayer {

QString systemSource();
// A size by size Web Mercator image of the world (the whole square of MapProjection), or a null
// image when the source cannot be read.
QImage mercatorWorld(const QString &source = systemSource(), int size = 2048);

inline constexpr QRgb seaColour = 0xffaad3df;
inline constexpr QRgb landColour = 0xfff2efe9;
inline constexpr QRgb coastColour = 0xff7a8a90;

} // namespace MapBaseLayer

} // namespace orv

#include "places/MapBaseLayer.h"

#include "places/MapProjection.h"

#include <QHash>
#include <QImageReader>

#include <algorithm>
#include <cmath>

namespace orv::MapBaseLayer {

QString systemSource()
{
    return QStringLiteral("/usr/share/libtimezonemap/ui/olsen_map.png");
}

QImage mercatorWorld(const QString &source, int size)
{
    QImageReader reader(source);
    const QImage zones = reader.read().convertToFormat(QImage::Format_RGB32);
    if (zones.isNull() || size <= 0)
        return {};
    // The sea is the colour most of the map's equator row has.
    QHash<QRgb, int> counts;
    const auto *equator = reinterpret_cast<const QRgb *>(zones.constScanLine(zones.height() / 2));
    for (int x = 0; x < zones.width(); ++x)
        ++counts[equator[x]];
    const QRgb sea = std::max_element(counts.cbegin(), counts.cend()).key();

    // Land as a mask in the square's pixels: each row takes the source row of its latitude.
    std::vector<quint8> land(std::size_t(size) * std::size_t(size));
    const double zoom = std::log2(size / double(MapProjection::tileSize));
    for (int y = 0; y < size; ++y) {
        const double latitude = MapProjection::coordinate({0.0, y + 0.5}, zoom).latitude;
        const int sourceY = std::clamp(int((90.0 - latitude) / 180.0 * zones.height()), 0, zones.height() - 1);
        const auto *row = reinterpret_cast<const QRgb *>(zones.constScanLine(sourceY));
        for (int x = 0; x < size; ++x)
            land[std::size_t(y) * std::size_t(size) + std::size_t(x)] = row[std::size_t(x) * std::size_t(zones.width()) / std::size_t(size)] != sea;
    }
    QImage world(size, size, QImage::Format_RGB32);
    const auto isLand = [&](int x, int y) {
        x = (x + size) % size; // the world goes on east and west
        y = std::clamp(y, 0, size - 1);
        return land[std::size_t(y) * std::size_t(size) + std::size_t(x)] != 0;
    };
    for (int y = 0; y < size; ++y) {
        auto *out = reinterpret_cast<QRgb *>(world.scanLine(y));
        for (int x = 0; x < size; ++x) {
            if (!isLand(x, y))
                out[x] = seaColour;
            else
                out[x] = isLand(x - 1, y) && isLand(x + 1, y) && isLand(x, y - 1) && isLand(x, y + 1) ? landColour : coastColour;
        }
    }
    return world;
}

} // namespace orv::MapBaseLayer

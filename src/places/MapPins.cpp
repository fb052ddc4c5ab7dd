#include "places/MapPins.h"

#include "places/MapProjection.h"

#include <QHash>

#include <cmath>

namespace orv {

void MapPinClusters::setPins(QList<GeoCoordinate> pins, QList<bool> selected, QList<bool> dimmed)
{
    m_pins = std::move(pins);
    m_selected = std::move(selected);
    m_dimmed = std::move(dimmed);
    m_levels.clear();
}

const MapPinClusters::Level &MapPinClusters::level(int zoom) const
{
    if (const auto found = m_levels.find(zoom); found != m_levels.end())
        return found->second;
    Level level;
    std::vector<int> pinCluster(std::size_t(m_pins.size()));
    std::vector<QPointF> sums;
    QHash<qint64, int> cells;
    for (qsizetype i = 0; i < m_pins.size(); ++i) {
        const QPointF pixel = MapProjection::worldPixel(m_pins[i], zoom);
        const qint64 cell = (qint64(std::floor(pixel.x() / cellSize)) << 32) | qint64(std::floor(pixel.y() / cellSize));
        auto slot = cells.constFind(cell);
        if (slot == cells.cend()) {
            slot = cells.insert(cell, int(level.clusters.size()));
            level.clusters.push_back({});
            sums.emplace_back();
        }
        const int index = *slot;
        pinCluster[std::size_t(i)] = index;
        sums[std::size_t(index)] += pixel;
        ++level.clusters[std::size_t(index)].count;
        if (m_selected.value(i))
            ++level.clusters[std::size_t(index)].selectedCount;
        if (m_dimmed.value(i))
            ++level.clusters[std::size_t(index)].dimmedCount;
    }
    // Members grouped by cluster, in pin order within each.
    int offset = 0;
    for (std::size_t c = 0; c < level.clusters.size(); ++c) {
        MapCluster &cluster = level.clusters[c];
        cluster.worldPixel = sums[c] / cluster.count;
        cluster.firstMember = offset;
        offset += cluster.count;
    }
    level.members.resize(std::size_t(m_pins.size()));
    std::vector<int> filled(level.clusters.size(), 0);
    for (std::size_t i = 0; i < pinCluster.size(); ++i) {
        const MapCluster &cluster = level.clusters[std::size_t(pinCluster[i])];
        level.members[std::size_t(cluster.firstMember + filled[std::size_t(pinCluster[i])]++)] = int(i);
    }
    level.clusterOfPin = std::move(pinCluster);
    return m_levels.emplace(zoom, std::move(level)).first->second;
}

const std::vector<MapCluster> &MapPinClusters::clustersAt(int zoom) const
{
    return level(zoom).clusters;
}

QList<int> MapPinClusters::membersOf(int zoom, const MapCluster &cluster) const
{
    const std::vector<int> &members = level(zoom).members;
    return QList<int>(members.begin() + cluster.firstMember, members.begin() + cluster.firstMember + cluster.count);
}

int MapPinClusters::clusterAt(int zoom, QPointF worldPixel, double radius) const
{
    const double size = MapProjection::worldSize(zoom);
    const double x = std::fmod(std::fmod(worldPixel.x(), size) + size, size);
    int found = -1;
    double foundDistance = radius * radius;
    const std::vector<MapCluster> &clusters = clustersAt(zoom);
    for (std::size_t i = 0; i < clusters.size(); ++i) {
        for (const double shift : {-size, 0.0, size}) {
            const double dx = clusters[i].worldPixel.x() + shift - x;
            const double dy = clusters[i].worldPixel.y() - worldPixel.y();
            const double distance = dx * dx + dy * dy;
            if (distance <= foundDistance) {
                found = int(i);
                foundDistance = distance;
            }
        }
    }
    return found;
}

MapTrackLine::MapTrackLine(const QList<QList<GeoCoordinate>> &segments)
{
    for (const QList<GeoCoordinate> &segment : segments) {
        QList<QPointF> unit;
        unit.reserve(segment.size());
        for (const GeoCoordinate &point : segment)
            unit.append(MapProjection::worldPixel(point, 0));
        m_unitSegments.append(unit);
    }
}

const QList<QList<QPointF>> &MapTrackLine::segmentsAt(int zoom) const
{
    if (const auto found = m_levels.find(zoom); found != m_levels.end())
        return found->second;
    constexpr double minStep = 1.5;
    const double scale = std::exp2(zoom);
    QList<QList<QPointF>> segments;
    for (const QList<QPointF> &unit : m_unitSegments) {
        QList<QPointF> kept;
        for (qsizetype i = 0; i < unit.size(); ++i) {
            const QPointF pixel = unit[i] * scale;
            const bool last = i + 1 == unit.size();
            if (kept.isEmpty() || last || std::hypot(pixel.x() - kept.last().x(), pixel.y() - kept.last().y()) >= minStep)
                kept.append(pixel);
        }
        segments.append(kept);
    }
    return m_levels.emplace(zoom, std::move(segments)).first->second;
}

} // namespace orv

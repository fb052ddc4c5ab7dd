#pragma once

#include "places/MyGpxTrack.h"

#include <QList>
#include <QPointF>

#include <map>
#include <vector>

namespace orv {

// Pins that stand near one another on screen at a zoom, drawn as one: the pins of each square
// cell of the world (cellSize pixels at that zoom) form a cluster at their mean pixel. Computed
// once per zoom and pin set, so a frame only culls what it draws.
struct MapCluster
{
    QPointF worldPixel;  // at the zoom it was made for
    int firstMember = 0; // into membersOf()
    int count = 0;
    int selectedCount = 0;
    int dimmedCount = 0;
};

class MapPinClusters
{
public:
    static constexpr double cellSize = 48.0;

    // selected, when given, says for each pin whether it is among the selected items; dimmed,
    // whether it stands outside the map's filter.
    void setPins(QList<GeoCoordinate> pins, QList<bool> selected = {}, QList<bool> dimmed = {});
    const QList<GeoCoordinate> &pins() const { return m_pins; }

    const std::vector<MapCluster> &clustersAt(int zoom) const;
    // The pins of a cluster, as indexes into pins().
    QList<int> membersOf(int zoom, const MapCluster &cluster) const;
    // The cluster drawn under a world pixel (its disc of the given radius holds the point), the
    // nearest one when discs overlap; -1 when none. The world repeats east and west.
    int clusterAt(int zoom, QPointF worldPixel, double radius) const;
    // The cluster that holds a pin, as an index into clustersAt(zoom).
    int clusterOf(int zoom, int pin) const { return level(zoom).clusterOfPin[std::size_t(pin)]; }

private:
    struct Level
    {
        std::vector<MapCluster> clusters;
        std::vector<int> members;
        std::vector<int> clusterOfPin;
    };
    const Level &level(int zoom) const;

    QList<GeoCoordinate> m_pins;
    QList<bool> m_selected;
    QList<bool> m_dimmed;
    mutable std::map<int, Level> m_levels;
};

// A track as a line, thinned per zoom: a point closer than a pixel and a half to the last one
// kept adds nothing on screen. Segments stay apart.
class MapTrackLine
{
public:
    explicit MapTrackLine(const QList<QList<GeoCoordinate>> &segments = {});
    // World pixels at the zoom, one list per segment.
    const QList<QList<QPointF>> &segmentsAt(int zoom) const;

private:
    QList<QList<QPointF>> m_unitSegments; // at zoom 0
    mutable std::map<int, QList<QList<QPointF>>> m_levels;
};

} // namespace orv

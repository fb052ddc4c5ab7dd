#pragma once

#include "places/MyGpxTrack.h"

#include <QList>
#include <QString>

#include <limits>
#include <optional>

namespace orv {

class Preferences;

// One pin as the map's filters see it, the pins given in the order of the items' list.
struct MapFilterPin
{
    static constexpr double notSet = std::numeric_limits<double>::max();

    double time = 0.0; // seconds since the epoch: the item's present date
    GeoCoordinate at;
    double accuracy = notSet; // metres
    QString trackKey;         // the track the place came from, if any
    bool selected = false;
};

enum class MapFilterType { Neighbours = 0, TimeAround = 1, TimeChain = 2, Track = 3, Accuracy = 4 };

// The time span of the main item's track, for the track filter.
struct MapTrackSpan
{
    QString key;
    double start = 0.0;
    double end = 0.0;
};

// How the map narrows its pins: the filter the user set (the main item's neighbours in the list,
// the items close to it in time, the chain of items without a longer gap, those of its track,
// those placed less accurately than a distance) and the pin limit, which keeps the pins nearest
// the main item, selected ones first, when there are more.
struct MapFilterSettings
{
    bool enabled = false;
    MapFilterType type = MapFilterType::Neighbours;
    int value = 0;    // the slider's
    int pinLimit = 0; // 0: none
    bool alwaysShowAllSelected = true;
    bool hideOthers = true; // false: the pins outside the filter are dimmed instead
    // The track rule on top of the filter, when the main item's place came from a track:
    // 1 narrows the filter's pins to the track's, 2 shows the track's pins instead.
    int useTrackInterval = 0;
    bool metric = true; // the accuracy slider's distances

    static MapFilterSettings fromPreferences(const Preferences &prefs);
    // The preference's choices 1, 2, 3 give 500, 1000, 2000 pins, any other none.
    static int pinLimitFor(qint64 choice);
    static int sliderMaximum(MapFilterType type);
    static QString valueKey(MapFilterType type);
    // The slider's steps of the time filters, in seconds: 5 minutes to 12 hours.
    static double intervalForValue(int value);
    // The distances of the accuracy slider and of the radius menu, tags 0 to 7: in metres, and
    // as the user reads them ("10 km" to "25 m", or "5 mi" to "100 ft").
    static double distanceForTag(int tag, bool metric = true);
    static QString distanceText(int tag, bool metric = true);
    static constexpr int distanceTags = 8;
};

struct MapFilterResult
{
    QList<int> shown;     // indexes into the pins, ascending
    QList<int> dimmed;    // those of shown outside the filter, ascending: others not hidden
    bool filtered = false; // the filter chose them
    bool limited = false;  // the pin limit left some out
};

// The pins to show, around the main pin (an index, or -1 when no item is the main one).
MapFilterResult filterMapPins(const QList<MapFilterPin> &pins, int main, const MapFilterSettings &settings,
                              const std::optional<MapTrackSpan> &track = std::nullopt);

} // namespace orv

#include "places/MapPinFilter.h"

#include "core/Preferences.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <numeric>

namespace orv {

MapFilterSettings MapFilterSettings::fromPreferences(const Preferences &prefs)
{
    MapFilterSettings settings;
    settings.enabled = prefs.boolForKey(QStringLiteral("mapFilter_enabled"));
    settings.type = MapFilterType(std::clamp<qint64>(prefs.integerForKey(QStringLiteral("mapFilter_type")), 0, 4));
    settings.value = int(std::clamp<qint64>(prefs.integerForKey(valueKey(settings.type)), 0, sliderMaximum(settings.type)));
    settings.pinLimit = pinLimitFor(prefs.integerForKey(QStringLiteral("locationPinLimit")));
    settings.alwaysShowAllSelected = prefs.boolForKey(QStringLiteral("mapFilter_alwaysShowAllSelected"));
    settings.hideOthers = prefs.boolForKey(QStringLiteral("mapFilter_hideOthers"));
    settings.useTrackInterval = int(prefs.integerForKey(QStringLiteral("mapFilter_useTrackInterval")));
    return settings;
}

int MapFilterSettings::pinLimitFor(qint64 choice)
{
    switch (choice) {
    case 1: return 500;
    case 2: return 1000;
    case 3: return 2000;
    default: return 0;
    }
}

int MapFilterSettings::sliderMaximum(MapFilterType type)
{
    switch (type) {
    case MapFilterType::Neighbours: return 50;
    case MapFilterType::TimeAround: return 16;
    case MapFilterType::TimeChain: return 10;
    case MapFilterType::Track: return 0;
    case MapFilterType::Accuracy: return 7;
    }
    return 0;
}

QString MapFilterSettings::valueKey(MapFilterType type)
{
    return QStringLiteral("mapFilter_value_type%1").arg(int(type));
}

double MapFilterSettings::intervalForValue(int value)
{
    static constexpr std::array<double, 17> seconds{300,   600,   900,   1800,  2700,  3600,  7200,  10800, 14400,
                                                    18000, 21600, 25200, 28800, 32400, 36000, 39600, 43200};
    return seconds[std::size_t(std::clamp(value, 0, int(seconds.size()) - 1))];
}

namespace {

struct Distance
{
    double metres;
    const char *text;
};
constexpr std::array<Distance, MapFilterSettings::distanceTags> metricDistances{
    {{10000, "10 km"}, {5000, "5 km"}, {2000, "2 km"}, {1000, "1 km"}, {500, "500 m"}, {250, "250 m"}, {100, "100 m"}, {25, "25 m"}}};
constexpr std::array<Distance, MapFilterSettings::distanceTags> imperialDistances{
    {{8046.72, "5 mi"}, {4023.36, "2.5 mi"}, {1609.344, "1 mi"}, {804.672, "0.5 mi"}, {457.2, "1500 ft"},
     {304.8, "1000 ft"}, {152.4, "500 ft"}, {30.48, "100 ft"}}};

const Distance &distanceRow(int tag, bool metric)
{
    return (metric ? metricDistances : imperialDistances)[std::size_t(std::clamp(tag, 0, MapFilterSettings::distanceTags - 1))];
}

} // namespace

double MapFilterSettings::distanceForTag(int tag, bool metric)
{
    return distanceRow(tag, metric).metres;
}

QString MapFilterSettings::distanceText(int tag, bool metric)
{
    return QString::fromLatin1(distanceRow(tag, metric).text);
}

namespace {

// Walks from the main pin both ways while the pin's time stays within the interval of the one it
// is compared with: the main pin's own, or, for a chain, the neighbour before it.
QList<int> timeWalk(const QList<MapFilterPin> &pins, int main, double interval, bool chain)
{
    QList<int> shown{main};
    for (const int step : {-1, 1}) {
        double reference = pins[main].time;
        for (int i = main + step; i >= 0 && i < pins.size(); i += step) {
            if (std::abs(pins[i].time - reference) > interval)
                break;
            shown.append(i);
            if (chain)
                reference = pins[i].time;
        }
    }
    return shown;
}

bool onTrack(const MapFilterPin &pin, const MapTrackSpan &track)
{
    return pin.trackKey.isEmpty() ? pin.time >= track.start && pin.time <= track.end : pin.trackKey == track.key;
}

} // namespace

MapFilterResult filterMapPins(const QList<MapFilterPin> &pins, int main, const MapFilterSettings &given,
                              const std::optional<MapTrackSpan> &track)
{
    MapFilterSettings settings = given;
    if (track && settings.useTrackInterval == 2)
        settings.type = MapFilterType::Track;
    const bool narrowToTrack = track && settings.useTrackInterval == 1 && settings.type != MapFilterType::Track;
    MapFilterResult result;
    const int count = int(pins.size());
    const bool forced = settings.pinLimit > 0 && count >= settings.pinLimit;
    // With more pins than the limit, someone must stand in the middle.
    if (main < 0 && forced && count > 0)
        main = 0;
    const bool needsMain = settings.type != MapFilterType::Accuracy && settings.type != MapFilterType::Track;
    QList<int> shown;
    if (settings.enabled && (main >= 0 || !needsMain)) {
        result.filtered = true;
        switch (settings.type) {
        case MapFilterType::Neighbours: {
            const int first = std::max(0, main - settings.value);
            const int last = std::min(count - 1, first + 2 * settings.value);
            for (int i = first; i <= last; ++i)
                shown.append(i);
            break;
        }
        case MapFilterType::TimeAround:
        case MapFilterType::TimeChain:
            shown = timeWalk(pins, main, MapFilterSettings::intervalForValue(settings.value),
                             settings.type == MapFilterType::TimeChain);
            break;
        case MapFilterType::Track:
            result.filtered = track.has_value();
            for (int i = 0; i < count; ++i)
                if (!track || onTrack(pins[i], *track))
                    shown.append(i);
            break;
        case MapFilterType::Accuracy: {
            const double distance = MapFilterSettings::distanceForTag(settings.value, settings.metric);
            for (int i = 0; i < count; ++i)
                if (pins[i].accuracy != MapFilterPin::notSet && pins[i].accuracy > distance)
                    shown.append(i);
            break;
        }
        }
        if (narrowToTrack)
            shown.removeIf([&](int i) { return !onTrack(pins[i], *track); });
        if (settings.alwaysShowAllSelected)
            for (int i = 0; i < count; ++i)
                if (pins[i].selected)
                    shown.append(i);
    } else {
        for (int i = 0; i < count; ++i)
            shown.append(i);
    }
    std::sort(shown.begin(), shown.end());
    shown.erase(std::unique(shown.begin(), shown.end()), shown.end());
    // Below the limit every pin can stay: the filter then only fades the others.
    if (result.filtered && !settings.hideOthers && !forced) {
        QList<int> all(count);
        std::iota(all.begin(), all.end(), 0);
        std::set_difference(all.cbegin(), all.cend(), shown.cbegin(), shown.cend(), std::back_inserter(result.dimmed));
        shown = std::move(all);
    }

    if (settings.pinLimit > 0 && shown.size() > settings.pinLimit) {
        // The nearest to the main pin stay, the selected ones first, and the main pin always.
        const GeoCoordinate centre = pins[main].at;
        std::vector<std::pair<double, int>> order;
        order.reserve(std::size_t(shown.size()));
        for (int i : std::as_const(shown))
            order.emplace_back((pins[i].selected ? 0.0 : 1e9) + MyGpxTrack::haversineKilometres(centre, pins[i].at), i);
        std::nth_element(order.begin(), order.begin() + settings.pinLimit, order.end());
        shown.clear();
        for (int k = 0; k < settings.pinLimit; ++k)
            shown.append(order[std::size_t(k)].second);
        if (!shown.contains(main))
            shown.last() = main;
        std::sort(shown.begin(), shown.end());
        result.limited = true;
    }
    result.shown = shown;
    return result;
}

} // namespace orv

// Which pins the map shows: the filters around the main item and the pin limit, which keeps the
// pins nearest the main item.

#include "core/Preferences.h"
#include "places/MapPinFilter.h"

#include <gtest/gtest.h>

using namespace orv;

namespace {

QList<MapFilterPin> pinsAtTimes(const QList<double> &times)
{
    QList<MapFilterPin> pins;
    for (double time : times) {
        MapFilterPin pin;
        pin.time = time;
        pin.at = {47.0, 8.0 + pins.size() * 0.01};
        pins.append(pin);
    }
    return pins;
}

MapFilterSettings filter(MapFilterType type, int value)
{
    MapFilterSettings settings;
    settings.enabled = true;
    settings.type = type;
    settings.value = value;
    return settings;
}

TEST(MapPinFilter, EachFilterKeepsItsPinsAroundTheMainOne)
{
    const QList<MapFilterPin> pins = pinsAtTimes({0, 200, 400, 600, 1200, 1300, 5000});
    // Two neighbours each side; clipped at the start, the count is kept.
    EXPECT_EQ(filterMapPins(pins, 3, filter(MapFilterType::Neighbours, 2)).shown, QList<int>({1, 2, 3, 4, 5}));
    EXPECT_EQ(filterMapPins(pins, 1, filter(MapFilterType::Neighbours, 2)).shown, QList<int>({0, 1, 2, 3, 4}));
    // Five minutes around the main item's time, and the chain of gaps under five minutes.
    EXPECT_EQ(filterMapPins(pins, 1, filter(MapFilterType::TimeAround, 0)).shown, QList<int>({0, 1, 2}));
    EXPECT_EQ(filterMapPins(pins, 1, filter(MapFilterType::TimeChain, 0)).shown, QList<int>({0, 1, 2, 3}));
    EXPECT_EQ(filterMapPins(pins, 4, filter(MapFilterType::TimeChain, 0)).shown, QList<int>({4, 5}));
    EXPECT_EQ(filterMapPins(pins, 4, filter(MapFilterType::TimeChain, 6)).shown, QList<int>({0, 1, 2, 3, 4, 5, 6}));
    // Without a main item the filter has nothing to stand on: all show.
    const MapFilterResult unfiltered = filterMapPins(pins, -1, filter(MapFilterType::TimeAround, 0));
    EXPECT_EQ(unfiltered.shown.size(), pins.size());
    EXPECT_FALSE(unfiltered.filtered);

    // Placed less accurately than 100 m; a place of unknown accuracy is not among them.
    QList<MapFilterPin> accuracy = pinsAtTimes({0, 1, 2});
    accuracy[0].accuracy = 50;
    accuracy[1].accuracy = 150;
    EXPECT_EQ(filterMapPins(accuracy, -1, filter(MapFilterType::Accuracy, 6)).shown, QList<int>({1}));

    // The track's own pins, and those of its time placed otherwise; a selected pin always shows.
    QList<MapFilterPin> track = pinsAtTimes({0, 100, 200, 300, 9000});
    track[0].trackKey = QStringLiteral("walk");
    track[2].trackKey = QStringLiteral("other");
    track[4].selected = true;
    EXPECT_EQ(filterMapPins(track, 0, filter(MapFilterType::Track, 0), MapTrackSpan{QStringLiteral("walk"), 50, 400}).shown,
              QList<int>({0, 1, 3, 4}));
    // The track rule narrows another filter's pins, or takes its place.
    const MapTrackSpan walk{QStringLiteral("walk"), 50, 400};
    MapFilterSettings neighbours = filter(MapFilterType::Neighbours, 1);
    EXPECT_EQ(filterMapPins(track, 1, neighbours, walk).shown, QList<int>({0, 1, 2, 4}));
    neighbours.useTrackInterval = 1;
    EXPECT_EQ(filterMapPins(track, 1, neighbours, walk).shown, QList<int>({0, 1, 4}));
    neighbours.useTrackInterval = 2;
    EXPECT_EQ(filterMapPins(track, 1, neighbours, walk).shown, QList<int>({0, 1, 3, 4}));
    EXPECT_EQ(filterMapPins(track, 1, neighbours).shown, QList<int>({0, 1, 2, 4})) << "no track: the filter as set";
}

TEST(MapPinFilter, OthersNotHiddenStayFadedWhileThePinsAreFewerThanTheLimit)
{
    QList<MapFilterPin> pins = pinsAtTimes({0, 200, 400, 600, 1200, 1300, 5000});
    pins[6].selected = true;
    MapFilterSettings settings = filter(MapFilterType::TimeAround, 0);
    settings.hideOthers = false;
    const MapFilterResult faded = filterMapPins(pins, 1, settings);
    EXPECT_TRUE(faded.filtered);
    EXPECT_EQ(faded.shown, QList<int>({0, 1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(faded.dimmed, QList<int>({3, 4, 5})) << "the selected pin is among those the filter keeps";
    settings.alwaysShowAllSelected = false;
    EXPECT_EQ(filterMapPins(pins, 1, settings).dimmed, QList<int>({3, 4, 5, 6}));

    // At the limit the others go as if hidden; with the filter off nothing fades.
    settings.pinLimit = 7;
    const MapFilterResult forced = filterMapPins(pins, 1, settings);
    EXPECT_EQ(forced.shown, QList<int>({0, 1, 2}));
    EXPECT_TRUE(forced.dimmed.isEmpty());
    settings.pinLimit = 0;
    settings.enabled = false;
    EXPECT_TRUE(filterMapPins(pins, 1, settings).dimmed.isEmpty());
    EXPECT_TRUE(MapFilterSettings::fromPreferences(Preferences{QString()}).hideOthers) << "hidden by default";
}

TEST(MapPinFilter, OverTheLimitTheNearestToTheMainItemStaySelectedOnesFirst)
{
    // 2,500 pins along a parallel, eastward by index; the main one in the middle.
    QList<MapFilterPin> pins;
    for (int i = 0; i < 2500; ++i) {
        MapFilterPin pin;
        pin.at = {47.0, -20.0 + i * 0.01};
        pins.append(pin);
    }
    pins[2490].selected = true;
    MapFilterSettings settings;
    settings.pinLimit = MapFilterSettings::pinLimitFor(3);
    ASSERT_EQ(settings.pinLimit, 2000);
    const MapFilterResult limited = filterMapPins(pins, 1200, settings);
    EXPECT_TRUE(limited.limited);
    ASSERT_EQ(limited.shown.size(), 2000);
    EXPECT_TRUE(limited.shown.contains(1200));
    EXPECT_TRUE(limited.shown.contains(2490)) << "selected, though far";
    // The rest are the 1,999 nearest: a run around the main pin.
    EXPECT_FALSE(limited.shown.contains(0));
    EXPECT_TRUE(limited.shown.contains(201) && limited.shown.contains(2199));
    EXPECT_FALSE(limited.shown.contains(2200));

    // Without a main item the first pin stands in; under the limit nothing is cut.
    EXPECT_TRUE(filterMapPins(pins, -1, settings).shown.contains(0));
    settings.pinLimit = MapFilterSettings::pinLimitFor(0);
    EXPECT_EQ(filterMapPins(pins, 1200, settings).shown.size(), 2500);
    EXPECT_FALSE(filterMapPins(pins, 1200, settings).limited);

    // The registered defaults: a limit of 1,000 pins, the filter off.
    const Preferences prefs{QString()};
    const MapFilterSettings defaults = MapFilterSettings::fromPreferences(prefs);
    EXPECT_EQ(defaults.pinLimit, 1000);
    EXPECT_FALSE(defaults.enabled);
}

} // namespace

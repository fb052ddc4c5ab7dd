#pragma once

#include "places/MyGpxTrack.h"

#include <QList>

namespace orv {

class MySinglePic;

// Items put in a line between the first and the last of a run, which keep their places: evenly
// (inner item i of n at i / (n + 1) of the way) or in proportion to their dates in force, along
// the great circle.
namespace LocationAlignment {

// The places of the inner items, in order; empty for fewer than three items, or when the first
// or the last has no place, or (by time) when an item has no date in force or the ends share one.
QList<GeoCoordinate> innerPlaces(const QList<MySinglePic *> &sortedPics, bool byTime);

} // namespace LocationAlignment

} // namespace orv

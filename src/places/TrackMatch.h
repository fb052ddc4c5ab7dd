#pragma once

#include "places/MyGpxTrack.h"

namespace orv {

// How a moment met a set of tracks.
enum class TrackMatchKind {
    Point,        // within 5 seconds of a track point: that point's place
    Interpolated, // between two points of a segment
    InGap,        // within the tracks' span, but between segments or tracks: no place
    Outside,      // before the first track point or at or after the last: no place
    NoTrack,      // no usable track at all
};

struct TrackMatch
{
    TrackMatchKind kind = TrackMatchKind::NoTrack;
    const MyGpxTrack *track = nullptr; // the one that gives the place
    TrackInfos infos;
    // From the moment to the nearest point of any usable track; notSet without one.
    double secondsToNearestPoint = MyGpxTrackPoint::notSet;

    bool hasPlace() const { return kind == TrackMatchKind::Point || kind == TrackMatchKind::Interpolated; }
    // "point", "interpolated", "gap", "outside", "noTrack".
    static QString kindName(TrackMatchKind kind);
};

// The place of a moment: the first track in the given order whose segment holds it gives it, so
// with the tracks in order of their start, of two overlapping tracks the earlier one does. No
// tolerance outside a segment: a moment in a gap, before or after gets no place.
TrackMatch matchTime(const QList<const MyGpxTrack *> &tracks, Instant date);

} // namespace orv

#include "places/TrackMatch.h"

#include <algorithm>
#include <cmath>

namespace orv {

QString TrackMatch::kindName(TrackMatchKind kind)
{
    switch (kind) {
    case TrackMatchKind::Point:
        return QStringLiteral("point");
    case TrackMatchKind::Interpolated:
        return QStringLiteral("interpolated");
    case TrackMatchKind::InGap:
        return QStringLiteral("gap");
    case TrackMatchKind::Outside:
        return QStringLiteral("outside");
    case TrackMatchKind::NoTrack:
        break;
    }
    return QStringLiteral("noTrack");
}

TrackMatch matchTime(const QList<const MyGpxTrack *> &tracks, Instant date)
{
    TrackMatch match;
    for (const MyGpxTrack *track : tracks) {
        if (!track || track->trackState != TrackState::Usable)
            continue;
        if (const std::optional<TrackInfos> infos = track->infosAtTime(date, &match.secondsToNearestPoint)) {
            match.track = track;
            match.infos = *infos;
            match.kind = match.secondsToNearestPoint < MyGpxTrack::exactPointSeconds ? TrackMatchKind::Point
                                                                                     : TrackMatchKind::Interpolated;
            return match;
        }
    }
    // No segment holds the moment: the nearest point is an end of some segment.
    OptionalDate first, last;
    for (const MyGpxTrack *track : tracks) {
        if (!track || track->trackState != TrackState::Usable)
            continue;
        for (const MyGpxTrackSegment &segment : track->timeSegments()) {
            if (segment.trackPoints.isEmpty())
                continue;
            const Instant start = track->time(segment.trackPoints.first());
            const Instant end = track->time(segment.trackPoints.last());
            const double seconds = date < start ? start.secondsSince(date) : std::abs(date.secondsSince(end));
            match.secondsToNearestPoint = std::min(match.secondsToNearestPoint, seconds);
            first = first ? std::min(*first, start) : start;
            last = last ? std::max(*last, end) : end;
        }
    }
    if (first)
        match.kind = *first <= date && date < *last ? TrackMatchKind::InGap : TrackMatchKind::Outside;
    return match;
}

} // namespace orv

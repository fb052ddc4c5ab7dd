#include "places/MyGpxTrack.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace orv {

namespace {

constexpr double degrees = 180.0 / std::numbers::pi;
constexpr double radians = std::numbers::pi / 180.0;
constexpr double earthRadiusKilometres = 6371.0;

SegmentState stateOf(const MyGpxTrackSegment &segment)
{
    if (segment.trackPoints.isEmpty())
        return SegmentState::NoPoints;
    // The running maximum starts at 1970: a time before it counts as out of order.
    double maximum = 0.0;
    bool wrongOrder = false, timed = false, untimed = false;
    for (const MyGpxTrackPoint &point : segment.trackPoints) {
        if (!point.originalTime) {
            untimed = true;
            continue;
        }
        timed = true;
        const double seconds = point.originalTime->secondsSinceEpoch();
        if (seconds < maximum)
            wrongOrder = true;
        else
            maximum = seconds;
    }
    if (wrongOrder)
        return SegmentState::WrongOrder;
    if (!untimed)
        return SegmentState::Usable;
    return timed ? SegmentState::MixedTimes : SegmentState::NoTimes;
}

} // namespace

void MyGpxTrack::validateTrack()
{
    bool anyPoints = false, anyWrong = false, anyGood = false, anyMixed = false;
    for (MyGpxTrackSegment &segment : trackSegments) {
        segment.segmentState = stateOf(segment);
        anyPoints = anyPoints || segment.segmentState != SegmentState::NoPoints;
        anyWrong = anyWrong || segment.segmentState == SegmentState::WrongOrder;
        anyGood = anyGood || segment.segmentState == SegmentState::Usable;
        anyMixed = anyMixed || segment.segmentState == SegmentState::MixedTimes;
    }
    if (!anyPoints)
        trackState = TrackState::NoPoints;
    else if (anyWrong)
        trackState = TrackState::WrongOrder;
    else if (!anyGood && !anyMixed)
        trackState = TrackState::NoTimes;
    else
        trackState = TrackState::Usable;
    fixTrackIssues();
}

void MyGpxTrack::fixTrackIssues()
{
    timedTrackSegments.clear();
    if (trackState != TrackState::Usable
        || std::all_of(trackSegments.cbegin(), trackSegments.cend(),
                       [](const MyGpxTrackSegment &s) { return s.segmentState == SegmentState::Usable; }))
        return;
    for (const MyGpxTrackSegment &segment : std::as_const(trackSegments)) {
        if (segment.segmentState == SegmentState::Usable) {
            timedTrackSegments.append(segment);
        } else if (segment.segmentState == SegmentState::MixedTimes) {
            // Each run of timed points becomes a segment of its own.
            MyGpxTrackSegment run;
            for (const MyGpxTrackPoint &point : segment.trackPoints) {
                if (point.originalTime) {
                    run.trackPoints.append(point);
                } else if (!run.trackPoints.isEmpty()) {
                    timedTrackSegments.append(std::exchange(run, {}));
                }
            }
            if (!run.trackPoints.isEmpty())
                timedTrackSegments.append(run);
        }
    }
}

const QList<MyGpxTrackSegment> &MyGpxTrack::timeSegments() const
{
    return timedTrackSegments.isEmpty() ? trackSegments : timedTrackSegments;
}

Instant MyGpxTrack::time(const MyGpxTrackPoint &point) const
{
    return point.originalTime->addingSeconds(timeCorrection + tempCorrection);
}

OptionalDate MyGpxTrack::startTime() const
{
    const QList<MyGpxTrackSegment> &segments = timeSegments();
    if (segments.isEmpty() || segments.first().trackPoints.isEmpty() || !segments.first().trackPoints.first().originalTime)
        return std::nullopt;
    return time(segments.first().trackPoints.first());
}

OptionalDate MyGpxTrack::endTime() const
{
    const QList<MyGpxTrackSegment> &segments = timeSegments();
    if (segments.isEmpty() || segments.last().trackPoints.isEmpty() || !segments.last().trackPoints.last().originalTime)
        return std::nullopt;
    return time(segments.last().trackPoints.last());
}

qsizetype MyGpxTrack::pointCount() const
{
    qsizetype count = 0;
    for (const MyGpxTrackSegment &segment : trackSegments)
        count += segment.trackPoints.size();
    return count;
}

const MyGpxTrackSegment *MyGpxTrack::includesTime(Instant date) const
{
    if (trackState != TrackState::Usable)
        return nullptr;
    for (const MyGpxTrackSegment &segment : timeSegments()) {
        if (segment.trackPoints.isEmpty())
            continue;
        if (time(segment.trackPoints.first()) <= date && time(segment.trackPoints.last()) > date)
            return &segment;
    }
    return nullptr;
}

qsizetype MyGpxTrack::nearestPointIndex(const MyGpxTrackSegment &segment, Instant date) const
{
    const QList<MyGpxTrackPoint> &points = segment.trackPoints;
    const auto after = std::lower_bound(points.cbegin(), points.cend(), date,
                                        [this](const MyGpxTrackPoint &p, Instant d) { return time(p) < d; });
    const qsizetype index = after - points.cbegin();
    if (index == points.size())
        return index - 1;
    if (index == 0)
        return 0;
    // On a tie the earlier point wins.
    const double before = date.secondsSince(time(points[index - 1]));
    const double later = time(points[index]).secondsSince(date);
    return before <= later ? index - 1 : index;
}

std::optional<TrackInfos> MyGpxTrack::infosAtTime(Instant date, double *secondsToNearestPoint) const
{
    const MyGpxTrackSegment *segment = includesTime(date);
    if (!segment)
        return std::nullopt;
    const QList<MyGpxTrackPoint> &points = segment->trackPoints;
    const qsizetype index = nearestPointIndex(*segment, date);
    const MyGpxTrackPoint &nearest = points[index];
    const double difference = date.secondsSince(time(nearest));
    if (secondsToNearestPoint)
        *secondsToNearestPoint = std::abs(difference);
    if (std::abs(difference) < exactPointSeconds)
        return TrackInfos{nearest.coordinate(), nearest.elevation, nearest.hAcc};
    // Inside a segment the date lies after its first point and before its last, so both
    // neighbours exist; a long pause between them is bridged all the same.
    if (difference < 0.0)
        return infosBetweenTrackPoint(points[index - 1], nearest, date);
    return infosBetweenTrackPoint(nearest, points[index + 1], date);
}

TrackInfos MyGpxTrack::infosBetweenTrackPoint(const MyGpxTrackPoint &a, const MyGpxTrackPoint &b, Instant date) const
{
    const double span = time(b).secondsSince(time(a));
    const double fraction = span > 0.0 ? date.secondsSince(time(a)) / span : 0.0;
    TrackInfos infos;
    // The height moves with the place, evenly between the two fixes, as the way between them is
    // taken to be walked; a point without a height leaves the stretch to it without one.
    if (a.elevation != MyGpxTrackPoint::notSet && b.elevation != MyGpxTrackPoint::notSet)
        infos.elevation = a.elevation + (b.elevation - a.elevation) * fraction;
    if (a.hAcc != MyGpxTrackPoint::notSet && b.hAcc != MyGpxTrackPoint::notSet)
        infos.hAcc = a.hAcc + (b.hAcc - a.hAcc) * fraction;
    else
        infos.hAcc = a.hAcc != MyGpxTrackPoint::notSet ? a.hAcc : b.hAcc;
    infos.coordinate = coordinateBetweenCoordinate(a.coordinate(), b.coordinate(), fraction);
    return infos;
}

double MyGpxTrack::haversineKilometres(GeoCoordinate a, GeoCoordinate b)
{
    const double dLat = (b.latitude - a.latitude) * radians;
    const double dLon = (b.longitude - a.longitude) * radians;
    const double h = std::sin(dLat / 2) * std::sin(dLat / 2)
                     + std::cos(a.latitude * radians) * std::cos(b.latitude * radians) * std::sin(dLon / 2)
                           * std::sin(dLon / 2);
    return earthRadiusKilometres * 2.0 * std::atan2(std::sqrt(h), std::sqrt(1.0 - h));
}

GeoCoordinate MyGpxTrack::coordinateBetweenCoordinate(GeoCoordinate a, GeoCoordinate b, double fraction)
{
    if (a == b)
        return a;
    const double d = haversineKilometres(a, b) / earthRadiusKilometres;
    if (d == 0.0)
        return a;
    const double wa = std::sin((1.0 - fraction) * d) / std::sin(d);
    const double wb = std::sin(fraction * d) / std::sin(d);
    const double latA = a.latitude * radians, lonA = a.longitude * radians;
    const double latB = b.latitude * radians, lonB = b.longitude * radians;
    const double x = wa * std::cos(latA) * std::cos(lonA) + wb * std::cos(latB) * std::cos(lonB);
    const double y = wa * std::cos(latA) * std::sin(lonA) + wb * std::cos(latB) * std::sin(lonB);
    const double z = wa * std::sin(latA) + wb * std::sin(latB);
    return {std::atan2(z, std::sqrt(x * x + y * y)) * degrees, std::atan2(y, x) * degrees};
}

} // namespace orv

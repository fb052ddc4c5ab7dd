#pragma once

#include "time/Instant.h"

#include <QList>
#include <QString>

#include <limits>
#include <optional>

namespace orv {

struct GeoCoordinate
{
    double latitude = 0.0;
    double longitude = 0.0;
    bool operator==(const GeoCoordinate &) const = default;
};

// One recorded position. Elevation and accuracy hold notSet when the file gave none; a point
// without a time stays in its segment (it is drawn) but never answers a time.
struct MyGpxTrackPoint
{
    static constexpr double notSet = std::numeric_limits<double>::max();

    double latitude = 0.0;
    double longitude = 0.0;
    double elevation = notSet;
    double hAcc = notSet;
    OptionalDate originalTime;

    GeoCoordinate coordinate() const { return {latitude, longitude}; }
    bool operator==(const MyGpxTrackPoint &) const = default;
};

// segmentState values.
enum class SegmentState : qint8 {
    Usable = 0,     // every point has a time, in ascending order
    NoTimes = 1,
    WrongOrder = 2, // a time earlier than one before it
    MixedTimes = 3, // some points have times, some don't
    NoPoints = 4,
};

struct MyGpxTrackSegment
{
    QList<MyGpxTrackPoint> trackPoints;
    SegmentState segmentState = SegmentState::Usable;

    bool operator==(const MyGpxTrackSegment &other) const { return trackPoints == other.trackPoints; }
};

// trackState values: only a usable track ever gives a place.
enum class TrackState : qint8 {
    Usable = 0,
    NoTimes = 1,    // no segment has times
    WrongOrder = 2, // one segment out of order spoils the whole track
    NoPoints = 3,   // every segment is empty, or there is none
};

// What a track says about one moment: where, how high, how exact.
struct TrackInfos
{
    GeoCoordinate coordinate;
    double elevation = MyGpxTrackPoint::notSet;
    double hAcc = MyGpxTrackPoint::notSet;
};

// One `trk` of a GPX file. The key is its identity everywhere (the folder links and the item
// that took its place name it); two imports of one file are equal tracks with different keys.
// The time correction moves every point's time: a track recorded by a clock that was off, or a
// camera's clock error put onto the track.
class MyGpxTrack
{
public:
    QList<MyGpxTrackSegment> trackSegments;
    // The segments that answer times when some of trackSegments cannot: the usable ones, and the
    // timed runs of mixed ones. Empty when trackSegments answer as they are.
    QList<MyGpxTrackSegment> timedTrackSegments;
    QString filePath, name, type, key;
    TrackState trackState = TrackState::Usable;
    double timeCorrection = 0.0;
    double tempCorrection = 0.0;

    bool operator==(const MyGpxTrack &other) const { return trackSegments == other.trackSegments; }

    // Sets the segments' and the track's states, then fixTrackIssues().
    void validateTrack();
    void fixTrackIssues();

    // The segments that answer times: timedTrackSegments when set, else trackSegments.
    const QList<MyGpxTrackSegment> &timeSegments() const;
    // A point's time with the corrections in force.
    Instant time(const MyGpxTrackPoint &point) const;
    // First point of the first segment, last of the last; nothing without points or times.
    OptionalDate startTime() const;
    OptionalDate endTime() const;
    qsizetype pointCount() const;

    // The segment whose first time is at or before the date and whose last time is after it:
    // a segment holds its first instant but not its last, and a gap between segments belongs to
    // none.
    const MyGpxTrackSegment *includesTime(Instant date) const;
    // The place at the date: a point within 5 seconds is taken as it is, anything else inside
    // a segment is interpolated between its two neighbours. Nothing outside every segment.
    // secondsToNearestPoint, when given, takes the time from the date to the nearest point.
    std::optional<TrackInfos> infosAtTime(Instant date, double *secondsToNearestPoint = nullptr) const;
    static constexpr double exactPointSeconds = 5.0;
    // Index of the point of the segment nearest in time to the date (a narrowing search that
    // relies on ascending times).
    qsizetype nearestPointIndex(const MyGpxTrackSegment &segment, Instant date) const;
    TrackInfos infosBetweenTrackPoint(const MyGpxTrackPoint &a, const MyGpxTrackPoint &b, Instant date) const;
    // The point at the fraction of the great circle from a to b; across the 180th meridian too.
    static GeoCoordinate coordinateBetweenCoordinate(GeoCoordinate a, GeoCoordinate b, double fraction);
    // Great-circle distance in kilometres on a sphere of radius 6371 km.
    static double haversineKilometres(GeoCoordinate a, GeoCoordinate b);
};

} // namespace orv

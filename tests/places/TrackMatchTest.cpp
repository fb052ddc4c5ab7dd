// The rules by which a moment finds its place on crafted tracks: the 5 second rule, interpolation,
// both ends of a segment, gaps, the 180th meridian, overlapping tracks; and an item's date in
// force (its folder's offset, its zone) deciding its place.

#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"
#include "places/LOTController.h"
#include "places/TrackMatch.h"

#include <gtest/gtest.h>

using namespace orv;

namespace {

const Instant ten = Instant::fromUtc(2024, 5, 1, 10);

MyGpxTrackPoint pointAt(double secondsAfterTen, double latitude, double longitude, double elevation = 100.0,
                        double hAcc = MyGpxTrackPoint::notSet)
{
    return {latitude, longitude, elevation, hAcc, ten.addingSeconds(secondsAfterTen)};
}

MyGpxTrack trackOf(QList<QList<MyGpxTrackPoint>> segments, const QString &key = QStringLiteral("k"))
{
    MyGpxTrack track;
    for (QList<MyGpxTrackPoint> &points : segments)
        track.trackSegments.append({points, SegmentState::Usable});
    track.key = key;
    track.validateTrack();
    return track;
}

// Two segments along the meridian 14 E: 10:00 to 10:02, then after a pause 10:10 to 10:11.
MyGpxTrack hike()
{
    return trackOf({{pointAt(0, 46.0, 14.0, 500, 4.0), pointAt(60, 46.01, 14.0, 510, 8.0), pointAt(120, 46.02, 14.0, 520)},
                    {pointAt(600, 46.03, 14.0), pointAt(660, 46.04, 14.0)}});
}

TrackMatch matchAt(const MyGpxTrack &track, double secondsAfterTen)
{
    return matchTime({&track}, ten.addingSeconds(secondsAfterTen));
}

} // namespace

TEST(TrackMatch, APointWithinFiveSecondsIsTakenAsItIsFromFiveOnTheNeighboursAreInterpolated)
{
    const MyGpxTrack track = hike();
    for (const double seconds : {60.0, 64.9, 55.1}) {
        const TrackMatch match = matchAt(track, seconds);
        EXPECT_EQ(match.kind, TrackMatchKind::Point) << seconds;
        EXPECT_EQ(match.infos.coordinate, (GeoCoordinate{46.01, 14.0})) << seconds;
        EXPECT_EQ(match.infos.elevation, 510.0);
        EXPECT_EQ(match.infos.hAcc, 8.0);
        EXPECT_NEAR(match.secondsToNearestPoint, std::abs(seconds - 60.0), 1e-6);
    }
    const TrackMatch atFive = matchAt(track, 65.0);
    EXPECT_EQ(atFive.kind, TrackMatchKind::Interpolated);
    EXPECT_NEAR(atFive.infos.coordinate.latitude, 46.01 + 0.01 * 5.0 / 60.0, 1e-9);
    EXPECT_EQ(atFive.secondsToNearestPoint, 5.0);
    const TrackMatch beforeFive = matchAt(track, 55.0);
    EXPECT_EQ(beforeFive.kind, TrackMatchKind::Interpolated);
    EXPECT_NEAR(beforeFive.infos.coordinate.latitude, 46.0 + 0.01 * 55.0 / 60.0, 1e-9);
}

TEST(TrackMatch, BetweenTwoPointsThePlaceIsOnTheGreatCircleTheHeightAndTheAccuracyInterpolated)
{
    const TrackMatch quarter = matchAt(hike(), 15.0);
    EXPECT_EQ(quarter.kind, TrackMatchKind::Interpolated);
    EXPECT_NEAR(quarter.infos.coordinate.latitude, 46.0025, 1e-9) << "along a meridian the circle is linear";
    EXPECT_NEAR(quarter.infos.coordinate.longitude, 14.0, 1e-9);
    EXPECT_DOUBLE_EQ(quarter.infos.elevation, 502.5);
    EXPECT_DOUBLE_EQ(quarter.infos.hAcc, 5.0);
    EXPECT_DOUBLE_EQ(matchAt(hike(), 45.0).infos.elevation, 507.5);
    EXPECT_DOUBLE_EQ(matchAt(hike(), 90.0).infos.elevation, 515.0) << "the second stretch";
    EXPECT_EQ(matchAt(hike(), 90.0).infos.hAcc, 8.0) << "only one point has an accuracy: that one";

    // A fix without a height: no height on either side of it, nor at it, while the place and
    // the accuracy go on.
    const double none = MyGpxTrackPoint::notSet;
    const MyGpxTrack patchy = trackOf({{pointAt(0, 46.0, 14.0, 500, 4.0), pointAt(60, 46.01, 14.0, none, 6.0),
                                       pointAt(120, 46.02, 14.0, 520, none)}});
    for (const double seconds : {30.0, 60.0, 90.0}) {
        const TrackMatch match = matchAt(patchy, seconds);
        EXPECT_TRUE(match.hasPlace()) << seconds;
        EXPECT_EQ(match.infos.elevation, none) << seconds;
    }
    EXPECT_DOUBLE_EQ(matchAt(patchy, 30.0).infos.hAcc, 5.0);
    EXPECT_DOUBLE_EQ(matchAt(patchy, 90.0).infos.hAcc, 6.0);

    const GeoCoordinate same = MyGpxTrack::coordinateBetweenCoordinate({1.5, 2.5}, {1.5, 2.5}, 0.7);
    EXPECT_EQ(same, (GeoCoordinate{1.5, 2.5}));
}

TEST(TrackMatch, ASegmentHoldsItsFirstInstantButNotItsLastAndGapsBeforeAndAfterGiveNoPlace)
{
    const MyGpxTrack track = hike();
    const TrackMatch first = matchAt(track, 0.0);
    EXPECT_EQ(first.kind, TrackMatchKind::Point);
    EXPECT_EQ(first.infos.coordinate, (GeoCoordinate{46.0, 14.0}));
    EXPECT_EQ(matchAt(track, 119.0).kind, TrackMatchKind::Point);

    const TrackMatch last = matchAt(track, 120.0);
    EXPECT_EQ(last.kind, TrackMatchKind::InGap) << "the last instant of a segment is outside it";
    EXPECT_EQ(last.secondsToNearestPoint, 0.0);
    const TrackMatch gap = matchAt(track, 300.0);
    EXPECT_EQ(gap.kind, TrackMatchKind::InGap);
    EXPECT_FALSE(gap.hasPlace());
    EXPECT_EQ(gap.secondsToNearestPoint, 180.0);
    EXPECT_EQ(matchAt(track, 600.0).kind, TrackMatchKind::Point) << "the next segment's first instant";

    const TrackMatch before = matchAt(track, -1.0);
    EXPECT_EQ(before.kind, TrackMatchKind::Outside);
    EXPECT_EQ(before.secondsToNearestPoint, 1.0);
    const TrackMatch after = matchAt(track, 660.0);
    EXPECT_EQ(after.kind, TrackMatchKind::Outside);
    EXPECT_EQ(after.secondsToNearestPoint, 0.0);
    EXPECT_EQ(matchTime({}, ten).kind, TrackMatchKind::NoTrack);
}

TEST(TrackMatch, ALongPauseInsideASegmentIsBridgedAndAMixedSegmentAnswersOnlyInItsTimedRuns)
{
    const MyGpxTrack pause = trackOf({{pointAt(0, 10.0, 20.0), pointAt(7200, 10.2, 20.0)}});
    EXPECT_EQ(matchAt(pause, 3600).kind, TrackMatchKind::Interpolated);

    MyGpxTrackPoint untimed = pointAt(0, 10.1, 20.0);
    untimed.originalTime.reset();
    const MyGpxTrack mixed = trackOf({{pointAt(0, 10.0, 20.0), pointAt(60, 10.0, 20.1), untimed,
                                       pointAt(300, 10.0, 20.3), pointAt(360, 10.0, 20.4)}});
    EXPECT_EQ(mixed.trackState, TrackState::Usable);
    EXPECT_EQ(mixed.trackSegments[0].segmentState, SegmentState::MixedTimes);
    EXPECT_EQ(mixed.timedTrackSegments.size(), 2);
    EXPECT_EQ(matchAt(mixed, 30).kind, TrackMatchKind::Interpolated);
    EXPECT_EQ(matchAt(mixed, 200).kind, TrackMatchKind::InGap) << "the untimed point cuts the segment";
    EXPECT_EQ(matchAt(mixed, 330).kind, TrackMatchKind::Interpolated);
}

TEST(TrackMatch, AcrossThe180thMeridianThePlaceStaysOnTheShortWay)
{
    const MyGpxTrack ferry = trackOf({{pointAt(0, -17.0, 179.9), pointAt(100, -17.0, -179.9)}});
    const TrackMatch middle = matchAt(ferry, 50);
    ASSERT_EQ(middle.kind, TrackMatchKind::Interpolated);
    EXPECT_NEAR(std::abs(middle.infos.coordinate.longitude), 180.0, 1e-6);
    EXPECT_NEAR(middle.infos.coordinate.latitude, -17.0, 1e-3);
    const TrackMatch east = matchAt(ferry, 75);
    EXPECT_NEAR(east.infos.coordinate.longitude, -179.95, 1e-3) << "not half way round the world";
    EXPECT_LT(MyGpxTrack::haversineKilometres(east.infos.coordinate, {-17.0, -179.9}), 6.0);
}

TEST(TrackMatch, OfTwoOverlappingTracksTheOneThatStartsFirstGivesThePlaceAndABrokenOneNone)
{
    LOTController tracks;
    GpxFile file;
    file.tracks = {trackOf({{pointAt(0, 1.0, 1.0), pointAt(600, 1.0, 2.0)}}),
                   trackOf({{pointAt(-300, 5.0, 5.0), pointAt(300, 5.0, 6.0)}}),
                   trackOf({{pointAt(-600, 9.0, 9.0), pointAt(-900, 9.0, 9.5)}})};
    const QStringList keys = tracks.importTracks(file);
    ASSERT_EQ(keys.size(), 3);
    EXPECT_EQ(tracks.track(keys[2])->trackState, TrackState::WrongOrder);
    const QList<const MyGpxTrack *> sorted = tracks.gpxTracksForKeys(QSet<QString>(keys.cbegin(), keys.cend()));
    ASSERT_EQ(sorted.size(), 3);
    EXPECT_EQ(sorted[1]->key, keys[1]) << "by start, not by import";

    const TrackMatch overlap = matchTime(sorted, ten.addingSeconds(100));
    EXPECT_EQ(overlap.track->key, keys[1]);
    EXPECT_NEAR(overlap.infos.coordinate.longitude, 5.0 + 400.0 / 600.0, 1e-3);
    EXPECT_EQ(matchTime(sorted, ten.addingSeconds(400)).track->key, keys[0]) << "after the first one ends";
    EXPECT_EQ(matchTime(sorted, ten.addingSeconds(-700)).kind, TrackMatchKind::Outside)
        << "a track out of order places nothing, also where its points lie";

    GpxFile again;
    again.tracks = {trackOf({{pointAt(0, 1.0, 1.0), pointAt(600, 1.0, 2.0)}})};
    EXPECT_TRUE(tracks.importTracks(again).isEmpty()) << "the same track twice adds nothing";
}

TEST(TrackMatch, AnItemMeetsTheTrackAtItsDateInForceAndWithoutADateOfItsOwnNever)
{
    LOTController tracks;
    GpxFile file;
    file.tracks = {hike()};
    const QString key = tracks.importTracks(file).first();
    MySingleFolder folder(QStringLiteral("/hike"), false);
    // Taken at 09:00 UTC, an hour before the track starts.
    MySinglePic *pic = folder.adoptPic(
        std::make_unique<MySinglePic>(QStringLiteral("a.jpg"), &folder, SpTypeExifOriginal, ten.addingSeconds(-3600)));
    MySinglePic *fileDated = folder.adoptPic(
        std::make_unique<MySinglePic>(QStringLiteral("b.png"), &folder, SpTypeNoTagsFileDate, ten.addingSeconds(30)));
    folder.sfUpdatePicsFromAndTill();
    folder.linkedTracksKeys.insert(key);

    EXPECT_EQ(tracks.matchForPic(*pic).kind, TrackMatchKind::Outside);
    folder.setSfDateModificationsFromTimeInterval(3600 + 30, false);
    const TrackMatch shifted = tracks.matchForPic(*pic);
    EXPECT_EQ(shifted.kind, TrackMatchKind::Interpolated) << "the folder's offset moves the item onto the track";
    EXPECT_NEAR(shifted.infos.coordinate.latitude, 46.005, 1e-9);

    EXPECT_FALSE(LOTController::hasDateOfItsOwn(*fileDated));
    EXPECT_EQ(tracks.matchForPic(*fileDated).kind, TrackMatchKind::NoTrack);
}

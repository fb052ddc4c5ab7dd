// The imported GPX tracks are part of the kept working set: written beside the folders, they
// come back with their keys, so the places the tracks gave and the links that name them hold
// after a restore, and a damaged tracks file costs the tracks alone.

#include "WorkingSet.h"

#include "app/StateKeeper.h"
#include "app/TrackLinks.h"
#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"
#include "places/LOTController.h"
#include "states/AdditionalData.h"
#include "states/SavedFolders.h"
#include "states/StateFiles.h"
#include "support/MediaFileBuilder.h"
#include "support/SaveFixture.h"

#include <QCborArray>
#include <QCborMap>
#include <QCborValue>
#include <QFile>
#include <QtEndian>

#include <functional>
#include <limits>

using namespace orv;
using namespace orv::test;
using namespace Qt::StringLiterals;

namespace {

// Along the meridian 14 E from 10:00 to 10:02 UTC, climbing, with a logger's accuracy.
const QByteArray hikeGpx =
    "<?xml version=\"1.0\"?><gpx version=\"1.1\" xmlns=\"http://www.topografix.com/GPX/1/1\""
    " xmlns:gpxtpx=\"http://www.garmin.com/xmlschemas/TrackPointExtension/v2\"><trk><name>hike</name><trkseg>"
    "<trkpt lat=\"46.0\" lon=\"14.0\"><ele>500</ele><time>2024-05-01T10:00:00Z</time><extensions>"
    "<gpxtpx:TrackPointExtension><gpxtpx:hAcc>3</gpxtpx:hAcc></gpxtpx:TrackPointExtension></extensions></trkpt>"
    "<trkpt lat=\"46.01\" lon=\"14.0\"><ele>560</ele><time>2024-05-01T10:01:00Z</time></trkpt>"
    "<trkpt lat=\"46.02\" lon=\"14.0\"><ele>620</ele><time>2024-05-01T10:02:00Z</time></trkpt>"
    "</trkseg></trk></gpx>";

struct Place
{
    std::optional<double> lat, lon;
    double altitude, hAcc;
    QString key;
    bool prevented;
    bool operator==(const Place &) const = default;
};

Place placeOf(const MySinglePic &pic)
{
    return {pic.gpsLat, pic.gpsLong, pic.newLocationAltitude, pic.newLocationHAccuracy, pic.locAddedByTrackKey,
            pic.isTrackLinkingPrevented};
}

class StateTracksTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ensureStatesApplication();
        const QString dir = root.filePath(u"walk"_s);
        QDir().mkpath(dir);
        for (const auto &[name, stamp] : {std::pair{"a", "2024:05:01 10:00:30"}, std::pair{"b", "2024:05:01 10:01:30"},
                                          std::pair{"c", "2024:05:01 10:01:45"}, std::pair{"d", "2024:05:01 12:00:00"}}) {
            TiffShape tags;
            tags.dateTimeOriginal = Stamp::text(stamp);
            tags.offsetTimeOriginal = Stamp::text("+00:00");
            buildJpeg({.exif = tags}).write(dir, QString::fromLatin1(name));
        }
        QFile gpx(root.filePath(u"hike.gpx"_s));
        ASSERT_TRUE(gpx.open(QIODevice::WriteOnly));
        gpx.write(hikeGpx);
        gpx.close();

        set.importFolders({dir});
        ASSERT_EQ(set.folders().size(), 1);
        TrackLinks &links = set.controller.trackLinks();
        const TrackLinks::ImportedTracks imported = links.importFiles(TrackLinks::readFiles({gpx.fileName()}));
        ASSERT_EQ(imported.keys.size(), 1);
        key = imported.keys.first();
        ASSERT_EQ(links.linkTracks(set.folders(), imported.keys), DateChangeResult::Changed);
        ASSERT_EQ(links.unlinkPics({pic(set, "c")}), DateChangeResult::Changed);
    }
    static MySinglePic *pic(const WorkingSet &owner, const char *name)
    {
        for (MySinglePic *p : owner.folders().value(0)->sfPicDetails_fullArray)
            if (p->spName.startsWith(QLatin1String(name)))
                return p;
        return nullptr;
    }
    QList<Place> places(const WorkingSet &owner) const
    {
        QList<Place> all;
        for (const char *name : {"a", "b", "c", "d"})
            all << placeOf(*pic(owner, name));
        return all;
    }

    QTemporaryDir root, state;
    WorkingSet set;
    QString key;
};

} // namespace

TEST_F(StateTracksTest, TheTracksComeBackWithTheirKeysSoTheirPlacesAndLinksHoldAfterARestore)
{
    const QList<Place> before = places(set);
    ASSERT_EQ(before[0].key, key);
    ASSERT_DOUBLE_EQ(before[0].altitude, 530.0) << "half way up from 500 m to 560 m";
    ASSERT_TRUE(before[2].prevented);
    ASSERT_FALSE(before[2].lat) << "closed to the track, it has no place";
    ASSERT_FALSE(before[3].lat) << "after the track's end";

    // The quit files, and a package, as the window keeps them.
    const QString quitFolders = state.filePath(StateFiles::foldersQuitName);
    StateKeeper keeper(set.controller, quitFolders);
    keeper.start();
    keeper.writeNow();
    ASSERT_TRUE(QFileInfo::exists(state.filePath(StateFiles::additionalDataQuitName)));
    const StateFiles::NewPackage package =
        StateFiles::writePackage(state.path(), SavedFolders::write(set.folders()), keeper.additionalData());
    ASSERT_TRUE(package.problem.isEmpty()) << package.problem.toStdString();

    for (const QString &kept : {quitFolders, package.path}) {
        WorkingSet restored;
        StateKeeper restoring(restored.controller, state.filePath(u"elsewhere"_s));
        const StateRestore::Restored result = restoring.restore(kept);
        ASSERT_TRUE(result.read.problem.isEmpty()) << result.read.problem.toStdString();
        EXPECT_TRUE(result.report.isClean()) << result.report.lines().join(u'\n').toStdString();
        const MyGpxTrack *track = restored.controller.tracks().track(key);
        ASSERT_NE(track, nullptr) << "under its own key";
        EXPECT_EQ(*track, *set.controller.tracks().track(key)) << "every point";
        EXPECT_EQ(track->name, u"hike"_s);
        EXPECT_EQ(track->trackState, TrackState::Usable);
        EXPECT_EQ(restored.folders().value(0)->linkedTracksKeys, QSet<QString>{key});
        EXPECT_EQ(places(restored), before);
        EXPECT_EQ(keeper.additionalData(), restoring.additionalData()) << "the same bytes when kept again";

        // The links work on: the item closed to the track opens again, and a later date walks
        // the places up the track.
        ASSERT_EQ(restored.controller.trackLinks().linkPics({pic(restored, "c")}), DateChangeResult::Changed);
        EXPECT_EQ(pic(restored, "c")->locAddedByTrackKey, key);
        EXPECT_NEAR(*pic(restored, "c")->gpsLat, 46.01 + 0.01 * 45.0 / 60.0, 1e-9);
        restored.controller.dateChanges().dragChangedDates(restored.folders(), 30, false);
        EXPECT_DOUBLE_EQ(pic(restored, "a")->newLocationAltitude, 560.0);
    }
}

TEST_F(StateTracksTest, ADamagedTracksFileIsKeptAsideAndTheFoldersRestoreAlone)
{
    StateKeeper keeper(set.controller, state.filePath(StateFiles::foldersQuitName));
    keeper.start();
    keeper.writeNow();
    const QString additionalPath = state.filePath(StateFiles::additionalDataQuitName);
    const QByteArray good = fileBytes(additionalPath);
    ASSERT_EQ(AdditionalData::read(good, u"x"_s).importedTracks.size(), 1);

    // Edits of the one track's map, or of its first segment's point columns.
    const auto edited = [&good](const std::function<void(QCborMap &track)> &edit) {
        QCborMap root = QCborValue::fromCbor(good).taggedValue().toMap();
        QCborArray tracks = root.value(u"importedTracks"_s).toArray();
        QCborMap track = tracks.at(0).toMap();
        edit(track);
        tracks[0] = track;
        root.insert(u"importedTracks"_s, tracks);
        return QCborValue(QCborKnownTags::Signature, root).toCbor();
    };
    const auto editedColumns = [&edited](const std::function<void(QCborMap &columns)> &edit) {
        return edited([&edit](QCborMap &track) {
            QCborArray segments = track.value(u"trackSegments"_s).toArray();
            QCborMap segment = segments.at(0).toMap();
            QCborMap columns = segment.value(u"trackPoints"_s).toMap();
            edit(columns);
            segment.insert(u"trackPoints"_s, columns);
            segments[0] = segment;
            track.insert(u"trackSegments"_s, segments);
        });
    };
    const auto column = [](const QString &name, int index, double value) {
        return [=](QCborMap &columns) {
            QByteArray bytes = columns.value(name).toByteArray();
            qToLittleEndian<double>(value, bytes.data() + index * 8);
            columns.insert(name, bytes);
        };
    };
    const auto chopped = [](const QString &name, int bytes) {
        return [=](QCborMap &columns) { columns.insert(name, columns.value(name).toByteArray().chopped(bytes)); };
    };
    const QList<std::pair<const char *, QByteArray>> hostile = {
        {"cut by one byte", good.chopped(1)},
        {"no state tag", QCborValue::fromCbor(good).taggedValue().toCbor()},
        {"a latitude beyond the pole", editedColumns(column(u"latitude"_s, 1, 90.5))},
        {"a height that is no number", editedColumns(column(u"elevation"_s, 0, std::nan("")))},
        {"an endless time", editedColumns(column(u"time"_s, 2, std::numeric_limits<double>::infinity()))},
        {"a column one point short", editedColumns(chopped(u"hAcc"_s, 8))},
        {"a column of broken doubles", editedColumns(chopped(u"time"_s, 3))},
        {"segments as a map", edited([](QCborMap &t) { t.insert(u"trackSegments"_s, QCborMap()); })},
        {"a track without a key", edited([](QCborMap &t) { t.remove(u"key"_s); })},
        {"a correction as text", edited([](QCborMap &t) { t.insert(u"timeCorrection"_s, u"1h"_s); })},
    };
    for (const auto &[what, bytes] : hostile) {
        QFile file(additionalPath);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(bytes);
        file.close();

        WorkingSet restored;
        StateKeeper restoring(restored.controller, state.filePath(u"elsewhere"_s));
        const StateRestore::Restored result = restoring.restore(state.filePath(StateFiles::foldersQuitName));
        ASSERT_EQ(restored.folders().size(), 1) << what << ": the folders restore";
        EXPECT_TRUE(restored.controller.tracks().keys().isEmpty()) << what;
        EXPECT_TRUE(result.report.additionalDataProblem.startsWith(additionalPath))
            << what << ": " << result.report.additionalDataProblem.toStdString();
        EXPECT_FALSE(QFileInfo::exists(additionalPath)) << what;
        const QStringList aside = QDir(state.path()).entryList({StateFiles::additionalDataQuitName + u".unreadable*"_s});
        ASSERT_EQ(aside.size(), 1) << what;
        EXPECT_EQ(fileBytes(state.filePath(aside.first())), bytes) << what << ": kept as it was";
        QFile::remove(state.filePath(aside.first()));
    }
}

TEST(AdditionalData, EveryKindOfSegmentAndPointComesBackAndItsStatesAreFoundAgain)
{
    const Instant ten = Instant::fromUtc(2024, 5, 1, 10);
    const double none = MyGpxTrackPoint::notSet;
    MyGpxTrack track;
    track.key = u"1714557600.000000"_s;
    track.filePath = u"/trips/day one.gpx"_s;
    track.name = u"Über den Paß"_s;
    track.timeCorrection = -3600.5;
    track.trackSegments = {
        {{{46.0, 14.0, 500.0, 3.0, ten}, {-46.5, -179.99, none, none, ten.addingSeconds(0.25)}}, {}},
        {{{1.0, 2.0, -12.5, none, std::nullopt}, {1.5, 2.5, none, 7.0, ten.addingSeconds(60)}}, {}}, // mixed
        {{}, {}},                                                                                   // empty
    };
    track.validateTrack();
    MyGpxTrack broken;
    broken.key = u"2"_s;
    broken.trackSegments = {{{{0, 0, none, none, ten.addingSeconds(5)}, {0, 0, none, none, ten}}, {}}};
    broken.validateTrack();

    const AdditionalData::ReadResult read = AdditionalData::read(AdditionalData::write({&track, &broken}), u"x"_s);
    ASSERT_TRUE(read.problem.isEmpty()) << read.problem.toStdString();
    ASSERT_EQ(read.importedTracks.size(), 2);
    const MyGpxTrack &back = read.importedTracks[0];
    EXPECT_EQ(back, track);
    EXPECT_EQ(std::tie(back.key, back.filePath, back.name, back.type, back.timeCorrection),
              std::tie(track.key, track.filePath, track.name, track.type, track.timeCorrection));
    EXPECT_EQ(back.trackSegments[1].segmentState, SegmentState::MixedTimes);
    EXPECT_EQ(back.trackSegments[2].segmentState, SegmentState::NoPoints);
    EXPECT_EQ(back.timedTrackSegments, track.timedTrackSegments);
    EXPECT_EQ(read.importedTracks[1].trackState, TrackState::WrongOrder);

    MyGpxTrack longTrack;
    longTrack.key = u"3"_s;
    longTrack.trackSegments = {{QList<MyGpxTrackPoint>(10000, {46.0, 14.0, 500.0, none, ten}), {}}};
    EXPECT_LT(AdditionalData::write({&longTrack}).size(), 10000 * 40 + 200) << "five doubles a point, no more";
}

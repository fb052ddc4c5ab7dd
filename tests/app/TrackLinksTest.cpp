// Linking tracks to folders and items through the owner of changes: what the items take, and
// undo and redo putting back every location field.

#include "app/TrackLinks.h"
#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"
#include "places/LOTController.h"

#include <QUndoStack>
#include <cmath>
#include <gtest/gtest.h>

using namespace orv;

namespace {

const Instant ten = Instant::fromUtc(2024, 5, 1, 10);

// Every location field of an item, read field by field.
struct Fields
{
    std::optional<double> lat, lon, latOld, lonOld;
    double hAcc, altitude;
    int added, linkedType;
    bool prevented;
    QString key;

    static Fields of(const MySinglePic &p)
    {
        return {p.gpsLat,          p.gpsLong,           p.gpsLatOld, p.gpsLongOld, p.newLocationHAccuracy,
                p.newLocationAltitude, p.hasAddedLocation, p.linkedToFolderTracksType, p.isTrackLinkingPrevented,
                p.locAddedByTrackKey};
    }
    bool operator==(const Fields &) const = default;
};

class TrackLinksTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        GpxFile file;
        MyGpxTrack track;
        track.trackSegments.append({{{46.0, 14.0, 500.0, 3.0, ten}, {46.1, 14.0, 600.0, 5.0, ten.addingSeconds(100)}},
                                    SegmentState::Usable});
        track.validateTrack();
        file.tracks = {track};
        key = tracks.importTracks(file).first();
    }

    MySinglePic &addPic(const char *name, double secondsAfterTen)
    {
        MySinglePic *pic = folder.adoptPic(std::make_unique<MySinglePic>(QString::fromLatin1(name), &folder,
                                                                         SpTypeExifOriginal, ten.addingSeconds(secondsAfterTen)));
        folder.sfUpdatePicsFromAndTill();
        return *pic;
    }

    QList<Fields> fieldsOfAll() const
    {
        QList<Fields> all;
        for (const MySinglePic *pic : folder.sfPicDetails_fullArray)
            all.append(Fields::of(*pic));
        return all;
    }

    MySingleFolder folder{QStringLiteral("/hike"), false};
    QUndoStack stack;
    LOTController tracks;
    DateChanges dateChanges{stack, {}};
    int changes = 0;
    TrackLinks links{stack, tracks, dateChanges, {[this](const QList<MySingleFolder *> &) { ++changes; }, nullptr, nullptr}};
    QString key;
};

} // namespace

TEST_F(TrackLinksTest, LinkingATrackPlacesTheItemsWithoutAPlaceAndUndoRedoRestoreEveryField)
{
    MySinglePic &onTrack = addPic("on.jpg", 25);
    MySinglePic &ownPlace = addPic("own.jpg", 50);
    ownPlace.gpsLat = 1.0;
    ownPlace.gpsLong = 2.0;
    MySinglePic &offTrack = addPic("off.jpg", 500);
    const QList<Fields> before = fieldsOfAll();

    ASSERT_EQ(links.linkTracks({&folder}, {key}), DateChangeResult::Changed);
    EXPECT_EQ(stack.count(), 1);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(folder.linkedTracksKeys, QSet<QString>{key});
    EXPECT_NEAR(*onTrack.gpsLat, 46.025, 1e-9);
    EXPECT_EQ(onTrack.gpsLatOld, std::nullopt) << "it had no place before";
    EXPECT_EQ(onTrack.hasAddedLocation, 2);
    EXPECT_EQ(onTrack.locAddedByTrackKey, key);
    EXPECT_DOUBLE_EQ(onTrack.newLocationAltitude, 525.0) << "a quarter of the way from 500 m to 600 m";
    EXPECT_DOUBLE_EQ(onTrack.newLocationHAccuracy, 3.5);
    EXPECT_TRUE(onTrack.hasLocationChange());
    EXPECT_TRUE(folder.isUnsavedFolder()) << "a track's place waits for the save";
    EXPECT_EQ(*ownPlace.gpsLat, 1.0) << "a place of its own stays";
    EXPECT_TRUE(ownPlace.isTrackLinkingPrevented);
    EXPECT_EQ(offTrack.linkedToFolderTracksType, 1);
    EXPECT_FALSE(offTrack.gpsLat) << "outside the track: no place";
    const QList<Fields> linked = fieldsOfAll();

    stack.undo();
    EXPECT_EQ(fieldsOfAll(), before);
    EXPECT_TRUE(folder.linkedTracksKeys.isEmpty());
    EXPECT_FALSE(folder.isUnsavedFolder());
    stack.redo();
    EXPECT_EQ(fieldsOfAll(), linked);

    ASSERT_EQ(links.unlinkTracks({&folder}, {key}), DateChangeResult::Changed);
    EXPECT_FALSE(onTrack.gpsLat) << "the track let go: what it had comes back";
    EXPECT_EQ(onTrack.hasAddedLocation, 0);
    EXPECT_TRUE(onTrack.locAddedByTrackKey.isEmpty());
    stack.undo();
    EXPECT_EQ(fieldsOfAll(), linked);
}

TEST_F(TrackLinksTest, AnItemOpenedToTracksGivesUpItsPlaceAndClosedTakesItBack)
{
    MySinglePic &own = addPic("own.jpg", 50);
    own.gpsLat = 1.0;
    own.gpsLong = 2.0;
    own.newLocationHAccuracy = 7.0;
    ASSERT_EQ(links.linkTracks({&folder}, {key}), DateChangeResult::Changed);
    const Fields kept = Fields::of(own);

    ASSERT_EQ(links.linkPics({&own}), DateChangeResult::Changed);
    EXPECT_NEAR(*own.gpsLat, 46.05, 1e-9);
    EXPECT_EQ(own.gpsLatOld, 1.0) << "the save sees a moved place";
    EXPECT_EQ(own.gpsLongOld, 2.0);
    EXPECT_EQ(own.hasAddedLocation, 2);
    const Fields opened = Fields::of(own);

    ASSERT_EQ(links.unlinkPics({&own}), DateChangeResult::Changed);
    EXPECT_EQ(own.gpsLat, 1.0);
    EXPECT_EQ(own.gpsLatOld, std::nullopt);
    EXPECT_EQ(own.newLocationHAccuracy, 7.0);
    EXPECT_EQ(own.hasAddedLocation, 0);
    EXPECT_TRUE(own.isTrackLinkingPrevented);
    EXPECT_EQ(own.linkedToFolderTracksType, 0);

    stack.undo();
    EXPECT_EQ(Fields::of(own), opened);
    stack.undo();
    EXPECT_EQ(Fields::of(own), kept);
    stack.redo();
    stack.redo();
    EXPECT_EQ(own.gpsLat, 1.0);
    EXPECT_EQ(links.unlinkPics({&own}), DateChangeResult::Unchanged) << "no step that changes nothing";
}

TEST_F(TrackLinksTest, NothingChangesWhileASaveOwnsTheFolders)
{
    addPic("on.jpg", 25);
    dateChanges.setBlocked(true);
    EXPECT_EQ(links.linkTracks({&folder}, {key}), DateChangeResult::Refused);
    EXPECT_EQ(stack.count(), 0);
    EXPECT_TRUE(folder.linkedTracksKeys.isEmpty());
}

TEST_F(TrackLinksTest, APlaceTheUserGivesIsTheItemsOwnAndOneStep)
{
    MySinglePic &onTrack = addPic("on.jpg", 25);
    MySinglePic &ownPlace = addPic("own.jpg", 50);
    ownPlace.gpsLat = 1.0;
    ownPlace.gpsLong = 2.0;
    ASSERT_EQ(links.linkTracks({&folder}, {key}), DateChangeResult::Changed);
    const QList<Fields> linked = fieldsOfAll();

    ASSERT_EQ(links.placePics({&onTrack, &ownPlace}, {40.0, 10.0}, QStringLiteral("Move Location")),
              DateChangeResult::Changed);
    EXPECT_EQ(stack.count(), 2);
    EXPECT_EQ(stack.undoText(), QStringLiteral("Move Location"));
    for (const MySinglePic *pic : {&onTrack, &ownPlace}) {
        EXPECT_EQ(pic->gpsLat, 40.0);
        EXPECT_EQ(pic->gpsLong, 10.0);
        EXPECT_EQ(pic->hasAddedLocation, 1);
        EXPECT_TRUE(pic->isTrackLinkingPrevented) << "the folder's track no longer moves it";
        EXPECT_TRUE(pic->locAddedByTrackKey.isEmpty());
    }
    EXPECT_EQ(ownPlace.gpsLatOld, 1.0) << "what the file holds waits for the save";
    tracks.refreshTrackLocationsForFolder(folder);
    EXPECT_EQ(onTrack.gpsLat, 40.0) << "dates moving later do not take it back to the track";
    const QList<Fields> placed = fieldsOfAll();

    stack.undo();
    EXPECT_EQ(fieldsOfAll(), linked);
    stack.redo();
    EXPECT_EQ(fieldsOfAll(), placed);

    EXPECT_EQ(links.placePics({&onTrack, &ownPlace}, {40.0, 10.0}, QString()), DateChangeResult::Unchanged)
        << "already there";
    EXPECT_EQ(links.placePics({&onTrack}, {90.5, 10.0}, QString()), DateChangeResult::Refused);
    EXPECT_EQ(links.placePics({&onTrack}, {10.0, std::nan("")}, QString()), DateChangeResult::Refused);
    EXPECT_EQ(stack.count(), 2);
    EXPECT_EQ(onTrack.gpsLat, 40.0);
}

TEST_F(TrackLinksTest, ItemsAlignedTakeEachTheirOwnPlaceInOneStep)
{
    MySinglePic &first = addPic("a.jpg", 10);
    MySinglePic &second = addPic("b.jpg", 20);
    const QList<Fields> before = fieldsOfAll();
    ASSERT_EQ(links.placeEach({{&first, {10.0, 20.0}}, {&second, {11.0, 21.0}}}, QStringLiteral("Align Locations Evenly")),
              DateChangeResult::Changed);
    EXPECT_EQ(stack.count(), 1);
    EXPECT_EQ(first.gpsLat, 10.0);
    EXPECT_EQ(second.gpsLong, 21.0);
    stack.undo();
    EXPECT_EQ(fieldsOfAll(), before);
    EXPECT_EQ(links.placeEach({{&first, {10.0, 20.0}}, {&second, {11.0, 200.0}}}, QString()), DateChangeResult::Refused)
        << "one place off the globe refuses the whole step";
    EXPECT_EQ(fieldsOfAll(), before);
}

// A track recorded in Ljubljana and another in Samoa: each answers the zone of the place nearest
// its first point, and offers it to the folders whose camera wrote no offset tags, as one zone
// change.
TEST_F(TrackLinksTest, ATracksZoneIsWhereItBeganAndIsOfferedOnlyToFoldersWhoseCameraWroteNoOffset)
{
    const auto importAt = [this](GeoCoordinate start) {
        GpxFile file;
        MyGpxTrack track;
        track.trackSegments.append(
            {{{start.latitude, start.longitude, 300.0, 3.0, ten}, {46.2, 14.6, 300.0, 3.0, ten.addingSeconds(60)}}, {}});
        track.validateTrack();
        file.tracks = {track};
        return tracks.importTracks(file).first();
    };
    const QString ljubljana = importAt({46.0511, 14.5051});
    EXPECT_EQ(tracks.trackTimeZone(ljubljana), QStringLiteral("Europe/Ljubljana"));
    EXPECT_EQ(tracks.trackTimeZone(importAt({-13.8333, -171.7667})), QStringLiteral("Pacific/Apia"));
    EXPECT_EQ(tracks.trackTimeZone(QStringLiteral("no such key")), QString());

    const QString zone = tracks.trackTimeZone(ljubljana);
    addPic("no_offset.jpg", 10);
    const QList<ZoneChangeCommand::FolderChange> changes = TrackLinks::trackZoneChanges({&folder}, zone);
    ASSERT_EQ(changes.size(), 1);
    EXPECT_EQ(changes[0].folder, &folder);
    EXPECT_EQ(changes[0].before.source, folder.sourceTimeZones);
    EXPECT_EQ(changes[0].after.source.defaultZone, zone);
    EXPECT_EQ(changes[0].after.target.defaultZone, zone) << "the stamps keep their wall clock";
    FolderTimeZones tokyo;
    tokyo.defaultZone = QStringLiteral("Asia/Tokyo");
    folder.targetTimeZones = tokyo;
    EXPECT_EQ(TrackLinks::trackZoneChanges({&folder}, zone).value(0).after.target, tokyo) << "a zone to write stays";
    folder.targetTimeZones = {};
    ASSERT_EQ(dateChanges.changeTimeZones(changes, {}), DateChangeResult::Changed);
    EXPECT_EQ(folder.sourceTimeZones.defaultZone, zone);
    EXPECT_TRUE(TrackLinks::trackZoneChanges({&folder}, zone).isEmpty()) << "it has that zone already";
    stack.undo();
    EXPECT_EQ(folder.sourceTimeZones.defaultZone, std::nullopt);

    EXPECT_TRUE(TrackLinks::trackZoneChanges({&folder}, QString()).isEmpty()) << "no zone, no offer";

    // A camera that wrote its offset keeps its own clock.
    folder.sfPicDetails_fullArray.first()->singlePicAttributes.ExifOffsetTimeOriginal = OffsetTagRecord{{}, 100};
    EXPECT_TRUE(TrackLinks::trackZoneChanges({&folder}, zone).isEmpty());
}

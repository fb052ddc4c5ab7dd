// The owner announces every change it makes and, after a save, forgets exactly the saved
// folders' history.

#include "app/AppController.h"
#include "core/MySinglePic.h"
#include "core/Preferences.h"
#include "folders/ImportQuestions.h"
#include "folders/MyDroppedFolders.h"

#include <gtest/gtest.h>

using namespace orv;

namespace {

class AppControllerTest : public ::testing::Test
{
protected:
    MySinglePic &addPic(MySingleFolder &folder)
    {
        MySinglePic *pic = folder.adoptPic(std::make_unique<MySinglePic>(
            QStringLiteral("a.jpg"), &folder, SpTypeExifOriginal, Instant::fromUtc(2024, 5, 1, 10)));
        folder.sfUpdatePicsFromAndTill();
        return *pic;
    }

    Preferences prefs{QString()};
    FixedImportAnswers answers{ImportOptions()};
    AppController controller{prefs, answers, QString()};
};

TEST_F(AppControllerTest, EveryChangeForwardAndBackIsAnnouncedByTheNotificationsNames)
{
    MySingleFolder folder(QStringLiteral("/a"), false);
    addPic(folder);
    QList<QList<MySingleFolder *>> reloaded;
    int expertChanges = 0, refusals = 0;
    QList<MySingleFolder *> modeChanges;
    QObject::connect(&controller, &AppController::reloadThumbs,
                     [&](const QList<MySingleFolder *> &folders) { reloaded.append(folders); });
    QObject::connect(&controller, &AppController::expertRelevantChangeWasMade, [&] { ++expertChanges; });
    QObject::connect(&controller, &AppController::dateChangeRefused, [&] { ++refusals; });
    QObject::connect(&controller, &AppController::changedFolderEditMode,
                     [&](MySingleFolder *f) { modeChanges.append(f); });

    controller.dateChanges().dragChangedDates({&folder}, 60, false);
    controller.uManager().undo();
    controller.dateChanges().changeEditMode({&folder}, MySingleFolder::EditSeparately);
    controller.dateChanges().dragChangedDates({&folder}, 1e12, false);

    EXPECT_EQ(reloaded.size(), 3);
    EXPECT_EQ(expertChanges, 3);
    EXPECT_EQ(modeChanges, QList<MySingleFolder *>{&folder});
    EXPECT_EQ(refusals, 1);
}

TEST_F(AppControllerTest, ASaveBlocksChangesAndThenDropsOnlyTheSavedFoldersHistory)
{
    MySingleFolder saved(QStringLiteral("/saved"), false), other(QStringLiteral("/other"), false);
    addPic(saved);
    addPic(other);
    DateChanges &changes = controller.dateChanges();
    changes.dragChangedDates({&saved}, 60, false);
    changes.dragChangedDates({&other}, 120, false);

    controller.saveWillStart();
    EXPECT_TRUE(controller.isStandardBlocked());
    EXPECT_EQ(changes.dragChangedDates({&other}, 180, false), DateChangeResult::Refused);
    controller.didSaveFolders({&saved});

    EXPECT_FALSE(controller.isStandardBlocked());
    EXPECT_EQ(controller.uManager().count(), 1);
    controller.uManager().undo();
    EXPECT_EQ(other.sfDateModificationsTimeInterval, 0);
    EXPECT_EQ(saved.sfDateModificationsTimeInterval, 60);
}

} // namespace

TEST_F(AppControllerTest, PlacesFromATrackFollowTheDatesInForceAndTheirUndo)
{
    const Instant ten = Instant::fromUtc(2024, 5, 1, 10);
    GpxFile file;
    MyGpxTrack track;
    track.trackSegments.append({{{46.0, 14.0, 500.0, MyGpxTrackPoint::notSet, ten},
                                 {46.1, 14.0, 500.0, MyGpxTrackPoint::notSet, ten.addingSeconds(100)}},
                                SegmentState::Usable});
    track.validateTrack();
    file.tracks = {track};
    const QStringList keys = controller.tracks().importTracks(file);
    MySingleFolder folder(QStringLiteral("/a"), false);
    MySinglePic &pic = addPic(folder);
    pic.gpsLat = 1.0;
    pic.gpsLong = 2.0;
    ASSERT_EQ(controller.trackLinks().linkTracks({&folder}, keys), DateChangeResult::Changed);
    ASSERT_EQ(controller.trackLinks().linkPics({&pic}), DateChangeResult::Changed);
    EXPECT_EQ(*pic.gpsLat, 46.0);

    controller.dateChanges().dragChangedDates({&folder}, 50, false);
    EXPECT_NEAR(*pic.gpsLat, 46.05, 1e-9);
    EXPECT_EQ(pic.gpsLatOld, 1.0) << "the place the file holds stays the one a save replaces";
    controller.dateChanges().dragChangedDates({&folder}, 500, false);
    EXPECT_EQ(pic.gpsLat, 1.0) << "off the track: its own place comes back";
    EXPECT_FALSE(pic.hasLocationChange());
    controller.uManager().undo();
    EXPECT_NEAR(*pic.gpsLat, 46.05, 1e-9);
    controller.uManager().undo();
    EXPECT_EQ(*pic.gpsLat, 46.0);
    controller.uManager().undo();
    controller.uManager().undo();
    EXPECT_EQ(pic.gpsLat, 1.0);
    EXPECT_EQ(pic.gpsLatOld, std::nullopt);
    EXPECT_FALSE(pic.isTrackLinkingPrevented) << "before linking the item was open to tracks";
    EXPECT_TRUE(folder.linkedTracksKeys.isEmpty());
}

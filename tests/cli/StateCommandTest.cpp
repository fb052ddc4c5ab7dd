// `state show` prints a kept working set as the owner holds it after a restore, and names a file
// that is no state without touching it.

#include "states/WorkingSet.h"

#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"
#include "states/AdditionalData.h"
#include "states/SavedFolders.h"
#include "states/StateFiles.h"
#include "support/CliRun.h"
#include "support/MediaFileBuilder.h"
#include "support/SaveFixture.h"

#include <QJsonDocument>
#include <QJsonObject>

using namespace orv;
using namespace orv::test;
using namespace Qt::StringLiterals;

namespace {

TEST(StateCommand, ShowsFoldersItemsOffsetsZonesRatingsAndTheViewOfAPackage)
{
    ensureStatesApplication();
    QTemporaryDir root;
    TiffShape tags;
    tags.dateTimeOriginal = Stamp::text("2024:05:01 10:00:00");
    for (const QString &name : {u"a"_s, u"b"_s})
        buildJpeg({.exif = tags}).write(root.path(), name);
    WorkingSet set;
    set.importFolders({root.path()});
    MySingleFolder *folder = set.folders().at(0);
    set.controller.dateChanges().changeEditMode({folder}, MySingleFolder::EditSeparately);
    set.controller.dateChanges().dragChangedSinglePicModeDate({folder->sfPicDetails_fullArray.at(1)}, -90);
    folder->sfPicDetails_fullArray.at(0)->isKeeper = true;
    folder->sourceTimeZones.assign(*folder->sfPicDetails_fullArray.at(1), u"Asia/Tokyo"_s);
    AdditionalData::ViewState view;
    view.picSelectionCurrentIndex = 1;
    view.selectedThumbsIndexSet = {0, 1};
    view.ratingFilterSelectedOption = 2;
    view.filterSelectionsAndLockState = {u"rating/keepers"_s};
    view.secondsFromGMTForDate = AdditionalData::secondsFromGMTForDateNow();
    const StateFiles::NewPackage package = StateFiles::writePackage(
        root.path(), SavedFolders::write(set.folders()), AdditionalData::write(QList<const MyGpxTrack *>{}, view));
    ASSERT_TRUE(package.problem.isEmpty()) << package.problem.toStdString();
    ASSERT_TRUE(package.path.endsWith(u".orvstate"_s));

    const CliResult shown = runCli({u"state"_s, u"show"_s, package.path}, root.filePath(u"home"_s));
    ASSERT_EQ(shown.exitCode, 0) << shown.err.toStdString();
    const QJsonObject state = QJsonDocument::fromJson(shown.out).object();
    const QJsonObject shownFolder = state[u"folders"_s].toArray().at(0).toObject();
    EXPECT_EQ(shownFolder[u"path"_s].toString(), root.path());
    EXPECT_EQ(shownFolder[u"editMode"_s].toInt(), 2);
    EXPECT_EQ(shownFolder[u"sourceTimeZones"_s].toObject()[u"Asia/Tokyo"_s].toArray(), QJsonArray{u"b.jpg"_s});
    const QJsonArray items = shownFolder[u"items"_s].toArray();
    ASSERT_EQ(items.size(), 2);
    EXPECT_TRUE(items.at(0)[u"keeper"_s].toBool());
    EXPECT_EQ(items.at(1)[u"itemOffset"_s].toDouble(), -90);
    EXPECT_EQ(items.at(1)[u"dateOriginal"_s].toString(), items.at(0)[u"dateOriginal"_s].toString());
    EXPECT_TRUE(items.at(1)[u"unsaved"_s].toBool());
    EXPECT_FALSE(items.at(0)[u"unsaved"_s].toBool());
    const QJsonObject shownView = state[u"view"_s].toObject();
    EXPECT_EQ(shownView[u"picSelectionCurrentIndex"_s].toInt(), 1);
    EXPECT_EQ(shownView[u"selectedThumbsIndexSet"_s].toArray(), (QJsonArray{0, 1}));
    EXPECT_EQ(shownView[u"ratingFilterSelectedOption"_s].toInt(), 2);
    EXPECT_EQ(shownView[u"selectedFolderIndex"_s].toInt(), -1);
    EXPECT_EQ(shownView[u"filterSelectionsAndLockState"_s].toArray(), QJsonArray{u"rating/keepers"_s});
    EXPECT_EQ(shownView[u"filterExpandedState2"_s].toArray(), QJsonArray());
    EXPECT_EQ(shownView[u"conversionType"_s].toInt(), 0) << "kept under this zone";
}

TEST(StateCommand, AFileThatIsNoStateIsNamedAndLeftAsItIs)
{
    QTemporaryDir root;
    const QString path = root.filePath(StateFiles::foldersQuitName);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("no state at all");
    file.close();

    const CliResult shown = runCli({u"state"_s, u"show"_s, path}, root.filePath(u"home"_s));
    EXPECT_EQ(shown.exitCode, 1);
    EXPECT_TRUE(shown.err.contains(path.toUtf8())) << shown.err.toStdString();
    EXPECT_TRUE(shown.out.isEmpty());
    EXPECT_EQ(fileBytes(path), QByteArray("no state at all"));
    EXPECT_EQ(runCli({u"state"_s, u"list"_s}, root.filePath(u"home"_s)).exitCode, 2);
}

} // namespace

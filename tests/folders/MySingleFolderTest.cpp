#include "core/MySinglePic.h"
#include "folders/FolderColors.h"
#include "folders/FolderToken.h"
#include "folders/MySingleFolder.h"
#include "time/TimeZone.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace orv;

namespace {

MySinglePic *addPic(MySingleFolder &folder, const char *name, Instant date, int type = SpTypeExifOriginal)
{
    return folder.adoptPic(std::make_unique<MySinglePic>(QString::fromLatin1(name), &folder, type, date));
}

DateModifications texts(const char *direction, const char *d, const char *h, const char *m, const char *s)
{
    return {{dateModificationKey::direction, QString::fromLatin1(direction)},
            {dateModificationKey::days, QString::fromLatin1(d)},
            {dateModificationKey::hours, QString::fromLatin1(h)},
            {dateModificationKey::minutes, QString::fromLatin1(m)},
            {dateModificationKey::seconds, QString::fromLatin1(s)}};
}

const Instant noon = Instant::fromUtc(2024, 5, 1, 12, 0, 0);

} // namespace

TEST(FolderOffset, AnIntervalSplitsIntoTheFiveTexts)
{
    MySingleFolder folder(QStringLiteral("/photos"), false);
    EXPECT_EQ(folder.sfDateModifications, texts("+", "0", "0", "0", "0"));
    folder.setSfDateModificationsFromTimeInterval(-(2 * 86400 + 3 * 3600 + 4 * 60 + 5), false);
    EXPECT_EQ(folder.sfDateModifications, texts("-", "2", "3", "4", "5"));
    EXPECT_TRUE(folder.hasChangedDirection);
    EXPECT_TRUE(folder.isDateModified());
}

TEST(FolderOffset, MinusZeroStaysAsTheUserChoseIt)
{
    MySingleFolder folder(QStringLiteral("/photos"), false);
    folder.setSfDateModificationsFromTimeInterval(0.0, true);
    EXPECT_EQ(folder.sfDateModifications, texts("-", "0", "0", "0", "0"));
    EXPECT_TRUE(folder.isTogetherDateUIModified());
    EXPECT_FALSE(folder.isDateModified());
}

TEST(FolderOffset, TextsGiveTheIntervalAndMoveTheItems)
{
    MySingleFolder folder(QStringLiteral("/photos"), false);
    MySinglePic *pic = addPic(folder, "a.jpg", noon);
    folder.setDirection(QStringLiteral("-"), QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3"),
                        QStringLiteral("4"));
    EXPECT_EQ(folder.sfDateModificationsTimeInterval, -(86400.0 + 7200 + 180 + 4));
    EXPECT_TRUE(folder.tempHasChangedDirection);
    EXPECT_EQ(pic->spDateTimeModified(), noon.addingSeconds(-(86400.0 + 7200 + 180 + 4)));
    EXPECT_EQ(folder.sfFrom, pic->spDateTimeModified());
    EXPECT_EQ(folder.sfPics, 1);
}

TEST(FolderOffset, SeparateModeCountsItemsWithAnOffsetOfTheirOwn)
{
    MySingleFolder folder(QStringLiteral("/photos"), true);
    MySinglePic *a = addPic(folder, "a.jpg", noon);
    addPic(folder, "b.jpg", noon);
    folder.updateSinglePicModificationBy(*a, 60);
    folder.updateSinglePicModificationBy(*a, 30);
    EXPECT_EQ(folder.singlePicModeImages, 1);
    EXPECT_TRUE(folder.isDateModified());
    a->saveErrorType = SaveErrorTime;
    folder.clearSinglePicModeImages();
    EXPECT_EQ(a->singlePicModification, 90.0) << "a failed time save is retried, not forgotten";
    a->saveErrorType = 0;
    folder.clearSinglePicModeImages();
    EXPECT_EQ(folder.singlePicModeImages, 0);
    EXPECT_FALSE(folder.isDateModified());
}

TEST(FolderCounts, AnEmptyFolderHasNoSourceRangeAndLosingTheLastItemResetsTheOffset)
{
    MySingleFolder folder(QStringLiteral("/photos"), false);
    EXPECT_EQ(folder.sfPics, -1);
    EXPECT_EQ(folder.sfFromIndexInSource(), -1);
    EXPECT_EQ(folder.sfTillIndexInSource(), -1);
    addPic(folder, "a.jpg", noon);
    folder.setSfDateModificationsFromTimeInterval(3600, false);
    folder.sfPicDetails_fullArray.clear();
    folder.sfUpdatePicsFromAndTill(true);
    EXPECT_EQ(folder.sfDateModificationsTimeInterval, 3600.0) << "a re-import keeps it";
    folder.sfPics = 1;
    folder.sfUpdatePicsFromAndTill();
    EXPECT_EQ(folder.sfDateModificationsTimeInterval, 0.0);
    EXPECT_EQ(folder.sfDateModifications, texts("+", "0", "0", "0", "0"));
    EXPECT_FALSE(folder.sfFrom);
}

TEST(FolderCounts, MediaTypesFollowTheItems)
{
    MySingleFolder folder(QStringLiteral("/photos"), false);
    folder.updateFolderValuesOnPicMove();
    EXPECT_EQ(folder.mediaTypesState, MySingleFolder::NoMedia);
    addPic(folder, "a.jpg", noon);
    folder.updateFolderValuesOnPicMove();
    EXPECT_EQ(folder.mediaTypesState, MySingleFolder::ImagesOnly);
    addPic(folder, "b.mov", noon, SpTypeMvhdCreation);
    folder.updateFolderValuesOnPicMove();
    EXPECT_EQ(folder.mediaTypesState, MySingleFolder::ImagesAndMovies);
    EXPECT_TRUE(folder.hasQTMvhd());
    EXPECT_EQ(folder.folderSortMode(), 1);
}

TEST(FolderZones, ItemZonesWinOverTheFolderAndEmptySetsLeave)
{
    MySingleFolder folder(QStringLiteral("/photos"), false);
    MySinglePic *a = addPic(folder, "a.jpg", noon);
    MySinglePic *b = addPic(folder, "b.jpg", noon);
    EXPECT_EQ(folder.sourceTimeZoneForPic(*a), TimeZone::systemZone());

    folder.setTZDefaultsSource(QStringLiteral("Europe/Berlin"), true);
    folder.sourceTimeZones.assign(*b, QStringLiteral("Asia/Tokyo"));
    EXPECT_EQ(folder.sourceTimeZoneForPic(*a)->name(), QStringLiteral("Europe/Berlin"));
    EXPECT_EQ(folder.sourceTimeZoneForPic(*b)->name(), QStringLiteral("Asia/Tokyo"));
    EXPECT_EQ(folder.targetTimeZoneForPic(*a)->name(), QStringLiteral("Europe/Berlin"))
        << "the folder form of unchanged is the source default";

    folder.targetTimeZones.defaultZone = QStringLiteral("America/New_York");
    folder.validateTZCUnsaved();
    EXPECT_TRUE(a->isUnsavedDueToTZC);
    EXPECT_TRUE(folder.isUnsavedDueToTZC);
    folder.targetTimeZones.assign(*b, zoneName::unchangedLeft);
    EXPECT_EQ(folder.targetTimeZoneForPic(*b)->name(), QStringLiteral("Asia/Tokyo"));
    folder.validateTZCUnsaved();
    EXPECT_FALSE(b->isUnsavedDueToTZC);

    folder.sourceTimeZones.remove(*b);
    EXPECT_TRUE(folder.sourceTimeZones.itemsByZone.isEmpty());
    folder.sourceTimeZones.defaultZone = QStringLiteral("No/Such_Zone");
    EXPECT_FALSE(folder.sourceTimeZoneForPic(*a).has_value());
}

TEST(FolderZones, CleanupMovesTheTargetToTheSource)
{
    MySingleFolder folder(QStringLiteral("/photos"), false);
    folder.sourceTimeZones.defaultZone = QStringLiteral("Europe/Berlin");
    folder.targetTimeZones.defaultZone = QStringLiteral("Asia/Tokyo");
    folder.cleanupTimeZones();
    EXPECT_EQ(folder.sourceTimeZones.defaultZone, QStringLiteral("Asia/Tokyo"));
    EXPECT_EQ(folder.targetTimeZones.defaultZone, zoneName::unchangedLeftFolder);
    folder.setTZDefaultsSource(QStringLiteral("Europe/Paris"), false);
    EXPECT_EQ(folder.sourceTimeZones.defaultZone, QStringLiteral("Asia/Tokyo")) << "zones already set stay";
}

TEST(FolderColorsTest, SurplusFoldersStayColourlessUntilAColourComesFree)
{
    FolderColors colors(2);
    MySingleFolder a(QStringLiteral("/a"), false), b(QStringLiteral("/b"), false), c(QStringLiteral("/c"), false);
    a.colorIndex = colors.indexOfNextColor();
    b.colorIndex = colors.indexOfNextColor();
    c.colorIndex = colors.indexOfNextColor();
    EXPECT_EQ(a.colorIndex, 0);
    EXPECT_EQ(b.colorIndex, 1);
    EXPECT_EQ(c.colorIndex, MySingleFolder::noColorIndex);
    colors.recycleColorIndexFromFolder(a, {&b, &c});
    EXPECT_EQ(c.colorIndex, 0) << "the first colourless folder takes it";
    colors.recycleColorIndexFromFolder(b, {&c});
    EXPECT_EQ(colors.indexOfNextColor(), 1);
}

TEST(FolderAccess, TheTokenFollowsARenamedFolderAndTheFolderTakesItsNewPath)
{
    QTemporaryDir root;
    const QString before = root.filePath(QStringLiteral("trip"));
    QDir().mkpath(before);
    MySingleFolder folder(before, false);
    folder.sfSecBookmark = *FolderToken::forPath(before);
    const QString after = root.filePath(QStringLiteral("trip 2024"));
    ASSERT_TRUE(QDir().rename(before, after));

    EXPECT_EQ(folder.unlockedSecUrl(), after);
    EXPECT_EQ(folder.sfFolderPath, after);
    EXPECT_EQ(folder.sfFolder, QStringLiteral("trip 2024"));
    EXPECT_EQ(folder.sfSecBookmark.path(), after);
}

TEST(FolderAccess, AMissingFolderDisconnectsOnceAndReconnectsWhenBack)
{
    QTemporaryDir root;
    const QString path = root.filePath(QStringLiteral("card"));
    QDir().mkpath(path);
    MySingleFolder folder(path, false);
    folder.sfSecBookmark = *FolderToken::forPath(path);
    folder.adoptPic(std::make_unique<MySinglePic>(QStringLiteral("a.jpg"), &folder, SpTypeExifOriginal, noon));
    ASSERT_TRUE(QDir(path).removeRecursively());

    EXPECT_TRUE(folder.unlockedSecUrl().isEmpty());
    EXPECT_TRUE(folder.isDisconnected);
    EXPECT_TRUE(folder.didProcessUnlockError);
    EXPECT_EQ(folder.errorType, FolderAccessError::None) << "a missing folder may come back";

    QDir().mkpath(path);
    EXPECT_EQ(folder.unlockedSecUrl(), path) << "another directory at the same place is taken, the token renewed";
    EXPECT_FALSE(folder.isDisconnected);
    EXPECT_FALSE(folder.didProcessUnlockError);
}

TEST(FolderAccess, StickyFailuresAreNotRetried)
{
    QTemporaryDir root;
    MySingleFolder folder(root.path(), false);
    folder.sfSecBookmark = *FolderToken::forPath(root.path());
    folder.errorType = FolderAccessError::Refused;
    EXPECT_TRUE(folder.unlockedSecUrl().isEmpty());
    EXPECT_FALSE(folder.isWriteableCheckingTrashed(false));
}

TEST(FolderAccess, ADerivedTokenMustLieInsideItsParent)
{
    QTemporaryDir root;
    QDir().mkpath(root.filePath(QStringLiteral("a/b")));
    const FolderToken parent = *FolderToken::forPath(root.filePath(QStringLiteral("a")));
    EXPECT_TRUE(FolderToken::derived(parent, root.filePath(QStringLiteral("a/b"))));
    EXPECT_FALSE(FolderToken::derived(parent, root.path()));
    EXPECT_FALSE(FolderToken::forPath(root.filePath(QStringLiteral("none"))));
}

// The tray keeps working sets as packages that list with their preview, open, rename, and go to
// the desktop's trash; a state opened from it leaves it, and one that a dead session had taken
// comes back to be verified.

#include "WorkingSet.h"

#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"
#include "states/SavedFolders.h"
#include "states/StateFiles.h"
#include "states/StateTray.h"
#include "support/MediaFileBuilder.h"
#include "support/SaveFixture.h"
#include "trash/FreedesktopTrash.h"

#include <QDirIterator>
#include <QFile>
#include <QImage>

using namespace orv;
using namespace orv::test;
using namespace Qt::StringLiterals;

namespace {

class StateTrayTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ensureStatesApplication();
        m_oldDataHome = qgetenv("XDG_DATA_HOME");
        qputenv("XDG_DATA_HOME", QFile::encodeName(dataHome.path()));
        photo(u"one"_s, u"a"_s, "2024:05:01 10:00:00");
        photo(u"one"_s, u"b"_s, "2024:05:03 18:30:00");
        photo(u"two"_s, u"c"_s, "2024:06:01 08:00:00");
        set.importFolders({media.filePath(u"one"_s), media.filePath(u"two"_s)});
        ASSERT_EQ(set.folders().size(), 2);
        ASSERT_EQ(set.controller.dateChanges().dragChangedDates({set.folders().first()}, 7200, false),
                  DateChangeResult::Changed);
    }
    void TearDown() override { qputenv("XDG_DATA_HOME", m_oldDataHome); }

    void photo(const QString &dir, const QString &name, const char *stamp)
    {
        QDir().mkpath(media.filePath(dir));
        TiffShape tags;
        tags.dateTimeOriginal = Stamp::text(stamp);
        buildJpeg({.exif = tags}).write(media.filePath(dir), name);
    }
    QString store(const QString &folder, const QImage &image = {})
    {
        const StateFiles::NewPackage package =
            tray.storeState(folder, SavedFolders::write(set.folders()),
                            TrayPreview::previewDataForCurrentState(set.folders()), image);
        EXPECT_EQ(package.problem, QString());
        return package.path;
    }
    static QStringList names(const QList<TrayRow> &rows)
    {
        QStringList all;
        for (const TrayRow &row : rows)
            all.append(row.sortName);
        return all;
    }
    static SavedFolders::ReadResult readFolders(const QString &package)
    {
        QFile file(StateFiles::foldersFileOf(package));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << package.toStdString();
        return SavedFolders::read(file.readAll(), file.fileName());
    }

    QTemporaryDir dataHome, media;
    QByteArray m_oldDataHome;
    WorkingSet set;
    StateTray tray{QDir(dataHome.path()).filePath(u"orvelle"_s)};
};

TEST_F(StateTrayTest, AKeptStateListsWithItsPreviewAndHoldsTheWorkingSet)
{
    const QString root = tray.appStateTrayRootPath();
    EXPECT_EQ(root, QDir(dataHome.path()).filePath(u"orvelle/projectsTray"_s));
    QImage thumbnail(40, 30, QImage::Format_RGB32);
    thumbnail.fill(Qt::darkCyan);
    const QString path = store(root, thumbnail);
    ASSERT_TRUE(path.endsWith(u".orvstate"_s));
    ASSERT_TRUE(QDir(root).mkdir(u"Trips"_s));

    const QList<TrayRow> rows = tray.refreshData(root);
    ASSERT_EQ(rows.size(), 2);
    const TrayRow &state = rows[0].type == TrayRow::Type::State ? rows[0] : rows[1];
    const TrayRow &folder = rows[0].type == TrayRow::Type::State ? rows[1] : rows[0];
    EXPECT_EQ(folder.type, TrayRow::Type::Subfolder);
    EXPECT_EQ(folder.sortName, u"Trips"_s);
    EXPECT_EQ(state.path, path);
    EXPECT_EQ(state.sortName, u"one"_s) << "named by its first folder until the user gives a title";
    EXPECT_EQ(state.preview.folderCount, 2);
    EXPECT_EQ(state.preview.images, 3);
    EXPECT_EQ(state.preview.unsavedChanges, 2) << "the two items of the shifted folder";
    const MySinglePic &earliest = *set.folders()[0]->sfPicDetails_fullArray.first();
    const MySinglePic &latest = *set.folders()[1]->sfPicDetails_fullArray.first();
    EXPECT_EQ(state.preview.fromDate->secondsSinceEpoch(), earliest.spDateTimeOriginal->secondsSinceEpoch() + 7200)
        << "dates as shifted";
    EXPECT_EQ(state.preview.toDate, latest.spDateTimeOriginal);
    const QImage preview(QDir(path).filePath(StateFiles::previewImageName));
    EXPECT_EQ(preview.size(), QSize(40, 30));

    const SavedFolders::ReadResult read = readFolders(path);
    ASSERT_TRUE(read.problem.isEmpty()) << read.problem.toStdString();
    ASSERT_EQ(read.folders.size(), 2u);
    EXPECT_EQ(read.folders[0]->sfDateModificationsTimeInterval, 7200);
    EXPECT_EQ(read.folders[1]->sfPicDetails_fullArray.size(), 1);

    // Without a thumbnail the preview is a small transparent image.
    const QImage empty(QDir(store(root)).filePath(StateFiles::previewImageName));
    EXPECT_EQ(empty.size(), QSize(10, 10));
    EXPECT_EQ(qAlpha(empty.pixel(5, 5)), 0);
}

TEST_F(StateTrayTest, TitlesNotesAndDatesSortTheRowsAndDeletingGoesToTheTrash)
{
    const QString root = tray.appStateTrayRootPath();
    const QString first = store(root);
    set.controller.dateChanges().dragChangedDates({set.folders().first()}, -86400 * 30, false);
    const QString second = store(root);
    ASSERT_NE(first, second) << "two states kept in the same second get different names";
    EXPECT_EQ(tray.setUserData(first, u"zebra 10"_s, u"the long evening"_s), QString());
    EXPECT_EQ(tray.setUserData(second, u"Zebra 9"_s, QString()), QString());

    QList<TrayRow> rows = tray.refreshData(root);
    StateTray::sortStateArray(rows, 1, true);
    EXPECT_EQ(names(rows), (QStringList{u"Zebra 9"_s, u"zebra 10"_s})) << "numbers in names count as numbers";
    EXPECT_EQ(rows[1].preview.additionalInfos, u"the long evening"_s);
    StateTray::sortStateArray(rows, 2, true);
    EXPECT_EQ(names(rows), (QStringList{u"Zebra 9"_s, u"zebra 10"_s})) << "the second state starts a month earlier";
    StateTray::sortStateArray(rows, 2, false);
    EXPECT_EQ(names(rows), (QStringList{u"zebra 10"_s, u"Zebra 9"_s}));

    EXPECT_EQ(tray.deleteStateAtPath(first), QString());
    EXPECT_EQ(names(tray.refreshData(root)), QStringList{u"Zebra 9"_s});
    const QString trashed = QDir(FreedesktopTrash::homeTrash()).filePath(u"files/"_s + QFileInfo(first).fileName());
    EXPECT_TRUE(QFileInfo(trashed).isDir());
    EXPECT_TRUE(readFolders(trashed).problem.isEmpty()) << "the trash holds the whole state";
}

TEST_F(StateTrayTest, AnOpenedStateLeavesTheTrayAndComesBackToBeVerifiedAfterACrash)
{
    const QString root = tray.appStateTrayRootPath();
    const QString kept = store(root);
    ASSERT_EQ(tray.setUserData(kept, u"Wedding"_s, QString()), QString());

    const StateTray::Moved taken = tray.takeOver(kept);
    ASSERT_EQ(taken.problem, QString());
    EXPECT_TRUE(taken.path.startsWith(tray.deletedStatesPath()));
    EXPECT_TRUE(tray.refreshData(root).isEmpty());
    // Undoing the opening puts it back.
    const StateTray::Moved back = tray.putBack(taken.path, kept);
    EXPECT_EQ(back.path, kept);
    ASSERT_EQ(tray.takeOver(kept).problem, QString());

    // The session died: besides the package, a loose quit file lies there too.
    ASSERT_EQ(StateFiles::writeDurably(QDir(tray.deletedStatesPath()).filePath(StateFiles::foldersQuitName),
                                       SavedFolders::write(set.folders())),
              QString());
    const StateTray::Moved recovered = tray.checkForUncleanedTempFiles();
    ASSERT_EQ(recovered.problem, QString());
    EXPECT_EQ(recovered.path, QDir(root).filePath(StateTray::toVerifyName));
    EXPECT_FALSE(QFileInfo::exists(tray.deletedStatesPath()));

    const QList<TrayRow> rows = tray.refreshData(recovered.path);
    ASSERT_EQ(rows.size(), 3) << "the way up and two states";
    EXPECT_EQ(rows[0].type, TrayRow::Type::Superfolder);
    int undeleted = 0;
    for (const TrayRow &row : rows.mid(1)) {
        EXPECT_EQ(readFolders(row.path).folders.size(), 2u) << row.path.toStdString();
        undeleted += row.preview.isUndeletedState ? 1 : 0;
        if (!row.preview.isUndeletedState) {
            EXPECT_EQ(row.sortName, u"Wedding"_s) << "a package keeps its own preview";
        }
    }
    EXPECT_EQ(undeleted, 1) << "the loose file got a preview of its own";
    EXPECT_EQ(tray.checkForUncleanedTempFiles().path, QString()) << "nothing more to bring back";

    // A clean quit sends what it took over to the trash; the folder to verify goes with its last state.
    ASSERT_EQ(tray.takeOver(rows[1].path).problem, QString());
    EXPECT_TRUE(QFileInfo::exists(recovered.path));
    ASSERT_EQ(tray.takeOver(rows[2].path).problem, QString());
    EXPECT_FALSE(QFileInfo::exists(recovered.path));
    EXPECT_EQ(tray.deleteTempDeletedStatePath(), QString());
    EXPECT_EQ(QDir(QDir(FreedesktopTrash::homeTrash()).filePath(u"files"_s)).entryList(QDir::Dirs | QDir::NoDotAndDotDot),
              QStringList{StateTray::deletedStatesName});
    EXPECT_FALSE(QFileInfo::exists(tray.deletedStatesPath()));
    EXPECT_EQ(tray.checkForUncleanedTempFiles().path, QString());
}

TEST_F(StateTrayTest, OnlyPathsInsideTheTrayCount)
{
    const QString root = tray.appStateTrayRootPath();
    const QString inside = store(root);
    EXPECT_TRUE(tray.isUnderRoot(inside));
    EXPECT_FALSE(tray.isUnderRoot(root));
    EXPECT_FALSE(tray.isUnderRoot(media.path()));
    const QString sibling = root + u"-elsewhere"_s;
    ASSERT_TRUE(QDir().mkpath(sibling));
    EXPECT_FALSE(tray.isUnderRoot(sibling)) << "a folder whose name only begins like the tray's";
    EXPECT_FALSE(tray.isUnderRoot(root + u"/../projectsTray-elsewhere"_s));
    const QString unreadable = QDir(inside).filePath(StateFiles::trayPreviewDataName);
    QFile file(unreadable);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write("\xa1\x6b" "folderCount" "\x63" "two");
    file.close();
    const QList<TrayRow> rows = tray.refreshData(root);
    ASSERT_EQ(rows.size(), 1) << "a state with a damaged preview is still listed";
    EXPECT_EQ(rows[0].sortName, QFileInfo(inside).completeBaseName());
    EXPECT_FALSE(TrayPreview::fromCbor(fileBytes(unreadable), unreadable).problem.isEmpty());
}

} // namespace

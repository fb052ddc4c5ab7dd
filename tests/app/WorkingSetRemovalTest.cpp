// Items and folders leave the working set with their files untouched: items as one undo step
// that puts them back in their places, folders for good, and not while an import runs.

#include "app/RemoveCommand.h"
#include "folders/ImportFixture.h"
#include "support/Corpus.h"

#include <QUndoStack>

namespace orv::test {
namespace {

class WorkingSetRemovalTest : public ImportFixture
{
protected:
    QMap<QString, QByteArray> filesIn(const QString &dir) const
    {
        QMap<QString, QByteArray> files;
        for (const QString &name : QDir(dir).entryList(QDir::Files)) {
            QFile file(QDir(dir).filePath(name));
            EXPECT_TRUE(file.open(QIODevice::ReadOnly));
            files.insert(name, file.readAll());
        }
        return files;
    }
};

TEST_F(WorkingSetRemovalTest, ItemsLeaveWithTheirGroupAndUndoPutsThemBackInPlace)
{
    ORV_SKIP_WITHOUT_CORPUS();
    const QString dir = folder(QStringLiteral("trip"));
    photo(QStringLiteral("trip"), QStringLiteral("A"));
    ASSERT_TRUE(QFile::copy(corpusFile(QStringLiteral("exiftool-t/CanonRaw.cr2")), dir + QStringLiteral("/IMG_1.CR2")));
    photo(QStringLiteral("trip"), QStringLiteral("IMG_1"), "2024:05:01 11:00:00");
    photo(QStringLiteral("trip"), QStringLiteral("C"), "2024:05:01 12:00:00");
    const QMap<QString, QByteArray> files = filesIn(dir);
    importAndWait({dir});
    MySingleFolder *trip = driver.droppedFolders().first();
    const QStringList before = itemNames(*trip);
    ASSERT_EQ(before.size(), 3);
    MySinglePic *raw = nullptr;
    for (MySinglePic *pic : trip->sfPicDetails_fullArray)
        if (pic->bundleDependentImage)
            raw = pic;
    ASSERT_TRUE(raw);
    MySinglePic *first = trip->sfPicDetails_fullArray.first();

    QUndoStack stack;
    QList<QList<MySingleFolder *>> announced;
    // The group is named by its dependent, the first item twice: each leaves once.
    std::unique_ptr<RemoveCommand> command = RemoveCommand::forPics(
        {raw->bundleDependentImage, first, first}, {[&](const QList<MySingleFolder *> &f) { announced.append(f); }, {}, {}});
    ASSERT_TRUE(command);
    stack.push(command.release());
    QStringList left = before;
    left.removeAll(raw->spName);
    left.removeAll(first->spName);
    EXPECT_EQ(itemNames(*trip), left);
    EXPECT_EQ(trip->sfPics, 1);
    EXPECT_TRUE(raw->bundleDependentImage->isMovedToTrash);
    EXPECT_EQ(filesIn(dir), files) << "the files stay as they are";
    EXPECT_EQ(announced.size(), 1);
    EXPECT_FALSE(RemoveCommand::forPics({raw}, {})) << "an item gone already is passed over";

    stack.undo();
    EXPECT_EQ(itemNames(*trip), before);
    EXPECT_EQ(trip->sfPics, 3);
    EXPECT_FALSE(raw->isMovedToTrash || raw->bundleDependentImage->isMovedToTrash);
    stack.redo();
    EXPECT_EQ(itemNames(*trip), left);
}

TEST_F(WorkingSetRemovalTest, FoldersLeaveForGoodButNotWhileAnImportRuns)
{
    const QString one = folder(QStringLiteral("one"));
    const QString two = folder(QStringLiteral("two"));
    photo(QStringLiteral("one"), QStringLiteral("A"));
    photo(QStringLiteral("two"), QStringLiteral("B"));
    importAndWait({one, two});
    ASSERT_EQ(folderNames(), (QStringList{QStringLiteral("one"), QStringLiteral("two")}));
    MySingleFolder *first = driver.droppedFolders().first();

    int removed = 0;
    QObject::connect(&driver, &MyDroppedFolders::folderRemoved, [&removed] { ++removed; });
    manyPhotos(QStringLiteral("three"), 200);
    driver.processDroppedFolders({*DropEntry::pathAndBookmarkFromAccessable(folder(QStringLiteral("three")))}, nullptr,
                                 0, keys());
    ASSERT_TRUE(driver.isImportInProgress());
    EXPECT_FALSE(driver.removeFolders({first}));
    waitForImports();
    EXPECT_EQ(removed, 0);

    EXPECT_TRUE(driver.removeFolders({first}));
    EXPECT_EQ(removed, 1);
    EXPECT_EQ(folderNames(), (QStringList{QStringLiteral("two"), QStringLiteral("three")}));
    EXPECT_TRUE(QFile::exists(one + QStringLiteral("/A.jpg")));
}

} // namespace
} // namespace orv::test

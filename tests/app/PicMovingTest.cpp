// Items move into another imported folder with their group and sidecars, as one undo step, by a
// journaled run that a kill leaves finished after the next recovery, on one file system and
// across two.

#include "app/DateChanges.h"
#include "app/PicMoving.h"
#include "folders/FolderChangeVerifier.h"
#include "folders/ImportFixture.h"
#include "formats/InPlaceWriter.h"
#include "formats/NoReplaceRename.h"
#include "formats/SaveJournal.h"
#include "support/Corpus.h"

#include <QDirIterator>
#include <QUndoStack>

namespace orv::test {
namespace {

// Every file in a folder (hidden ones too, so that a temporary left behind shows), with its bytes.
QMap<QString, QByteArray> filesIn(const QString &dir)
{
    QMap<QString, QByteArray> files;
    for (const QString &name : QDir(dir).entryList(QDir::Files | QDir::Hidden)) {
        QFile file(QDir(dir).filePath(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        files.insert(name, file.readAll());
    }
    return files;
}

class PicMovingTest : public ImportFixture
{
protected:
    void TearDown() override { InPlaceWriter::stopDeadAfterWrites(-1); }

    QString journal() const { return root.filePath(QStringLiteral("data/saveJournal.jsonl")); }
    MySinglePic *named(const MySingleFolder &f, const QString &name) const
    {
        for (MySinglePic *pic : f.sfPicDetails_fullArray)
            if (pic->spName == name)
                return pic;
        return nullptr;
    }

    QUndoStack stack;
    DateChanges changes{stack, {}};
    FolderChangeVerifier verifier;
    QList<QList<MySingleFolder *>> announced;
    PicMoving moving{stack, changes, verifier,
                     {[this](const QList<MySingleFolder *> &f) { announced.append(f); }, {}, {}}};
};

TEST_F(PicMovingTest, AGroupAndASidecarMoveTogetherTakeAFreeNameAndUndoBringsThemBack)
{
    ORV_SKIP_WITHOUT_CORPUS();
    const QString trip = folder(QStringLiteral("trip"));
    const QString home = folder(QStringLiteral("home"));
    photo(QStringLiteral("trip"), QStringLiteral("A"));
    ASSERT_TRUE(QFile::copy(corpusFile(QStringLiteral("exiftool-t/CanonRaw.cr2")), trip + QStringLiteral("/IMG_1.CR2")));
    photo(QStringLiteral("trip"), QStringLiteral("IMG_1"), "2024:05:01 11:00:00");
    QFile::rename(trip + QStringLiteral("/IMG_1.jpg"), trip + QStringLiteral("/IMG_1.JPG"));
    photo(QStringLiteral("trip"), QStringLiteral("C"), "2024:05:01 12:00:00");
    QFile sidecar(trip + QStringLiteral("/C.xmp"));
    ASSERT_TRUE(sidecar.open(QIODevice::WriteOnly));
    sidecar.write("<x:xmpmeta xmlns:x='adobe:ns:meta/'/>");
    sidecar.close();
    photo(QStringLiteral("home"), QStringLiteral("C"), "2023:01:01 09:00:00");
    const QMap<QString, QByteArray> tripBefore = filesIn(trip), homeBefore = filesIn(home);
    importAndWait({trip, home});
    MySingleFolder *from = driver.folderForDirectory(trip);
    MySingleFolder *to = driver.folderForDirectory(home);
    ASSERT_TRUE(from && to);
    const QStringList namesBefore = itemNames(*from);
    MySinglePic *raw = named(*from, QStringLiteral("IMG_1.CR2"));
    MySinglePic *c = named(*from, QStringLiteral("C.jpg"));
    ASSERT_TRUE(raw && raw->bundleDependentImage && c);
    MySinglePic *jpeg = raw->bundleDependentImage;

    // Named by its dependent, the group moves whole; C takes " 2" for its JPEG and its sidecar.
    const MoveOutcome outcome = moving.movePics({jpeg, c}, *to, journal());
    EXPECT_EQ(outcome.moved, (QList<MySinglePic *>{raw, c}));
    EXPECT_TRUE(outcome.problems.isEmpty()) << outcome.problems.join(u'\n').toStdString();
    QMap<QString, QByteArray> expected = homeBefore;
    for (const QString &name : {QStringLiteral("IMG_1.CR2"), QStringLiteral("IMG_1.JPG")})
        expected.insert(name, tripBefore.value(name));
    expected.insert(QStringLiteral("C 2.jpg"), tripBefore.value(QStringLiteral("C.jpg")));
    expected.insert(QStringLiteral("C 2.xmp"), tripBefore.value(QStringLiteral("C.xmp")));
    EXPECT_EQ(filesIn(home), expected);
    EXPECT_EQ(filesIn(trip).keys(), QStringList{QStringLiteral("A.jpg")});
    EXPECT_EQ(itemNames(*from), QStringList{QStringLiteral("A.jpg")});
    EXPECT_EQ(itemNames(*to), (QStringList{QStringLiteral("C.jpg"), QStringLiteral("IMG_1.CR2"), QStringLiteral("C 2.jpg")}));
    EXPECT_EQ(MySingleFolder::of(*jpeg), to);
    EXPECT_TRUE(to->bundleDependentsRawAndJPG.contains(jpeg));
    EXPECT_TRUE(from->bundleDependentsRawAndJPG.isEmpty());
    EXPECT_EQ(c->spSidecarPaths(), QStringList{home + QStringLiteral("/C 2.xmp")});
    EXPECT_EQ(from->sfPics, 1);
    EXPECT_EQ(to->sfPics, 3);
    EXPECT_EQ(stack.count(), 1);
    EXPECT_EQ(announced.size(), 1);

    stack.undo();
    EXPECT_EQ(filesIn(trip), tripBefore);
    EXPECT_EQ(filesIn(home), homeBefore);
    EXPECT_EQ(itemNames(*from), namesBefore) << "each item takes its old place";
    EXPECT_EQ(c->spName, QStringLiteral("C.jpg"));
    EXPECT_EQ(MySingleFolder::of(*jpeg), from);
    EXPECT_EQ(to->sfPics, 1);

    stack.redo();
    EXPECT_EQ(filesIn(home), expected);
    // The command line's revert undoes the last run on disk, as for a rename.
    const SaveJournal::Outcome reverted = SaveJournal::revert(journal());
    EXPECT_TRUE(reverted.left.empty());
    EXPECT_EQ(filesIn(trip), tripBefore);
    EXPECT_EQ(filesIn(home), homeBefore);

    // Pending dates belong to the folder's offset: an item with unsaved changes stays.
    stack.clear();
    MySinglePic *a = named(*from, QStringLiteral("A.jpg"));
    from->setSfDateModificationsFromTimeInterval(3600, true);
    const MoveOutcome refused = moving.movePics({a}, *to, journal());
    EXPECT_TRUE(refused.moved.isEmpty());
    ASSERT_EQ(refused.problems.size(), 1);
    EXPECT_TRUE(refused.problems.first().contains(QLatin1String("unsaved"))) << refused.problems.first().toStdString();
    EXPECT_TRUE(QFile::exists(trip + QStringLiteral("/A.jpg")));
}

// A kill after any number of writes leaves every file once, and the next recovery finishes the
// move: before the journal holds the plan nothing moved, after it everything does.
void killAfterEveryWrite(const QString &fromDir, const QString &toDir, const QString &journal,
                         QUndoStack &stack, PicMoving &moving)
{
    const QMap<QString, QByteArray> originals = {{QStringLiteral("IMG_2.CR2"), "raw bytes"},
                                                 {QStringLiteral("IMG_2.JPG"), "jpeg bytes"},
                                                 {QStringLiteral("IMG_2.xmp"), "<xmp/>"},
                                                 {QStringLiteral("B.jpg"), "single"}};
    for (int writes = 0; writes <= 18; ++writes) {
        for (const QString &dir : {fromDir, toDir}) {
            QDir(dir).removeRecursively();
            ASSERT_TRUE(QDir().mkpath(dir));
        }
        for (auto it = originals.begin(); it != originals.end(); ++it) {
            QFile file(QDir(fromDir).filePath(it.key()));
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            file.write(it.value());
        }
        MySingleFolder source(fromDir, false), target(toDir, false);
        MySinglePic *raw = source.adoptPic(std::make_unique<MySinglePic>(QStringLiteral("IMG_2.CR2"), &source,
                                                                         SpTypeExifOriginal, Instant::fromUtc(2024, 5, 1, 10)));
        raw->spSidecarExtensions = {QStringLiteral("JPG"), QStringLiteral("xmp")};
        MySinglePic *jpeg = source.adoptPic(std::make_unique<MySinglePic>(QStringLiteral("IMG_2.JPG"), &source,
                                                                          SpTypeExifOriginal, Instant::fromUtc(2024, 5, 1, 10)),
                                            false);
        raw->bundleDependentImage = jpeg;
        jpeg->bundleMasterImage = raw;
        source.bundleDependentsRawAndJPG.append(jpeg);
        MySinglePic *single = source.adoptPic(std::make_unique<MySinglePic>(QStringLiteral("B.jpg"), &source,
                                                                            SpTypeExifOriginal, Instant::fromUtc(2024, 5, 1, 11)));

        InPlaceWriter::stopDeadAfterWrites(writes);
        moving.movePics({raw, single}, target, journal);
        InPlaceWriter::stopDeadAfterWrites(-1);
        stack.clear();
        SaveJournal::recover(journal);
        if (writes < 2) {
            EXPECT_EQ(filesIn(fromDir), originals) << "stopped after " << writes << " writes";
            EXPECT_TRUE(filesIn(toDir).isEmpty()) << "stopped after " << writes << " writes";
        } else {
            EXPECT_TRUE(filesIn(fromDir).isEmpty()) << "stopped after " << writes << " writes";
            EXPECT_EQ(filesIn(toDir), originals) << "stopped after " << writes << " writes";
        }
    }
}

TEST_F(PicMovingTest, AKillAfterAnyWriteIsFinishedByTheNextRecovery)
{
    killAfterEveryWrite(root.filePath(QStringLiteral("from")), root.filePath(QStringLiteral("to")), journal(),
                        stack, moving);
}

TEST_F(PicMovingTest, AcrossFileSystemsCopiesAreProvenBeforeTheirSourcesGo)
{
    QTemporaryDir other(QStringLiteral("/dev/shm/orvelle-move-XXXXXX"));
    ASSERT_TRUE(other.isValid());
    const QString toDir = other.filePath(QStringLiteral("to"));
    ASSERT_TRUE(QDir().mkpath(toDir));
    if (isOnOneFileSystem(root.path(), toDir))
        GTEST_SKIP() << "/dev/shm is on the temporary folder's file system here";
    killAfterEveryWrite(root.filePath(QStringLiteral("from")), toDir, journal(), stack, moving);
}

} // namespace
} // namespace orv::test

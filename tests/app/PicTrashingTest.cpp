// Items go to the desktop's trash with their group and sidecars, as one undo step, and come back
// from it byte for byte.

#include "app/DateChanges.h"
#include "app/PicTrashing.h"
#include "folders/ImportFixture.h"
#include "support/Corpus.h"

#include <QDirIterator>
#include <QUndoStack>

namespace orv::test {
namespace {

class RefusingQuestions : public TrashQuestions
{
public:
    bool deleteWithoutTrash(const QStringList &) override
    {
        ++asked;
        return false;
    }
    int asked = 0;
};

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

class PicTrashingTest : public ImportFixture
{
protected:
    void SetUp() override
    {
        ImportFixture::SetUp();
        ORV_SKIP_WITHOUT_CORPUS();
        m_oldDataHome = qgetenv("XDG_DATA_HOME");
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_dataHome.path()));
    }
    void TearDown() override { qputenv("XDG_DATA_HOME", m_oldDataHome); }

    // Every file under the folder, with its bytes.
    QMap<QString, QByteArray> filesIn(const QString &dir) const
    {
        QMap<QString, QByteArray> files;
        QDirIterator it(dir, QDir::Files);
        while (it.hasNext()) {
            const QString path = it.next();
            files.insert(QFileInfo(path).fileName(), contents(path));
        }
        return files;
    }

    QTemporaryDir m_dataHome;
    QByteArray m_oldDataHome;
    QUndoStack stack;
    DateChanges changes{stack, {}};
    QList<QList<MySingleFolder *>> announced;
    PicTrashing trashing{stack, changes, {[this](const QList<MySingleFolder *> &f) { announced.append(f); }, {}, {}}};
    RefusingQuestions questions;
};

TEST_F(PicTrashingTest, AGroupAndASidecarGoAlongAndUndoBringsEveryByteBack)
{
    const QString dir = folder(QStringLiteral("trip"));
    photo(QStringLiteral("trip"), QStringLiteral("A"));
    ASSERT_TRUE(QFile::copy(corpusFile(QStringLiteral("exiftool-t/CanonRaw.cr2")), dir + QStringLiteral("/IMG_1.CR2")));
    photo(QStringLiteral("trip"), QStringLiteral("IMG_1"), "2024:05:01 11:00:00");
    QFile::rename(dir + QStringLiteral("/IMG_1.jpg"), dir + QStringLiteral("/IMG_1.JPG"));
    photo(QStringLiteral("trip"), QStringLiteral("C"), "2024:05:01 12:00:00");
    QFile sidecar(dir + QStringLiteral("/C.xmp"));
    ASSERT_TRUE(sidecar.open(QIODevice::WriteOnly));
    sidecar.write("<x:xmpmeta xmlns:x='adobe:ns:meta/'/>");
    sidecar.close();
    const QMap<QString, QByteArray> before = filesIn(dir);
    importAndWait({dir});

    MySingleFolder *trip = driver.droppedFolders().first();
    const QStringList namesBefore = itemNames(*trip);
    ASSERT_EQ(namesBefore.size(), 3) << namesBefore.join(u' ').toStdString();
    MySinglePic *raw = nullptr, *c = nullptr;
    for (MySinglePic *pic : trip->sfPicDetails_fullArray) {
        if (pic->spName == QLatin1String("IMG_1.CR2"))
            raw = pic;
        if (pic->spName == QLatin1String("C.jpg"))
            c = pic;
    }
    ASSERT_TRUE(raw && raw->bundleDependentImage) << "the RAW and its JPEG form a group";
    ASSERT_TRUE(c);

    // The group is named by its dependent: the master, the dependent and the sidecar all go.
    const TrashOutcome outcome = trashing.movePicsToTrash({raw->bundleDependentImage, c}, questions);
    EXPECT_EQ(outcome.trashed, (QList<MySinglePic *>{raw, c}));
    EXPECT_TRUE(outcome.problems.isEmpty()) << outcome.problems.join(u'\n').toStdString();
    EXPECT_EQ(questions.asked, 0);
    EXPECT_EQ(itemNames(*trip), QStringList{QStringLiteral("A.jpg")});
    EXPECT_EQ(trip->sfPics, 1);
    EXPECT_TRUE(raw->bundleDependentImage->isMovedToTrash);
    EXPECT_EQ(filesIn(dir).keys(), QStringList{QStringLiteral("A.jpg")});
    const QString trash = m_dataHome.path() + QStringLiteral("/Trash");
    QMap<QString, QByteArray> trashed = filesIn(trash + QStringLiteral("/files"));
    trashed.insert(QStringLiteral("A.jpg"), before.value(QStringLiteral("A.jpg")));
    EXPECT_EQ(trashed, before);
    EXPECT_EQ(QDir(trash + QStringLiteral("/info")).entryList(QDir::Files).size(), 4);
    EXPECT_EQ(stack.count(), 1);
    EXPECT_EQ(announced, (QList<QList<MySingleFolder *>>{{trip}}));

    stack.undo();
    EXPECT_EQ(filesIn(dir), before);
    EXPECT_EQ(itemNames(*trip), namesBefore) << "each item takes its old place";
    EXPECT_FALSE(raw->isMovedToTrash || raw->bundleDependentImage->isMovedToTrash || c->isMovedToTrash);
    EXPECT_TRUE(QDir(trash + QStringLiteral("/info")).isEmpty());
    EXPECT_EQ(trip->sfPics, 3);

    stack.redo();
    EXPECT_EQ(itemNames(*trip), QStringList{QStringLiteral("A.jpg")});
    EXPECT_EQ(filesIn(trash + QStringLiteral("/files")).size(), 4);
    stack.undo();
    EXPECT_EQ(filesIn(dir), before);
}

TEST_F(PicTrashingTest, AFileTakenFromTheTrashKeepsItsItemOutAndIsNamed)
{
    const QString dir = folder(QStringLiteral("f"));
    const QString path = photo(QStringLiteral("f"), QStringLiteral("gone"));
    importAndWait({dir});
    MySingleFolder *f = driver.droppedFolders().first();
    MySinglePic *pic = f->sfPicDetails_fullArray.first();

    ASSERT_EQ(trashing.movePicsToTrash({pic}, questions).trashed.size(), 1);
    // The user empties the trash behind our back: undo cannot bring the file back.
    QDir(m_dataHome.path() + QStringLiteral("/Trash")).removeRecursively();
    stack.undo();
    EXPECT_TRUE(f->sfPicDetails_fullArray.isEmpty());
    EXPECT_TRUE(pic->isMovedToTrash);
    EXPECT_FALSE(QFile::exists(path));

    // A save owns the folders: nothing is trashed while it runs.
    changes.setBlocked(true);
    const QString other = photo(QStringLiteral("f"), QStringLiteral("other"));
    MySinglePic stray(QStringLiteral("other.jpg"), f, SpTypeExifOriginal, Instant::fromUtc(2024, 5, 1, 10));
    EXPECT_TRUE(trashing.movePicsToTrash({&stray}, questions).trashed.isEmpty());
    EXPECT_TRUE(QFile::exists(other));
}

} // namespace
} // namespace orv::test

// Files changed by another program while imported are proven and marked; our own writes are
// not taken for outside changes.

#include "core/NewDateCalculator.h"
#include "folders/FolderChangeVerifier.h"
#include "folders/ImportFixture.h"
#include "support/Corpus.h"

#include <QProcess>

#include <sys/stat.h>
#include <utime.h>

namespace orv::test {
namespace {

class FolderChangeVerifierTest : public ImportFixture
{
protected:
    // Three dated corpus JPEGs in one folder, imported and watched.
    void SetUp() override
    {
        ImportFixture::SetUp();
        ORV_SKIP_WITHOUT_CORPUS();
        const QString dir = folder(QStringLiteral("card"));
        // Modified long ago, so that a rewrite now moves the file's dates for certain.
        const utimbuf longAgo{1577872800, 1577872800};
        for (const QString &name : {QStringLiteral("Canon.jpg"), QStringLiteral("Nikon.jpg"), QStringLiteral("Sony.jpg")}) {
            const QString path = dir + QLatin1Char('/') + name;
            ASSERT_TRUE(QFile::copy(corpusFile(QStringLiteral("exiftool-t/") + name), path));
            ASSERT_EQ(::utime(QFile::encodeName(path).constData(), &longAgo), 0);
        }
        importAndWait({dir});
        card = driver.droppedFolders().first();
        ASSERT_EQ(card->count(), 3);
        // Its watcher needs the application, which the import fixture makes.
        verifier = std::make_unique<FolderChangeVerifier>();
        verifier->watchFolder(*card);
    }

    MySinglePic &item(const QString &name) const
    {
        for (MySinglePic *pic : card->sfPicDetails_fullArray)
            if (pic->spName == name)
                return *pic;
        throw std::runtime_error("no such item");
    }

    // Waits for the end of a pass that changed states, or for the time to run out.
    QList<MySinglePic *> changedInNextPass(int timeoutMs)
    {
        QList<MySinglePic *> changed;
        QEventLoop loop;
        QTimer::singleShot(timeoutMs, &loop, &QEventLoop::quit);
        const QMetaObject::Connection connection = QObject::connect(
            verifier.get(), &FolderChangeVerifier::fileStatesChanged, &loop,
            [&](MySingleFolder *, const QList<MySinglePic *> &pics) {
                changed = pics;
                loop.quit();
            });
        loop.exec();
        QObject::disconnect(connection);
        return changed;
    }

    MySingleFolder *card = nullptr;
    std::unique_ptr<FolderChangeVerifier> verifier;
};

TEST_F(FolderChangeVerifierTest, ADateRewrittenByExiftoolIsMarkedAndTheSaveRefusesIt)
{
    MySinglePic &changed = item(QStringLiteral("Nikon.jpg"));
    ASSERT_EQ(changed.fileUnchangedState, 0);
    ASSERT_TRUE(checkFileUnchangedStateForSaveRenameErrors(changed).isEmpty());

    const int exiftool = QProcess::execute(QStringLiteral("exiftool"),
                                           {QStringLiteral("-q"), QStringLiteral("-overwrite_original"),
                                            QStringLiteral("-DateTimeOriginal=2001:02:03 04:05:06"), changed.spPath()});
    ASSERT_EQ(exiftool, 0);

    const QList<MySinglePic *> marked = changedInNextPass(15000);
    EXPECT_EQ(marked, QList<MySinglePic *>{&changed});
    EXPECT_EQ(changed.fileUnchangedState, 3) << "exiftool wrote a new file: its size and dates differ";
    EXPECT_EQ(item(QStringLiteral("Canon.jpg")).fileUnchangedState, 0);
    EXPECT_EQ(item(QStringLiteral("Sony.jpg")).fileUnchangedState, 0);
    EXPECT_FALSE(checkFileUnchangedStateForSaveRenameErrors(changed).isEmpty());
    EXPECT_TRUE(verifier->isIdle());

    // Put back as it was (bytes and dates), the next pass takes the mark away.
    ASSERT_TRUE(QFile::remove(changed.spPath()));
    ASSERT_TRUE(QFile::copy(corpusFile(QStringLiteral("exiftool-t/Nikon.jpg")), changed.spPath()));
    const utimbuf times{qint64(changed.singlePicAttributes.NSFileModificationDate->secondsSinceEpoch()),
                        qint64(changed.singlePicAttributes.NSFileModificationDate->secondsSinceEpoch())};
    ASSERT_EQ(::utime(QFile::encodeName(changed.spPath()).constData(), &times), 0);
    QThread::msleep(1100); // a change within a second of the last one noticed is not noticed again
    verifier->didChangeContentAtFolder(*card);
    EXPECT_EQ(changedInNextPass(15000), QList<MySinglePic *>{&changed});
    EXPECT_EQ(changed.fileUnchangedState, 0);
}

TEST_F(FolderChangeVerifierTest, OurOwnWritesAndAVanishedFile)
{
    MySinglePic &canon = item(QStringLiteral("Canon.jpg"));
    verifier->willModifyFolder(*card);
    ::chmod(QFile::encodeName(canon.spPath()).constData(), 0600);
    EXPECT_FALSE(verifier->didChangeContentAtFolder(*card));
    verifier->didModifyFolder(*card);
    EXPECT_FALSE(verifier->didChangeContentAtFolder(*card)) << "events that come late after our write";
    EXPECT_TRUE(changedInNextPass(2500).isEmpty());
    EXPECT_TRUE(verifier->isIdle());

    // A save or an import holds the check; it goes on when they end.
    QThread::msleep(1100);
    MySinglePic &sony = item(QStringLiteral("Sony.jpg"));
    verifier->stopVerification();
    ASSERT_EQ(::utime(QFile::encodeName(sony.spPath()).constData(), nullptr), 0);
    EXPECT_TRUE(changedInNextPass(2500).isEmpty());
    EXPECT_FALSE(verifier->isIdle());
    verifier->resumeVerification();
    EXPECT_EQ(changedInNextPass(15000), QList<MySinglePic *>{&sony});
    EXPECT_EQ(sony.fileUnchangedState, 3);

    // Gone while imported (an unplugged card): missing, and the save refuses it.
    QThread::msleep(1100);
    ASSERT_TRUE(QFile::remove(canon.spPath()));
    EXPECT_EQ(changedInNextPass(15000), QList<MySinglePic *>{&canon});
    EXPECT_EQ(canon.fileUnchangedState, 1);
    EXPECT_FALSE(checkFileUnchangedStateForSaveRenameErrors(canon).isEmpty());
}

TEST_F(FolderChangeVerifierTest, ARenamedFolderIsFollowedAndARemovedOneMakesEveryItemMissing)
{
    MySinglePic &sony = item(QStringLiteral("Sony.jpg"));
    const QString renamed = folder(QString()) + QStringLiteral("/card renamed");
    ASSERT_TRUE(QDir().rename(card->sfFolderPath, renamed));
    // A directory's watch hears nothing of its own rename; the next change in it is heard, and the
    // pass proves every item where the folder is now.
    ASSERT_TRUE(QFile::copy(corpusFile(QStringLiteral("exiftool-t/Pentax.jpg")), renamed + QStringLiteral("/new.jpg")));
    EXPECT_TRUE(changedInNextPass(5000).isEmpty());
    EXPECT_TRUE(verifier->isIdle());
    EXPECT_EQ(card->sfFolderPath, renamed);
    EXPECT_EQ(sony.spPath(), renamed + QStringLiteral("/Sony.jpg"));
    EXPECT_EQ(sony.fileUnchangedState, 0);

    // Unplugged: the whole folder is gone, and so is every item.
    QThread::msleep(1100);
    ASSERT_TRUE(QDir(renamed).removeRecursively());
    EXPECT_EQ(changedInNextPass(15000).size(), 3);
    EXPECT_TRUE(card->isDisconnected);
    EXPECT_EQ(sony.fileUnchangedState, 1);
    EXPECT_FALSE(checkFileUnchangedStateForSaveRenameErrors(sony).isEmpty());
}

} // namespace
} // namespace orv::test

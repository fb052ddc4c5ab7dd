#include "trash/FreedesktopTrash.h"

#include "support/Corpus.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QUrl>
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace orv {
namespace {

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Every test trashes into a home trash of its own.
class FreedesktopTrashTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ORV_SKIP_WITHOUT_CORPUS();
        m_oldDataHome = qgetenv("XDG_DATA_HOME");
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_dataHome.path()));
    }
    void TearDown() override { qputenv("XDG_DATA_HOME", m_oldDataHome); }

    QString photoCopy(const QString &dir, const QString &name) const
    {
        const QString path = dir + QLatin1Char('/') + name;
        EXPECT_TRUE(QFile::copy(test::corpusFiles({QStringLiteral("jpg")}).value(0), path));
        return path;
    }

    QTemporaryDir m_dataHome;
    QTemporaryDir m_photos;
    QByteArray m_oldDataHome;
};

TEST_F(FreedesktopTrashTest, TrashedFileCarriesItsPathAndDateAndComesBackWhole)
{
    const QString path = photoCopy(m_photos.path(), QStringLiteral("Straße am Meer #1.jpg"));
    const QByteArray bytes = contents(path);
    QString error;
    const QDateTime when(QDate(2026, 5, 1), QTime(9, 8, 7));
    const auto trashed = FreedesktopTrash::moveToTrash(path, &error, when);
    ASSERT_TRUE(trashed) << error.toStdString();

    const QString trash = m_dataHome.path() + QStringLiteral("/Trash");
    EXPECT_EQ(trashed->trashedPath, trash + QStringLiteral("/files/Straße am Meer #1.jpg"));
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_EQ(contents(trashed->trashedPath), bytes);
    EXPECT_EQ(QFileInfo(trash).permissions() & (QFile::ReadGroup | QFile::ReadOther), 0);
    // The info file as a file manager reads it: the path percent-encoded as UTF-8, the date local.
    EXPECT_EQ(contents(trashed->infoPath),
              "[Trash Info]\nPath=" + QUrl::toPercentEncoding(path, "/")
                  + "\nDeletionDate=2026-05-01T09:08:07\n");
    EXPECT_TRUE(contents(trashed->infoPath).contains("Stra%C3%9Fe%20am%20Meer%20%231.jpg"));

    // A second file of the same name takes the next free name, keeping its extension.
    const QString again = photoCopy(m_photos.path(), QStringLiteral("Straße am Meer #1.jpg"));
    const auto second = FreedesktopTrash::moveToTrash(again, &error, when);
    ASSERT_TRUE(second);
    EXPECT_EQ(QFileInfo(second->trashedPath).fileName(), QStringLiteral("Straße am Meer #1.2.jpg"));

    // Restoring never replaces a file that has taken the old place.
    ASSERT_TRUE(FreedesktopTrash::restore(*second, &error)) << error.toStdString();
    EXPECT_FALSE(FreedesktopTrash::restore(*trashed, &error));
    EXPECT_EQ(error, QStringLiteral("another file has taken its place"));
    ASSERT_TRUE(QFile::remove(path));
    ASSERT_TRUE(FreedesktopTrash::restore(*trashed, &error));
    EXPECT_EQ(contents(path), bytes);
    EXPECT_FALSE(QFile::exists(trashed->infoPath));
    EXPECT_FALSE(FreedesktopTrash::restore(*trashed, &error));
    EXPECT_EQ(error, QStringLiteral("it is no longer in the trash"));
}

TEST_F(FreedesktopTrashTest, FileOnAnotherVolumeGoesToThatVolumesOwnTrash)
{
    // /dev/shm is a file system of its own on Linux; the home trash lies elsewhere.
    struct stat shm {}, home {};
    if (::stat("/dev/shm", &shm) != 0 || ::stat(QFile::encodeName(m_dataHome.path()).constData(), &home) != 0
        || shm.st_dev == home.st_dev || ::access("/dev/shm", W_OK) != 0)
        GTEST_SKIP() << "no writable second file system at /dev/shm";
    const QString volumeTrash = QStringLiteral("/dev/shm/.Trash-") + QString::number(::getuid());
    const bool trashExisted = QFileInfo::exists(volumeTrash);
    QTemporaryDir onVolume(QStringLiteral("/dev/shm/orvelle-trash-XXXXXX"));
    const QString path = photoCopy(onVolume.path(), QStringLiteral("a b.jpg"));

    QString error;
    const auto trashed = FreedesktopTrash::moveToTrash(path, &error);
    ASSERT_TRUE(trashed) << error.toStdString();
    EXPECT_TRUE(trashed->trashedPath.startsWith(volumeTrash + QStringLiteral("/files/")));
    // A volume trash names the file relative to the volume's top.
    EXPECT_TRUE(contents(trashed->infoPath)
                    .startsWith("[Trash Info]\nPath=" + QUrl::toPercentEncoding(onVolume.path().mid(9), "/")
                                + "/a%20b.jpg\nDeletionDate="));
    EXPECT_FALSE(QFileInfo::exists(m_dataHome.path() + QStringLiteral("/Trash/files/a b.jpg")));
    ASSERT_TRUE(FreedesktopTrash::restore(*trashed, &error));
    EXPECT_TRUE(QFile::exists(path));
    if (!trashExisted)
        QDir(volumeTrash).removeRecursively();
}

} // namespace
} // namespace orv

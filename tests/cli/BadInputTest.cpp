#include "support/CliRun.h"
#include "support/Exiftool.h"
#include "support/MediaFileBuilder.h"
#include "support/ReadOnlyFile.h"
#include "support/SaveFixture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace orv;
using namespace orv::test;

namespace {

MediaFile jpegAt(const char *stamp)
{
    TiffShape tags;
    tags.dateTimeOriginal = Stamp::text(stamp);
    return buildJpeg({.exif = tags});
}

qint64 modifiedMs(const QString &path)
{
    return QFileInfo(path).lastModified().toMSecsSinceEpoch();
}

} // namespace

TEST(BadInput, APipeAnEmptyFileAndAnOutOfRangeDateAreNamedWhileGoodFilesSave)
{
    QTemporaryDir home, work;
    const QString good1 = jpegAt("2024:05:01 10:00:00").write(work.path(), "good1");
    const QString good2 = jpegAt("2024:05:01 11:00:00").write(work.path(), "good2");
    const QString late = jpegAt("4999:12:31 23:30:00").write(work.path(), "late");
    const QString pipe = work.filePath("pipe.jpg");
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    const QString empty = work.filePath("empty.jpg");
    {
        QFile file(empty);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_TRUE(file.setFileTime(QDateTime::fromSecsSinceEpoch(1577836800, Qt::UTC),
                                     QFileDevice::FileModificationTime));
    }
    const QByteArray lateBytes = fileBytes(late);
    const qint64 lateModified = modifiedMs(late), emptyModified = modifiedMs(empty);

    const CliResult result = runCli({"shift", "--by", "+1:00:00", work.path()}, home.path());

    EXPECT_EQ(result.exitCode, 1) << "some failed";
    const QString err = QString::fromUtf8(result.err);
    for (const QString &bad : {pipe, empty, late})
        EXPECT_TRUE(err.contains(bad)) << bad.toStdString() << " is not named in\n"
                                       << err.toStdString();
    EXPECT_TRUE(err.contains("not a regular file")) << err.toStdString();
    EXPECT_TRUE(err.contains("4999-12-31")) << "the range is named: " << err.toStdString();
    EXPECT_EQ(exiftoolTags(good1).string("EXIF:DateTimeOriginal"), "2024:05:01 11:00:00");
    EXPECT_EQ(exiftoolTags(good2).string("EXIF:DateTimeOriginal"), "2024:05:01 12:00:00");
    EXPECT_EQ(fileBytes(late), lateBytes);
    EXPECT_EQ(modifiedMs(late), lateModified) << "an item not saved is not touched";
    // Dated by its file alone, the empty file takes the hour in its modification date only.
    EXPECT_EQ(modifiedMs(empty), emptyModified + 3600000);
    EXPECT_EQ(QFileInfo(empty).size(), 0);
}

TEST(BadInput, AFolderWalkNeverLeavesTheFolderThroughALinkAndNamesALoopOnce)
{
    QTemporaryDir home, work;
    jpegAt("2024:05:01 10:00:00").write(work.path(), "outside");
    const QString folder = work.filePath("folder");
    ASSERT_TRUE(QDir().mkpath(folder + "/sub"));
    jpegAt("2024:05:01 10:00:00").write(folder, "inside");
    jpegAt("2024:05:01 10:00:00").write(folder + "/sub", "deeper");
    ASSERT_TRUE(QFile::link("..", folder + "/up"));
    ASSERT_TRUE(QFile::link(".", folder + "/sub/here"));

    const CliResult result =
        runCli({"scan", "--json", "--subfolders", "5", folder}, home.path());

    QStringList names;
    for (const QJsonValue item : result.json())
        names << item.toObject().value("spName").toString();
    names.sort();
    EXPECT_EQ(names, QStringList({"deeper.jpg", "inside.jpg"}));
    const QString err = QString::fromUtf8(result.err);
    EXPECT_TRUE(err.contains(folder + "/up")) << err.toStdString();
    EXPECT_EQ(err.count(folder + "/sub/here"), 1) << err.toStdString();
    EXPECT_EQ(result.exitCode, 1);
}

TEST(BadInput, ADeviceGivenAsAPathIsNamedAndNeverOpened)
{
    QTemporaryDir home;
    const CliResult result = runCli({"scan", "/dev/zero"}, home.path());
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.err.contains("/dev/zero: not a regular file")) << result.err.toStdString();
}

TEST(BadInput, HelpTellsTheThreeExitStatuses)
{
    QTemporaryDir home;
    const CliResult help = runCli({"--help"}, home.path());
    EXPECT_EQ(help.exitCode, 0);
    for (const char *status : {"0 success", "1 some", "2 wrong usage"})
        EXPECT_TRUE(help.out.contains(status)) << status;
    EXPECT_EQ(runCli({"shift", "--by", "soon", "x"}, home.path()).exitCode, 2);
}

TEST(BadInput, AReadOnlyFileIsNamedOnStderrWithTheReasonBesideItsErrorId)
{
    QTemporaryDir home, work;
    const QString locked = jpegAt("2024:05:01 10:00:00").write(work.path(), "locked");
    const ReadOnlyFile lock(locked);
    if (!lock.isLocked())
        GTEST_SKIP() << "this file system lets the process write any file";

    const CliResult result = runCli({"shift", "--by", "+1:00:00", locked}, home.path());

    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.err.contains((locked + ": error 2: cannot be opened for writing").toUtf8()))
        << result.err.toStdString();
}

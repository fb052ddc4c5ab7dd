#include "support/MediaFileBuilder.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace orv::test;

namespace {

struct CliRun
{
    int exitCode = -1;
    QByteArray out;
    QString err;
    QJsonArray items() const { return QJsonDocument::fromJson(out).array(); }
    QStringList names() const
    {
        QStringList result;
        for (const QJsonValue &item : items())
            result.append(item[QStringLiteral("spName")].toString());
        return result;
    }
};

CliRun runCli(const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral(ORV_CLI_PATH), arguments);
    process.waitForFinished(120000);
    return {process.exitCode(), process.readAllStandardOutput(), QString::fromUtf8(process.readAllStandardError())};
}

class ScanCommandTest : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(root.isValid()); }

    QString photo(const QString &relativeDir, const QString &baseName, TiffSpec tags = withOriginal())
    {
        const QString dir = root.filePath(relativeDir);
        QDir().mkpath(dir);
        return buildJpeg({.exif = tags}).write(dir, baseName);
    }
    static TiffSpec withOriginal()
    {
        TiffSpec tags;
        tags.dateTimeOriginal = Stamp::text("2024:05:01 10:00:00");
        return tags;
    }
    static TiffSpec withBlankOriginal()
    {
        TiffSpec tags;
        tags.dateTimeOriginal = Stamp::blank();
        return tags;
    }
    QString path(const QString &relative) const { return root.filePath(relative); }

    QTemporaryDir root;
};

} // namespace

TEST_F(ScanCommandTest, AFolderGivesOneObjectPerFileWithTheStableKeys)
{
    photo(QStringLiteral("f"), QStringLiteral("b"));
    photo(QStringLiteral("f"), QStringLiteral("a"));
    const CliRun run = runCli({QStringLiteral("scan"), QStringLiteral("--json"), path(QStringLiteral("f"))});
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_EQ(run.names(), (QStringList{QStringLiteral("a.jpg"), QStringLiteral("b.jpg")}));
    const QJsonObject first = run.items().first().toObject();
    EXPECT_EQ(first[QStringLiteral("spDateTimeOriginal")].toString(), QStringLiteral("2024-05-01T10:00:00Z"));
    for (const char *key : {"path", "spType", "fileFormatType", "exifDateTimeOriginalOLD", "singlePicAttributes"})
        EXPECT_TRUE(first.contains(QLatin1String(key))) << key;
}

TEST_F(ScanCommandTest, SubfoldersAreTakenToTheGivenDepthOnly)
{
    photo(QStringLiteral("f"), QStringLiteral("top"));
    photo(QStringLiteral("f/one"), QStringLiteral("first"));
    photo(QStringLiteral("f/one/two"), QStringLiteral("second"));
    EXPECT_EQ(runCli({QStringLiteral("scan"), QStringLiteral("--json"), path(QStringLiteral("f"))}).names(),
              QStringList{QStringLiteral("top.jpg")});
    EXPECT_EQ(runCli({QStringLiteral("scan"), QStringLiteral("--json"), QStringLiteral("--subfolders"),
                      QStringLiteral("1"), path(QStringLiteral("f"))})
                  .names(),
              (QStringList{QStringLiteral("top.jpg"), QStringLiteral("first.jpg")}));
}

TEST_F(ScanCommandTest, FiltersKeepOrLeaveOutExtensions)
{
    photo(QStringLiteral("f"), QStringLiteral("a"));
    QFile::copy(photo(QStringLiteral("f"), QStringLiteral("b")), path(QStringLiteral("f/c.png")));
    const QStringList scan{QStringLiteral("scan"), QStringLiteral("--json")};
    EXPECT_EQ(runCli(scan + QStringList{QStringLiteral("--filter"), QStringLiteral(".png"), path(QStringLiteral("f"))})
                  .names(),
              QStringList{QStringLiteral("c.png")});
    EXPECT_EQ(runCli(scan + QStringList{QStringLiteral("--exclude"), QStringLiteral("png"), path(QStringLiteral("f"))})
                  .names(),
              (QStringList{QStringLiteral("a.jpg"), QStringLiteral("b.jpg")}));
}

TEST_F(ScanCommandTest, EmptyTagsTakeFixedDatesInSteps)
{
    photo(QStringLiteral("f"), QStringLiteral("1"), withBlankOriginal());
    photo(QStringLiteral("f"), QStringLiteral("2"), withBlankOriginal());
    const CliRun run = runCli({QStringLiteral("scan"), QStringLiteral("--json"), QStringLiteral("--empty-tags"),
                               QStringLiteral("fixed:2024-05-01T10:00:00Z:90"), path(QStringLiteral("f"))});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    ASSERT_EQ(run.items().size(), 2);
    EXPECT_EQ(run.items()[0][QStringLiteral("spDateTimeOriginal")].toString(), QStringLiteral("2024-05-01T10:00:00Z"));
    EXPECT_EQ(run.items()[1][QStringLiteral("spDateTimeOriginal")].toString(), QStringLiteral("2024-05-01T10:01:30Z"));
    EXPECT_EQ(run.items()[1][QStringLiteral("spType")].toInt(), 8);
}

TEST_F(ScanCommandTest, ImportProblemsGoToStderrWithExitOneWhileTheRestIsListed)
{
    photo(QStringLiteral("f"), QStringLiteral("good"));
    QFile empty(path(QStringLiteral("f/empty.jpg")));
    ASSERT_TRUE(empty.open(QIODevice::WriteOnly));
    empty.close();
    const CliRun run = runCli({QStringLiteral("scan"), QStringLiteral("--json"), path(QStringLiteral("f")),
                               path(QStringLiteral("missing"))});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.names(), (QStringList{QStringLiteral("empty.jpg"), QStringLiteral("good.jpg")}));
    EXPECT_TRUE(run.err.contains(QStringLiteral("empty (0 bytes)"))) << run.err.toStdString();
    EXPECT_TRUE(run.err.contains(QStringLiteral("missing: no such file or folder"))) << run.err.toStdString();
}

TEST_F(ScanCommandTest, SingleFilesStillScanAsBefore)
{
    const QString file = photo(QStringLiteral("f"), QStringLiteral("only"));
    photo(QStringLiteral("f"), QStringLiteral("other"));
    EXPECT_EQ(runCli({QStringLiteral("scan"), QStringLiteral("--json"), file}).names(),
              QStringList{QStringLiteral("only.jpg")});
}

TEST_F(ScanCommandTest, WrongUsageIsExitTwo)
{
    EXPECT_EQ(runCli({QStringLiteral("scan")}).exitCode, 2);
    EXPECT_EQ(runCli({QStringLiteral("scan"), QStringLiteral("--subfolders"), QStringLiteral("x"), root.path()}).exitCode,
              2);
    EXPECT_EQ(runCli({QStringLiteral("scan"), QStringLiteral("--empty-tags"), QStringLiteral("fixed:yesterday:5"),
                      root.path()})
                  .exitCode,
              2);
    EXPECT_EQ(runCli({QStringLiteral("scan"), QStringLiteral("--subfolders")}).exitCode, 2);
}

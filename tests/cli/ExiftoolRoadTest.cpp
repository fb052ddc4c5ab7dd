#include "support/CliRun.h"
#include "support/Exiftool.h"
#include "support/MediaFileBuilder.h"
#include "support/MovieBuilder.h"
#include "support/QtPrinters.h"
#include "support/SaveFixture.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QThread>
#include <gtest/gtest.h>
#include <csignal>
#include <functional>
#include <map>

using namespace orv;
using namespace orv::test;

namespace {

// What the command line writes through exiftool, read back by exiftool and by a new scan.
class ExiftoolRoad : public ::testing::Test
{
protected:
    QTemporaryDir home;
    QTemporaryDir work;

    CliResult cli(const QStringList &arguments) { return runCli(arguments, home.path()); }

    QJsonObject scanned(const QString &path)
    {
        const CliResult scan = cli({QStringLiteral("scan"), QStringLiteral("--json"), path});
        return scan.json().at(0).toObject();
    }

    static QString tag(const QString &path, const QString &key)
    {
        return exiftoolTags(path, ExiftoolGroups::Family1).string(key);
    }
};

QString isoDate(const QJsonValue &value)
{
    return value.toString();
}

} // namespace

TEST_F(ExiftoolRoad, AddMissingDatesGivesAJpegWithoutDateTimeOriginalOneThatExiftoolReads)
{
    TiffShape tags;
    tags.dateTime = Stamp::text("2024:05:03 09:00:00");
    const QString path = buildJpeg({.exif = tags}).write(work.path(), QStringLiteral("modified"));

    const CliResult run = cli({QStringLiteral("shift"), QStringLiteral("--by"),
                               QStringLiteral("+1:00:00"), QStringLiteral("--add-missing-dates"),
                               QStringLiteral("--json"), path});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_EQ(tag(path, "ExifIFD:DateTimeOriginal"), "2024:05:03 10:00:00");
    EXPECT_EQ(tag(path, "ExifIFD:CreateDate"), "2024:05:03 10:00:00");
    EXPECT_EQ(tag(path, "IFD0:ModifyDate"), "2024:05:03 10:00:00");
    EXPECT_FALSE(tag(path, "ExifIFD:OffsetTimeOriginal").isEmpty());
    EXPECT_EQ(scanned(path).value("spType").toInt(), 1) << "dated by its new tag";
}

TEST_F(ExiftoolRoad, LocateGivesAJpegWithoutGpsThePlaceAndAnExistingPlaceIsMoved)
{
    const QString bare = buildJpeg({}).write(work.path(), QStringLiteral("bare"));
    TiffShape tags;
    tags.order = ByteOrder::Motorola;
    tags.dateTimeOriginal = Stamp::text("2024:05:01 10:00:00");
    tags.gps = GpsShape::at(-12.5, -70.25);
    tags.gps->altitudeRef = 1;
    tags.gps->altitude = Rational{100, 1};
    tags.gps->hPositioningError = Rational{30, 1};
    const QString placed = buildJpeg({.exif = tags}).write(work.path(), QStringLiteral("placed"));
    const qint64 placedSize = QFileInfo(placed).size();

    const CliResult run =
        cli({QStringLiteral("locate"), QStringLiteral("--at"), QStringLiteral("48.8583,2.2945,35"),
             QStringLiteral("--accuracy"), QStringLiteral("5"), QStringLiteral("--json"), bare, placed});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    for (const QString &path : {bare, placed}) {
        const ExiftoolTags read = exiftoolTags(path);
        EXPECT_NEAR(read.number("Composite:GPSLatitude"), 48.8583, 1e-6) << path.toStdString();
        EXPECT_NEAR(read.number("Composite:GPSLongitude"), 2.2945, 1e-6);
        EXPECT_NEAR(read.number("EXIF:GPSAltitude"), 35.0, 1e-3);
        EXPECT_NEAR(read.number("EXIF:GPSHPositioningError"), 5.0, 1e-3);
        EXPECT_NEAR(scanned(path).value("gpsLat").toDouble(), 48.8583, 1e-6);
    }
    EXPECT_NEAR(run.json().at(0).toObject().value("gpsLong").toDouble(), 2.2945, 1e-6);
    EXPECT_EQ(QFileInfo(placed).size(), placedSize) << "existing GPS tags are written in place";
    EXPECT_EQ(exiftoolTags(placed).string("EXIF:GPSAltitudeRef"), "0");

    const CliResult bad = cli({QStringLiteral("locate"), QStringLiteral("--at"),
                               QStringLiteral("91,0"), bare});
    EXPECT_EQ(bad.exitCode, 2);
}

TEST_F(ExiftoolRoad, FilesDatedByTheirFileAloneKeepTheirNewDatesInAddedTagsWhenAsked)
{
    const QString png = buildPng({}).write(work.path(), QStringLiteral("screenshot"));
    const QString jpeg = buildJpeg({}).write(work.path(), QStringLiteral("messenger"));
    // A movie without a header or a metadata date.
    const QString movie = QDir(work.path()).filePath(QStringLiteral("clip.mov"));
    QFile clip(movie);
    ASSERT_TRUE(clip.open(QIODevice::WriteOnly));
    clip.write(orv::test::movie({.times = std::nullopt, .creationDate = ""}));
    clip.close();
    const QString paths[] = {png, jpeg, movie};
    std::map<QString, QJsonObject> before;
    for (const QString &path : paths)
        before[path] = scanned(path);
    ASSERT_EQ(before[png].value("spType").toInt(), 11);
    ASSERT_EQ(before[movie].value("spType").toInt(), 14);

    const CliResult run = cli({QStringLiteral("shift"), QStringLiteral("--by"), QStringLiteral("-2d0:00:00"),
                               QStringLiteral("--add-missing-dates"), QStringLiteral("--json"), png, jpeg, movie});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    for (const QString &path : paths) {
        const QJsonObject after = scanned(path);
        const QDateTime old = QDateTime::fromString(isoDate(before[path].value("spDateTimeOriginal")), Qt::ISODateWithMs);
        const QDateTime now = QDateTime::fromString(isoDate(after.value("spDateTimeOriginal")), Qt::ISODateWithMs);
        EXPECT_EQ(old.secsTo(now), -2 * 86400) << path.toStdString();
        EXPECT_EQ(after.value("spType").toInt(), path == movie ? 21 : 1) << "dated by its new tag";
    }
    EXPECT_FALSE(tag(png, "ExifIFD:DateTimeOriginal").isEmpty());
    EXPECT_FALSE(tag(movie, "Keys:CreationDate").isEmpty());
}

TEST_F(ExiftoolRoad, WithoutExiftoolOnThePathInPlaceItemsAreSavedAndTheOthersFailClearly)
{
    TiffShape tags;
    tags.dateTimeOriginal = Stamp::text("2024:05:01 10:00:00");
    tags.dateTimeDigitized = Stamp::text("2024:05:01 10:00:00");
    tags.dateTime = Stamp::text("2024:05:01 10:00:00");
    const QString inPlace = buildJpeg({.exif = tags}).write(work.path(), QStringLiteral("inplace"));
    TiffShape modifyOnly;
    modifyOnly.dateTime = Stamp::text("2024:05:01 10:00:00");
    const QString needsTool = buildJpeg({.exif = modifyOnly}).write(work.path(), QStringLiteral("tags"));
    const QByteArray toolBefore = fileBytes(needsTool);

    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", QFile::encodeName(work.path()));
    const CliResult run = cli({QStringLiteral("shift"), QStringLiteral("--by"), QStringLiteral("+1:00:00"),
                               QStringLiteral("--add-missing-dates"), inPlace, needsTool});
    qputenv("PATH", path);

    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(run.err.contains("exiftool was not found on the PATH")) << run.err.toStdString();
    EXPECT_EQ(tag(inPlace, "ExifIFD:DateTimeOriginal"), "2024:05:01 11:00:00");
    EXPECT_EQ(fileBytes(needsTool), toolBefore);
}

TEST_F(ExiftoolRoad, APathWithALineBreakIsRefusedAndTheFileStaysAsItWas)
{
    const QString odd = buildJpeg({}).write(work.path(), QStringLiteral("two\nlines"));
    const QByteArray oddBefore = fileBytes(odd);

    const CliResult run = cli({QStringLiteral("locate"), QStringLiteral("--at"), QStringLiteral("10,20"), odd});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(run.err.contains("line break")) << run.err.toStdString();
    EXPECT_EQ(fileBytes(odd), oddBefore);
}

// The tool must not outlive a killed run: it would go on with the actions in its argument file.
TEST_F(ExiftoolRoad, TheExiftoolChildDiesWithAKilledRun)
{
    QStringList paths;
    for (int i = 0; i < 60; ++i)
        paths << buildJpeg({}).write(work.path(), QStringLiteral("bare%1").arg(i));
    const QByteArray argsPath = QFile::encodeName(QDir(home.path()).filePath(".local/share/orvelle/.args.txt"));
    // The exiftool processes reading our argument file.
    const auto children = [&argsPath] {
        QList<int> pids;
        for (const QString &pid : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
            QFile cmdline(QStringLiteral("/proc/%1/cmdline").arg(pid));
            if (cmdline.open(QIODevice::ReadOnly) && cmdline.readAll().split('\0').contains(argsPath))
                pids << pid.toInt();
        }
        return pids;
    };
    const auto pollUntil = [](const std::function<bool()> &done, int milliseconds) {
        QElapsedTimer clock;
        clock.start();
        while (!done() && clock.elapsed() < milliseconds)
            QThread::msleep(5);
        return done();
    };

    const std::unique_ptr<QProcess> run =
        startCli(QStringList{"shift", "--by", "+1:00:00", "--add-missing-dates"} + paths, home.path());
    ASSERT_TRUE(pollUntil([&] { return !children().isEmpty(); }, 60000)) << "exiftool was started";
    ::kill(pid_t(run->processId()), SIGKILL);
    run->waitForFinished();
    EXPECT_TRUE(pollUntil([&] { return children().isEmpty(); }, 500)) << "no exiftool of ours lives on";
}

// Root may write any file: a mode without a write bit is the user's word all the same.
TEST_F(ExiftoolRoad, AFileWithoutAnyWriteBitIsRefusedInPlaceAndBeforeExiftoolForRootToo)
{
    TiffShape tags;
    tags.dateTimeOriginal = Stamp::text("2024:05:01 10:00:00");
    const QString inPlace = buildJpeg({.exif = tags}).write(work.path(), QStringLiteral("inplace"));
    const QString needsTool = buildJpeg({}).write(work.path(), QStringLiteral("tags"));
    std::map<QString, QByteArray> before;
    for (const QString &path : {inPlace, needsTool}) {
        QFile::setPermissions(path, QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther);
        before[path] = fileBytes(path);
    }

    const CliResult run = cli({QStringLiteral("shift"), QStringLiteral("--by"), QStringLiteral("+1:00:00"),
                               QStringLiteral("--add-missing-dates"), inPlace, needsTool});

    EXPECT_EQ(run.exitCode, 1);
    for (const QString &path : {inPlace, needsTool}) {
        EXPECT_TRUE(run.err.contains((path + ": error 2: cannot be opened for writing").toUtf8()))
            << run.err.toStdString();
        EXPECT_EQ(fileBytes(path), before[path]) << path.toStdString();
    }
}

#include "support/CliRun.h"
#include "support/Exiftool.h"
#include "support/JpegBuilder.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace orv::test;

namespace {

// The wall clock of `target` at the instant a Berlin stamp names, by Python's zoneinfo. Of the
// two readings of a skipped or repeated hour the later instant is the one taken.
QStringList zoneinfoConversions(const QStringList &berlinStamps)
{
    static const char *script = R"(
import sys, datetime, zoneinfo
source, target = zoneinfo.ZoneInfo('Europe/Berlin'), zoneinfo.ZoneInfo('America/New_York')
for line in sys.stdin:
    wall = datetime.datetime.strptime(line.strip(), '%Y:%m:%d %H:%M:%S')
    instant = max(wall.replace(tzinfo=source, fold=f).astimezone(datetime.timezone.utc) for f in (0, 1))
    print(instant.astimezone(target).strftime('%Y:%m:%d %H:%M:%S'))
)";
    QProcess python;
    python.start(QStringLiteral("python3"), {QStringLiteral("-c"), QString::fromLatin1(script)});
    python.write(berlinStamps.join('\n').toLatin1() + '\n');
    python.closeWriteChannel();
    python.waitForFinished(30000);
    return QString::fromLatin1(python.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
}

} // namespace

// A Berlin camera's local stamps around both zones' spring and autumn changes are saved as New
// York clock time; the skipped and the repeated Berlin hours are flagged, a phone's stamp with
// its own offset keeps its instant and is flagged for disagreeing with the Berlin zone.
TEST(ZoneCommand, savesBerlinStampsAsNewYorkClockTimeAndFlagsDoubtfulHours)
{
    QTemporaryDir home, work;
    const QStringList stamps = {"2024:03:10 07:59:00", "2024:03:10 08:01:00", "2024:03:31 01:59:00",
                                "2024:03:31 02:30:00", "2024:03:31 03:01:00", "2024:10:27 02:30:00",
                                "2024:11:03 06:30:00", "2024:11:03 07:30:00"};
    QStringList paths;
    for (qsizetype i = 0; i < stamps.size(); ++i) {
        TiffShape tags;
        tags.dateTimeOriginal = Stamp::text(stamps[i].toLatin1());
        paths << buildJpeg({.exif = tags}).write(work.path(), QStringLiteral("camera%1").arg(i));
    }
    TiffShape phone;
    phone.dateTimeOriginal = Stamp::text("2024:03:10 03:30:00");
    phone.offsetTimeOriginal = Stamp::text("-04:00");
    const QString phonePath = buildJpeg({.exif = phone}).write(work.path(), QStringLiteral("phone"));

    const CliResult result = runCli({"zone", "--source", "Europe/Berlin", "--target", "America/New_York", "--json",
                                     work.path()},
                                    home.path());
    ASSERT_EQ(result.exitCode, 0) << result.err.toStdString();
    std::map<QString, QJsonObject> items;
    for (const QJsonValue &item : result.json())
        items[item["path"].toString()] = item.toObject();
    ASSERT_EQ(items.size(), std::size_t(stamps.size() + 1));

    const QStringList expected = zoneinfoConversions(stamps);
    ASSERT_EQ(expected.size(), stamps.size());
    const auto tags = exiftoolTagsOfFiles(paths + QStringList{phonePath});
    for (qsizetype i = 0; i < stamps.size(); ++i) {
        const QJsonObject &item = items[paths[i]];
        EXPECT_EQ(item["saved"].toBool(), true) << stamps[i].toStdString();
        EXPECT_EQ(tags.at(paths[i]).string("EXIF:DateTimeOriginal"), expected[i]) << stamps[i].toStdString();
        EXPECT_EQ(item["dstDivergenceState"].toInt(), stamps[i] == "2024:03:31 02:30:00" ? 1 : 0);
        EXPECT_EQ(item["dstAmbiguityAtImportState"].toInt(), stamps[i] == "2024:10:27 02:30:00" ? 1 : 0);
        EXPECT_EQ(item["majorDateDifferenceType"].toInt(), 0);
        // New York's first 01:30 of its autumn night cannot be told from the second in a stamp.
        EXPECT_EQ(item["preSaveErrors"].toArray().contains(QStringLiteral("error_01_ambiguousStamp")),
                  stamps[i] == "2024:11:03 06:30:00")
            << stamps[i].toStdString();
    }
    const QJsonObject &phoneItem = items[phonePath];
    EXPECT_EQ(phoneItem["majorDateDifferenceType"].toInt(), 1);
    EXPECT_EQ(phoneItem["storedOffsetDifference"].toDouble(), 5 * 3600.0);
    EXPECT_EQ(tags.at(phonePath).string("EXIF:DateTimeOriginal"), QStringLiteral("2024:03:10 03:30:00"));
    EXPECT_EQ(tags.at(phonePath).string("EXIF:OffsetTimeOriginal"), QStringLiteral("-04:00"));
}

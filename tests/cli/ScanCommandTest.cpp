#include "support/Corpus.h"
#include "support/Exiftool.h"
#include "support/MediaFileBuilder.h"

#include <QDir>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cmath>

using namespace orv::test;

namespace {

struct CliResult
{
    int exitCode = -1;
    QByteArray out, err;
};

// Runs the built tool in UTC, so that stamps without a zone read the same on every machine.
CliResult runCli(const QStringList &arguments)
{
    QProcess process;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("TZ"), QStringLiteral("UTC"));
    process.setProcessEnvironment(env);
    process.start(QStringLiteral(ORV_CLI_PATH), arguments);
    process.waitForFinished(120000);
    return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
}

QJsonArray scanJson(const QStringList &paths)
{
    const CliResult r = runCli(QStringList{QStringLiteral("scan"), QStringLiteral("--json")} + paths);
    return QJsonDocument::fromJson(r.out).array();
}

// "2003:12:04 06:46:52" as the tool writes an instant read in UTC.
QString isoFromExifStamp(const QString &stamp)
{
    QString iso = stamp.left(19);
    iso[4] = QLatin1Char('-');
    iso[7] = QLatin1Char('-');
    iso[10] = QLatin1Char('T');
    return iso + QLatin1Char('Z');
}

// Files on which the tool and exiftool part ways on purpose, with the reason.
const QHash<QString, const char *> knownDisagreements{
    {QStringLiteral("png_with_exif_and_gps.png"),
     "its eXIf chunk follows IDAT: only metadata in front of the image is read, as a later "
     "in-place write could not repair a chunk found by a byte scan"},
    {QStringLiteral("fixture-Leica-M10.dng"),
     "cut short by its source: exiftool gives up, the tool still reads the dates that lie inside"},
    {QStringLiteral("Nikon D5000.jpg"),
     "GPS seconds stored as 0/0 with fractional minutes: exiftool prints no position, the tool "
     "reads the zero denominator as 1 and keeps the camera's real position"},
};

} // namespace

TEST(ScanCommand, JsonKeysFormsAndExitCodeOnCraftedFiles)
{
    QTemporaryDir dir;
    TiffSpec tags;
    tags.dateTimeOriginal = Stamp::text("2024:05:01 10:00:00");
    tags.offsetTimeOriginal = Stamp::text("-03:30");
    tags.gps = GpsSpec::at(48.8584, 2.2945);
    const MediaFile jpeg = buildJpeg({.exif = tags});
    jpeg.write(dir.path(), QStringLiteral("tower"));
    const QString missing = dir.filePath(QStringLiteral("nowhere.jpg"));

    const CliResult r = runCli({QStringLiteral("scan"), QStringLiteral("--json"), dir.path(), missing});
    EXPECT_EQ(r.exitCode, 1) << "a missing path fails the run at the end";
    EXPECT_TRUE(r.err.contains("nowhere.jpg"));
    const QJsonArray items = QJsonDocument::fromJson(r.out).array();
    ASSERT_EQ(items.size(), 1) << "the other paths are still scanned";
    const QJsonObject item = items.first().toObject();

    for (const char *key : {"path", "spName", "fileFormatType", "spType", "spDateTimeOriginal", "exifDateTimeOriginalOLD",
                            "exifDateTimeDigitizedOLD", "tiffDateTimeOLD", "fileCreationDateOLD", "fileModificationDateOLD",
                            "spGpsUTCDate", "gpsLat", "gpsLong", "pivMakeModel", "pivImageWidth", "pivImageHeight",
                            "isCreaXmp", "isDigiXmp", "isModiXmp", "singlePicAttributes"})
        EXPECT_TRUE(item.contains(QLatin1String(key))) << key;
    EXPECT_EQ(item[QStringLiteral("spDateTimeOriginal")].toString(), QStringLiteral("2024-05-01T13:30:00Z"));
    EXPECT_TRUE(item[QStringLiteral("exifDateTimeDigitizedOLD")].isNull());
    EXPECT_EQ(item[QStringLiteral("fileFormatType")].toInt(), 1);
    EXPECT_NEAR(item[QStringLiteral("gpsLat")].toDouble(), 48.8584, 1e-4);

    const QJsonObject attributes = item[QStringLiteral("singlePicAttributes")].toObject();
    EXPECT_EQ(attributes[QStringLiteral("ExifDateTimeOriginalData")].toString(), QStringLiteral("2024:05:01 10:00:00"));
    EXPECT_EQ(attributes[QStringLiteral("ExifDateTimeOriginalOffset")].toInteger(), jpeg.offsets.dateTimeOriginal);
    EXPECT_EQ(attributes[QStringLiteral("ExifOffsetTimeOriginalData")].toString(), QStringLiteral("-03:30"));
    EXPECT_EQ(attributes[QStringLiteral("GPSLocation")].toObject()[QStringLiteral("latitudeRef_Data")].toString(),
              QStringLiteral("N"));
}

TEST(ScanCommand, UsageErrorsExitWith2)
{
    EXPECT_EQ(runCli({QStringLiteral("scan")}).exitCode, 2);
    EXPECT_EQ(runCli({QStringLiteral("scan"), QStringLiteral("--bogus"), QStringLiteral("/tmp")}).exitCode, 2);
    EXPECT_EQ(runCli({QStringLiteral("frobnicate")}).exitCode, 2);
    const CliResult help = runCli({QStringLiteral("--help")});
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_TRUE(help.out.contains("scan"));
}

// Every still of the corpus: the date slots, the chosen date and the location that the tool
// prints agree with exiftool's reading of the same file.
TEST(ScanCommand, CorpusAgreesWithExiftool)
{
    ORV_SKIP_WITHOUT_CORPUS();
    const QStringList stills = corpusFiles({QStringLiteral("jpg"), QStringLiteral("jpeg"), QStringLiteral("tif"),
                                            QStringLiteral("png"), QStringLiteral("webp"), QStringLiteral("cr2"),
                                            QStringLiteral("nef"), QStringLiteral("dng"), QStringLiteral("rw2"),
                                            QStringLiteral("arw"), QStringLiteral("orf"), QStringLiteral("pef")});
    ASSERT_FALSE(stills.isEmpty());
    const QJsonArray items = scanJson(stills);
    ASSERT_EQ(items.size(), stills.size());

    int compared = 0;
    for (const QJsonValue &value : items) {
        const QJsonObject item = value.toObject();
        const QString path = item[QStringLiteral("path")].toString();
        if (knownDisagreements.contains(item[QStringLiteral("spName")].toString()))
            continue;
        SCOPED_TRACE(path.toStdString());
        const ExiftoolTags tool = exiftoolTags(path);
        const QJsonObject attributes = item[QStringLiteral("singlePicAttributes")].toObject();

        const QString original = tool.string(QStringLiteral("EXIF:DateTimeOriginal"));
        if (attributes.contains(QStringLiteral("ExifDateTimeOriginalData"))) {
            EXPECT_EQ(attributes[QStringLiteral("ExifDateTimeOriginalData")].toString(), original);
            ++compared;
        }
        const QString digitized = tool.string(QStringLiteral("EXIF:CreateDate"));
        if (attributes.contains(QStringLiteral("ExifDateTimeDigitizedData"))) {
            EXPECT_EQ(attributes[QStringLiteral("ExifDateTimeDigitizedData")].toString(), digitized);
        }

        const bool usableOriginal = original.size() == 19 && original != QStringLiteral("0000:00:00 00:00:00")
                                    && !original.trimmed().startsWith(QLatin1Char(':'));
        const bool hasOffset = tool.has(QStringLiteral("EXIF:OffsetTimeOriginal"));
        if (item[QStringLiteral("spType")].toInt() == 1 && usableOriginal && !hasOffset
            && !item[QStringLiteral("isCreaXmp")].toBool()) {
            EXPECT_EQ(item[QStringLiteral("spDateTimeOriginal")].toString(), isoFromExifStamp(original));
        }

        if (item[QStringLiteral("gpsLat")].isDouble()) {
            EXPECT_NEAR(item[QStringLiteral("gpsLat")].toDouble(), tool.number(QStringLiteral("Composite:GPSLatitude")), 1e-6);
            EXPECT_NEAR(item[QStringLiteral("gpsLong")].toDouble(), tool.number(QStringLiteral("Composite:GPSLongitude")), 1e-6);
        } else if (tool.has(QStringLiteral("Composite:GPSLatitude"))) {
            const double lat = tool.number(QStringLiteral("Composite:GPSLatitude"));
            const double lon = tool.number(QStringLiteral("Composite:GPSLongitude"));
            const bool fromExifTags = tool.has(QStringLiteral("EXIF:GPSLatitude"));
            EXPECT_TRUE(!fromExifTags || (lat == 0.0 && lon == 0.0) || std::isnan(lon))
                << "exiftool reads a location we missed: " << lat << ", " << lon;
        }
    }
    EXPECT_GT(compared, 60);
}

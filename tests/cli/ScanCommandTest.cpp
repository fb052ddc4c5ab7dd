#include "formats/ByteSource.h"
#include "support/CliRun.h"
#include "support/Corpus.h"
#include "support/Exiftool.h"
#include "support/MediaFileBuilder.h"
#include "support/SaveFixture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cmath>

using namespace orv;
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
    // In UTC, so that stamps without a zone read the same on every machine.
    QProcess process;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("TZ"), QStringLiteral("UTC"));
    process.setProcessEnvironment(env);
    process.start(orv::test::cliPath(), arguments);
    process.waitForFinished(120000);
    return {process.exitCode(), process.readAllStandardOutput(), QString::fromUtf8(process.readAllStandardError())};
}

class ScanCommandTest : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(root.isValid()); }

    QString photo(const QString &relativeDir, const QString &baseName, TiffShape tags = withOriginal())
    {
        const QString dir = root.filePath(relativeDir);
        QDir().mkpath(dir);
        return buildJpeg({.exif = tags}).write(dir, baseName);
    }
    static TiffShape withOriginal()
    {
        TiffShape tags;
        tags.dateTimeOriginal = Stamp::text("2024:05:01 10:00:00");
        return tags;
    }
    static TiffShape withBlankOriginal()
    {
        TiffShape tags;
        tags.dateTimeOriginal = Stamp::blank();
        return tags;
    }
    QString path(const QString &relative) const { return root.filePath(relative); }

    QTemporaryDir root;
};

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

// Files whose shot settings exiftool takes from elsewhere than their own Exif IFD.
const QHash<QString, const char *> shotDisagreements{
    {QStringLiteral("Panasonic.rw2"), "the RW2's IFD0 has no Exif IFD: exiftool prints that of the embedded JPEG"},
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

TEST(ScanCommandJson, OffsetsStampsAndLocationOfACraftedFile)
{
    QTemporaryDir dir;
    TiffShape tags;
    tags.dateTimeOriginal = Stamp::text("2024:05:01 10:00:00");
    tags.offsetTimeOriginal = Stamp::text("-03:30");
    tags.gps = GpsShape::at(48.8584, 2.2945);
    const MediaFile jpeg = buildJpeg({.exif = tags});
    jpeg.write(dir.path(), QStringLiteral("tower"));
    const QString missing = dir.filePath(QStringLiteral("nowhere.jpg"));

    const CliRun r = runCli({QStringLiteral("scan"), QStringLiteral("--json"), dir.path(), missing});
    EXPECT_EQ(r.exitCode, 1) << "a missing path fails the run at the end";
    EXPECT_TRUE(r.err.contains(QStringLiteral("nowhere.jpg")));
    const QJsonArray items = r.items();
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

// Every still of the corpus: the date slots, the chosen date and the location that the tool
// prints agree with exiftool's reading of the same file.
TEST(ScanCommandJson, CorpusAgreesWithExiftool)
{
    ORV_SKIP_WITHOUT_CORPUS();
    const QStringList stills = corpusFiles({QStringLiteral("jpg"), QStringLiteral("jpeg"), QStringLiteral("tif"),
                                            QStringLiteral("png"), QStringLiteral("webp"), QStringLiteral("cr2"),
                                            QStringLiteral("nef"), QStringLiteral("dng"), QStringLiteral("rw2"),
                                            QStringLiteral("arw"), QStringLiteral("orf"), QStringLiteral("pef")});
    ASSERT_FALSE(stills.isEmpty());
    const QJsonArray items = runCli(QStringList{QStringLiteral("scan"), QStringLiteral("--json")} + stills).items();
    ASSERT_EQ(items.size(), stills.size());

    const std::map<QString, ExiftoolTags> printed = exiftoolPrintedTagsOfFiles(
        stills, {QStringLiteral("ExposureTime"), QStringLiteral("FNumber"), QStringLiteral("FocalLength"),
                 QStringLiteral("DigitalZoomRatio")});
    int compared = 0, shotsCompared = 0;
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

        // The shot's settings as exiftool prints them; it prints none for a rational of 0/0.
        const ExiftoolTags &shot = printed.at(QFileInfo(path).canonicalFilePath());
        const std::pair<const char *, const char *> shotKeys[] = {
            {"exposureTime", "ExifIFD:ExposureTime"}, {"fNumber", "ExifIFD:FNumber"},
            {"focalLength", "ExifIFD:FocalLength"}, {"digitalZoomRatio", "ExifIFD:DigitalZoomRatio"}};
        for (const auto &[ours, theirs] : shotKeys) {
            if (shotDisagreements.contains(item[QStringLiteral("spName")].toString()))
                break;
            const QString expected = shot.string(QLatin1String(theirs));
            const bool named = !expected.isEmpty() && expected != u"undef" && expected != u"inf";
            EXPECT_EQ(item[QLatin1String(ours)].toVariant().toString(), named ? expected : QString()) << ours;
            shotsCompared += named ? 1 : 0;
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
    EXPECT_GT(shotsCompared, 100);
}

TEST_F(ScanCommandTest, AMovieNamesItsHeaderTypeStampsPlacesAndContentIdentifier)
{
    ORV_SKIP_WITHOUT_CORPUS();
    const QJsonArray items = runCli({QStringLiteral("scan"), QStringLiteral("--json"),
                                     corpusFile(QStringLiteral("Lychee/tests/Samples/train.mov"))})
                                 .items();
    ASSERT_EQ(items.size(), 1);
    const QJsonObject item = items[0].toObject();
    EXPECT_EQ(item["movieType"].toInt(), 16);
    EXPECT_EQ(item["spType"].toInt(), 21) << "the metadata date with its own offset wins";
    EXPECT_EQ(item["spDateTimeOriginal"].toString(), QStringLiteral("2021-04-10T10:43:59Z"));
    EXPECT_EQ(item["UUID"].toString(), QStringLiteral("E905E6C6-C747-4805-942F-9904A0281F02"));
    EXPECT_EQ(item["pivImageWidth"].toInt(), 1440);
    EXPECT_EQ(item["pivMakeModel"].toString(), QStringLiteral("Apple iPhone 6s"));
    EXPECT_NEAR(item["movDuration"].toDouble(), 1.233, 0.001);
    const QJsonObject attributes = item["singlePicAttributes"].toObject();
    EXPECT_EQ(attributes["QTMetaDateData"].toString(), QStringLiteral("2021-04-10T11:43:59+0100"));
    EXPECT_EQ(attributes["QTMvhdCreaDateData"].toString(), QStringLiteral("dc9731f0"));
    EXPECT_EQ(attributes["QTMvhdModDateOffset"].toInteger(), attributes["QTMvhdCreaDateOffset"].toInteger() + 4);
    const QJsonObject place = attributes["qtLocations"].toArray().first().toObject();
    EXPECT_EQ(place["data"].toString(), QStringLiteral("+52.2097-000.8955+103.640/"));
    EXPECT_EQ(place["HAccuracyData"].toString(), QStringLiteral("65.000000"));
    EXPECT_TRUE(place["edit"].toBool());
    // The keys every item has are still there.
    for (const char *key : {"path", "spName", "fileFormatType", "spType", "spDateTimeOriginal", "gpsLat"})
        EXPECT_TRUE(item.contains(QLatin1String(key))) << key;
}

TEST_F(ScanCommandTest, XmpPlacesOfSidecarsAndOwnPacketsAreReadAsExiftoolReadsThem)
{
    // A place as a photo library writes it into a sidecar: degrees and decimal minutes, degrees,
    // minutes and seconds, and an altitude below sea level.
    const std::vector<XmpProperty> sidecarPlace{{"exif:GPSLatitude", "48,51.25N"},
                                                {"exif:GPSLongitude", "2,21,3.6W"},
                                                {"exif:GPSAltitude", "355/10"},
                                                {"exif:GPSAltitudeRef", "1"}};
    ASSERT_TRUE(QFile::rename(buildTiffFile({.tags = withOriginal()}).write(root.path(), QStringLiteral("raw")),
                              path(QStringLiteral("raw.dng"))));
    buildXmpSidecar({.properties = sidecarPlace}).write(root.path(), QStringLiteral("raw"));
    // A photo with a place of its own in its GPS tags: its sidecar's place is the newer word.
    TiffShape placed = withOriginal();
    placed.gps = GpsShape::at(10.5, 20.25);
    photo(QString(), QStringLiteral("placed"), placed);
    buildXmpSidecar({.properties = sidecarPlace}).write(root.path(), QStringLiteral("placed"));
    // A photo whose only place is in its own packet, as elements.
    buildJpeg({.exif = withOriginal(),
               .xmp = buildXmp({.properties = {{"exif:GPSLatitude", "33,52,4.8S"}, {"exif:GPSLongitude", "151,12.6E"}},
                                .form = XmpForm::Elements})})
        .write(root.path(), QStringLiteral("packet"));

    const CliRun run = runCli({QStringLiteral("scan"), QStringLiteral("--json"), root.path()});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    QHash<QString, QJsonObject> byName;
    for (const QJsonValue &item : run.items())
        byName[item["spName"].toString()] = item.toObject();
    ASSERT_EQ(byName.size(), 3) << run.out.toStdString();
    for (const char *name : {"raw.dng", "placed.jpg", "packet.jpg"}) {
        const QJsonObject item = byName.value(QLatin1String(name));
        const QString source = QLatin1String(name) == QLatin1String("packet.jpg")
                                   ? path(QStringLiteral("packet.jpg"))
                                   : path(QLatin1String(name).left(QLatin1String(name).indexOf('.')) + ".xmp");
        const ExiftoolTags tags = exiftoolTags(source);
        EXPECT_NEAR(item["gpsLat"].toDouble(), tags.number("XMP:GPSLatitude"), 1e-9) << name;
        EXPECT_NEAR(item["gpsLong"].toDouble(), tags.number("XMP:GPSLongitude"), 1e-9) << name;
        if (QLatin1String(name) != QLatin1String("packet.jpg")) {
            EXPECT_EQ(item["spSidecarExtensions"].toArray(), QJsonArray({QStringLiteral("xmp")})) << name;
            EXPECT_DOUBLE_EQ(item["singlePicAttributes"]["GPSLocationXmp"]["altitude"].toDouble(),
                             tags.number("XMP:GPSAltitudeRef") == 1 ? -tags.number("XMP:GPSAltitude")
                                                                    : tags.number("XMP:GPSAltitude"));
        }
    }
}

TEST_F(ScanCommandTest, XmpRatingsOfOtherProgramsBecomeKeepersAndRejects)
{
    // Ratings as other programs leave them: in the photo's own packet as an attribute or an
    // element, and in a RAW's sidecar. Five stars make a keeper, -1 a reject, other stars nothing.
    const auto rated = [](const char *rating, XmpForm form) {
        return buildXmp({.properties = {{"xmp:Rating", rating}}, .form = form});
    };
    buildJpeg({.exif = withOriginal(), .xmp = rated("5", XmpForm::Attributes)}).write(root.path(), QStringLiteral("five"));
    buildJpeg({.exif = withOriginal(), .xmp = rated("-1", XmpForm::Elements)}).write(root.path(), QStringLiteral("rejected"));
    buildJpeg({.exif = withOriginal(), .xmp = rated("3", XmpForm::Attributes)}).write(root.path(), QStringLiteral("three"));
    ASSERT_TRUE(QFile::rename(buildTiffFile({.tags = withOriginal()}).write(root.path(), QStringLiteral("raw")),
                              path(QStringLiteral("raw.dng"))));
    buildXmpSidecar({.properties = {{"xmp:Rating", "5"}}}).write(root.path(), QStringLiteral("raw"));
    // A sidecar's word wins over the packet's, as for places.
    buildJpeg({.exif = withOriginal(), .xmp = rated("5", XmpForm::Attributes)}).write(root.path(), QStringLiteral("both"));
    buildXmpSidecar({.properties = {{"xmp:Rating", "-1"}}}).write(root.path(), QStringLiteral("both"));
    photo(QString(), QStringLiteral("plain"), withOriginal());

    const CliRun run = runCli({QStringLiteral("scan"), QStringLiteral("--json"), root.path()});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    QHash<QString, int> ratings;
    for (const QJsonValue &item : run.items())
        ratings[item["spName"].toString()] = item["rating"].toInt(99);
    EXPECT_EQ(ratings, (QHash<QString, int>{{QStringLiteral("five.jpg"), 1},
                                           {QStringLiteral("rejected.jpg"), -1},
                                           {QStringLiteral("three.jpg"), 0},
                                           {QStringLiteral("raw.dng"), 1},
                                           {QStringLiteral("both.jpg"), -1},
                                           {QStringLiteral("plain.jpg"), 0}}));
    // exiftool reads the same stars where we found them.
    EXPECT_EQ(exiftoolTags(path(QStringLiteral("five.jpg"))).number("XMP:Rating"), 5);
    EXPECT_EQ(exiftoolTags(path(QStringLiteral("rejected.jpg"))).number("XMP:Rating"), -1);
    EXPECT_EQ(exiftoolTags(path(QStringLiteral("raw.xmp"))).number("XMP:Rating"), 5);
}

TEST_F(ScanCommandTest, AStampReadInTheOffsetOfAnotherSlotNamesNoSkippedHour)
{
    // The digitized stamp has no offset tag of its own and takes the original's, as the camera
    // wrote both on one clock; read back in UTC without it, it would look like a skipped hour.
    TiffShape tags;
    tags.dateTimeOriginal = Stamp::text("2024:05:01 10:00:00");
    tags.offsetTimeOriginal = Stamp::text("+02:00");
    tags.dateTimeDigitized = Stamp::text("2024:05:01 10:00:00");
    tags.dateTime = Stamp::text("2024:05:01 10:05:00");
    buildPng({.exif = tags}).write(root.path(), QStringLiteral("clock"));
    photo(QString(), QStringLiteral("clock"), tags);

    const CliRun run = runCli({QStringLiteral("scan"), QStringLiteral("--json"), root.path()});
    ASSERT_EQ(run.items().size(), 2);
    for (const QJsonValue &item : run.items()) {
        const QString name = item["spName"].toString();
        EXPECT_EQ(item["dstDivergenceState"].toInt(), 0) << name.toStdString();
        EXPECT_EQ(item["dstAmbiguityAtImportState"].toInt(), 0) << name.toStdString();
        EXPECT_EQ(item["exifDateTimeDigitizedOLD"].toString(), QStringLiteral("2024-05-01T08:00:00Z"))
            << name.toStdString();
    }
}

TEST_F(ScanCommandTest, AScanThatFindsNothingSaysSoAndNamesSubfoldersWhenThereAreSome)
{
    photo(QStringLiteral("f/one"), QStringLiteral("inside"));
    const CliRun nested = runCli({QStringLiteral("scan"), path(QStringLiteral("f"))});
    EXPECT_EQ(nested.exitCode, 0);
    EXPECT_TRUE(nested.out.isEmpty());
    EXPECT_TRUE(nested.err.contains(QStringLiteral("no media file found"))) << nested.err.toStdString();
    EXPECT_TRUE(nested.err.contains(QStringLiteral("1 subfolder(s), which --subfolders DEPTH imports")))
        << nested.err.toStdString();

    EXPECT_TRUE(runCli({QStringLiteral("scan"), path(QStringLiteral("f/one"))}).err.isEmpty());
    QDir().mkpath(path(QStringLiteral("g")));
    const CliRun bare = runCli({QStringLiteral("scan"), path(QStringLiteral("g"))});
    EXPECT_EQ(bare.exitCode, 0);
    EXPECT_TRUE(bare.err.contains(QStringLiteral("no media file found\n"))) << bare.err.toStdString();
    EXPECT_FALSE(bare.err.contains(QStringLiteral("--subfolders")));
}

// A text file named like a photo and a photo whose copy was cut off are named, not taken silently.
TEST_F(ScanCommandTest, ContentThatIsNoImageOfItsKindAndAJpegCutOffBeforeItsImageAreImportProblems)
{
    const QByteArray whole = fileBytes(photo(QStringLiteral("f"), QStringLiteral("good")));
    const qsizetype scan = whole.indexOf(QByteArray("\xFF\xDA", 2));
    ASSERT_GT(scan, 0);
    QFile cut(path(QStringLiteral("f/cut.jpg")));
    ASSERT_TRUE(cut.open(QIODevice::WriteOnly));
    cut.write(whole.left(scan + 2));
    cut.close();
    QFile text(path(QStringLiteral("f/notes.jpg")));
    ASSERT_TRUE(text.open(QIODevice::WriteOnly));
    text.write("shopping list: film, batteries\n");
    text.close();

    const CliRun run = runCli({QStringLiteral("scan"), QStringLiteral("--json"), path(QStringLiteral("f"))});

    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.names(), (QStringList{QStringLiteral("cut.jpg"), QStringLiteral("good.jpg")}));
    EXPECT_EQ(run.items().first()[QStringLiteral("spType")].toInt(), 1) << "the cut file keeps its dates";
    EXPECT_TRUE(run.err.contains(QStringLiteral("1 file(s) skipped: the content is not the image its extension "
                                                "names (another kind of file, or damaged): ")
                                 + path(QStringLiteral("f/notes.jpg"))))
        << run.err.toStdString();
    EXPECT_TRUE(run.err.contains(QStringLiteral("1 JPEG file(s) end before their image data")));
    EXPECT_TRUE(run.err.contains(path(QStringLiteral("f/cut.jpg"))));
    EXPECT_FALSE(run.err.contains(path(QStringLiteral("f/good.jpg"))));
    EXPECT_EQ(exiftoolTags(path(QStringLiteral("f/cut.jpg"))).string(QStringLiteral("EXIF:DateTimeOriginal")),
              QStringLiteral("2024:05:01 10:00:00"))
        << "exiftool reads the same date from the cut file";
}

// A plain copy is born anew; cp -p and card readers keep the camera's modification time. Both
// copies show that time, not the moment of the copy.
TEST_F(ScanCommandTest, ACopyIsDatedByItsModificationTimeNotByItsBirth)
{
    const QString original = photo(QStringLiteral("src"), QStringLiteral("camera"), TiffShape{});
    const Instant cameraTime = Instant::fromUtc(2018, 3, 9, 14, 5, 0.0);
    setModificationTime(original, cameraTime);
    QDir().mkpath(path(QStringLiteral("copies")));
    const QString kept = path(QStringLiteral("copies/kept.jpg"));
    const QString plain = path(QStringLiteral("copies/plain.jpg"));
    ASSERT_EQ(QProcess::execute(QStringLiteral("cp"), {QStringLiteral("-p"), original, kept}), 0);
    ASSERT_EQ(QProcess::execute(QStringLiteral("cp"), {original, plain}), 0);
    setModificationTime(plain, cameraTime);

    const CliRun run = runCli({QStringLiteral("scan"), QStringLiteral("--json"), path(QStringLiteral("copies"))});
    ASSERT_EQ(run.items().size(), 2);
    for (const QJsonValue &item : run.items()) {
        EXPECT_EQ(item[QStringLiteral("spType")].toInt(), 11);
        EXPECT_EQ(item[QStringLiteral("spDateTimeOriginal")].toString(), QStringLiteral("2018-03-09T14:05:00Z"))
            << item[QStringLiteral("spName")].toString().toStdString();
    }
    const FileStatus status = FileStatus::of(kept);
    if (status.birthTime) {
        EXPECT_GT(*status.birthTime, cameraTime.secondsSinceEpoch()) << "the copy was born now";
    }
}

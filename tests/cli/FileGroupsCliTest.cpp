#include "time/DateStampCodec.h"
#include "support/CliRun.h"
#include "support/Corpus.h"
#include "support/Exiftool.h"
#include "support/MediaFileBuilder.h"

#include <QDir>
#include <QFile>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace orv;
using namespace orv::test;

namespace {

// A DNG with its JPEG and an XMP sidecar from one camera, and the corpus Live Photo.
class FileGroupsCli : public ::testing::Test
{
protected:
    void SetUp() override
    {
        TiffShape tags;
        tags.make = "Canon";
        tags.model = "Canon EOS R6";
        tags.dateTimeOriginal = Stamp::text("2024:05:01 10:00:00");
        tags.dateTime = Stamp::text("2024:05:01 10:00:00");
        MediaFile dng = buildTiffFile({.tags = tags});
        dng.suffix = QStringLiteral("DNG");
        dng.write(work.path(), QStringLiteral("IMG_1"));
        buildJpeg({.exif = tags}).write(work.path(), QStringLiteral("IMG_1"));
        XmpShape xmp;
        xmp.properties = {{"exif:DateTimeOriginal", "2024-05-01T10:00:00"}};
        MediaFile sidecar = buildXmpSidecar(xmp);
        sidecar.suffix = QStringLiteral("xmp");
        sidecar.write(work.path(), QStringLiteral("IMG_1"));
        if (corpusAvailable()) {
            copyToTemporary(corpusFile(QStringLiteral("Lychee/tests/Samples/train.jpg")), work);
            copyToTemporary(corpusFile(QStringLiteral("Lychee/tests/Samples/train.mov")), work);
        }
    }

    QString path(const QString &name) const { return QDir(work.path()).filePath(name); }

    QTemporaryDir home;
    QTemporaryDir work;
};

Instant exifInstant(const ExiftoolTags &tags, const char *key)
{
    return DateStampCodec::dateFromEXIFTimeStamp(tags.string(QLatin1String(key)).left(19), TimeZone::utc());
}

} // namespace

TEST_F(FileGroupsCli, ScanShowsOneEntryPerGroupWithItsDependentAndSidecars)
{
    ORV_SKIP_WITHOUT_CORPUS();
    const CliResult scan = runCli({"scan", "--json", work.path()}, home.path());
    ASSERT_EQ(scan.exitCode, 0) << scan.err.toStdString();
    const QJsonArray items = scan.json();
    ASSERT_EQ(items.size(), 2);
    QMap<QString, QJsonObject> byName;
    for (const QJsonValue &item : items)
        byName[item["spName"].toString()] = item.toObject();

    const QJsonObject raw = byName.value("IMG_1.DNG");
    EXPECT_EQ(raw["dependent"]["spName"].toString(), "IMG_1.jpg");
    EXPECT_EQ(raw["spSidecarExtensions"].toArray(), (QJsonArray{"jpg", "xmp"}));
    EXPECT_EQ(raw["dependent"]["spDateTimeOriginal"], raw["spDateTimeOriginal"]);

    const QJsonObject live = byName.value("train.jpg");
    EXPECT_EQ(live["dependent"]["spName"].toString(), "train.mov");
    EXPECT_EQ(live["dependent"]["UUID"], live["UUID"]);
    EXPECT_FALSE(live["UUID"].toString().isEmpty());
}

TEST_F(FileGroupsCli, ShiftMovesEveryFileOfEveryGroupAndTheSidecarByTheHourAsExiftoolReadsThem)
{
    ORV_SKIP_WITHOUT_CORPUS();
    const QStringList files = {path("IMG_1.DNG"), path("IMG_1.jpg"), path("train.jpg")};
    const std::map<QString, ExiftoolTags> before = exiftoolTagsOfFiles(files, ExiftoolGroups::Family1);
    const ExiftoolTags movieBefore = exiftoolTags(path("train.mov"), ExiftoolGroups::Family1);
    const ExiftoolTags sidecarBefore = exiftoolTags(path("IMG_1.xmp"), ExiftoolGroups::Family1);

    const CliResult shift = runCli({"shift", "--json", "--by", "+1:00:00", work.path()}, home.path());
    ASSERT_EQ(shift.exitCode, 0) << shift.err.toStdString();
    for (const QJsonValue &item : shift.json()) {
        EXPECT_TRUE(item["saved"].toBool()) << item["spName"].toString().toStdString();
        EXPECT_TRUE(item["dependent"]["saved"].toBool()) << item["spName"].toString().toStdString();
    }

    const std::map<QString, ExiftoolTags> after = exiftoolTagsOfFiles(files, ExiftoolGroups::Family1);
    for (const QString &file : files)
        EXPECT_EQ(exifInstant(after.at(file), "ExifIFD:DateTimeOriginal"),
                  exifInstant(before.at(file), "ExifIFD:DateTimeOriginal").addingSeconds(3600.0))
            << file.toStdString();
    EXPECT_EQ(exifInstant(exiftoolTags(path("train.mov"), ExiftoolGroups::Family1), "Keys:CreationDate"),
              exifInstant(movieBefore, "Keys:CreationDate").addingSeconds(3600.0));
    EXPECT_EQ(exiftoolTags(path("IMG_1.xmp"), ExiftoolGroups::Family1).string("XMP-exif:DateTimeOriginal"),
              "2024:05:01 11:00:00");
    EXPECT_EQ(sidecarBefore.string("XMP-exif:DateTimeOriginal"), "2024:05:01 10:00:00");
}

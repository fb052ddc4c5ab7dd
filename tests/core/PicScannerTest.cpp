#include "core/MySinglePic.h"
#include "core/PicScanner.h"
#include "folders/ImportQuestions.h"
#include "folders/MySingleFolder.h"
#include "support/MediaFileBuilder.h"
#include "support/ScanOne.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace orv;
using namespace orv::test;

namespace {

// Counts the questions, so a test can tell that the folder asked exactly once.
class CountingAnswers : public FixedImportAnswers
{
public:
    explicit CountingAnswers(ImportOptions answer) : FixedImportAnswers(answer) {}
    ImportOptions emptyTagOptions(const MySingleFolder &folder) override
    {
        ++asked;
        return FixedImportAnswers::emptyTagOptions(folder);
    }
    int asked = 0;
};

ImportOptions fileDateOption()
{
    ImportOptions o;
    o.withEmptyExifFixDate = ImportOptions::UseFileDate;
    return o;
}

ImportOptions fixedDateOption(Instant start, double stepMinutes)
{
    ImportOptions o;
    o.withEmptyExifFixDate = ImportOptions::UseFixedDate;
    o.prefFixDateDate = start;
    o.prefFixDateStepValue = stepMinutes;
    o.prefFixDateStepperKind = 1;
    return o;
}

class PicScannerTest : public ::testing::Test
{
protected:
    QTemporaryDir dir;
    MySingleFolder folder{dir.path(), false};
    CountingAnswers fileDate{fileDateOption()};

    std::unique_ptr<MySinglePic> scan(const MediaFile &file, const QString &name = QStringLiteral("pic"))
    {
        return scanFile(file.write(dir.path(), name), folder, fileDate);
    }
};

const Instant may1At10 = Instant::fromUtc(2024, 5, 1, 10, 0, 0);

TiffShape withOriginal(const char *stamp = "2024:05:01 10:00:00")
{
    TiffShape tags;
    tags.dateTimeOriginal = Stamp::text(stamp);
    return tags;
}

} // namespace

TEST_F(PicScannerTest, OriginalDateWinsAndEveryStampIsStoredAtItsOffset)
{
    TiffShape tags = withOriginal();
    tags.order = ByteOrder::Motorola;
    tags.dateTimeDigitized = Stamp::text("2024:05:01 10:00:05");
    tags.dateTime = Stamp::text("2024:05:02 08:00:00");
    tags.offsetTimeOriginal = Stamp::text("+02:00");
    tags.make = QByteArray("Canon");
    tags.model = QByteArray("Canon EOS R6");
    const MediaFile jpeg = buildJpeg({.exif = tags});
    const auto pic = scan(jpeg);
    ASSERT_TRUE(pic);

    EXPECT_EQ(pic->spType, SpTypeExifOriginal);
    EXPECT_EQ(pic->fileFormatType, JpegFormat);
    EXPECT_EQ(pic->spDateTimeOriginal, Instant::fromUtc(2024, 5, 1, 8, 0, 0)) << "read with its own offset";
    EXPECT_EQ(pic->pivMakeModel, QStringLiteral("Canon EOS R6"));
    EXPECT_FALSE(pic->tiffHeaderType) << "Motorola";
    EXPECT_EQ(pic->tiffHeaderStartOffset, jpeg.offsets.tiffHeader);

    const PicAttributes &a = pic->singlePicAttributes;
    ASSERT_TRUE(a.ExifDateTimeOriginal && a.ExifDateTimeDigitized && a.TIFFDateTime && a.ExifOffsetTimeOriginal);
    EXPECT_EQ(a.ExifDateTimeOriginal->dateOffset, jpeg.offsets.dateTimeOriginal);
    EXPECT_EQ(a.ExifDateTimeDigitized->dateOffset, jpeg.offsets.dateTimeDigitized);
    EXPECT_EQ(a.TIFFDateTime->dateOffset, jpeg.offsets.dateTime);
    EXPECT_EQ(a.ExifOffsetTimeOriginal->offsetOffset, jpeg.offsets.offsetTimeOriginal);
    EXPECT_EQ(a.ExifDateTimeOriginal->dateData, QByteArray("2024:05:01 10:00:00", 20));
    EXPECT_EQ(jpeg.bytes.mid(a.ExifDateTimeOriginal->dateOffset, 19), QByteArray("2024:05:01 10:00:00"));
    EXPECT_EQ(a.NSFileSize, jpeg.bytes.size());
}

TEST_F(PicScannerTest, EmptyOriginalFallsToDigitizedAndStaysOutOfWrites)
{
    TiffShape tags;
    tags.dateTimeOriginal = Stamp::blank();
    tags.dateTimeDigitized = Stamp::text("2024:05:01 10:00:00");
    const auto pic = scan(buildJpeg({.exif = tags}));
    ASSERT_TRUE(pic);
    EXPECT_EQ(pic->spType, SpTypeExifDigitized);
    EXPECT_EQ(pic->exifDateTimeOriginalOLD, std::nullopt) << "an empty tag of a dated file is never written";
    EXPECT_TRUE(pic->exifDateTimeDigitizedOLD.has_value());
    EXPECT_EQ(fileDate.asked, 0);
}

TEST_F(PicScannerTest, XmpCreateDateBeatsTiffDate)
{
    TiffShape tags;
    tags.dateTime = Stamp::text("2024:06:01 00:00:00");
    const XmpPacket xmp = buildXmp({.properties = {{QStringLiteral("xmp:CreateDate"), QStringLiteral("2024-05-01T10:00:00Z")},
                                                   {QStringLiteral("photoshop:DateCreated"), QStringLiteral("2024-05-01T09:00:00Z")}}});
    const auto pic = scan(buildJpeg({.exif = tags, .xmp = xmp, .xmpBeforeExif = true}));
    ASSERT_TRUE(pic);
    EXPECT_EQ(pic->spType, SpTypeExifOriginal);
    EXPECT_TRUE(pic->isCreaXmp);
    EXPECT_TRUE(pic->isDigiXmp);
    EXPECT_EQ(pic->spDateTimeOriginal, Instant::fromUtc(2024, 5, 1, 9, 0, 0)) << "Photoshop's date before the EXIF twin";
    EXPECT_FALSE(pic->isModiXmp) << "a real TIFF date keeps the third slot";
    EXPECT_FALSE(pic->isDataSourceLocal()) << "a stamp with Z names its zone";
}

TEST_F(PicScannerTest, EmptyTagsTakeTheFileDateOrFixedDatesInSteps)
{
    TiffShape emptyTiff;
    emptyTiff.dateTime = Stamp::zeros();
    const MediaFile file = buildJpeg({.exif = emptyTiff});

    const auto byFileDate = scan(file, QStringLiteral("a"));
    ASSERT_TRUE(byFileDate);
    EXPECT_EQ(byFileDate->spType, SpTypeEmptyTiffFileDate);
    EXPECT_EQ(byFileDate->spDateTimeOriginal, byFileDate->fileCreationDateOLD);
    EXPECT_EQ(byFileDate->tiffDateTimeOLD, Instant::distantPast()) << "marks the tag to fill";

    MySingleFolder fixedFolder(dir.path(), false);
    CountingAnswers fixed(fixedDateOption(may1At10, 2));
    std::vector<std::unique_ptr<MySinglePic>> pics;
    for (const char *name : {"b", "c", "d"})
        pics.push_back(scanFile(file.write(dir.path(), QLatin1String(name)), fixedFolder, fixed));
    EXPECT_EQ(fixed.asked, 1) << "asked once per folder";
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(pics[i]);
        EXPECT_EQ(pics[i]->spType, SpTypeEmptyTiffFixedDate);
        EXPECT_EQ(pics[i]->spDateTimeOriginal, may1At10.addingSeconds(120.0 * i));
    }
    EXPECT_EQ(fixedFolder.fixedDates, 3);
}

TEST_F(PicScannerTest, EmptyOriginalWithTheFileDateOptionIsType5)
{
    TiffShape tags;
    tags.dateTimeOriginal = Stamp::blank();
    tags.dateTime = Stamp::blank();
    const auto pic = scan(buildJpeg({.exif = tags}));
    ASSERT_TRUE(pic);
    EXPECT_EQ(pic->spType, SpTypeEmptyOriginalFileDate);
    EXPECT_EQ(pic->exifDateTimeOriginalOLD, Instant::distantPast()) << "blanks are a tag to fill";
    EXPECT_TRUE(pic->singlePicAttributes.ExifDateTimeOriginal.has_value());
    EXPECT_EQ(pic->tiffDateTimeOLD, pic->fileModificationDateOLD) << "an empty modify tag reads as the file's date";
}

TEST_F(PicScannerTest, FileWithoutAnyDateTagIsDatedByTheFileAndAsksNothing)
{
    const auto pic = scan(buildJpeg({}));
    ASSERT_TRUE(pic);
    EXPECT_EQ(pic->spType, SpTypeNoTagsFileDate);
    EXPECT_EQ(pic->spDateTimeOriginal, pic->fileCreationDateOLD);
    EXPECT_EQ(fileDate.asked, 0);
    EXPECT_EQ(folder.fixedDates, 0);
}

TEST_F(PicScannerTest, TiffDateLaterThanTheFileBirthGivesWayToTheFileDate)
{
    TiffShape tags;
    tags.dateTime = Stamp::text("2999:01:01 00:00:00");
    folder.perFolderImportOptions.dateComparisonThresold = 0;
    const auto pic = scan(buildJpeg({.exif = tags}));
    ASSERT_TRUE(pic);
    EXPECT_EQ(pic->spType, SpTypeFileDatePreferredOverTiff);
    EXPECT_EQ(pic->spDateTimeOriginal, pic->fileCreationDateOLD);
}

TEST_F(PicScannerTest, StampsWithNulsInsideAreNoTags)
{
    // The locator accepts only digits, colons and blanks in the 19 bytes: a stamp cut short by
    // NULs is no tag at all, while a stamp of blanks is a tag waiting to be filled.
    TiffShape shortStamp;
    shortStamp.dateTimeOriginal = Stamp::padded("2024:05:01 10:00:", 20);
    const auto cut = scan(buildJpeg({.exif = shortStamp}), QStringLiteral("a"));
    ASSERT_TRUE(cut);
    EXPECT_EQ(cut->spType, SpTypeNoTagsFileDate);
    EXPECT_FALSE(cut->singlePicAttributes.ExifDateTimeOriginal.has_value());
}

TEST_F(PicScannerTest, GpsDateAndLocationFromTheTags)
{
    TiffShape tags = withOriginal();
    tags.gps = GpsShape::fixAt(-33.8568, 151.2153, "2024:05:01 09:58:30");
    const auto pic = scan(buildJpeg({.exif = tags}));
    ASSERT_TRUE(pic && pic->gpsLat && pic->gpsLong);
    EXPECT_NEAR(*pic->gpsLat, -33.8568, 1e-4);
    EXPECT_NEAR(*pic->gpsLong, 151.2153, 1e-4);
    EXPECT_EQ(pic->spGpsUTCDate, Instant::fromUtc(2024, 5, 1, 9, 58, 30));
    EXPECT_FALSE(pic->isGpsXmp);

    TiffShape noFix = withOriginal();
    noFix.gps = GpsShape::at(0.0, 0.0);
    noFix.gps->dateStamp = Stamp::raw("2024:05:01X");
    const auto zero = scan(buildJpeg({.exif = noFix}), QStringLiteral("zero"));
    ASSERT_TRUE(zero);
    EXPECT_FALSE(zero->gpsLat.has_value()) << "0/0 is a camera without a fix";
    EXPECT_FALSE(zero->spGpsUTCDate.has_value()) << "a date stamp without its NUL is no stamp";
}

TEST_F(PicScannerTest, PngAndWebpCarryTheirExif)
{
    const std::pair<MediaFile, int> files[] = {{buildPng({.exif = withOriginal()}), PngFormat},
                                               {buildWebp({.exif = withOriginal()}), WebpFormat}};
    for (const auto &[file, format] : files) {
        const auto pic = scan(file, QString::number(format));
        ASSERT_TRUE(pic);
        EXPECT_EQ(pic->fileFormatType, format);
        EXPECT_EQ(pic->spType, SpTypeExifOriginal);
        EXPECT_EQ(pic->singlePicAttributes.ExifDateTimeOriginal->dateOffset, file.offsets.dateTimeOriginal);
    }
}

TEST_F(PicScannerTest, DamagedFilesFallBackToTheFileDate)
{
    const QByteArray whole = buildJpeg({.exif = withOriginal()}).bytes;
    for (qsizetype length : {qsizetype(0), qsizetype(3), qsizetype(30), whole.size() / 2}) {
        const QString path = dir.filePath(QStringLiteral("cut%1.jpg").arg(length));
        QFile out(path);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(whole.left(length));
        out.close();
        const auto pic = scanFile(path, folder, fileDate);
        ASSERT_TRUE(pic) << length;
        EXPECT_TRUE(pic->spDateTimeOriginal.has_value()) << length;
    }
}

TEST_F(PicScannerTest, SidecarsTracksAndUnknownFilesMakeNoItem)
{
    const QString gpx = dir.filePath(QStringLiteral("track.gpx"));
    const QString xmp = buildXmpSidecar({}).write(dir.path(), QStringLiteral("side"));
    QFile(gpx).open(QIODevice::WriteOnly);
    EXPECT_FALSE(scanFile(gpx, folder, fileDate));
    EXPECT_FALSE(scanFile(xmp, folder, fileDate));
    EXPECT_TRUE(folder.gpxAddedPaths.contains(gpx));
    EXPECT_TRUE(folder.xmpSidecarPaths.contains(xmp));
    EXPECT_FALSE(scanFile(dir.filePath(QStringLiteral("gone.jpg")), folder, fileDate));

    QFile notes(dir.filePath(QStringLiteral("notes.txt")));
    ASSERT_TRUE(notes.open(QIODevice::WriteOnly));
    notes.write("hello");
    notes.close();
    EXPECT_FALSE(scanFile(notes.fileName(), folder, fileDate));
}

TEST_F(PicScannerTest, TiffFindsItsXmpDatesThroughIfd0)
{
    TiffShape tags;
    tags.dateTime = Stamp::text("2024:06:01 00:00:00");
    tags.xmp = buildXmp({.properties = {{QStringLiteral("xmp:CreateDate"), QStringLiteral("2024-05-01T10:00:00")}}});
    const auto pic = scan(buildTiffFile({.tags = tags}), QStringLiteral("t"));
    ASSERT_TRUE(pic);
    EXPECT_EQ(pic->fileFormatType, TiffFormat);
    EXPECT_EQ(pic->spType, SpTypeExifDigitized) << "the XMP create date is the digitized twin";
    EXPECT_TRUE(pic->isDigiXmp);
    EXPECT_TRUE(pic->isDataSourceLocal()) << "a stamp without zone is local";
}

// A PNG whose EXIF or XMP is kept as a raw profile in a compressed text chunk: its dates count,
// and offset 0 keeps every in-place write away from them.
TEST_F(PicScannerTest, APngRawProfileGivesTheDateButNoPlaceToWriteIt)
{
    const QByteArray exif = "Exif" + QByteArray(2, '\0') + buildExifBlock(withOriginal()).bytes;
    const auto fromExif = scan(buildPng({.rawProfiles = {{"exif", exif, "zTXt"}}}), "exif");
    ASSERT_TRUE(fromExif);
    EXPECT_EQ(fromExif->spType, SpTypeExifOriginal);
    ASSERT_TRUE(fromExif->singlePicAttributes.ExifDateTimeOriginal);
    EXPECT_EQ(fromExif->singlePicAttributes.ExifDateTimeOriginal->dateOffset, 0u);
    EXPECT_EQ(fromExif->tiffHeaderStartOffset, 0xFFFFFFFFu);

    const XmpPacket packet = buildXmp({.properties = {{"xmp:CreateDate", "2024-05-01T10:00:00Z"}}});
    const auto fromXmp = scan(buildPng({.rawProfiles = {{"xmp", packet.bytes, "iTXt"}}}), "xmp");
    ASSERT_TRUE(fromXmp);
    EXPECT_TRUE(fromXmp->isDigiXmp) << "xmp:CreateDate fills the digitized slot";
    EXPECT_EQ(fromXmp->spDateTimeOriginal, may1At10);
    const BoxedOptional<XmpDateInfos> &infos = fromXmp->singlePicAttributes.xmpDateInfos;
    ASSERT_TRUE(infos && infos->count("XmpCreateDate"));
    EXPECT_EQ(infos->at("XmpCreateDate").offset, 0u);
}

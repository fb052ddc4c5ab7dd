// Make, model, orientation, pixel size, the Live Photo identifier, serial numbers, lens and the
// shot's settings from our own TIFF walk, against exiftool's reading of the same IFDs.

#include "support/Corpus.h"
#include "support/Exiftool.h"
#include "support/QtPrinters.h"
#include "RecordDecoding.h"

#include "formats/MySingleFolderDataReader.h"

#include <QFileInfo>

#include <gtest/gtest.h>

#include <cmath>

using namespace orv;
using namespace orv::test;

namespace {

const QStringList tiffCarrierSuffixes{"jpg", "jpeg", "tif", "tiff", "cr2", "nef", "dng", "arw",
                                      "rw2", "raf", "png", "webp"};

QSize exiftoolPixelSize(const ExiftoolTags &exif)
{
    for (const auto &[width, height] :
         {std::pair{"ExifIFD:ExifImageWidth", "ExifIFD:ExifImageHeight"},
          std::pair{"IFD0:ImageWidth", "IFD0:ImageHeight"}}) {
        if (exif.has(width) && exif.has(height)) {
            const QSize size(int(exif.number(width)), int(exif.number(height)));
            // A size of 0 by 0 names no size.
            return size.isEmpty() ? QSize() : size;
        }
    }
    return {};
}

// Files whose Exif IFD values (pixel size, shot settings) we do not take from where exiftool
// does, with the reason.
const std::pair<const char *, const char *> exifIfdDisagreements[] = {
    {"Panasonic.rw2", "exiftool names the size and settings of the Exif IFD inside the embedded "
                      "JPEG; the RW2's own IFD0 has no Exif IFD and only Panasonic's size tags, so "
                      "the platform reader gives the size"},
};

bool isExifIfdDisagreement(const QString &path)
{
    for (const auto &[fileName, reason] : exifIfdDisagreements) {
        if (QFileInfo(path).fileName() == QLatin1String(fileName))
            return true;
    }
    return false;
}

// A text exiftool read, which its JSON gives as a number where it looks like one (a serial of
// digits): compared as that number.
void expectSameText(const QString &ours, const ExiftoolTags &exif, const QString &key)
{
    if (exif.json.value(key).isDouble())
        EXPECT_EQ(ours.toDouble(), exif.number(key)) << key.toStdString();
    else
        EXPECT_EQ(ours, exif.string(key).trimmed()) << key.toStdString();
}

// exiftool divides rationals out to ten significant digits; NaN where it read none (or "undef").
void expectSameRatio(double ours, const ExiftoolTags &exif, const QString &key)
{
    const double theirs = exif.number(key);
    if (std::isnan(theirs))
        EXPECT_TRUE(std::isnan(ours)) << key.toStdString() << " " << ours;
    else
        EXPECT_NEAR(ours, theirs, std::abs(theirs) * 1e-9) << key.toStdString();
}

// ISOSpeedRatings' first value, else ISOSpeed; several values come as one text.
quint32 exiftoolIso(const ExiftoolTags &exif)
{
    const quint32 ratings = exif.string(QStringLiteral("ExifIFD:ISO")).section(QLatin1Char(' '), 0, 0).toUInt();
    return ratings ? ratings : exif.string(QStringLiteral("ExifIFD:ISOSpeed")).toUInt();
}

class CorpusImageTags : public testing::TestWithParam<CorpusFileAndSource>
{
};

TEST_P(CorpusImageTags, MatchExiftool)
{
    const auto &[path, kind] = GetParam();
    const std::unique_ptr<ByteSource> source = openSource(kind, path);
    const DatesData dates = readDatesAsTheScanDoes(*source, formatForSuffix(path));
    if (!dates.tiffHeader)
        GTEST_SKIP() << "no TIFF header";
    const ExiftoolTags exif = exiftoolTags(path, ExiftoolGroups::Family1);
    const TiffImageTags tags = MySingleFolderDataReader().imageTags(*source, *dates.tiffHeader);

    EXPECT_EQ(tags.make.trimmed(), exif.string("IFD0:Make").trimmed());
    EXPECT_EQ(tags.model.trimmed(), exif.string("IFD0:Model").trimmed());
    EXPECT_EQ(tags.orientation,
              exif.has("IFD0:Orientation") ? int(exif.number("IFD0:Orientation")) : 1);
    EXPECT_EQ(tags.contentIdentifier, exif.string("Apple:MediaGroupUUID"));
    if (isExifIfdDisagreement(path))
        return;
    EXPECT_EQ(tags.pixelSize, exiftoolPixelSize(exif));

    expectSameText(tags.bodySerial, exif,
                   exif.has("ExifIFD:SerialNumber") ? "ExifIFD:SerialNumber" : "IFD0:CameraSerialNumber");
    expectSameText(tags.lensMake, exif, "ExifIFD:LensMake");
    expectSameText(tags.lensModel, exif, "ExifIFD:LensModel");
    expectSameText(tags.lensSerial, exif, "ExifIFD:LensSerialNumber");
    expectSameRatio(tags.shot.exposureTime, exif, "ExifIFD:ExposureTime");
    expectSameRatio(tags.shot.fNumber, exif, "ExifIFD:FNumber");
    expectSameRatio(tags.shot.focalLength, exif, "ExifIFD:FocalLength");
    expectSameRatio(tags.shot.digitalZoomRatio, exif, "ExifIFD:DigitalZoomRatio");
    EXPECT_EQ(tags.shot.iso, exiftoolIso(exif));
}

INSTANTIATE_TEST_SUITE_P(Corpus, CorpusImageTags,
                         corpusFilesOnBothSources(tiffCarrierSuffixes), corpusSourceTestName);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(CorpusImageTags);

TEST(CorpusImageTags, LivePhotoStillCarriesTheMovieIdentifier)
{
    ORV_SKIP_WITHOUT_CORPUS();
    const QString still = corpusFile("Lychee/tests/Samples/train.jpg");
    const DatesData dates = MySingleFolderDataReader().savereadDatesAtPath(still, JpegFormat);
    ASSERT_TRUE(dates.tiffHeader);
    const TiffImageTags tags = MySingleFolderDataReader().imageTagsAtPath(
        still, *dates.tiffHeader);
    // The same identifier stands in train.mov's QuickTime metadata.
    EXPECT_EQ(tags.contentIdentifier, "E905E6C6-C747-4805-942F-9904A0281F02");
}

TEST(ImageTags, QuarterTurnsSwapTheDisplayedSize)
{
    TiffImageTags tags;
    tags.pixelSize = QSize(4032, 3024);
    for (int orientation = 1; orientation <= 8; ++orientation) {
        tags.orientation = orientation;
        EXPECT_EQ(tags.orientedPixelSize(),
                  orientation >= 5 ? QSize(3024, 4032) : QSize(4032, 3024));
    }
}

} // namespace

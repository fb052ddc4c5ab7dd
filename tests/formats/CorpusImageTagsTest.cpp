// Make, model, orientation, pixel size and the Live Photo identifier from our own TIFF walk,
// against exiftool's reading of the same IFDs.

#include "support/Corpus.h"
#include "support/Exiftool.h"
#include "support/QtPrinters.h"
#include "RecordDecoding.h"

#include "formats/MySingleFolderDataReader.h"

#include <QFileInfo>

#include <gtest/gtest.h>

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

// Files whose pixel size we do not take from where exiftool does, with the reason.
const std::pair<const char *, const char *> pixelSizeDisagreements[] = {
    {"Panasonic.rw2", "exiftool names the size of the Exif IFD inside the embedded JPEG; the RW2's "
                      "own IFD0 has only Panasonic's size tags, so the platform reader gives it"},
};

bool isPixelSizeDisagreement(const QString &path)
{
    for (const auto &[fileName, reason] : pixelSizeDisagreements) {
        if (QFileInfo(path).fileName() == QLatin1String(fileName))
            return true;
    }
    return false;
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
    if (!isPixelSizeDisagreement(path)) {
        EXPECT_EQ(tags.pixelSize, exiftoolPixelSize(exif));
    }
    EXPECT_EQ(tags.contentIdentifier, exif.string("Apple:MediaGroupUUID"));
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

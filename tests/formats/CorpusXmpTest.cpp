// XMP dates and locations we find in the corpus against exiftool's XMP reading.

#include "support/Corpus.h"
#include "support/Exiftool.h"
#include "support/QtPrinters.h"
#include "RecordDecoding.h"

#include "formats/MySingleFolderDataReader.h"

#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <cmath>

using namespace orv;
using namespace orv::test;

namespace {

const QStringList xmpCarrierSuffixes{"jpg", "jpeg", "tif", "tiff", "cr2", "nef", "dng", "arw",
                                     "rw2", "raf", "png", "webp", "xmp"};

const std::pair<const char *, const char *> keyPairs[] = {
    {"ExifDateTimeOriginal", "XMP-exif:DateTimeOriginal"},
    {"ExifDateTimeDigitized", "XMP-exif:DateTimeDigitized"},
    {"XmpCreateDate", "XMP-xmp:CreateDate"},
    {"XmpModifyDate", "XMP-xmp:ModifyDate"},
    {"XmpMetadataDate", "XMP-xmp:MetadataDate"},
    {"TiffDateTime", "XMP-tiff:DateTime"},
    {"PhotoshopDateCreated", "XMP-photoshop:DateCreated"},
    {"GPSTimeStamp", "XMP-exif:GPSDateTime"},
};

// Files where our reading differs from exiftool's on purpose.
const std::pair<const char *, const char *> knownDisagreements[] = {
    {"undefined-exif-tag.jpg",
     "exif:DateTimeOriginal holds an EXIF-form stamp, \"2022:08:02 17:25:17\"; exiftool reads it "
     "leniently, for us it is no XMP stamp and could not be rewritten as one in place"},
    {"Issue 473 (Java).webp",
     "the packet's chunk is typed \"XMP\\0\"; only the first three letters are compared, so we "
     "read the packet that exiftool skips"},
};

const char *knownDisagreementOf(const QString &path)
{
    for (const auto &[fileName, reason] : knownDisagreements) {
        if (QFileInfo(path).fileName() == QLatin1String(fileName))
            return reason;
    }
    return nullptr;
}

// As the scan finds the packet: sidecars and PNG by themselves, JPEG by the segment walk,
// WebP by its chunk, TIFF and RAW files by IFD0 tag 700.
XmpDateInfos readXmpAsTheScanDoes(const ByteSource &source, const QString &path)
{
    MySingleFolderDataReader reader;
    if (QFileInfo(path).suffix().toLower() == "xmp")
        return reader.savereadXMPDates(source, UnknownFormat, 0);
    const int format = formatForSuffix(path);
    if (format == WebpFormat) {
        const auto xmp = reader.riffHeaderDataForWebP(source).xmpOffset;
        return xmp ? reader.savereadXMPDates(source, format, *xmp) : XmpDateInfos{};
    }
    if (format == PngFormat)
        return reader.savereadXMPDates(source, format, 0);
    const DatesData dates = reader.savereadDates(source, format);
    if (format == JpegFormat)
        return reader.savereadXMPDates(source, format, dates.jpgXMPOffset.value_or(0));
    if (!dates.tiffHeader)
        return XmpDateInfos{};
    return reader.savereadXMPDates(source, format, dates.tiffHeader->offset);
}

// exiftool shows XMP dates in EXIF form.
QString inExiftoolForm(QByteArray stamp)
{
    stamp[4] = ':';
    stamp[7] = ':';
    stamp[10] = ' ';
    return QString::fromLatin1(stamp);
}

class CorpusXmp : public testing::TestWithParam<CorpusFileAndSource>
{
};

TEST_P(CorpusXmp, DatesMatchExiftoolAndStandAtTheirOffsets)
{
    const auto &[path, kind] = GetParam();
    if (const char *reason = knownDisagreementOf(path))
        GTEST_SKIP() << reason;
    const ExiftoolTags exif = exiftoolTags(path, ExiftoolGroups::Family1);
    const XmpDateInfos infos = readXmpAsTheScanDoes(*openSource(kind, path), path);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    for (const auto &[ours, theirs] : keyPairs) {
        const auto found = infos.find(QLatin1String(ours));
        // A date without a time is no stamp: it could not take a time in place.
        const QString expected = exif.string(QLatin1String(theirs));
        if (expected.size() <= 10) {
            EXPECT_EQ(found, infos.end()) << ours;
            continue;
        }
        ASSERT_NE(found, infos.end()) << ours << " missing; exiftool reads "
                                       << expected.toStdString();
        const XmpStampRecord &record = found->second;
        EXPECT_EQ(inExiftoolForm(record.data), expected) << ours;
        EXPECT_NE(record.type, 0) << ours;
        ASSERT_TRUE(file.seek(record.offset));
        EXPECT_EQ(file.read(record.data.size()), record.data) << ours;
    }
}

INSTANTIATE_TEST_SUITE_P(Corpus, CorpusXmp, corpusFilesOnBothSources(xmpCarrierSuffixes),
                         corpusSourceTestName);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(CorpusXmp);

double signedDegrees(const XmpTextValue &value, int type, const std::optional<XmpTextValue> &ref)
{
    const QByteArray &text = value.text;
    double degrees = 0.0;
    char hemisphere = ref ? ref->text.at(0) : 'N';
    if (type == 1) {
        hemisphere = text.back();
        const QList<QByteArray> parts = text.chopped(1).split(',');
        for (qsizetype i = 0; i < parts.size(); ++i)
            degrees += parts[i].toDouble() / std::pow(60.0, double(i));
    } else {
        degrees = text.toDouble();
    }
    return hemisphere == 'S' || hemisphere == 'W' ? -degrees : degrees;
}

TEST(CorpusXmpMetadata, SidecarLocationsMatchExiftool)
{
    ORV_SKIP_WITHOUT_CORPUS();
    int withLocation = 0;
    for (const QString &path : corpusFiles({"xmp"})) {
        SCOPED_TRACE(path.toStdString());
        const ExiftoolTags exif = exiftoolTags(path, ExiftoolGroups::Family1);
        const XmpSidecarMetadata metadata =
            MySingleFolderDataReader().metadataFromXMPSidecarAtPath(path);
        const bool hasLocation = exif.has("XMP-exif:GPSLatitude");
        ASSERT_EQ(metadata.gpsLat.has_value(), hasLocation);
        ASSERT_EQ(metadata.gpsLon.has_value(), exif.has("XMP-exif:GPSLongitude"));
        if (!hasLocation)
            continue;
        ++withLocation;
        EXPECT_NEAR(signedDegrees(*metadata.gpsLat, metadata.gpsLatType, metadata.gpsLatRef),
                    exif.number("XMP-exif:GPSLatitude"), 1e-6);
        EXPECT_NEAR(signedDegrees(*metadata.gpsLon, metadata.gpsLonType, metadata.gpsLonRef),
                    exif.number("XMP-exif:GPSLongitude"), 1e-6);
    }
    EXPECT_GE(withLocation, 3);
}

TEST(CorpusXmpMetadata, ExtensionsComeFromTheRawFileNameAndTheSidecarTarget)
{
    ORV_SKIP_WITHOUT_CORPUS();
    MySingleFolderDataReader reader;
    EXPECT_EQ(reader.metadataFromXMPSidecarAtPath(corpusFile("exifr/test/fixtures/sidecar/IMG_5910.xmp"))
                  .extensions,
              QSet<QString>{"jpg"});
    // A packet inside a JPEG names the raw file it was developed from.
    EXPECT_EQ(reader.metadataFromXMPAtPath(corpusFile("Lychee/tests/Samples/fin de journée.jpg"), 0)
                  .extensions,
              QSet<QString>{"cr3"});
}

} // namespace

// Every locator meets damaged files: copies of the corpus cut at many lengths, with bytes
// overwritten, and plain noise. Whatever the bytes, nothing may crash or read out of bounds (the
// sanitizer build runs this too), and whatever is reported must lie inside the file and equal
// the bytes found there, since a save trusts exactly that.

#include "RecordDecoding.h"
#include "formats/MySingleFolderDataReader.h"
#include "support/Corpus.h"
#include "support/QtPrinters.h"
#include "support/SaveFixture.h"
#include "time/DateStampCodec.h"

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <set>

using namespace orv;
using namespace orv::test;

namespace {

const QStringList damagedSuffixes{"jpg", "jpeg", "tif", "tiff", "cr2",  "cr3",  "nef",  "dng",
                                  "arw", "rw2",  "raf", "png",  "webp", "heic", "avif", "xmp"};
// Above this the preview scan, which decodes every candidate, is left to the full-size files.
constexpr qsizetype previewScanLimit = 512 * 1024;

class DamagedFiles
{
public:
    explicit DamagedFiles(QByteArray bytes) : m_bytes(std::move(bytes)) {}

    // A stored offset of 0 means "none", so no value may be reported there.
    void expectRecord(const QByteArray &data, quint32 offset, const char *what) const
    {
        if (data.isEmpty() && offset == 0)
            return;
        EXPECT_NE(offset, 0u) << what;
        expectBytes(data, offset, what);
    }

    void expectBytes(const QByteArray &data, quint32 offset, const char *what) const
    {
        EXPECT_LE(qint64(offset) + data.size(), m_bytes.size()) << what;
        EXPECT_EQ(m_bytes.mid(offset, data.size()), data) << what << " at " << offset;
    }

    void expectConsistent(const DatesData &dates) const
    {
        const auto stamp = [&](const auto &record, const char *what) {
            if (record)
                expectRecord(record->dateData.chopped(1), record->dateOffset, what);
        };
        stamp(dates.tiffDateTime, "TIFFDateTime");
        stamp(dates.exifDateTimeOriginal, "ExifDateTimeOriginal");
        stamp(dates.exifDateTimeDigitized, "ExifDateTimeDigitized");
        stamp(dates.gpsDateStamp, "GPSDateStamp");
        for (const auto *offset : {&dates.exifOffsetTIFFTime, &dates.exifOffsetTimeOriginal,
                                   &dates.exifOffsetTimeDigitized}) {
            if (*offset)
                expectRecord((*offset)->offsetData, (*offset)->offsetOffset, "offset tag");
        }
        if (dates.gpsTimeStamp)
            expectRecord(dates.gpsTimeStamp->dateData, dates.gpsTimeStamp->dateOffset,
                         "GPSTimeStamp");
        if (const auto &l = dates.gpsLocation) {
            expectRecord(l->latitudeRef_Data, l->latitudeRef_Offset, "latitudeRef");
            expectRecord(l->latitude_Data, l->latitude_Offset, "latitude");
            expectRecord(l->longitudeRef_Data, l->longitudeRef_Offset, "longitudeRef");
            expectRecord(l->longitude_Data, l->longitude_Offset, "longitude");
            expectRecord(l->altitudeRef_Data, l->altitudeRef_Offset, "altitudeRef");
            expectRecord(l->altitude_Data, l->altitude_Offset, "altitude");
            expectRecord(l->hPositioningError_Data, l->hPositioningError_Offset,
                         "hPositioningError");
        }
        if (dates.tiffHeader) {
            EXPECT_LT(qint64(dates.tiffHeader->offset), m_bytes.size());
        }
    }

    void expectConsistent(const XmpDateInfos &infos) const
    {
        for (const auto &[key, record] : infos) {
            expectRecord(record.data, record.offset, "XMP stamp");
            EXPECT_NE(DateStampCodec::verifiedXmpDateDataType(record.data).type, 0);
        }
    }

    void expectConsistent(const XmpSidecarMetadata &metadata) const
    {
        for (const auto *value : {&metadata.gpsLatRef, &metadata.gpsLonRef, &metadata.gpsLat,
                                  &metadata.gpsLon, &metadata.gpsPosError}) {
            if (*value)
                expectRecord((*value)->text, (*value)->offset, "XMP location");
        }
    }

    void expectConsistent(const std::optional<RawPreviewInfo> &preview) const
    {
        if (preview && preview->hasPreview()) {
            EXPECT_LT(preview->soiOffset, preview->eoiOffset);
            // A JPEG file is its own largest "preview", at offset 0.
            expectBytes(preview->jpgData, preview->soiOffset, "preview");
        }
    }

    // Runs every entry point of the reader on the source, which holds m_bytes.
    void readWithEveryLocator(const ByteSource &source) const
    {
        MySingleFolderDataReader reader;
        std::set<quint32> xmpStarts{0};
        for (int format :
             {JpegFormat, HeicFormat, RawFormat, TiffFormat, PngFormat, AvifFormat, GifFormat}) {
            const DatesData dates = reader.savereadDates(source, format);
            expectConsistent(dates);
            xmpStarts.insert(dates.jpgXMPOffset.value_or(0));
            if (dates.tiffHeader) {
                xmpStarts.insert(dates.tiffHeader->offset);
                const TiffHeader header = *dates.tiffHeader;
                reader.imageTags(source, header);
                if (m_bytes.size() <= previewScanLimit)
                    expectConsistent(reader.savereadInternalJPGs(source, header));
            }
        }
        const WebpChunkOffsets chunks = reader.riffHeaderDataForWebP(source);
        if (chunks.exifOffset)
            expectConsistent(reader.savereadDates(source, WebpFormat, *chunks.exifOffset));
        if (chunks.xmpOffset)
            expectConsistent(reader.savereadXMPDates(source, WebpFormat, *chunks.xmpOffset));
        for (quint32 start : xmpStarts) {
            for (int format : {UnknownFormat, JpegFormat, TiffFormat, PngFormat, Cr3XmpFormat})
                expectConsistent(reader.savereadXMPDates(source, format, start));
        }
        // A decoded profile's stamps stand in the decoded packet, not in the file.
        reader.savereadXMPDatesOfPngProfile(source);
        expectConsistent(reader.metadataFromXMP(source, 0));
        reader.tEXtDataFromPNG(source);
        reader.imageTags(source, TiffHeader{0, true});
        if (m_bytes.size() <= previewScanLimit)
            expectConsistent(reader.savereadInternalJPGs(source, std::nullopt));
    }

private:
    QByteArray m_bytes;
};

// Short lengths byte by byte, then growing steps, and cuts a few bytes into each value found.
std::set<qsizetype> cutLengths(const QString &path, qsizetype size)
{
    std::set<qsizetype> lengths;
    for (qsizetype n = 0; n <= 24 && n < size; ++n)
        lengths.insert(n);
    for (double n = 32; n < size; n *= 1.8)
        lengths.insert(qsizetype(n));
    const DatesData dates = readDatesAsTheScanDoes(path);
    for (const auto *stamp :
         {&dates.tiffDateTime, &dates.exifDateTimeOriginal, &dates.exifDateTimeDigitized}) {
        if (*stamp)
            lengths.insert((*stamp)->dateOffset + 10);
    }
    if (dates.gpsLocation)
        lengths.insert(dates.gpsLocation->longitude_Offset + 12);
    return lengths;
}

class DamagedCorpusFile : public testing::TestWithParam<CorpusFileAndSource>
{
};

TEST_P(DamagedCorpusFile, CutAtManyLengthsOrWithBytesOverwrittenNearTheStart)
{
    const auto &[path, sourceKind] = GetParam();
    const SourceKind kind = sourceKind; // a lambda cannot capture a binding before clang 16
    const QByteArray bytes = fileBytes(path);
    QTemporaryDir dir;
    const auto read = [&](const QByteArray &damaged) {
        DamagedFiles(damaged).readWithEveryLocator(*sourceOf(kind, damaged, dir));
    };
    for (qsizetype length : cutLengths(path, bytes.size())) {
        SCOPED_TRACE("length " + std::to_string(length));
        read(bytes.left(length));
    }
    QRandomGenerator random(qHash(QFileInfo(path).fileName()));
    const qsizetype region = qMin<qsizetype>(bytes.size(), 65536);
    for (int round = 0; round < 6 && region > 0; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        QByteArray noisy = bytes;
        for (int i = 0; i < 24; ++i)
            noisy[random.bounded(int(region))] = char(random.bounded(256));
        read(noisy);
    }
}

INSTANTIATE_TEST_SUITE_P(Corpus, DamagedCorpusFile, corpusFilesOnBothSources(damagedSuffixes),
                         corpusSourceTestName);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(DamagedCorpusFile);

class NoiseFiles : public testing::TestWithParam<SourceKind>
{
};

TEST_P(NoiseFiles, RandomBytesBehindEachContainerSignature)
{
    const QByteArray signatures[] = {
        {},
        QByteArray("II*\0", 4),
        QByteArray("MM\0*", 4),
        QByteArray("II*\0\x08\0\0\0", 8),
        QByteArray("\xFF\xD8\xFF\xE1\x00\x40"
                   "Exif\0\0II*\0",
                   16),
        QByteArray("\x89PNG\r\n\x1a\n", 8),
        QByteArray("RIFF\0\0\0\0WEBPEXIF", 16),
        QByteArray("<x:xmpmeta <?xpacket begin="),
    };
    QTemporaryDir dir;
    QRandomGenerator random(20240501);
    for (const QByteArray &signature : signatures) {
        for (int round = 0; round < 240; ++round) {
            QByteArray bytes = signature;
            const int length = random.bounded(4096);
            for (int i = 0; i < length; ++i)
                bytes.append(char(random.bounded(256)));
            DamagedFiles(bytes).readWithEveryLocator(*sourceOf(GetParam(), bytes, dir));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(BothSources, NoiseFiles, bothSourceKinds(), sourceTestName);

} // namespace

TEST(FileSource, ReadsBehindTheHeadGiveTheFilesBytesWhereverTheyFall)
{
    // A file of three heads' length, each byte telling its place, read as walks do: small
    // reads forward, a look back, jumps far ahead, reads across a held block's edges and the end.
    QByteArray bytes(3 * FileByteSource::headSize + 123, Qt::Uninitialized);
    for (qsizetype i = 0; i < bytes.size(); ++i)
        bytes[i] = char((i * 7 + i / 251) & 0xFF);
    QTemporaryDir dir;
    const QString path = MediaFile{bytes, {}, "bin"}.write(dir.path());
    const FileByteSource file(path);
    const qint64 head = FileByteSource::headSize;
    const std::pair<qint64, qint64> reads[] = {
        {head - 2, 4},         {head + 100, 16},  {head + 40, 8},         {head + 100 - 4096, 2},
        {2 * head + 9, 4},     {head + 50, 2},    {2 * head + 4096, 4096}, {2 * head - 1, 8},
        {bytes.size() - 3, 8}, {head + 7, 70000}, {bytes.size(), 1},      {-1, 4},
    };
    for (const auto &[offset, length] : reads)
        EXPECT_EQ(file.read(offset, length), MemoryByteSource(bytes).read(offset, length))
            << offset << " " << length;
}

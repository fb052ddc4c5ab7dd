// Edge cases of the containers, on hand-made files whose every offset is known.

#include "CraftedBytes.h"
#include "support/Corpus.h"
#include "support/Exiftool.h"
#include "support/QtPrinters.h"

#include "formats/InPlaceWriter.h"
#include "formats/MySingleFolderDataReader.h"
#include "formats/TiffLocator.h"

#include <QImageWriter>

#include <gtest/gtest.h>

using namespace orv;
using namespace orv::test;
using namespace orv::crafted;

namespace {

const QByteArray dateStamp = "2024:05:01 10:00:00";
const QByteArray blankStamp = "    :  :     :  :  ";
constexpr quint16 typeShort = 3;

// IFD0 with DateTime and the two pointers, an Exif IFD, a GPS IFD holding a date stamp.
TiffBlock exifBlock(bool intel, std::vector<TiffEntry> exifEntries,
                    const QByteArray &gpsDate = "2024:05:01")
{
    return TiffBlock(intel, {{TiffEntry::ascii(306, dateStamp), TiffEntry::pointer(34665, 1),
                              TiffEntry::pointer(34853, 2)},
                             std::move(exifEntries),
                             {TiffEntry::ascii(29, gpsDate)}});
}

DatesData readTiff(const QTemporaryDir &dir, const QByteArray &bytes)
{
    return MySingleFolderDataReader().savereadDatesAtPath(writeTemporary(dir, "crafted.tif", bytes),
                                                          TiffFormat);
}

TEST(TiffWalk, ExifTagsInIfd0AfterThePointersAreFoundByTheSecondPass)
{
    const TiffBlock block(true, {{TiffEntry::ascii(306, dateStamp), TiffEntry::pointer(34665, 1),
                                  TiffEntry::pointer(34853, 2),
                                  TiffEntry::ascii(36867, "2024:05:01 09:00:00"),
                                  TiffEntry::ascii(36868, "2024:05:01 09:30:00")},
                                 {{40962, typeShort, 1, QByteArray("\x10\0", 2)}},
                                 {TiffEntry::ascii(29, "2024:05:01")}});
    quint32 originalAt = 0;
    const QByteArray bytes = block.bytes(&originalAt, 36867);
    QTemporaryDir dir;
    const DatesData dates = readTiff(dir, bytes);
    ASSERT_TRUE(dates.exifDateTimeOriginal);
    EXPECT_EQ(dates.exifDateTimeOriginal->dateData, QByteArray("2024:05:01 09:00:00\0", 20));
    EXPECT_EQ(dates.exifDateTimeOriginal->dateOffset, originalAt);
    ASSERT_TRUE(dates.exifDateTimeDigitized);
    EXPECT_EQ(dates.exifDateTimeDigitized->dateData.left(19), "2024:05:01 09:30:00");
    EXPECT_TRUE(dates.tiffDateTime);
    // exiftool sees them in the same place.
    const ExiftoolTags exif = exiftoolTags(dir.filePath("crafted.tif"), ExiftoolGroups::Family1);
    EXPECT_EQ(exif.string("IFD0:DateTimeOriginal"), "2024:05:01 09:00:00");
}

TEST(TiffWalk, BlankStampsAreReportedSoThatTheirTagsCanBeFilled)
{
    QTemporaryDir dir;
    const DatesData dates =
        readTiff(dir, exifBlock(false, {TiffEntry::ascii(36867, blankStamp)}).bytes());
    ASSERT_TRUE(dates.exifDateTimeOriginal);
    EXPECT_EQ(dates.exifDateTimeOriginal->dateData.left(19), blankStamp);
    EXPECT_FALSE(dates.isHeaderIntel);
}

TEST(TiffWalk, MotorolaRationalsNeedConversion)
{
    for (bool intel : {true, false}) {
        const ByteOrderWriter w(intel);
        const QByteArray time = w.u32(10) + w.u32(1) + w.u32(20) + w.u32(1) + w.u32(30) + w.u32(1);
        const TiffBlock block(intel, {{TiffEntry::pointer(34853, 1)}, {{7, 5, 3, time}}});
        QTemporaryDir dir;
        const DatesData dates = readTiff(dir, block.bytes());
        ASSERT_TRUE(dates.gpsTimeStamp);
        EXPECT_EQ(dates.gpsTimeStamp->dateData, time);
        EXPECT_EQ(dates.gpsTimeStamp->needsConv, !intel);
    }
}

TEST(TiffWalk, GpsDateNeedsItsNulAtByteTen)
{
    QTemporaryDir dir;
    const DatesData withNul = readTiff(dir, exifBlock(true, {}, "2024:05:01").bytes());
    ASSERT_TRUE(withNul.gpsDateStamp);
    EXPECT_EQ(withNul.gpsDateStamp->dateData, QByteArray("2024:05:01\0", 11));
    // Eleven characters and no NUL: the stamp does not end where the verifier wants it to.
    const TiffBlock noNul(true, {{TiffEntry::pointer(34853, 1)},
                                 {{29, 2, 11, QByteArray("2024:05:011")}}});
    EXPECT_FALSE(readTiff(dir, noNul.bytes()).gpsDateStamp);
}

TEST(TiffWalk, ValuesPointingOutsideTheFileAreAbsent)
{
    const ByteOrderWriter w(true);
    const TiffBlock block(true, {{{306, 2, 20, {}, -1}}});
    QByteArray bytes = block.bytes();
    bytes.replace(8 + 2 + 8, 4, w.u32(0xFFFFFF00)); // DateTime's value offset
    QTemporaryDir dir;
    const DatesData dates = readTiff(dir, bytes);
    EXPECT_TRUE(dates.hasHeader());
    EXPECT_FALSE(dates.tiffDateTime);
}

// A file without its own DateTime may carry one in the Exif block of an embedded JPEG (tag 46).
// The magic there is compared in the file's order, which only Intel files can pass.
TEST(TiffWalk, NestedJpegDateIsReadInIntelFilesOnly)
{
    for (bool intel : {true, false}) {
        quint32 innerDateAt = 0;
        const QByteArray inner =
            TiffBlock(intel, {{TiffEntry::ascii(306, dateStamp)}}).bytes(&innerDateAt, 306);
        const QByteArray embedded = QByteArray("\xFF\xD8", 2) + exifApp1(inner);
        quint32 embeddedAt = 0;
        const QByteArray bytes =
            TiffBlock(intel, {{{46, 7, quint32(embedded.size()), embedded}}}).bytes(&embeddedAt, 46);
        QTemporaryDir dir;
        const DatesData dates = readTiff(dir, bytes);
        if (intel) {
            ASSERT_TRUE(dates.tiffDateTime);
            EXPECT_EQ(dates.tiffDateTime->dateOffset, embeddedAt + 12 + innerDateAt);
        } else {
            EXPECT_FALSE(dates.tiffDateTime);
        }
    }
}

TEST(StampVerifiers, DateStamps)
{
    EXPECT_TRUE(verifyDateData(dateStamp + '\0'));
    EXPECT_TRUE(verifyDateData(blankStamp + '\0'));
    EXPECT_TRUE(verifyDateData("0000:00:00 00:00:00" + QByteArray(1, '\0')));
    EXPECT_FALSE(verifyDateData(QByteArray(20, ' ')));
    EXPECT_FALSE(verifyDateData("2024-05-01 10:00:00" + QByteArray(1, '\0')));
    EXPECT_FALSE(verifyDateData("2024:05:01T10:00:00" + QByteArray(1, '\0')));
    EXPECT_FALSE(verifyDateData("2024:05:01 10:00"));
}

TEST(StampVerifiers, OffsetTags)
{
    EXPECT_TRUE(verifyOffsetData(QByteArray("+02:00\0", 7)));
    EXPECT_TRUE(verifyOffsetData(QByteArray("-05:30\0", 7)));
    EXPECT_FALSE(verifyOffsetData(QByteArray("+02:00", 6)));
    EXPECT_FALSE(verifyOffsetData(QByteArray(" 02:00\0", 7)));
    EXPECT_FALSE(verifyOffsetData(QByteArray("+0200\0\0", 7)));
    EXPECT_FALSE(verifyOffsetData(QByteArray("+02:0a\0", 7)));
}

TEST(StampVerifiers, GpsDateStamps)
{
    EXPECT_TRUE(verifyGpsDateStampData(QByteArray("2024:05:01\0", 11)));
    EXPECT_FALSE(verifyGpsDateStampData(QByteArray("2024:05:011", 11)));
    EXPECT_FALSE(verifyGpsDateStampData(QByteArray("2024-05-01\0", 11)));
    EXPECT_FALSE(verifyGpsDateStampData(QByteArray("2024:05:01", 10)));
    EXPECT_FALSE(verifyGpsDateStampData(QByteArray("2024:0 :01\0", 11)));
}

// The segments go right after SOI of a real encoded image.
QByteArray jpegWithSegments(const QByteArray &segments, const QByteArray &image = encodedJpeg(8, 8))
{
    return image.left(2) + segments + image.mid(2);
}

TEST(JpegWalk, FindsExifInASecondApp1AfterXmp)
{
    const QByteArray packet = "<?xpacket begin=\"\"?><x:xmpmeta xmlns:x=\"adobe:ns:meta/\">"
                              "</x:xmpmeta><?xpacket end=\"w\"?>";
    const QByteArray xmpSegment = xmpApp1(packet);
    const QByteArray bytes = jpegWithSegments(
        xmpSegment + exifApp1(exifBlock(true, {TiffEntry::ascii(36867, dateStamp)}).bytes()));
    QTemporaryDir dir;
    const DatesData dates = MySingleFolderDataReader().savereadDatesAtPath(
        writeTemporary(dir, "crafted.jpg", bytes), JpegFormat);
    EXPECT_EQ(dates.jpgXMPOffset, quint32(bytes.indexOf(packet)));
    EXPECT_EQ(dates.tiffHeaderStartOffset, quint32(2 + xmpSegment.size() + 10));
    ASSERT_TRUE(dates.exifDateTimeOriginal);
    EXPECT_EQ(dates.exifDateTimeOriginal->dateData.left(19), dateStamp);
}

TEST(JpegWalk, WithoutApp1ItStopsAtTheFrameAndFindsNothing)
{
    // A TIFF block behind the image data must not be taken for the file's Exif.
    const QByteArray trailer = "Exif" + exifBlock(true, {TiffEntry::ascii(36867, dateStamp)}).bytes();
    QByteArray progressive;
    {
        QBuffer buffer(&progressive);
        buffer.open(QIODevice::WriteOnly);
        QImageWriter writer(&buffer, "jpeg");
        writer.setProgressiveScanWrite(true);
        QImage image(8, 8, QImage::Format_RGB32);
        image.fill(Qt::blue);
        ASSERT_TRUE(writer.write(image));
    }
    QTemporaryDir dir;
    for (const QByteArray &image : {encodedJpeg(8, 8), progressive}) {
        const DatesData dates = MySingleFolderDataReader().savereadDatesAtPath(
            writeTemporary(dir, "plain.jpg", image + trailer), JpegFormat);
        EXPECT_FALSE(dates.hasHeader());
        EXPECT_EQ(dates.jpgXMPOffset, 0u);
        EXPECT_FALSE(dates.exifDateTimeOriginal);
    }
}

QByteArray pngWithExif(bool beforeImageData, const QByteArray &tiff)
{
    const QByteArray png = encodedPng();
    const qsizetype at = pngChunkOffset(png, beforeImageData ? "IDAT" : "IEND");
    return png.left(at) + pngChunk("eXIf", tiff) + png.mid(at);
}

TEST(PngChunks, ExifAfterTheImageDataGivesNoOffset)
{
    const QByteArray tiff = exifBlock(true, {TiffEntry::ascii(36867, dateStamp)}).bytes();
    QTemporaryDir dir;
    MySingleFolderDataReader reader;
    const QString before = writeTemporary(dir, "before.png", pngWithExif(true, tiff));
    FileReader beforeFile(before);
    const auto offset = PngLocator(beforeFile).exifStartOffset();
    ASSERT_TRUE(offset);
    EXPECT_EQ(reader.savereadDatesAtPath(before, PngFormat).tiffHeaderStartOffset, *offset);
    EXPECT_TRUE(reader.savereadDatesAtPath(before, PngFormat).exifDateTimeOriginal);

    const QString after = writeTemporary(dir, "after.png", pngWithExif(false, tiff));
    FileReader afterFile(after);
    EXPECT_FALSE(PngLocator(afterFile).exifStartOffset());
    EXPECT_FALSE(reader.savereadDatesAtPath(after, PngFormat).hasHeader());
}

TEST(PngChunks, ChecksumRepairMakesAnInPlaceWriteValid)
{
    const QByteArray tiff = exifBlock(false, {TiffEntry::ascii(36867, dateStamp)}).bytes();
    QTemporaryDir dir;
    const QString path = writeTemporary(dir, "written.png", pngWithExif(true, tiff));
    MySingleFolderDataReader reader;
    const DatesData dates = reader.savereadDatesAtPath(path, PngFormat);
    ASSERT_TRUE(dates.exifDateTimeOriginal);
    ASSERT_TRUE(InPlaceFile::open(path)->apply(
        {{dates.exifDateTimeOriginal->dateOffset, "2030:12:31 23:59:59", dateStamp}}));
    EXPECT_TRUE(exiftoolWarnings(path, ExiftoolCheck::Validate).filter("Bad CRC for eXIf").size() == 1);

    ASSERT_TRUE(reader.lockPNGChunkOfType(PngLocator::ChunkKind::Exif, path));
    EXPECT_TRUE(exiftoolWarnings(path, ExiftoolCheck::Validate).filter("Bad CRC").isEmpty());
    EXPECT_EQ(exiftoolTags(path, ExiftoolGroups::Family1).string("ExifIFD:DateTimeOriginal"),
              "2030:12:31 23:59:59");
}

TEST(PngChunks, XmpChecksumRepairAndTextChunks)
{
    const QByteArray packet = "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF xmlns:rdf=\"http://"
                              "www.w3.org/1999/02/22-rdf-syntax-ns#\"><rdf:Description xmlns:xmp=\""
                              "http://ns.adobe.com/xap/1.0/\" xmp:CreateDate=\"2024-05-01T10:00:00\""
                              "/></rdf:RDF></x:xmpmeta>";
    const QByteArray png = encodedPng();
    const qsizetype at = pngChunkOffset(png, "IDAT");
    const QByteArray bytes = png.left(at)
        + pngChunk("iTXt", QByteArray("XML:com.adobe.xmp\0\0\0\0\0", 22) + packet)
        + pngChunk("tEXt", QByteArray("Title\0Harbour at dawn", 21))
        + pngChunk("tEXt", QByteArray("Empty\0", 6)) + png.mid(at);
    QTemporaryDir dir;
    const QString path = writeTemporary(dir, "xmp.png", bytes);
    MySingleFolderDataReader reader;
    const auto infos = reader.savereadXMPDatesAtPath(path, PngFormat, 0);
    ASSERT_TRUE(infos && infos->count("XmpCreateDate"));
    const XmpStampRecord &created = infos->at("XmpCreateDate");
    EXPECT_EQ(created.offset, quint32(bytes.indexOf("2024-05-01T10:00:00")));
    EXPECT_EQ(created.type, 3);

    EXPECT_EQ(reader.tEXtDataFromPNG(path), (QMap<QString, QString>{{"Title", "Harbour at dawn"}}));
    ASSERT_TRUE(InPlaceFile::open(path)->apply({{created.offset, "2031", "2024"}}));
    ASSERT_TRUE(reader.lockPNGChunkOfType(PngLocator::ChunkKind::Xmp, path));
    EXPECT_TRUE(exiftoolWarnings(path, ExiftoolCheck::Validate).filter("Bad CRC").isEmpty());
    EXPECT_EQ(exiftoolTags(path, ExiftoolGroups::Family1).string("XMP-xmp:CreateDate"),
              "2031:05:01 10:00:00");
}

QByteArray riffChunk(const QByteArray &type, const QByteArray &data)
{
    const ByteOrderWriter le(true);
    return type + le.u32(quint32(data.size())) + data;
}

TEST(WebpChunks, APadByteAfterAnOddChunkIsStepped)
{
    const QByteArray tiff = exifBlock(true, {TiffEntry::ascii(36867, dateStamp)}).bytes();
    const QByteArray packet = "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\" exif:DateTimeOriginal="
                              "\"2024-05-01T10:00:00+02:00\"></x:xmpmeta>";
    // An odd chunk and its pad byte, as libwebp writes them; the walk steps by size alone.
    const QByteArray body = QByteArray("WEBP") + riffChunk("VP8X", QByteArray(10, '\0'))
        + riffChunk("ALPH", "abc") + QByteArray(1, '\0') + riffChunk("EXIF", tiff)
        + riffChunk("XMP ", packet);
    const QByteArray bytes = riffChunk("RIFF", body);
    QTemporaryDir dir;
    const QString path = writeTemporary(dir, "crafted.webp", bytes);
    MySingleFolderDataReader reader;
    const WebpChunkOffsets chunks = reader.riffHeaderDataForWebPFileAtPath(path);
    ASSERT_TRUE(chunks.exifOffset && chunks.xmpOffset);
    EXPECT_EQ(*chunks.exifOffset, quint32(bytes.indexOf("EXIF")));
    EXPECT_EQ(*chunks.xmpOffset, quint32(bytes.indexOf("XMP ")));

    const DatesData dates = reader.savereadDatesAtPath(path, WebpFormat, *chunks.exifOffset);
    EXPECT_EQ(dates.tiffHeaderStartOffset, *chunks.exifOffset + 8);
    EXPECT_TRUE(dates.exifDateTimeOriginal);
    const auto infos = reader.savereadXMPDatesAtPath(path, WebpFormat, *chunks.xmpOffset);
    ASSERT_TRUE(infos && infos->count("ExifDateTimeOriginal"));
    EXPECT_EQ(infos->at("ExifDateTimeOriginal").type, 2);

    EXPECT_FALSE(reader.riffHeaderDataForWebPFileAtPath(
        writeTemporary(dir, "not.webp", "RIFF\0\0\0\0AVI " + riffChunk("EXIF", tiff))).exifOffset);
}

} // namespace

// The builders are only useful if they write what real readers accept, at the offsets they
// report. Every file here is read back by exiftool (values, warnings, and where it found each
// value) and, for the pixels, by Qt's decoders.

#include "support/MediaFileBuilder.h"

#include "support/Exiftool.h"
#include "support/QtPrinters.h"

#include <QImage>
#include <QTemporaryDir>
#include <QtEndian>
#include <gtest/gtest.h>
#include <stdexcept>

using namespace orv::test;

namespace {

const char *orderName(ByteOrder order)
{
    return order == ByteOrder::Intel ? "II" : "MM";
}

TiffShape cameraTags(ByteOrder order)
{
    TiffShape tags;
    tags.order = order;
    tags.make = "Maker";
    tags.model = "Model X";
    tags.orientation = 6;
    tags.dateTime = Stamp::text("2024:05:01 09:00:00");
    tags.dateTimeOriginal = Stamp::text("2024:05:01 10:00:00");
    tags.dateTimeDigitized = Stamp::text("2024:05:01 11:00:00");
    tags.offsetTime = Stamp::text("+02:00");
    tags.offsetTimeOriginal = Stamp::text("-05:30");
    tags.offsetTimeDigitized = Stamp::text("+00:00");
    tags.pixelSize = QSize(16, 16);
    return tags;
}

XmpPacket xmpWithOriginalDate()
{
    return buildXmp({.properties = {{"exif:DateTimeOriginal", "2024-05-01T10:00:00+02:00"}}});
}

quint32 u32At(const QByteArray &bytes, quint32 offset, ByteOrder order)
{
    const char *value = bytes.constData() + offset;
    return order == ByteOrder::Intel ? qFromLittleEndian<quint32>(value)
                                     : qFromBigEndian<quint32>(value);
}

// What exiftool reads, and where it found it, held against what the builder placed.
class BuiltFile : public ::testing::Test
{
protected:
    // exiftool counts from the TIFF header in PNG, hence base.
    void read(const MediaFile &file, quint32 base = 0)
    {
        m_file = file;
        m_path = file.write(m_dir.path());
        m_tags = exiftoolTags(m_path, ExiftoolGroups::Family1);
        m_locations = exiftoolValueLocations(m_path);
        m_base = base;
    }

    // exiftool found key's value at offset, and it is these bytes.
    ::testing::AssertionResult placed(const QString &key, quint32 offset,
                                      const QByteArray &value) const
    {
        const auto found = m_locations.find(key);
        const quint32 seenAt = found == m_locations.end() ? 0 : m_base + found->second.offset;
        const quint32 length = found == m_locations.end() ? 0 : found->second.length;
        if (seenAt == offset && length == value.size() && m_file.bytes.mid(offset, length) == value)
            return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure()
               << key.toStdString() << ": exiftool sees " << length << " bytes at " << seenAt
               << ", the builder placed " << value.toHex(' ').toStdString() << " at " << offset;
    }

    QTemporaryDir m_dir;
    MediaFile m_file;
    QString m_path;
    ExiftoolTags m_tags;
    std::map<QString, ExiftoolValueLocation> m_locations;
    quint32 m_base = 0;
};

} // namespace

// Plain stamps in Intel files; in Motorola ones the odd stamps that writers leave: blank, zero,
// NUL-padded, without a NUL, and short enough to stand within the entry itself.
TEST_F(BuiltFile, ExifAndGpsValuesReadBackWhereTheyWerePlacedInBothByteOrders)
{
    for (const ByteOrder order : {ByteOrder::Intel, ByteOrder::Motorola}) {
        SCOPED_TRACE(orderName(order));
        TiffShape recipe = cameraTags(order);
        recipe.gps = GpsShape::at(48.8584, -2.2945);
        recipe.gps->altitudeRef = 1;
        recipe.gps->altitude = Rational{12345, 100};
        recipe.gps->timeStamp = RationalTriple{Rational{8, 1}, Rational{30, 1}, Rational{15, 1}};
        recipe.gps->dateStamp = Stamp::text("2024:05:01");
        recipe.gps->hPositioningError = Rational{5, 2};
        if (order == ByteOrder::Motorola) {
            recipe.dateTime = Stamp::blank();
            recipe.dateTimeOriginal = Stamp::zeros();
            recipe.dateTimeDigitized = Stamp::padded("2024:05:01 10:00", 20);
            recipe.offsetTime = Stamp::raw("+02:00");
            recipe.offsetTimeOriginal = Stamp::raw(QByteArray("+0\0\0", 4));
            recipe.gps->dateStamp = Stamp::raw("2024:05:01");
            EXPECT_EQ(recipe.dateTime->bytes, QByteArray("    :  :     :  :  \0", 20));
            EXPECT_EQ(recipe.dateTimeDigitized->bytes, QByteArray("2024:05:01 10:00\0\0\0\0", 20));
        }
        read(buildJpeg({.exif = recipe}));
        const MediaOffsets &at = m_file.offsets;
        EXPECT_EQ(m_tags.string("File:ExifByteOrder"), orderName(order));
        EXPECT_EQ(m_tags.number("IFD0:Orientation"), 6);
        EXPECT_EQ(m_tags.number("ExifIFD:ExifImageWidth"), 16);
        EXPECT_EQ(m_tags.string("GPS:GPSTimeStamp"), "08:30:15");
        EXPECT_TRUE(
            placed("GPS:GPSTimeStamp", at.gpsTimeStamp, m_file.bytes.mid(at.gpsTimeStamp, 24)));
        EXPECT_EQ(exiftoolWarnings(m_path), QStringList());

        const std::tuple<const char *, quint32, Stamp> stamps[] = {
            {"IFD0:Make", at.make, Stamp::text("Maker")},
            {"IFD0:Model", at.model, Stamp::text("Model X")},
            {"IFD0:ModifyDate", at.dateTime, *recipe.dateTime},
            {"ExifIFD:DateTimeOriginal", at.dateTimeOriginal, *recipe.dateTimeOriginal},
            {"ExifIFD:CreateDate", at.dateTimeDigitized, *recipe.dateTimeDigitized},
            {"ExifIFD:OffsetTime", at.offsetTime, *recipe.offsetTime},
            {"ExifIFD:OffsetTimeOriginal", at.offsetTimeOriginal, *recipe.offsetTimeOriginal},
            {"ExifIFD:OffsetTimeDigitized", at.offsetTimeDigitized, *recipe.offsetTimeDigitized},
            {"GPS:GPSLatitudeRef", at.gpsLatitudeRef, Stamp::text("N")},
            {"GPS:GPSLongitudeRef", at.gpsLongitudeRef, Stamp::text("W")},
            {"GPS:GPSDateStamp", at.gpsDateStamp, *recipe.gps->dateStamp}};
        for (const auto &[key, offset, value] : stamps) {
            EXPECT_TRUE(placed(key, offset, value.bytes));
            EXPECT_EQ(m_tags.string(key), QString::fromLatin1(value.bytes.constData()));
        }
        const std::tuple<const char *, quint32, quint32, double> values[] = {
            {"GPS:GPSLatitude", at.gpsLatitude, 24, 48.8584},
            {"GPS:GPSLongitude", at.gpsLongitude, 24, 2.2945},
            {"GPS:GPSAltitude", at.gpsAltitude, 8, 123.45},
            {"GPS:GPSAltitudeRef", at.gpsAltitudeRef, 1, 1},
            {"GPS:GPSHPositioningError", at.gpsHPositioningError, 8, 2.5}};
        for (const auto &[key, offset, length, number] : values) {
            EXPECT_TRUE(placed(key, offset, m_file.bytes.mid(offset, length)));
            EXPECT_NEAR(m_tags.number(key), number, 1e-9);
        }
        const auto pointer = [&](const QString &key) {
            return at.tiffHeader + u32At(m_file.bytes, m_locations.at(key).offset, order);
        };
        EXPECT_EQ(pointer("IFD0:ExifOffset"), at.exifIfd);
        EXPECT_EQ(pointer("IFD0:GPSInfo"), at.gpsIfd);
        EXPECT_EQ(at.tiffHeader + u32At(m_file.bytes, at.tiffHeader + 4, order), at.ifd0);
    }
}

TEST_F(BuiltFile, ExifDatesInIfd0StandAfterOrAheadOfThePointers)
{
    for (const ExifDatePlace place : {ExifDatePlace::Ifd0, ExifDatePlace::Ifd0BeforePointers}) {
        SCOPED_TRACE(int(place));
        TiffShape recipe = cameraTags(ByteOrder::Intel);
        recipe.exifDatePlace = place;
        recipe.gps = GpsShape::at(1, 2);
        read(buildJpeg({.exif = recipe}));
        const MediaOffsets &at = m_file.offsets;

        EXPECT_EQ(m_tags.string("IFD0:OffsetTimeDigitized"), "+00:00");
        EXPECT_FALSE(m_tags.has("ExifIFD:DateTimeOriginal"));
        EXPECT_EQ(m_tags.number("ExifIFD:ExifImageWidth"), 16);
        EXPECT_EQ(exiftoolWarnings(m_path, ExiftoolCheck::Validate)
                      .contains("Entries in IFD0 are out of order"),
                  place == ExifDatePlace::Ifd0BeforePointers);
        EXPECT_TRUE(
            placed("IFD0:DateTimeOriginal", at.dateTimeOriginal, recipe.dateTimeOriginal->bytes));
        EXPECT_TRUE(
            placed("IFD0:CreateDate", at.dateTimeDigitized, recipe.dateTimeDigitized->bytes));
        EXPECT_TRUE(placed("IFD0:OffsetTime", at.offsetTime, recipe.offsetTime->bytes));
    }
}

// Each container with an Exif block in both byte orders and an XMP packet: a real image, no
// warnings, and every segment, header and value where the builder says.
TEST_F(BuiltFile, ContainersCarryExifAndXmpAroundARealImage)
{
    // Per suffix: where the marks start past a JPEG marker and length or a PNG length (RIFF
    // types lead), the Exif mark, the TIFF header's distance from the segment, the XMP mark,
    // and the packet's distance from the segment.
    using Layout = std::tuple<quint32, QByteArray, quint32, QByteArray, quint32>;
    const std::map<QString, Layout> layouts = {
        {"jpg",
         {4, QByteArray("Exif\0\0", 6), 10, QByteArray("http://ns.adobe.com/xap/1.0/", 29), 33}},
        {"png", {4, "eXIf", 8, QByteArray("iTXtXML:com.adobe.xmp\0\0\0\0", 26), 30}},
        {"webp", {0, "EXIF", 8, "XMP ", 8}},
        {"tif", {0, {}, 0, {}, 0}}};
    for (const ByteOrder order : {ByteOrder::Intel, ByteOrder::Motorola}) {
        const TiffShape tags = cameraTags(order);
        const XmpPacket xmp = xmpWithOriginalDate();
        TiffShape tagsAndXmp = tags;
        tagsAndXmp.xmp = xmp;
        const QSize size(12, 9);
        const MediaFile files[] = {
            buildJpeg({.exif = tags, .xmp = xmp, .size = size}),
            buildJpeg({.jfif = false,
                       .exif = tags,
                       .xmp = xmp,
                       .xmpBeforeExif = true,
                       .size = size,
                       .progressive = true}),
            buildPng({.size = size, .exif = tags, .xmp = xmp, .texts = {{"Comment", "built"}}}),
            buildWebp({.size = size, .exif = tags, .xmp = xmp}),
            buildWebp({.size = size, .lossless = true, .exif = tags, .xmp = xmp}),
            buildTiffFile({.tags = tagsAndXmp, .imageSize = size})};
        for (const MediaFile &file : files) {
            SCOPED_TRACE(file.suffix.toStdString() + " " + orderName(order) +
                         std::to_string(&file - files));
            const MediaOffsets &at = file.offsets;
            const auto &[markAt, exifMark, headerAfter, xmpMark, packetAfter] =
                layouts.at(file.suffix);
            read(file, file.suffix == "png" ? at.tiffHeader : 0);

            EXPECT_EQ(QImage(m_path).size(), size);
            EXPECT_EQ(exiftoolWarnings(m_path), QStringList());
            EXPECT_EQ(m_tags.string("XMP-exif:DateTimeOriginal"), "2024:05:01 10:00:00+02:00");
            EXPECT_EQ(m_tags.has("JFIF:JFIFVersion"), &file == files);
            EXPECT_EQ(m_tags.has("PNG:Comment"), file.suffix == "png");
            EXPECT_TRUE(placed("IFD0:ModifyDate", at.dateTime, tags.dateTime->bytes));
            EXPECT_TRUE(placed("ExifIFD:DateTimeOriginal", at.dateTimeOriginal,
                               tags.dateTimeOriginal->bytes));
            EXPECT_TRUE(placed("ExifIFD:OffsetTimeOriginal", at.offsetTimeOriginal,
                               tags.offsetTimeOriginal->bytes));
            EXPECT_EQ(file.bytes.mid(at.tiffHeader, 2), orderName(order));
            EXPECT_EQ(at.tiffHeader, at.exifSegment + headerAfter);
            EXPECT_EQ(file.bytes.mid(at.exifSegment + markAt, exifMark.size()), exifMark);
            EXPECT_EQ(file.bytes.mid(at.xmpSegment + markAt, xmpMark.size()), xmpMark);
            if (packetAfter) {
                EXPECT_EQ(at.xmpPacket, at.xmpSegment + packetAfter);
            }
            if (file.suffix == "jpg") {
                EXPECT_EQ(at.xmpSegment < at.exifSegment, &file != files);
                EXPECT_EQ(m_tags.number("File:EncodingProcess"), &file == files ? 0 : 2);
                EXPECT_EQ(file.bytes.mid(at.exifSegment, 2) + file.bytes.mid(at.xmpSegment, 2),
                          "\xFF\xE1\xFF\xE1");
            }
            EXPECT_TRUE(file.bytes.mid(at.xmpPacket).startsWith("<?xpacket begin="));
            EXPECT_EQ(file.bytes.mid(at.xmpValue("exif:DateTimeOriginal"), 25),
                      "2024-05-01T10:00:00+02:00");
        }
    }
}

TEST_F(BuiltFile, JpegWithoutApp1GoesFromApp0ToTheImage)
{
    read(buildJpeg({}));
    EXPECT_EQ(m_file.bytes.mid(2, 2), "\xFF\xE0");
    EXPECT_EQ(m_file.bytes.mid(20, 2), "\xFF\xDB"); // quantisation tables follow the 18-byte APP0
    EXPECT_EQ(m_file.offsets.exifSegment + m_file.offsets.xmpSegment, 0u);
    EXPECT_EQ(QImage(m_path).size(), QSize(16, 16));
    for (auto it = m_tags.json.begin(); it != m_tags.json.end(); ++it)
        EXPECT_FALSE(it.key().startsWith("IFD0:") || it.key().startsWith("XMP"))
            << it.key().toStdString();
}

TEST_F(BuiltFile, XmpSidecarHoldsEveryTagTheReadersSearchInBothForms)
{
    // exiftool reads dates with colons and a space, the rest as written unless given.
    const std::array<const char *, 3> cases[] = {
        {"exif:DateTimeOriginal", "2024-05-01T10:00:00+02:00"},
        {"exif:DateTimeDigitized", "2024-05-01T10:00:01+0200"},
        {"xmp:CreateDate", "2024-05-01T10:00:02Z"},
        {"xmp:ModifyDate", "2024-05-01T10:00:03"},
        {"xmp:MetadataDate", "2024-05-01T10:04Z"},
        {"tiff:DateTime", "2024-05-01T10:00:05.25+02:00"},
        {"photoshop:DateCreated", "2024-05-01T10:00:06"},
        {"exif:GPSTimeStamp", "2024-05-01T08:00:07Z"},
        {"exif:GPSLatitude", "48,51.504N", "48.8584"},
        {"exif:GPSLongitude", "2,17.67W", "-2.2945"},
        {"exif:GPSLatitudeRef", "N"},
        {"exif:GPSLongitudeRef", "W"},
        {"exif:GPSHPositioningError", "5/2", "2.5"},
        {"photoshop:SidecarForExtension", "CR2"},
        {"crs:RawFileName", "IMG_0001.CR2"}};
    XmpShape recipe;
    for (const auto &[name, value, reading] : cases)
        recipe.properties.push_back({name, value});
    // The packet wrapper is optional; each form goes once with it and once without.
    for (const XmpForm form : {XmpForm::Attributes, XmpForm::Elements}) {
        SCOPED_TRACE(int(form));
        recipe.form = form;
        recipe.wrapped = form == XmpForm::Attributes;
        read(buildXmpSidecar(recipe));
        EXPECT_EQ(m_path.right(4), ".xmp");
        EXPECT_TRUE(m_file.bytes.startsWith(recipe.wrapped ? "<?xpacket begin=" : "<x:xmpmeta "));
        EXPECT_EQ(m_file.bytes.endsWith("<?xpacket end=\"w\"?>"), recipe.wrapped);
        EXPECT_EQ(exiftoolWarnings(m_path), QStringList());
        for (const auto &[name, value, reading] : cases) {
            SCOPED_TRACE(name);
            QString expected = reading ? reading : value;
            if (expected.startsWith("2024-"))
                expected = expected.left(10).replace('-', ':') + ' ' + expected.mid(11);
            const QString key = QByteArrayView(name) == "exif:GPSTimeStamp"
                                    ? QStringLiteral("XMP-exif:GPSDateTime")
                                    : "XMP-" + QString(name);
            EXPECT_EQ(m_tags.string(key), expected);
            const quint32 offset = m_file.offsets.xmpValue(name);
            EXPECT_EQ(m_file.bytes.mid(offset, qstrlen(value)), value);
            EXPECT_EQ(m_file.bytes.at(offset - 1), form == XmpForm::Attributes ? '"' : '>');
        }
    }
    EXPECT_THROW(buildXmp({.properties = {{"nosuch:Date", "2024"}}}), std::invalid_argument);
}

TEST_F(BuiltFile, PngExifAfterImageDataAndChunksWithAWrongCrc)
{
    read(buildPng(
        {.exif = cameraTags(ByteOrder::Intel), .exifPosition = ChunkPosition::AfterImageData}));
    EXPECT_GT(m_file.offsets.exifSegment, quint32(m_file.bytes.indexOf("IDAT")));
    EXPECT_EQ(m_tags.string("ExifIFD:DateTimeOriginal"), "2024:05:01 10:00:00");
    EXPECT_EQ(
        exiftoolWarnings(m_path),
        QStringList{
            "[minor] Text/EXIF chunk(s) found after PNG IDAT (may be ignored by some readers)"});
    for (const QString &warning : exiftoolWarnings(m_path, ExiftoolCheck::Validate))
        EXPECT_FALSE(warning.contains("CRC")) << warning.toStdString();

    for (const char *type : {"eXIf", "iTXt"}) {
        SCOPED_TRACE(type);
        read(buildPng({.exif = cameraTags(ByteOrder::Intel),
                       .xmp = xmpWithOriginalDate(),
                       .wrongCrcChunk = type}));
        const quint32 chunk =
            type[0] == 'e' ? m_file.offsets.exifSegment : m_file.offsets.xmpSegment;
        const quint32 length = u32At(m_file.bytes, chunk, ByteOrder::Motorola);
        EXPECT_NE(u32At(m_file.bytes, chunk + 8 + length, ByteOrder::Motorola),
                  pngChunkCrc(QByteArrayView(m_file.bytes).sliced(chunk + 4, 4 + length)));
        EXPECT_TRUE(exiftoolWarnings(m_path, ExiftoolCheck::Validate)
                        .contains(QStringLiteral("Bad CRC for %1 chunk").arg(type)));
    }
}

TEST_F(BuiltFile, WebpExifHeaderAndStrayPadByte)
{
    read(buildWebp({.exif = cameraTags(ByteOrder::Motorola), .exifWithHeader = true}));
    EXPECT_EQ(m_file.bytes.mid(m_file.offsets.exifSegment + 8, 6), QByteArray("Exif\0\0", 6));
    EXPECT_EQ(m_file.offsets.tiffHeader, m_file.offsets.exifSegment + 14);
    EXPECT_EQ(m_tags.string("ExifIFD:DateTimeOriginal"), "2024:05:01 10:00:00");
    EXPECT_EQ(exiftoolWarnings(m_path), QStringList{"[minor] Improper EXIF header"});

    read(buildWebp({.exif = cameraTags(ByteOrder::Intel), .strayPadByte = true}));
    // Walking the chunks by their sizes lands on the zero byte, one short of "EXIF".
    quint32 chunk = 12;
    for (int i = 0; i < 2; ++i) { // VP8X, then the image
        const quint32 size = u32At(m_file.bytes, chunk + 4, ByteOrder::Intel);
        chunk += 8 + size + size % 2;
    }
    EXPECT_EQ(m_file.bytes.mid(chunk, 5), QByteArray("\0EXIF", 5));
    EXPECT_EQ(m_file.offsets.exifSegment, chunk + 1);
    EXPECT_EQ(u32At(m_file.bytes, 4, ByteOrder::Intel), quint32(m_file.bytes.size() - 8));
    EXPECT_FALSE(m_tags.has("ExifIFD:DateTimeOriginal")); // a plain chunk walk loses its way
}

TEST_F(BuiltFile, EmbeddedJpegBehindTag46CarriesItsOwnTiffHeader12BytesIn)
{
    TiffShape inner;
    inner.dateTime = Stamp::text("2024:05:01 09:00:00");
    const MediaFile embedded = buildJpeg({.jfif = false, .exif = inner});
    read(buildTiffFile({.tags = {.embeddedJpeg = embedded.bytes}}));
    const quint32 at = m_file.offsets.embeddedJpeg;
    EXPECT_TRUE(placed("IFD0:Exif_0x002e", at, embedded.bytes));
    EXPECT_EQ(m_file.bytes.mid(at + 12, 4), QByteArray("II*\0", 4));
    EXPECT_EQ(m_file.bytes.mid(at + embedded.offsets.dateTime, 20), inner.dateTime->bytes);
    EXPECT_EQ(exiftoolWarnings(m_path), QStringList());
}

TEST_F(BuiltFile, RawLikeTiffKeepsPreviewsOfExactSizes)
{
    const QSize sizes[] = {{640, 480}, {1024, 768}};
    const std::vector<QByteArray> previews{encodeJpegImage(sizes[0]), encodeJpegImage(sizes[1])};
    read(buildTiffFile({.tags = cameraTags(ByteOrder::Intel), .previews = previews}));
    const std::vector<ByteRange> &ranges = m_file.offsets.previews;
    ASSERT_EQ(ranges.size(), 2u);
    EXPECT_EQ(m_tags.number("IFD1:ThumbnailOffset"), ranges[0].begin);
    EXPECT_EQ(m_tags.number("IFD1:ThumbnailLength"), previews[0].size());
    EXPECT_EQ(m_tags.number("IFD2:JpgFromRawStart"), ranges[1].begin);
    EXPECT_EQ(m_tags.number("IFD2:JpgFromRawLength"), previews[1].size());
    EXPECT_EQ(exiftoolWarnings(m_path), QStringList());
    for (std::size_t i = 0; i < 2; ++i) {
        const QByteArray jpeg = m_file.bytes.mid(ranges[i].begin, ranges[i].end - ranges[i].begin);
        EXPECT_TRUE(jpeg.startsWith("\xFF\xD8\xFF") && jpeg.endsWith("\xFF\xD9"));
        EXPECT_EQ(QImage::fromData(jpeg).size(), sizes[i]);
    }
    EXPECT_THROW(exiftoolTags(QStringLiteral("/nonexistent/none.jpg")), std::runtime_error);
}

// The builders are only useful if they write what real readers accept, at the offsets they
// report. Every file here is read back by exiftool (values, warnings, and where it found each
// value) and, for the pixels, by Qt's decoders.

#include "support/MediaFileBuilder.h"

#include "support/Exiftool.h"
#include "support/QtPrinters.h"

#include <QImage>
#include <QImageReader>
#include <QTemporaryDir>
#include <QtEndian>
#include <gtest/gtest.h>
#include <stdexcept>

using namespace orv::test;

namespace {

class BuiltFile : public ::testing::Test
{
protected:
    QString write(const MediaFile &file, const QString &name = QStringLiteral("built"))
    {
        return file.write(m_dir.path(), name);
    }

private:
    QTemporaryDir m_dir;
};

TiffSpec cameraTags(ByteOrder order)
{
    TiffSpec tags;
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

const char *orderName(ByteOrder order)
{
    return order == ByteOrder::Intel ? "II" : "MM";
}

quint32 u32At(const QByteArray &bytes, quint32 offset, ByteOrder order)
{
    const char *value = bytes.constData() + offset;
    return order == ByteOrder::Intel ? qFromLittleEndian<quint32>(value)
                                     : qFromBigEndian<quint32>(value);
}

// Where exiftool found the values of a built file, held against where the builder put them.
// exiftool counts from the TIFF header in PNG, hence base.
class Placement
{
public:
    Placement(const MediaFile &file, const QString &path, quint32 base = 0)
        : m_file(file), m_locations(exiftoolValueLocations(path)), m_base(base)
    {
    }

    // exiftool found key's value of length bytes at offset.
    ::testing::AssertionResult value(const QString &key, quint32 offset, quint32 length) const
    {
        const auto found = m_locations.find(key);
        if (found == m_locations.end())
            return ::testing::AssertionFailure() << "exiftool shows no " << key.toStdString();
        const quint32 seenAt = m_base + found->second.offset;
        if (seenAt != offset || found->second.length != length)
            return ::testing::AssertionFailure()
                   << key.toStdString() << ": exiftool sees " << found->second.length
                   << " bytes at " << seenAt << ", the builder placed " << length << " at "
                   << offset;
        return ::testing::AssertionSuccess();
    }

    // The stamp's exact bytes stand at offset, and exiftool found them there.
    ::testing::AssertionResult stamp(const QString &key, quint32 offset, const Stamp &stamp) const
    {
        if (m_file.bytes.mid(offset, stamp.bytes.size()) != stamp.bytes)
            return ::testing::AssertionFailure()
                   << key.toStdString() << ": other bytes at " << offset;
        return value(key, offset, quint32(stamp.bytes.size()));
    }

    // The value of a pointer tag: an offset from the TIFF header.
    quint32 pointer(const QString &key, ByteOrder order) const
    {
        const auto found = m_locations.find(key);
        if (found == m_locations.end()) {
            ADD_FAILURE() << "exiftool shows no " << key.toStdString();
            return 0;
        }
        return u32At(m_file.bytes, m_base + found->second.offset, order);
    }

private:
    const MediaFile &m_file;
    std::map<QString, ExiftoolValueLocation> m_locations;
    quint32 m_base;
};

QSize decodedSize(const QString &path)
{
    QImageReader reader(path);
    const QImage image = reader.read();
    EXPECT_FALSE(image.isNull()) << path.toStdString() << ": "
                                 << reader.errorString().toStdString();
    return image.size();
}

} // namespace

// --- TIFF/EXIF block, inside a JPEG ------------------------------------------------------------

TEST_F(BuiltFile, ExifDatesAndOffsetsReadBackInBothByteOrders)
{
    for (const ByteOrder order : {ByteOrder::Intel, ByteOrder::Motorola}) {
        SCOPED_TRACE(orderName(order));
        const TiffSpec recipe = cameraTags(order);
        const MediaFile file = buildJpeg({.exif = recipe});
        const QString path = write(file);

        const ExiftoolTags tags = exiftoolTags(path, ExiftoolGroups::Family1);
        EXPECT_EQ(tags.string("File:ExifByteOrder"), orderName(order));
        EXPECT_EQ(tags.string("IFD0:Make"), "Maker");
        EXPECT_EQ(tags.string("IFD0:Model"), "Model X");
        EXPECT_EQ(tags.number("IFD0:Orientation"), 6);
        EXPECT_EQ(tags.string("IFD0:ModifyDate"), "2024:05:01 09:00:00");
        EXPECT_EQ(tags.string("ExifIFD:DateTimeOriginal"), "2024:05:01 10:00:00");
        EXPECT_EQ(tags.string("ExifIFD:CreateDate"), "2024:05:01 11:00:00");
        EXPECT_EQ(tags.string("ExifIFD:OffsetTime"), "+02:00");
        EXPECT_EQ(tags.string("ExifIFD:OffsetTimeOriginal"), "-05:30");
        EXPECT_EQ(tags.string("ExifIFD:OffsetTimeDigitized"), "+00:00");
        EXPECT_EQ(tags.number("ExifIFD:ExifImageWidth"), 16);
        EXPECT_EQ(exiftoolWarnings(path), QStringList());

        EXPECT_EQ(file.bytes.mid(file.offsets.exifSegment, 2), "\xFF\xE1");
        EXPECT_EQ(file.bytes.mid(file.offsets.exifSegment + 4, 6), QByteArray("Exif\0\0", 6));
        EXPECT_EQ(file.offsets.tiffHeader, file.offsets.exifSegment + 10);
        EXPECT_EQ(file.bytes.mid(file.offsets.tiffHeader, 2), orderName(order));

        const Placement placed(file, path);
        const MediaOffsets &at = file.offsets;
        EXPECT_TRUE(placed.stamp("IFD0:Make", at.make, Stamp::text("Maker")));
        EXPECT_TRUE(placed.stamp("IFD0:Model", at.model, Stamp::text("Model X")));
        EXPECT_TRUE(placed.stamp("IFD0:ModifyDate", at.dateTime, *recipe.dateTime));
        EXPECT_TRUE(
            placed.stamp("ExifIFD:DateTimeOriginal", at.dateTimeOriginal, *recipe.dateTimeOriginal));
        EXPECT_TRUE(
            placed.stamp("ExifIFD:CreateDate", at.dateTimeDigitized, *recipe.dateTimeDigitized));
        EXPECT_TRUE(placed.stamp("ExifIFD:OffsetTime", at.offsetTime, *recipe.offsetTime));
        EXPECT_TRUE(placed.stamp("ExifIFD:OffsetTimeOriginal", at.offsetTimeOriginal,
                                 *recipe.offsetTimeOriginal));
        EXPECT_TRUE(placed.stamp("ExifIFD:OffsetTimeDigitized", at.offsetTimeDigitized,
                                 *recipe.offsetTimeDigitized));
        EXPECT_EQ(at.tiffHeader + placed.pointer("IFD0:ExifOffset", order), at.exifIfd);
        EXPECT_EQ(at.tiffHeader + u32At(file.bytes, at.tiffHeader + 4, order), at.ifd0);
    }
}

TEST_F(BuiltFile, GpsValuesReadBackWhereTheyWerePlaced)
{
    for (const ByteOrder order : {ByteOrder::Intel, ByteOrder::Motorola}) {
        SCOPED_TRACE(orderName(order));
        GpsSpec gps = GpsSpec::at(48.8584, -2.2945);
        gps.altitudeRef = 1;
        gps.altitude = Rational{12345, 100};
        gps.timeStamp = RationalTriple{Rational{8, 1}, Rational{30, 1}, Rational{15, 1}};
        gps.dateStamp = Stamp::text("2024:05:01");
        gps.hPositioningError = Rational{5, 2};
        TiffSpec recipe;
        recipe.order = order;
        recipe.gps = gps;
        const MediaFile file = buildJpeg({.exif = recipe});
        const QString path = write(file);

        const ExiftoolTags tags = exiftoolTags(path, ExiftoolGroups::Family1);
        EXPECT_EQ(tags.string("GPS:GPSLatitudeRef"), "N");
        EXPECT_NEAR(tags.number("GPS:GPSLatitude"), 48.8584, 1e-9);
        EXPECT_EQ(tags.string("GPS:GPSLongitudeRef"), "W");
        EXPECT_NEAR(tags.number("GPS:GPSLongitude"), 2.2945, 1e-9);
        EXPECT_EQ(tags.number("GPS:GPSAltitudeRef"), 1);
        EXPECT_DOUBLE_EQ(tags.number("GPS:GPSAltitude"), 123.45);
        EXPECT_EQ(tags.string("GPS:GPSTimeStamp"), "08:30:15");
        EXPECT_EQ(tags.string("GPS:GPSDateStamp"), "2024:05:01");
        EXPECT_DOUBLE_EQ(tags.number("GPS:GPSHPositioningError"), 2.5);
        EXPECT_EQ(exiftoolWarnings(path), QStringList());

        const Placement placed(file, path);
        const MediaOffsets &at = file.offsets;
        EXPECT_TRUE(placed.stamp("GPS:GPSLatitudeRef", at.gpsLatitudeRef, Stamp::text("N")));
        EXPECT_TRUE(placed.value("GPS:GPSLatitude", at.gpsLatitude, 24));
        EXPECT_TRUE(placed.stamp("GPS:GPSLongitudeRef", at.gpsLongitudeRef, Stamp::text("W")));
        EXPECT_TRUE(placed.value("GPS:GPSLongitude", at.gpsLongitude, 24));
        EXPECT_TRUE(placed.value("GPS:GPSAltitudeRef", at.gpsAltitudeRef, 1));
        EXPECT_TRUE(placed.value("GPS:GPSAltitude", at.gpsAltitude, 8));
        EXPECT_TRUE(placed.value("GPS:GPSTimeStamp", at.gpsTimeStamp, 24));
        EXPECT_TRUE(placed.stamp("GPS:GPSDateStamp", at.gpsDateStamp, *gps.dateStamp));
        EXPECT_TRUE(placed.value("GPS:GPSHPositioningError", at.gpsHPositioningError, 8));
        EXPECT_EQ(at.tiffHeader + placed.pointer("IFD0:GPSInfo", order), at.gpsIfd);
    }
}

TEST_F(BuiltFile, StampsKeepTheirExactBytes)
{
    TiffSpec recipe;
    recipe.order = ByteOrder::Motorola;
    recipe.dateTime = Stamp::blank();
    recipe.dateTimeOriginal = Stamp::zeros();
    recipe.dateTimeDigitized = Stamp::padded("2024:05:01 10:00", 20);
    recipe.offsetTime = Stamp::raw("+02:00");
    recipe.offsetTimeOriginal = Stamp::raw(QByteArray("+0\0\0", 4));
    GpsSpec gps;
    gps.dateStamp = Stamp::raw("2024:05:01");
    recipe.gps = gps;
    const MediaFile file = buildJpeg({.exif = recipe});
    const QString path = write(file);

    EXPECT_EQ(recipe.dateTime->bytes, QByteArray("    :  :     :  :  \0", 20));
    EXPECT_EQ(recipe.dateTimeDigitized->bytes, QByteArray("2024:05:01 10:00\0\0\0\0", 20));
    const ExiftoolTags tags = exiftoolTags(path, ExiftoolGroups::Family1);
    EXPECT_EQ(tags.string("IFD0:ModifyDate"), "    :  :     :  :  ");
    EXPECT_EQ(tags.string("ExifIFD:DateTimeOriginal"), "0000:00:00 00:00:00");
    EXPECT_EQ(tags.string("ExifIFD:CreateDate"), "2024:05:01 10:00");
    EXPECT_EQ(tags.string("ExifIFD:OffsetTime"), "+02:00");
    EXPECT_EQ(tags.string("GPS:GPSDateStamp"), "2024:05:01");

    const Placement placed(file, path);
    const MediaOffsets &at = file.offsets;
    EXPECT_TRUE(placed.stamp("IFD0:ModifyDate", at.dateTime, *recipe.dateTime));
    EXPECT_TRUE(
        placed.stamp("ExifIFD:DateTimeOriginal", at.dateTimeOriginal, *recipe.dateTimeOriginal));
    EXPECT_TRUE(placed.stamp("ExifIFD:CreateDate", at.dateTimeDigitized, *recipe.dateTimeDigitized));
    EXPECT_TRUE(placed.stamp("ExifIFD:OffsetTime", at.offsetTime, *recipe.offsetTime));
    // Four bytes fit in the entry itself.
    EXPECT_TRUE(placed.stamp("ExifIFD:OffsetTimeOriginal", at.offsetTimeOriginal,
                             *recipe.offsetTimeOriginal));
    EXPECT_TRUE(placed.stamp("GPS:GPSDateStamp", at.gpsDateStamp, *gps.dateStamp));
}

TEST_F(BuiltFile, ExifDatesInIfd0StandAfterOrAheadOfThePointers)
{
    for (const ExifDatePlace place : {ExifDatePlace::Ifd0, ExifDatePlace::Ifd0BeforePointers}) {
        SCOPED_TRACE(int(place));
        TiffSpec recipe = cameraTags(ByteOrder::Intel);
        recipe.exifDatePlace = place;
        recipe.gps = GpsSpec::at(1, 2);
        const MediaFile file = buildJpeg({.exif = recipe});
        const QString path = write(file);

        const ExiftoolTags tags = exiftoolTags(path, ExiftoolGroups::Family1);
        EXPECT_EQ(tags.string("IFD0:DateTimeOriginal"), "2024:05:01 10:00:00");
        EXPECT_EQ(tags.string("IFD0:OffsetTimeDigitized"), "+00:00");
        EXPECT_FALSE(tags.has("ExifIFD:DateTimeOriginal"));
        EXPECT_EQ(tags.number("ExifIFD:ExifImageWidth"), 16);
        EXPECT_EQ(exiftoolWarnings(path, ExiftoolCheck::Validate)
                      .contains("Entries in IFD0 are out of order"),
                  place == ExifDatePlace::Ifd0BeforePointers);

        const Placement placed(file, path);
        EXPECT_TRUE(placed.stamp("IFD0:DateTimeOriginal", file.offsets.dateTimeOriginal,
                                 *recipe.dateTimeOriginal));
        EXPECT_TRUE(placed.stamp("IFD0:CreateDate", file.offsets.dateTimeDigitized,
                                 *recipe.dateTimeDigitized));
        EXPECT_TRUE(placed.stamp("IFD0:OffsetTime", file.offsets.offsetTime, *recipe.offsetTime));
    }
}

TEST_F(BuiltFile, XmpPacketInTiffTag700)
{
    TiffSpec tags;
    tags.order = ByteOrder::Motorola;
    tags.xmp = xmpWithOriginalDate();
    const MediaFile file = buildTiffFile({.tags = tags});
    const QString path = write(file);

    EXPECT_EQ(exiftoolTags(path, ExiftoolGroups::Family1).string("XMP-exif:DateTimeOriginal"),
              "2024:05:01 10:00:00+02:00");
    EXPECT_EQ(file.bytes.mid(file.offsets.xmpPacket, tags.xmp->bytes.size()), tags.xmp->bytes);
    EXPECT_EQ(file.bytes.mid(file.offsets.xmpValue("exif:DateTimeOriginal"), 25),
              "2024-05-01T10:00:00+02:00");
}

TEST_F(BuiltFile, EmbeddedJpegBehindTag46CarriesItsOwnTiffHeader12BytesIn)
{
    TiffSpec inner;
    inner.dateTime = Stamp::text("2024:05:01 09:00:00");
    const MediaFile embedded = buildJpeg({.jfif = false, .exif = inner});
    TiffSpec outer;
    outer.embeddedJpeg = embedded.bytes;
    const MediaFile file = buildTiffFile({.tags = outer});
    const QString path = write(file);

    EXPECT_TRUE(
        Placement(file, path)
            .value("IFD0:Exif_0x002e", file.offsets.embeddedJpeg, quint32(embedded.bytes.size())));
    EXPECT_EQ(file.bytes.mid(file.offsets.embeddedJpeg + 12, 4), QByteArray("II*\0", 4));
    EXPECT_EQ(file.bytes.mid(file.offsets.embeddedJpeg + embedded.offsets.dateTime, 20),
              inner.dateTime->bytes);
    EXPECT_EQ(exiftoolWarnings(path), QStringList());
}

// --- JPEG ---------------------------------------------------------------------------------------

TEST_F(BuiltFile, JpegImageDecodesWithOrWithoutJfif)
{
    for (const bool jfif : {true, false}) {
        SCOPED_TRACE(jfif);
        const QString path = write(
            buildJpeg({.jfif = jfif, .exif = cameraTags(ByteOrder::Intel), .size = {24, 16}}));
        EXPECT_EQ(decodedSize(path), QSize(24, 16));
        const ExiftoolTags tags = exiftoolTags(path);
        EXPECT_EQ(tags.has("JFIF:JFIFVersion"), jfif);
        EXPECT_EQ(tags.number("File:EncodingProcess"), 0); // baseline
        EXPECT_EQ(exiftoolWarnings(path), QStringList());
    }
}

TEST_F(BuiltFile, ProgressiveJpegHasSof2)
{
    const QString path = write(buildJpeg({.progressive = true}));
    EXPECT_EQ(decodedSize(path), QSize(16, 16));
    EXPECT_EQ(exiftoolTags(path).number("File:EncodingProcess"), 2);
}

TEST_F(BuiltFile, JpegXmpSegmentBeforeOrAfterExif)
{
    for (const bool xmpFirst : {true, false}) {
        SCOPED_TRACE(xmpFirst);
        const MediaFile file = buildJpeg({.exif = cameraTags(ByteOrder::Motorola),
                                          .xmp = xmpWithOriginalDate(),
                                          .xmpBeforeExif = xmpFirst});
        const QString path = write(file);

        const ExiftoolTags tags = exiftoolTags(path, ExiftoolGroups::Family1);
        EXPECT_EQ(tags.string("XMP-exif:DateTimeOriginal"), "2024:05:01 10:00:00+02:00");
        EXPECT_EQ(tags.string("ExifIFD:DateTimeOriginal"), "2024:05:01 10:00:00");
        EXPECT_EQ(exiftoolWarnings(path), QStringList());

        const MediaOffsets &at = file.offsets;
        EXPECT_EQ(at.xmpSegment < at.exifSegment, xmpFirst);
        EXPECT_EQ(file.bytes.mid(at.xmpSegment, 2), "\xFF\xE1");
        EXPECT_EQ(file.bytes.mid(at.xmpSegment + 4, 29),
                  QByteArray("http://ns.adobe.com/xap/1.0/", 29));
        EXPECT_EQ(at.xmpPacket, at.xmpSegment + 33);
        EXPECT_TRUE(file.bytes.mid(at.xmpPacket).startsWith("<?xpacket begin="));
        EXPECT_EQ(file.bytes.mid(at.xmpValue("exif:DateTimeOriginal"), 25),
                  "2024-05-01T10:00:00+02:00");
        EXPECT_TRUE(Placement(file, path)
                        .stamp("ExifIFD:DateTimeOriginal", at.dateTimeOriginal,
                               Stamp::text("2024:05:01 10:00:00")));
    }
}

TEST_F(BuiltFile, JpegWithoutApp1GoesFromApp0ToTheImage)
{
    const MediaFile file = buildJpeg({});
    const QString path = write(file);

    EXPECT_EQ(file.bytes.mid(2, 2), "\xFF\xE0");
    EXPECT_EQ(file.bytes.mid(20, 2), "\xFF\xDB"); // quantisation tables follow the 18-byte APP0
    EXPECT_EQ(file.offsets.exifSegment, 0u);
    EXPECT_EQ(file.offsets.xmpSegment, 0u);
    const QJsonObject json = exiftoolTags(path, ExiftoolGroups::Family1).json;
    for (auto it = json.begin(); it != json.end(); ++it)
        EXPECT_FALSE(it.key().startsWith("IFD0:") || it.key().startsWith("XMP"))
            << it.key().toStdString();
    EXPECT_EQ(decodedSize(path), QSize(16, 16));
}

// --- XMP ----------------------------------------------------------------------------------------

TEST_F(BuiltFile, XmpSidecarHoldsEveryTagTheReadersSearchInBothForms)
{
    struct Case
    {
        const char *name;
        const char *value;
        const char *exiftoolKey;
        const char *exiftoolValue;
    };
    const Case cases[] = {
        {"exif:DateTimeOriginal", "2024-05-01T10:00:00+02:00", "XMP-exif:DateTimeOriginal",
         "2024:05:01 10:00:00+02:00"},
        {"exif:DateTimeDigitized", "2024-05-01T10:00:01+0200", "XMP-exif:DateTimeDigitized",
         "2024:05:01 10:00:01+0200"},
        {"xmp:CreateDate", "2024-05-01T10:00:02Z", "XMP-xmp:CreateDate", "2024:05:01 10:00:02Z"},
        {"xmp:ModifyDate", "2024-05-01T10:00:03", "XMP-xmp:ModifyDate", "2024:05:01 10:00:03"},
        {"xmp:MetadataDate", "2024-05-01T10:04Z", "XMP-xmp:MetadataDate", "2024:05:01 10:04Z"},
        {"tiff:DateTime", "2024-05-01T10:00:05.25+02:00", "XMP-tiff:DateTime",
         "2024:05:01 10:00:05.25+02:00"},
        {"photoshop:DateCreated", "2024-05-01T10:00:06", "XMP-photoshop:DateCreated",
         "2024:05:01 10:00:06"},
        {"exif:GPSTimeStamp", "2024-05-01T08:00:07Z", "XMP-exif:GPSDateTime",
         "2024:05:01 08:00:07Z"},
        {"exif:GPSLatitude", "48,51.504N", "XMP-exif:GPSLatitude", "48.8584"},
        {"exif:GPSLongitude", "2,17.67W", "XMP-exif:GPSLongitude", "-2.2945"},
        {"exif:GPSLatitudeRef", "N", "XMP-exif:GPSLatitudeRef", "N"},
        {"exif:GPSLongitudeRef", "W", "XMP-exif:GPSLongitudeRef", "W"},
        {"exif:GPSHPositioningError", "5/2", "XMP-exif:GPSHPositioningError", "2.5"},
        {"photoshop:SidecarForExtension", "CR2", "XMP-photoshop:SidecarForExtension", "CR2"},
        {"crs:RawFileName", "IMG_0001.CR2", "XMP-crs:RawFileName", "IMG_0001.CR2"},
    };
    XmpSpec recipe{.wrapped = false};
    for (const Case &c : cases)
        recipe.properties.push_back({c.name, c.value});

    for (const XmpForm form : {XmpForm::Attributes, XmpForm::Elements}) {
        SCOPED_TRACE(int(form));
        recipe.form = form;
        const MediaFile file = buildXmpSidecar(recipe);
        const QString path = write(file);
        EXPECT_EQ(path.right(4), ".xmp");
        const ExiftoolTags tags = exiftoolTags(path, ExiftoolGroups::Family1);
        EXPECT_EQ(exiftoolWarnings(path), QStringList());
        for (const Case &c : cases) {
            SCOPED_TRACE(c.name);
            EXPECT_EQ(tags.string(c.exiftoolKey), c.exiftoolValue);
            const quint32 offset = file.offsets.xmpValue(c.name);
            EXPECT_EQ(file.bytes.mid(offset, qstrlen(c.value)), c.value);
            EXPECT_EQ(file.bytes.at(offset - 1), form == XmpForm::Attributes ? '"' : '>');
        }
    }
}

TEST_F(BuiltFile, XmpPacketWrapperIsOptional)
{
    for (const bool wrapped : {true, false}) {
        SCOPED_TRACE(wrapped);
        const MediaFile file = buildXmpSidecar(
            {.properties = {{"xmp:CreateDate", "2024-05-01T10:00"}}, .wrapped = wrapped});
        EXPECT_TRUE(file.bytes.startsWith(wrapped ? "<?xpacket begin=" : "<x:xmpmeta "));
        EXPECT_EQ(file.bytes.endsWith("<?xpacket end=\"w\"?>"), wrapped);
        EXPECT_EQ(exiftoolTags(write(file), ExiftoolGroups::Family1).string("XMP-xmp:CreateDate"),
                  "2024:05:01 10:00");
    }
}

TEST(XmpBuilder, UnknownPrefixIsRefused)
{
    EXPECT_THROW(buildXmp({.properties = {{"nosuch:Date", "2024"}}}), std::invalid_argument);
}

// --- PNG ----------------------------------------------------------------------------------------

TEST_F(BuiltFile, PngCarriesExifXmpAndTextWithRightCrcs)
{
    const TiffSpec recipe = cameraTags(ByteOrder::Motorola);
    const MediaFile file = buildPng({.size = {10, 6},
                                     .exif = recipe,
                                     .xmp = xmpWithOriginalDate(),
                                     .texts = {{"Comment", "built for a test"}}});
    const QString path = write(file);

    EXPECT_EQ(decodedSize(path), QSize(10, 6));
    const ExiftoolTags tags = exiftoolTags(path, ExiftoolGroups::Family1);
    EXPECT_EQ(tags.string("IFD0:ModifyDate"), "2024:05:01 09:00:00");
    EXPECT_EQ(tags.string("ExifIFD:DateTimeOriginal"), "2024:05:01 10:00:00");
    EXPECT_EQ(tags.string("XMP-exif:DateTimeOriginal"), "2024:05:01 10:00:00+02:00");
    EXPECT_EQ(tags.string("PNG:Comment"), "built for a test");
    EXPECT_EQ(exiftoolWarnings(path), QStringList());
    for (const QString &warning : exiftoolWarnings(path, ExiftoolCheck::Validate))
        EXPECT_FALSE(warning.contains("CRC")) << warning.toStdString();

    const MediaOffsets &at = file.offsets;
    EXPECT_EQ(file.bytes.mid(at.exifSegment + 4, 4), "eXIf");
    EXPECT_EQ(at.tiffHeader, at.exifSegment + 8);
    EXPECT_EQ(file.bytes.mid(at.xmpSegment + 4, 4), "iTXt");
    EXPECT_EQ(file.bytes.mid(at.xmpSegment + 8, 18), QByteArray("XML:com.adobe.xmp", 18));
    EXPECT_TRUE(file.bytes.mid(at.xmpPacket).startsWith("<?xpacket begin="));
    EXPECT_LT(at.exifSegment, quint32(file.bytes.indexOf("IDAT")));
    const Placement placed(file, path, at.tiffHeader);
    EXPECT_TRUE(placed.value("IFD0:ModifyDate", at.dateTime, 20));
    EXPECT_TRUE(placed.value("ExifIFD:OffsetTimeOriginal", at.offsetTimeOriginal, 7));
}

TEST_F(BuiltFile, PngExifAfterImageData)
{
    const MediaFile file = buildPng(
        {.exif = cameraTags(ByteOrder::Intel), .exifPosition = ChunkPosition::AfterImageData});
    const QString path = write(file);

    EXPECT_GT(file.offsets.exifSegment, quint32(file.bytes.indexOf("IDAT")));
    EXPECT_EQ(exiftoolTags(path, ExiftoolGroups::Family1).string("ExifIFD:DateTimeOriginal"),
              "2024:05:01 10:00:00");
    EXPECT_EQ(
        exiftoolWarnings(path),
        QStringList{
            "[minor] Text/EXIF chunk(s) found after PNG IDAT (may be ignored by some readers)"});
}

TEST_F(BuiltFile, PngChunkWithAWrongCrc)
{
    for (const char *type : {"eXIf", "iTXt"}) {
        SCOPED_TRACE(type);
        const MediaFile file = buildPng({.exif = cameraTags(ByteOrder::Intel),
                                         .xmp = xmpWithOriginalDate(),
                                         .wrongCrcChunk = type});
        const quint32 chunk =
            QByteArrayView(type) == "eXIf" ? file.offsets.exifSegment : file.offsets.xmpSegment;
        const quint32 length = u32At(file.bytes, chunk, ByteOrder::Motorola);
        EXPECT_NE(u32At(file.bytes, chunk + 8 + length, ByteOrder::Motorola),
                  pngChunkCrc(QByteArrayView(file.bytes).sliced(chunk + 4, 4 + length)));
        EXPECT_TRUE(exiftoolWarnings(write(file), ExiftoolCheck::Validate)
                        .contains(QStringLiteral("Bad CRC for %1 chunk").arg(type)));
    }
}

// --- WebP ---------------------------------------------------------------------------------------

TEST_F(BuiltFile, WebpCarriesExifAndXmpChunksAroundARealImage)
{
    for (const bool lossless : {false, true}) {
        SCOPED_TRACE(lossless);
        const MediaFile file = buildWebp({.size = {12, 9},
                                          .lossless = lossless,
                                          .exif = cameraTags(ByteOrder::Intel),
                                          .xmp = xmpWithOriginalDate()});
        const QString path = write(file);

        EXPECT_EQ(decodedSize(path), QSize(12, 9));
        const ExiftoolTags tags = exiftoolTags(path, ExiftoolGroups::Family1);
        EXPECT_EQ(tags.string("ExifIFD:DateTimeOriginal"), "2024:05:01 10:00:00");
        EXPECT_EQ(tags.string("XMP-exif:DateTimeOriginal"), "2024:05:01 10:00:00+02:00");
        EXPECT_EQ(exiftoolWarnings(path), QStringList());

        const MediaOffsets &at = file.offsets;
        EXPECT_EQ(u32At(file.bytes, 4, ByteOrder::Intel), quint32(file.bytes.size() - 8));
        EXPECT_EQ(file.bytes.mid(30, 4), lossless ? "VP8L" : "VP8 "); // after the 18-byte VP8X
        EXPECT_EQ(file.bytes.mid(at.exifSegment, 4), "EXIF");
        EXPECT_EQ(at.tiffHeader, at.exifSegment + 8);
        EXPECT_EQ(file.bytes.mid(at.xmpSegment, 4), "XMP ");
        EXPECT_EQ(at.xmpPacket, at.xmpSegment + 8);
        EXPECT_EQ(file.bytes.mid(at.xmpValue("exif:DateTimeOriginal"), 25),
                  "2024-05-01T10:00:00+02:00");
        EXPECT_TRUE(Placement(file, path)
                        .stamp("ExifIFD:DateTimeOriginal", at.dateTimeOriginal,
                               Stamp::text("2024:05:01 10:00:00")));
    }
}

TEST_F(BuiltFile, WebpExifChunkWithExifHeader)
{
    const MediaFile file =
        buildWebp({.exif = cameraTags(ByteOrder::Motorola), .exifWithHeader = true});
    const QString path = write(file);

    EXPECT_EQ(file.bytes.mid(file.offsets.exifSegment + 8, 6), QByteArray("Exif\0\0", 6));
    EXPECT_EQ(file.offsets.tiffHeader, file.offsets.exifSegment + 14);
    EXPECT_EQ(exiftoolTags(path, ExiftoolGroups::Family1).string("ExifIFD:DateTimeOriginal"),
              "2024:05:01 10:00:00");
    EXPECT_EQ(exiftoolWarnings(path), QStringList{"[minor] Improper EXIF header"});
}

TEST_F(BuiltFile, WebpStrayPadByteAheadOfTheMetadata)
{
    const MediaFile file = buildWebp({.exif = cameraTags(ByteOrder::Intel), .strayPadByte = true});
    const QString path = write(file);

    // Walking the chunks by their sizes lands on the zero byte, one short of "EXIF".
    quint32 chunk = 12;
    for (int i = 0; i < 2; ++i) { // VP8X, then the image
        const quint32 size = u32At(file.bytes, chunk + 4, ByteOrder::Intel);
        chunk += 8 + size + size % 2;
    }
    EXPECT_EQ(file.bytes.mid(chunk, 5), QByteArray("\0EXIF", 5));
    EXPECT_EQ(file.offsets.exifSegment, chunk + 1);
    EXPECT_EQ(u32At(file.bytes, 4, ByteOrder::Intel), quint32(file.bytes.size() - 8));
    // A plain chunk walk loses its way there.
    EXPECT_FALSE(exiftoolTags(path, ExiftoolGroups::Family1).has("ExifIFD:DateTimeOriginal"));
}

// --- TIFF files and RAW-like previews -----------------------------------------------------------

TEST_F(BuiltFile, TiffFileHasARealStripImage)
{
    for (const ByteOrder order : {ByteOrder::Intel, ByteOrder::Motorola}) {
        SCOPED_TRACE(orderName(order));
        const MediaFile file = buildTiffFile({.tags = cameraTags(order), .imageSize = {12, 10}});
        const QString path = write(file);

        EXPECT_EQ(decodedSize(path), QSize(12, 10));
        EXPECT_EQ(file.offsets.tiffHeader, 0u);
        const ExiftoolTags tags = exiftoolTags(path, ExiftoolGroups::Family1);
        EXPECT_EQ(tags.string("IFD0:ModifyDate"), "2024:05:01 09:00:00");
        EXPECT_EQ(tags.string("ExifIFD:DateTimeOriginal"), "2024:05:01 10:00:00");
        EXPECT_EQ(exiftoolWarnings(path), QStringList());
        EXPECT_TRUE(Placement(file, path)
                        .stamp("IFD0:ModifyDate", file.offsets.dateTime,
                               Stamp::text("2024:05:01 09:00:00")));
    }
}

TEST_F(BuiltFile, RawLikeTiffKeepsPreviewsOfExactSizes)
{
    const std::vector<QByteArray> previews{encodeJpegImage({640, 480}),
                                           encodeJpegImage({1024, 768})};
    const MediaFile file =
        buildTiffFile({.tags = cameraTags(ByteOrder::Intel), .previews = previews});
    const QString path = write(file);

    ASSERT_EQ(file.offsets.previews.size(), 2u);
    const ExiftoolTags tags = exiftoolTags(path, ExiftoolGroups::Family1);
    EXPECT_EQ(tags.number("IFD1:ThumbnailOffset"), file.offsets.previews[0].begin);
    EXPECT_EQ(tags.number("IFD1:ThumbnailLength"), previews[0].size());
    EXPECT_EQ(tags.number("IFD2:JpgFromRawStart"), file.offsets.previews[1].begin);
    EXPECT_EQ(tags.number("IFD2:JpgFromRawLength"), previews[1].size());
    EXPECT_EQ(exiftoolWarnings(path), QStringList());

    const QSize sizes[] = {{640, 480}, {1024, 768}};
    for (std::size_t i = 0; i < 2; ++i) {
        const ByteRange range = file.offsets.previews[i];
        const QByteArray jpeg = file.bytes.mid(range.begin, range.end - range.begin);
        EXPECT_TRUE(jpeg.startsWith("\xFF\xD8\xFF"));
        EXPECT_TRUE(jpeg.endsWith("\xFF\xD9"));
        EXPECT_EQ(QImage::fromData(jpeg).size(), sizes[i]);
    }
}

TEST(Exiftool, MissingFileIsAnError)
{
    EXPECT_THROW(exiftoolTags(QStringLiteral("/nonexistent/none.jpg")), std::runtime_error);
}

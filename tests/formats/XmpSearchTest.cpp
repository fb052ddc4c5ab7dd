// The XMP text search on hand-made packets: both value forms, first occurrences, the packet's
// end, and offsets that point at the first stamp byte.

#include "BothSources.h"
#include "formats/MySingleFolderDataReader.h"
#include "support/MediaFileBuilder.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace orv;
using namespace orv::test;

namespace {

class XmpSearch : public OnBothSources
{
protected:
    XmpDateInfos datesOfSidecar(const QByteArray &bytes)
    {
        return MySingleFolderDataReader().savereadXMPDates(source(bytes), UnknownFormat, 0);
    }
};

TEST_P(XmpSearch, AttributesAndElementsBothGiveTheStampAndItsOffset)
{
    const QByteArray packet =
        "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:Description "
        "xmp:CreateDate='2024-05-01T10:00:00+02:00' tiff:DateTime=\"2024-05-01T10:00Z\">"
        "<exif:DateTimeOriginal>2024-05-01T09:59:58.25+0200</exif:DateTimeOriginal>"
        "<photoshop:DateCreated>2024-05-01T09:59:57</photoshop:DateCreated>"
        "</rdf:Description></x:xmpmeta>";
    const XmpDateInfos infos = datesOfSidecar(packet);
    const auto expect = [&](const char *key, const QByteArray &stamp, int type, int subtype) {
        ASSERT_TRUE(infos.count(key)) << key;
        const XmpStampRecord &record = infos.at(key);
        EXPECT_EQ(record.data, stamp) << key;
        EXPECT_EQ(record.offset, quint32(packet.indexOf(stamp))) << key;
        EXPECT_EQ(record.type, type) << key;
        EXPECT_EQ(record.subtype, subtype) << key;
    };
    expect("XmpCreateDate", "2024-05-01T10:00:00+02:00", 2, 0);
    expect("TiffDateTime", "2024-05-01T10:00Z", 1, 2);
    expect("ExifDateTimeOriginal", "2024-05-01T09:59:58.25+0200", 2, 1);
    expect("PhotoshopDateCreated", "2024-05-01T09:59:57", 3, 0);
    EXPECT_EQ(infos.size(), 4u);
}

TEST_P(XmpSearch, TheFirstOccurrenceDecidesAndBrokenValuesAreLeftOut)
{
    const QByteArray packet =
        "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:Description "
        "xmp:ModifyDate=\"2024-05-01\" xmp:MetadataDate=\"2024-05-01T10:00:00 and on and on and on"
        "\" exif:DateTimeDigitized=\"2024-05-01T10:00:00\" "
        "exif:DateTimeDigitized=\"2025-01-01T00:00:00\" xmp:ModifyDate=\"2024-05-02T00:00:00\"/>"
        "</x:xmpmeta>";
    const XmpDateInfos infos = datesOfSidecar(packet);
    EXPECT_FALSE(infos.count("XmpModifyDate"));   // a date without a time
    EXPECT_FALSE(infos.count("XmpMetadataDate")); // not closed within the value window
    ASSERT_TRUE(infos.count("ExifDateTimeDigitized"));
    EXPECT_EQ(infos.at("ExifDateTimeDigitized").data, "2024-05-01T10:00:00");
}

TEST_P(XmpSearch, TheSearchEndsWithThePacket)
{
    const QByteArray packet = "<?xpacket begin=\"\"?><x:xmpmeta xmlns:x=\"adobe:ns:meta/\">"
                              "</x:xmpmeta><?xpacket end=\"w\"?>"
                              "<x:xmpmeta xmp:CreateDate=\"2024-05-01T10:00:00\"/>";
    EXPECT_TRUE(datesOfSidecar(packet).empty());
}

TEST_P(XmpSearch, AStampAcrossABlockBoundaryIsFound)
{
    // The tag name straddles the end of the first 131072-byte block.
    const QByteArray filler(ByteSource::blockSize - 30, ' ');
    const QByteArray bytes =
        "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\">" + filler +
        "<rdf:Description xmp:CreateDate=\"2024-05-01T10:00:00Z\"/></x:xmpmeta>";
    const XmpDateInfos infos = datesOfSidecar(bytes);
    ASSERT_TRUE(infos.count("XmpCreateDate"));
    EXPECT_EQ(infos.at("XmpCreateDate").offset, quint32(bytes.indexOf("2024-05-01T10")));
}

TEST_P(XmpSearch, TiffFilesNameTheirPacketInTag700)
{
    const QByteArray packet = "<?xpacket begin=\"\"?><x:xmpmeta xmlns:x=\"adobe:ns:meta/\" "
                              "xmp:CreateDate=\"2024-05-01T10:00:00\"/><?xpacket end=\"w\"?>";
    const MediaFile tiff = buildExifBlock({.xmp = XmpPacket::raw(packet)});
    const quint32 packetAt = tiff.offsets.xmpPacket;
    const ByteSource &file = source(tiff.bytes);
    EXPECT_EQ(XmpLocator(file).xmpStartOffsetFromTIFHeader(0), packetAt);
    const XmpDateInfos infos = MySingleFolderDataReader().savereadXMPDates(file, TiffFormat, 0);
    ASSERT_TRUE(infos.count("XmpCreateDate"));
    EXPECT_EQ(infos.at("XmpCreateDate").offset, packetAt + quint32(packet.indexOf("2024")));
}

TEST_P(XmpSearch, SidecarLocationNeedsAValueAfterTheName)
{
    const QByteArray packet = "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:Description "
                              "exif:GPSLatitudeRef=\"S\" exif:GPSLatitude=\"33.8568\" "
                              "exif:GPSLongitude=\"151,12.5E\" exif:GPSHPositioningError=\"5/1\" "
                              "photoshop:SidecarForExtension=\"NEF\"/></x:xmpmeta>";
    const XmpSidecarMetadata metadata =
        MySingleFolderDataReader().metadataFromXMP(source(packet), 0);
    ASSERT_TRUE(metadata.gpsLatRef && metadata.gpsLat && metadata.gpsLon && metadata.gpsPosError);
    EXPECT_EQ(metadata.gpsLatRef->text, "S");
    EXPECT_EQ(metadata.gpsLat->text, "33.8568");
    EXPECT_EQ(metadata.gpsLat->offset, quint32(packet.indexOf("33.8568")));
    EXPECT_EQ(metadata.gpsLatType, 2);
    EXPECT_EQ(metadata.gpsLonType, 1);
    EXPECT_EQ(metadata.gpsPosError->text, "5/1");
    EXPECT_EQ(metadata.extensions, QSet<QString>{"nef"});

    // A decimal coordinate without its ref says nothing of the hemisphere.
    const QByteArray noRef = "<x:xmpmeta exif:GPSLongitude=\"151.2\"/></x:xmpmeta>";
    EXPECT_FALSE(MySingleFolderDataReader().metadataFromXMP(source(noRef), 0).gpsLon);
}

INSTANTIATE_TEST_SUITE_P(BothSources, XmpSearch, bothSourceKinds(), sourceTestName);

} // namespace

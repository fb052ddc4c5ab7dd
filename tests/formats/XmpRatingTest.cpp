// A rating written into an XMP packet in place, on hand-made packets that exiftool then reads:
// both value forms, same and other widths, the padding the new description takes, and packets
// without room.

#include "formats/ByteSource.h"
#include "formats/MySingleFolderDataReader.h"
#include "support/Exiftool.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace orv;
using namespace orv::test;

namespace {

QByteArray packetWith(const QByteArray &properties, int padding)
{
    return "<?xpacket begin='\xef\xbb\xbf' id='W5M0MpCehiHzreSzNTczkc9d'?>\n"
           "<x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'>"
           "<rdf:Description rdf:about='' xmlns:xmp='http://ns.adobe.com/xap/1.0/'"
           " xmp:CreateDate='2024-05-01T10:00:00+02:00'" +
           properties + "</rdf:Description></rdf:RDF></x:xmpmeta>\n" + QByteArray(padding, ' ') +
           "\n<?xpacket end='w'?>";
}

// The packet after the edits; the old bytes of each must be the packet's.
QByteArray applied(QByteArray packet, const std::vector<ByteEdit> &edits)
{
    for (const ByteEdit &edit : edits) {
        EXPECT_EQ(packet.mid(edit.offset, edit.bytes.size()), edit.previous);
        packet.replace(edit.offset, edit.bytes.size(), edit.bytes);
    }
    return packet;
}

std::optional<std::vector<ByteEdit>> ratingEdits(const QByteArray &packet, int rating)
{
    return MySingleFolderDataReader().xmpRatingEdits(MemoryByteSource(packet), UnknownFormat, 0, rating);
}

TEST(XmpRating, EveryFormOfPacketReadsTheNewRatingInExiftoolAndKeepsItsLengthAndStamps)
{
    QTemporaryDir dir;
    struct Case
    {
        const char *name;
        QByteArray properties;
        int rating;
        std::size_t edits; // one overwrite, or the new description (and a blanked old value)
    };
    const Case cases[] = {
        {"same width attribute", " xmp:Rating='3'>", 5, 1},
        {"wider attribute", " xmp:Rating=\"5\">", -1, 2},
        {"wider element", "><xmp:Rating>0</xmp:Rating>", -1, 2},
        {"narrower element", "><xmp:Rating>-1</xmp:Rating>", 0, 2},
        {"no rating yet", ">", 5, 1},
    };
    for (const Case &c : cases) {
        const QByteArray packet = packetWith(c.properties, 300);
        const std::optional<std::vector<ByteEdit>> edits = ratingEdits(packet, c.rating);
        ASSERT_TRUE(edits) << c.name;
        EXPECT_EQ(edits->size(), c.edits) << c.name;
        const QByteArray written = applied(packet, *edits);
        EXPECT_EQ(written.size(), packet.size()) << c.name;

        const MemoryByteSource before(packet), after(written);
        EXPECT_EQ(XmpLocator(after).readMetadata(0).rating, c.rating) << c.name;
        const XmpDateInfos oldStamps = XmpLocator(before).readDates(0);
        const XmpDateInfos newStamps = XmpLocator(after).readDates(0);
        ASSERT_EQ(newStamps.count("XmpCreateDate"), 1u) << c.name;
        EXPECT_EQ(newStamps.at("XmpCreateDate"), oldStamps.at("XmpCreateDate")) << c.name;

        const QString path = dir.filePath(QString::fromLatin1(c.name) + QLatin1String(".xmp"));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(written);
        file.close();
        EXPECT_EQ(exiftoolTags(path, ExiftoolGroups::Family1).number("XMP-xmp:Rating"), c.rating) << c.name;
        EXPECT_EQ(exiftoolWarnings(path), QStringList{}) << c.name;
    }
}

TEST(XmpRating, APacketWithoutItsEndOrWithoutRoomIsLeftToExiftool)
{
    const QByteArray tight = packetWith(">", 20);
    EXPECT_FALSE(ratingEdits(tight, 5));
    // The same width needs no room.
    EXPECT_TRUE(ratingEdits(packetWith(" xmp:Rating='1'>", 0), 5));
    QByteArray open = packetWith(">", 300);
    open.truncate(open.indexOf("<?xpacket end"));
    EXPECT_FALSE(ratingEdits(open, 5));
}

} // namespace

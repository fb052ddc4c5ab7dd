// HEIF items, CR3 boxes and AVI chunks crafted byte by byte: where the metadata begins, and
// what broken item tables and chunks give.

#include "formats/AviLocator.h"
#include "formats/Cr3Locator.h"
#include "formats/HeifLocator.h"
#include "support/BoxBuilder.h"
#include "support/QtPrinters.h"
#include "time/DateStampCodec.h"

#include <gtest/gtest.h>

using namespace orv;
using namespace orv::test;

namespace {

const QByteArray tiff = QByteArray("MM\0*\0\0\0\x08", 8) + QByteArray(6, '\0');
const QByteArray exifPayload = be32(6) + QByteArray("Exif\0\0", 6) + tiff;
const QByteArray xmpPacket = "<?xpacket begin=\"\"?><x:xmpmeta xmlns:x=\"adobe:ns:meta/\"/>";

struct ItemShape
{
    quint8 ilocVersion = 0;
    // Added to where the payloads really stand; pushes the items past the file when large.
    quint32 displacement = 0;
    quint16 constructionMethod = 0;
};

QByteArray itemInfos()
{
    const QByteArray exif = fullBox("infe", 2, be16(1) + be16(0) + "Exif" + QByteArray(1, '\0'));
    const QByteArray xmp = fullBox("infe", 2, be16(2) + be16(0) + "mime" + QByteArray("XMP\0", 4)
                                                  + QByteArray("application/rdf+xml\0", 20));
    const QByteArray picture = fullBox("infe", 2, be16(3) + be16(0) + "hvc1" + QByteArray(1, '\0'));
    return fullBox("iinf", 0, be16(3) + picture + exif + xmp);
}

// Offsets are 4 bytes, lengths 4; version 1 adds a 4-byte base offset and construction methods.
QByteArray itemLocations(const ItemShape &shape, quint32 exifAt, quint32 xmpAt)
{
    const bool v1 = shape.ilocVersion == 1;
    QByteArray body = QByteArray(1, char(0x44)) + QByteArray(1, char(v1 ? 0x40 : 0)) + be16(2);
    const auto item = [&](quint16 id, quint32 at, quint32 length) {
        QByteArray entry = be16(id);
        if (v1)
            entry += be16(shape.constructionMethod);
        entry += be16(0);
        // Version 1 splits the place into a base offset and the extent's offset.
        entry += v1 ? be32(at - 8) + be16(1) + be32(8) : be16(1) + be32(at);
        return entry + be32(length);
    };
    body += item(1, exifAt, quint32(exifPayload.size())) + item(2, xmpAt, quint32(xmpPacket.size()));
    return fullBox("iloc", shape.ilocVersion, body);
}

struct Heif
{
    QByteArray bytes;
    qint64 exifAt, xmpAt;
};

Heif heif(const ItemShape &shape)
{
    const QByteArray ftyp = box("ftyp", QByteArray("heic") + be32(0) + "mif1heic");
    const auto build = [&](quint32 exifAt, quint32 xmpAt) {
        const QByteArray meta = fullBox("meta", 0, box("hdlr", QByteArray(24, '\0')) + itemInfos()
                                                       + itemLocations(shape, exifAt + shape.displacement,
                                                                       xmpAt + shape.displacement));
        return ftyp + meta + box("mdat", exifPayload + xmpPacket);
    };
    const qsizetype mdatPayload = build(0, 0).indexOf("mdat") + 4;
    const quint32 exifAt = quint32(mdatPayload), xmpAt = quint32(mdatPayload + exifPayload.size());
    return {build(exifAt, xmpAt), exifAt, xmpAt};
}

QByteArray aviHeader(quint32 width, quint32 height)
{
    QByteArray avih = le32(33367) + QByteArray(12, '\0') + le32(90) + QByteArray(12, '\0') + le32(width) + le32(height);
    return riffChunk("avih", avih + QByteArray(16, '\0'));
}

QByteArray avi(const QByteArray &headerList, const QByteArray &afterHeader, quint32 claimedExtra = 0)
{
    const QByteArray body = QByteArray("AVI ") + riffList("hdrl", headerList) + afterHeader
                            + riffList("movi", riffChunk("00dc", QByteArray(40, 'f')));
    return QByteArray("RIFF") + le32(quint32(body.size()) + claimedExtra) + body;
}

const QByteArray stamp("Mon Mar 10 15:04:43 2003\n\0", 26);
const QByteArray digitsStamp("2003/03/10 15:04:43\0", 20);

} // namespace

TEST(HeifLocator, ItemTablesLeadToTheTiffHeaderOfTheExifItemAndToTheXmpPacket)
{
    for (const quint8 version : {quint8(0), quint8(1)}) {
        const Heif file = heif({.ilocVersion = version});
        const std::optional<BmffItemOffsets> offsets = preparedBMFFOffsets(MemoryByteSource(file.bytes));
        ASSERT_TRUE(offsets) << int(version);
        // The payload names the distance to its TIFF header: 4 + 6 bytes of "Exif\0\0".
        EXPECT_EQ(offsets->exif, quint32(file.exifAt + 10)) << int(version);
        EXPECT_EQ(file.bytes.mid(*offsets->exif, 4), QByteArray("MM\0*", 4));
        EXPECT_EQ(offsets->xmp, quint32(file.xmpAt)) << int(version);
        EXPECT_TRUE(file.bytes.mid(*offsets->xmp).startsWith("<?xpacket"));
    }
}

TEST(HeifLocator, ItemsOutsideTheFileOrInsideTheMetaBoxAreNoPlaceToWrite)
{
    const Heif past = heif({.displacement = 1 << 20});
    const std::optional<BmffItemOffsets> beyond = preparedBMFFOffsets(MemoryByteSource(past.bytes));
    ASSERT_TRUE(beyond);
    EXPECT_FALSE(beyond->exif);
    EXPECT_FALSE(beyond->xmp);

    const Heif idat = heif({.ilocVersion = 1, .constructionMethod = 1});
    const std::optional<BmffItemOffsets> inMeta = preparedBMFFOffsets(MemoryByteSource(idat.bytes));
    ASSERT_TRUE(inMeta);
    EXPECT_FALSE(inMeta->exif);

    // The Exif payload pointing its TIFF header past the end.
    QByteArray farHeader = heif({}).bytes;
    farHeader.replace(heif({}).exifAt, 4, be32(0x7ffffff0));
    EXPECT_FALSE(preparedBMFFOffsets(MemoryByteSource(farHeader))->exif);

    // Every cut: nothing outside the bytes that remain.
    const Heif whole = heif({});
    for (qsizetype length = 0; length < whole.bytes.size(); ++length) {
        const QByteArray cut = whole.bytes.left(length);
        if (const auto offsets = preparedBMFFOffsets(MemoryByteSource(cut))) {
            EXPECT_TRUE(!offsets->exif || *offsets->exif + 8 <= cut.size()) << length;
            EXPECT_TRUE(!offsets->xmp || *offsets->xmp < cut.size()) << length;
        }
    }
    EXPECT_FALSE(preparedBMFFOffsets(MemoryByteSource(whole.bytes.mid(4))));
}

TEST(Cr3Locator, CanonBoxesGiveTheTiffHeadersOfIfd0AndTheExifIfdAndTheXmpPacket)
{
    const QByteArray canonUuid = QByteArray::fromHex("85c0b687820f11e08111f4ce462b6a48");
    const QByteArray xmpUuid = QByteArray::fromHex("be7acfcb97a942e89c71999491e3afac");
    const QByteArray intelTiff = QByteArray("II*\0\x08\0\0\0", 8) + QByteArray(6, '\0');
    const QByteArray canon = box("uuid", canonUuid + box("CNCV", "CanonCR3_001/00.09.00/00.00.00")
                                             + box("CMT1", intelTiff) + box("CMT2", tiff) + box("CMT4", intelTiff));
    const QByteArray bytes = box("ftyp", QByteArray("crx ") + be32(1)) + box("moov", canon + fullBox("mvhd", 0, QByteArray(96, '\0')))
                             + box("uuid", xmpUuid + xmpPacket) + box("mdat", "pixels");
    const std::optional<Cr3Offsets> offsets = preparedCF3Offsets(MemoryByteSource(bytes));
    ASSERT_TRUE(offsets);
    EXPECT_EQ(offsets->CMT1Offset, quint32(bytes.indexOf("CMT1") + 4));
    EXPECT_EQ(offsets->CMT2Offset, quint32(bytes.indexOf("CMT2") + 4));
    EXPECT_EQ(offsets->CMT4Offset, quint32(bytes.indexOf("CMT4") + 4));
    EXPECT_EQ(offsets->xmpOffset, quint32(bytes.indexOf("<?xpacket")));
    EXPECT_TRUE(offsets->isHeaderIntel) << "CMT1's order";

    // A CMT box without a TIFF header inside names nothing.
    QByteArray broken = bytes;
    broken.replace(bytes.indexOf("CMT2") + 4, 2, "XX");
    EXPECT_FALSE(preparedCF3Offsets(MemoryByteSource(broken))->CMT2Offset);
    EXPECT_FALSE(preparedCF3Offsets(MemoryByteSource(bytes.mid(8))));
}

TEST(AviLocator, TheHeaderListsIditStampAndTheInfoSoftwareAreRead)
{
    struct Case
    {
        const char *name;
        QByteArray bytes;
        bool hasStamp;
        QByteArray software;
    };
    const QByteArray info = riffList("INFO", riffChunk("ISFT", QByteArray("CanonMVI01\0", 11)));
    const Case cases[] = {
        {"INFO beside the header list", avi(aviHeader(320, 240) + riffChunk("IDIT", stamp), info), true, "CanonMVI01"},
        {"INFO inside the header list", avi(aviHeader(320, 240) + riffChunk("IDIT", stamp) + info, {}), true,
         "CanonMVI01"},
        {"RIFF size beyond the file", avi(aviHeader(320, 240) + riffChunk("IDIT", stamp), info, 1 << 20), true,
         "CanonMVI01"},
        {"IDIT of the digits alone", avi(aviHeader(320, 240) + riffChunk("IDIT", digitsStamp), info), true,
         "CanonMVI01"},
        {"IDIT too short for a stamp", avi(aviHeader(320, 240) + riffChunk("IDIT", "2003/03/10"), info), false, ""},
        {"IDIT too long for a stamp", avi(aviHeader(320, 240) + riffChunk("IDIT", QByteArray(65, ' ')), info), false,
         ""},
        {"no IDIT", avi(aviHeader(320, 240), info), false, ""},
    };
    for (const Case &c : cases) {
        const std::optional<RiffMovieData> data = riffHeaderDataForMovie(MemoryByteSource(c.bytes));
        ASSERT_EQ(data.has_value(), c.hasStamp) << c.name;
        if (!data)
            continue;
        const QByteArray &expected = data->creaDateData.size() == digitsStamp.size() ? digitsStamp : stamp;
        EXPECT_EQ(data->creaDateData, expected) << c.name;
        EXPECT_EQ(c.bytes.mid(qsizetype(data->creaDateDataOffset), expected.size()), expected) << c.name;
        EXPECT_EQ(data->infoString, c.software) << c.name;
        EXPECT_EQ(data->pixelSize, QSize(320, 240)) << c.name;
        EXPECT_NEAR(data->duration.value_or(0), 3.003, 0.001) << c.name;
        EXPECT_EQ(DateStampCodec::dateFromRIFFTimeStamp(QString::fromLatin1(data->creaDateData.left(24)),
                                                        TimeZone::utc()),
                  Instant::fromUtc(2003, 3, 10, 15, 4, 43))
            << c.name;
    }
    const QByteArray whole = cases[0].bytes;
    for (qsizetype length = 0; length < whole.size(); ++length) {
        if (const auto data = riffHeaderDataForMovie(MemoryByteSource(whole.left(length)))) {
            EXPECT_LE(qint64(data->creaDateDataOffset) + 26, length);
        }
    }
}

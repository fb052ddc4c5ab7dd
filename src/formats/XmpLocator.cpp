#include "formats/XmpLocator.h"

#include "formats/ByteOrder.h"
#include "formats/JpegLocator.h"
#include "formats/TiffIfd.h"
#include "time/DateStampCodec.h"

#include <QFileInfo>

#include <array>

namespace orv {

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

struct SearchedTag
{
    QByteArrayView text;
    const char *key;
};

// The value of a tag begins right after its name, so the name's length is the value's distance.
const std::array<SearchedTag, 8> dateTags{{
    {"exif:DateTimeOriginal", "ExifDateTimeOriginal"},
    {"exif:DateTimeDigitized", "ExifDateTimeDigitized"},
    {"p:CreateDate", "XmpCreateDate"},
    {"p:ModifyDate", "XmpModifyDate"},
    {"p:MetadataDate", "XmpMetadataDate"},
    {"tiff:DateTime", "TiffDateTime"},
    {"photoshop:DateCreated", "PhotoshopDateCreated"},
    {"exif:GPSTimeStamp", "GPSTimeStamp"},
}};
constexpr int dateSearchOverlap = 22;

const std::array<QByteArrayView, 2> packetEnds{"</x:xmpmeta", "<?xpacket end="};

// The value that follows a tag name: an element's text up to the next "<", or an attribute's
// text up to its closing quote. Only complete values within `window` are taken.
std::optional<XmpTextValue> valueAfterName(const ByteSource &file, qint64 valueAt, qint64 window)
{
    const QByteArray bytes = file.read(valueAt, window);
    qsizetype from = 0;
    char closing = 0;
    if (bytes.startsWith('>')) {
        from = 1;
        closing = '<';
    } else if (bytes.size() >= 2 && bytes[0] == '=' && (bytes[1] == '"' || bytes[1] == '\'')) {
        from = 2;
        closing = bytes[1];
    } else {
        return std::nullopt;
    }
    const qsizetype end = bytes.indexOf(closing, from);
    if (end < 0 || valueAt + from > qint64(0xFFFFFFFF))
        return std::nullopt;
    return XmpTextValue{bytes.mid(from, end - from), quint32(valueAt + from)};
}

QString lowerSuffix(const QByteArray &fileName)
{
    return QFileInfo(QString::fromUtf8(fileName)).suffix().toLower();
}

} // namespace

bool isXmpPacketStart(const ByteSource &file, qint64 offset)
{
    const QByteArray head = file.read(offset, 16);
    return head.startsWith("<?xpacket begin=") || head.startsWith("<x:xmpmeta ");
}

bool verifiedXmpLocationRefDataType(const QByteArray &text)
{
    return text.size() == 1 && QByteArrayView("NSEW").contains(text[0]);
}

int verifiedXmpLocationDataType(const QByteArray &text)
{
    if (text.isEmpty())
        return 0;
    qsizetype commas = 0, dots = 0;
    const bool endsInDirection = QByteArrayView("NSEW").contains(text.back());
    const qsizetype numberEnd = endsInDirection ? text.size() - 1 : text.size();
    for (qsizetype i = 0; i < numberEnd; ++i) {
        const char c = text[i];
        if (c == ',')
            ++commas;
        else if (c == '.')
            ++dots;
        else if (!isDigit(c))
            return 0;
    }
    if (endsInDirection && (commas == 1 || commas == 2) && dots <= 1)
        return 1;
    if (!endsInDirection && commas == 0 && dots == 1)
        return 2;
    return 0;
}

bool isVerifiedXmpPosErrorDataType(const QByteArray &text)
{
    if (text.isEmpty() || text.count('/') > 1)
        return false;
    for (const char c : text) {
        if (!isDigit(c) && c != '/')
            return false;
    }
    return true;
}

std::optional<quint32> XmpLocator::xmpStartOffsetFromJPGHeader()
{
    return JpegLocator(m_file).savereadJPGHeader().xmpOffset;
}

std::optional<quint32> XmpLocator::xmpStartOffsetFromTIFHeader(qint64 headerOffset)
{
    // The order mark alone decides: RAW formats with their own magic number keep the TIFF order.
    const QByteArray order = m_file.read(headerOffset, 2);
    if (order != "II" && order != "MM")
        return std::nullopt;
    const bool intel = order == "II";
    const TiffIfd ifd0 = TiffIfd::first(m_file, headerOffset, intel);
    const IfdEntry *xmp = ifd0.find(700);
    if (!xmp)
        return std::nullopt;
    const qint64 start = headerOffset + xmp->value;
    if (start > qint64(0xFFFFFFFF) || !isXmpPacketStart(m_file, start))
        return std::nullopt;
    return quint32(start);
}

std::optional<quint32> XmpLocator::xmpStartOffsetFromWebPHeader(qint64 chunkOffset)
{
    const qint64 start = chunkOffset + 8;
    if (start > qint64(0xFFFFFFFF) || !isXmpPacketStart(m_file, start))
        return std::nullopt;
    return quint32(start);
}

std::optional<quint32> XmpLocator::xmpStartOffsetFromSidecarFile(qint64 from)
{
    static constexpr QByteArrayView opening = "<x:xmpmeta";
    std::optional<quint32> found;
    m_file.scanBlocks(from, opening.size(), [&](const ByteSource::Block &block) {
        const qsizetype at = QByteArrayView(block.bytes).indexOf(opening);
        if (at >= 0 && at < block.scanEnd && block.offset + at <= qint64(0xFFFFFFFF)) {
            found = quint32(block.offset + at);
            return false;
        }
        return true;
    });
    return found;
}

XmpDateInfos XmpLocator::readDates(qint64 packetStart)
{
    constexpr qint64 valueWindow = 33;
    XmpDateInfos infos;
    std::array<bool, dateTags.size()> taken{};
    qsizetype takenCount = 0;
    m_file.scanBlocks(packetStart, dateSearchOverlap, [&](const ByteSource::Block &block) {
        for (qsizetype pos = 0; pos < block.scanEnd; ++pos) {
            const char first = block.bytes[pos];
            if (first == '<') {
                for (QByteArrayView end : packetEnds) {
                    if (hasBytesAt(block.bytes, pos, end))
                        return false;
                }
                continue;
            }
            if (first != 'p' && first != 'e' && first != 't')
                continue;
            for (std::size_t i = 0; i < dateTags.size(); ++i) {
                const SearchedTag &tag = dateTags[i];
                if (taken[i] || tag.text[0] != first || !hasBytesAt(block.bytes, pos, tag.text))
                    continue;
                taken[i] = true;
                ++takenCount;
                const qint64 valueAt = block.offset + pos + tag.text.size();
                if (const auto value = valueAfterName(m_file, valueAt, valueWindow)) {
                    const XmpStampKind kind = DateStampCodec::verifiedXmpDateDataType(value->text);
                    if (kind.type != 0)
                        infos[QLatin1String(tag.key)] =
                            XmpStampRecord{value->text, value->offset, kind.type, kind.subtype};
                }
                break;
            }
            if (takenCount == qsizetype(dateTags.size()))
                return false;
        }
        return true;
    });
    return infos;
}

XmpSidecarMetadata XmpLocator::readMetadata(qint64 packetStart)
{
    enum class Field { SidecarFor, RawFileName, LatRef, LonRef, Lat, Lon, PosError, AltitudeRef, Altitude, Rating };
    struct MetadataTag
    {
        QByteArrayView text;
        Field field;
    };
    static constexpr std::array<MetadataTag, 10> tags{{
        {"photoshop:SidecarForExtension", Field::SidecarFor},
        {"crs:RawFileName", Field::RawFileName},
        {"exif:GPSLatitudeRef", Field::LatRef},
        {"exif:GPSLongitudeRef", Field::LonRef},
        {"exif:GPSLatitude", Field::Lat},
        {"exif:GPSLongitude", Field::Lon},
        {"exif:GPSHPositioningError", Field::PosError},
        {"exif:GPSAltitudeRef", Field::AltitudeRef},
        {"exif:GPSAltitude", Field::Altitude},
        {"xmp:Rating", Field::Rating},
    }};
    constexpr int overlap = 29;
    constexpr qint64 valueWindow = 256;
    static constexpr QByteArrayView end = "</x:xmpmeta";

    XmpSidecarMetadata metadata;
    std::array<bool, tags.size()> taken{};
    m_file.scanBlocks(packetStart, overlap, [&](const ByteSource::Block &block) {
        for (qsizetype pos = 0; pos < block.scanEnd; ++pos) {
            const char first = block.bytes[pos];
            if (first == '<' && hasBytesAt(block.bytes, pos, end))
                return false;
            if (first != 'p' && first != 'c' && first != 'e' && first != 'x')
                continue;
            for (std::size_t i = 0; i < tags.size(); ++i) {
                if (taken[i] || !hasBytesAt(block.bytes, pos, tags[i].text))
                    continue;
                // "exif:GPSLatitude" also begins "exif:GPSLatitudeRef": a name counts only
                // where a value follows it.
                const qint64 valueAt = block.offset + pos + tags[i].text.size();
                const std::optional<XmpTextValue> value =
                    valueAfterName(m_file, valueAt, valueWindow);
                if (!value)
                    continue;
                taken[i] = true;
                switch (tags[i].field) {
                case Field::SidecarFor:
                    metadata.extensions.insert(QString::fromUtf8(value->text).toLower());
                    break;
                case Field::RawFileName:
                    metadata.extensions.insert(lowerSuffix(value->text));
                    break;
                case Field::LatRef:
                    if (verifiedXmpLocationRefDataType(value->text))
                        metadata.gpsLatRef = value;
                    break;
                case Field::LonRef:
                    if (verifiedXmpLocationRefDataType(value->text))
                        metadata.gpsLonRef = value;
                    break;
                case Field::Lat:
                    metadata.gpsLatType = verifiedXmpLocationDataType(value->text);
                    if (metadata.gpsLatType != 0)
                        metadata.gpsLat = value;
                    break;
                case Field::Lon:
                    metadata.gpsLonType = verifiedXmpLocationDataType(value->text);
                    if (metadata.gpsLonType != 0)
                        metadata.gpsLon = value;
                    break;
                case Field::PosError:
                    if (isVerifiedXmpPosErrorDataType(value->text))
                        metadata.gpsPosError = value;
                    break;
                case Field::AltitudeRef:
                    if (value->text == "0" || value->text == "1")
                        metadata.gpsAltitudeRef = value;
                    break;
                case Field::Altitude:
                    if (isVerifiedXmpPosErrorDataType(value->text))
                        metadata.gpsAltitude = value;
                    break;
                case Field::Rating: {
                    bool isNumber = false;
                    const int rating = value->text.trimmed().toInt(&isNumber);
                    if (isNumber && rating >= -1 && rating <= 5)
                        metadata.rating = rating;
                    break;
                }
                }
                break;
            }
        }
        return true;
    });
    // A bare decimal coordinate says nothing of its hemisphere without the ref.
    if (metadata.gpsLatType == 2 && !metadata.gpsLatRef) {
        metadata.gpsLat.reset();
        metadata.gpsLatType = 0;
    }
    if (metadata.gpsLonType == 2 && !metadata.gpsLonRef) {
        metadata.gpsLon.reset();
        metadata.gpsLonType = 0;
    }
    metadata.extensions.remove(QString());
    return metadata;
}

namespace {

// Where an xmp:Rating stands in a packet: its value, and the whole attribute or element that a
// value of another width blanks.
struct RatingInPacket
{
    qsizetype valueAt = 0, valueLength = 0;
    qsizetype wholeAt = 0, wholeLength = 0;
};

std::optional<RatingInPacket> findRating(const QByteArray &packet, qsizetype before)
{
    static constexpr QByteArrayView name = "xmp:Rating";
    for (qsizetype at = packet.indexOf(name); at >= 0 && at < before; at = packet.indexOf(name, at + 1)) {
        const qsizetype after = at + name.size();
        if (after + 2 > before)
            return std::nullopt;
        const char next = packet[after];
        if (next == '=' && (packet[after + 1] == '"' || packet[after + 1] == '\'')) {
            const qsizetype close = packet.indexOf(packet[after + 1], after + 2);
            if (close < 0 || close >= before)
                return std::nullopt;
            return RatingInPacket{after + 2, close - after - 2, at, close + 1 - at};
        }
        if (next == '>' && at > 0 && packet[at - 1] == '<') {
            static constexpr QByteArrayView closing = "</xmp:Rating>";
            const qsizetype close = packet.indexOf(closing, after + 1);
            if (close < 0 || close >= before)
                return std::nullopt;
            return RatingInPacket{after + 1, close - after - 1, at - 1, close + closing.size() - at + 1};
        }
    }
    return std::nullopt;
}

bool isXmlSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

} // namespace

std::optional<std::vector<ByteEdit>> XmpLocator::ratingEdits(qint64 packetStart, int rating) const
{
    // A packet in a JPEG segment or a TIFF tag stays far below this.
    constexpr qint64 longestPacket = 1 << 20;
    const QByteArray packet = m_file.read(packetStart, longestPacket);
    const qsizetype endMark = packet.indexOf("<?xpacket end=");
    const qsizetype rdfEnd = endMark < 0 ? -1 : packet.lastIndexOf("</rdf:RDF>", endMark);
    if (rdfEnd < 0)
        return std::nullopt;
    const QByteArray value = QByteArray::number(rating);
    std::vector<ByteEdit> edits;
    const auto edit = [&](qsizetype at, const QByteArray &bytes) {
        edits.push_back({packetStart + at, bytes, packet.mid(at, bytes.size())});
    };
    const std::optional<RatingInPacket> old = findRating(packet, rdfEnd);
    if (old && old->valueLength == value.size()) {
        edit(old->valueAt, value);
        return edits;
    }
    if (old)
        edit(old->wholeAt, QByteArray(old->wholeLength, ' '));
    const QByteArray description = "<rdf:Description rdf:about=\"\" xmlns:xmp=\"http://ns.adobe.com/xap/1.0/\" "
                                   "xmp:Rating=\"" + value + "\"/>";
    const QByteArray tail = packet.mid(rdfEnd, endMark - rdfEnd);
    qsizetype room = 0;
    while (room < tail.size() && isXmlSpace(tail[tail.size() - 1 - room]))
        ++room;
    if (room < description.size())
        return std::nullopt;
    edit(rdfEnd, description + tail.left(tail.size() - description.size()));
    return edits;
}

} // namespace orv

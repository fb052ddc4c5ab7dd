#include "formats/JpegLocator.h"

#include "formats/ByteOrder.h"
#include "formats/XmpLocator.h"

#include <tuple>

namespace orv {

namespace {
constexpr quint8 markerApp1 = 0xE1;
constexpr quint8 markerApp13 = 0xED;
constexpr QByteArrayView photoshopSignature{"Photoshop 3.0\0", 14};
constexpr quint16 iptcResource = 0x0404;
constexpr quint16 iptcDigestResource = 0x0425;
constexpr quint8 markerStartOfScan = 0xDA;
constexpr quint8 markerEndOfImage = 0xD9;
// An APP1 segment: marker (2), length (2), "Exif\0\0" (6), then the TIFF header.
constexpr qint64 exifHeaderInSegment = 10;
// Marker and length (4), then the XMP namespace with its NUL (29), then the packet.
constexpr qint64 xmpPacketInSegment = 33;

// Length field, "Exif\0\0" and an 8-byte TIFF header: anything shorter holds neither.
constexpr quint16 minimalApp1Length = 16;

// Markers that stand alone, without a length: TEM and the restart markers.
bool isStandalone(quint8 marker) { return marker == 0x01 || (marker >= 0xD0 && marker <= 0xD7); }
} // namespace

JpegSegmentsInfo JpegLocator::savereadJPGHeader()
{
    JpegSegmentsInfo info;
    qint64 offset = 2;
    while (offset + xmpPacketInSegment <= qint64(0xFFFFFFFF)) {
        const QByteArray segment = m_file.read(offset, 14);
        if (segment.size() < 2 || quint8(segment[0]) != 0xFF)
            break;
        const quint8 marker = quint8(segment[1]);
        // A marker may be preceded by any number of 0xFF fill bytes.
        if (marker == 0xFF) {
            ++offset;
            continue;
        }
        if (isStandalone(marker)) {
            offset += 2;
            continue;
        }
        // The entropy-coded data follows the scan header: nothing of ours lies there. Every
        // frame header (SOF0 to SOF15) is an ordinary segment on the way.
        if (marker == markerStartOfScan) {
            // Marker, header, and one byte of image data at least.
            info.reachesImageData =
                segment.size() >= 4 && m_file.contains(offset, qint64(get16(segment, 2, false)) + 3);
            break;
        }
        if (marker == markerEndOfImage || segment.size() < 4)
            break;
        const quint16 length = get16(segment, 2, false);
        if (length < 2)
            break;
        if (marker == markerApp13 && !info.iptcDate)
            info.iptcDate = iptcDateOfPhotoshopBlock(offset + 4, offset + 2 + length);
        if (marker == markerApp1 && length >= minimalApp1Length) {
            if (const std::optional<bool> intel = tiffMagicOrder(segment, exifHeaderInSegment)) {
                if (!info.tiffHeader)
                    info.tiffHeader = TiffHeader{quint32(offset + exifHeaderInSegment), *intel};
            } else if (!info.xmpOffset && isXmpPacketStart(m_file, offset + xmpPacketInSegment)) {
                info.xmpOffset = quint32(offset + xmpPacketInSegment);
            }
        }
        offset += length + 2;
    }
    return info;
}

std::optional<IptcDateRecord> JpegLocator::iptcDateOfPhotoshopBlock(qint64 payload, qint64 end) const
{
    if (m_file.read(payload, photoshopSignature.size()) != photoshopSignature)
        return std::nullopt;
    // Image resources: "8BIM", a 16-bit id, a Pascal name padded to an even length, a 32-bit
    // size and the data, padded to an even length.
    qint64 at = payload + photoshopSignature.size();
    std::optional<IptcDateRecord> record;
    std::optional<qint64> digest;
    while (at + 12 <= end && m_file.read(at, 4) == "8BIM") {
        const std::optional<quint16> id = m_file.read16(at + 4, false);
        const std::optional<quint8> nameLength = m_file.read8(at + 6);
        if (!id || !nameLength)
            break;
        const qint64 sizeAt = at + 6 + ((*nameLength + 2) & ~1);
        const std::optional<quint32> size = m_file.read32(sizeAt, false);
        const qint64 data = sizeAt + 4;
        if (!size || data + *size > end || data > qint64(0xFFFFFFFF))
            break;
        if (*id == iptcResource && !record) {
            record = iptcDateOfRecords(data, data + *size);
            if (record) {
                record->blockData = m_file.read(data, *size);
                record->blockOffset = quint32(data);
            }
        } else if (*id == iptcDigestResource && *size == 16) {
            digest = data;
        }
        at = data + ((*size + 1) & ~1u);
    }
    if (record && digest) {
        record->digestData = m_file.read(*digest, 16);
        record->digestOffset = quint32(*digest);
    }
    return record;
}

std::optional<IptcDateRecord> JpegLocator::iptcDateOfRecords(qint64 at, qint64 end) const
{
    // Each dataset: the tag marker 0x1C, record and dataset numbers, a 16-bit length (a set
    // high bit marks an extended length, which no date has), the value.
    IptcDateRecord record;
    while (at + 5 <= end) {
        const QByteArray head = m_file.read(at, 5);
        if (head.size() < 5 || quint8(head[0]) != 0x1C)
            break;
        const quint16 length = get16(head, 3, false);
        if (length & 0x8000 || at + 5 + length > end || at + 5 > qint64(0xFFFFFFFF))
            break;
        const quint32 value = quint32(at + 5);
        if (head[1] == 2 && head[2] == 55 && length == 8)
            std::tie(record.dateData, record.dateOffset) = std::pair{m_file.read(value, length), value};
        else if (head[1] == 2 && head[2] == 60 && (length == 11 || length == 6))
            std::tie(record.timeData, record.timeOffset) = std::pair{m_file.read(value, length), value};
        at += 5 + length;
    }
    if (record.dateOffset == 0)
        return std::nullopt;
    return record;
}

} // namespace orv

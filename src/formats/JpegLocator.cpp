#include "formats/JpegLocator.h"

#include "formats/ByteOrder.h"
#include "formats/XmpLocator.h"

namespace orv {

namespace {
constexpr quint8 markerApp1 = 0xE1;
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

} // namespace orv

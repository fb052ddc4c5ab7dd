#include "formats/JpegLocator.h"

#include "formats/ByteOrder.h"
#include "formats/XmpLocator.h"

namespace orv {

namespace {
constexpr quint8 markerApp1 = 0xE1;
constexpr quint8 markerSof0 = 0xC0;
constexpr quint8 markerSof2 = 0xC2;
// An APP1 segment: marker (2), length (2), "Exif\0\0" (6), then the TIFF header.
constexpr qint64 exifHeaderInSegment = 10;
// Marker and length (4), then the XMP namespace with its NUL (29), then the packet.
constexpr qint64 xmpPacketInSegment = 33;
} // namespace

JpegSegmentsInfo JpegLocator::savereadJPGHeader()
{
    JpegSegmentsInfo info;
    qint64 offset = 2;
    while (offset + xmpPacketInSegment <= qint64(0xFFFFFFFF)) {
        const QByteArray segment = m_file.read(offset, 14);
        if (segment.size() < 14 || quint8(segment[0]) != 0xFF)
            break;
        const quint8 marker = quint8(segment[1]);
        if (marker == markerSof0 || marker == markerSof2)
            break;
        if (marker == markerApp1) {
            if (const std::optional<bool> intel = tiffMagicOrder(segment, exifHeaderInSegment)) {
                if (!info.tiffHeader)
                    info.tiffHeader = TiffHeader{quint32(offset + exifHeaderInSegment), *intel};
            } else if (!info.xmpOffset
                       && isXmpPacketStart(m_file, offset + xmpPacketInSegment)) {
                info.xmpOffset = quint32(offset + xmpPacketInSegment);
            }
        }
        offset += get16(segment, 2, false) + 2;
    }
    return info;
}

} // namespace orv

#pragma once

#include "formats/ByteSource.h"
#include "formats/PicAttributes.h"
#include "formats/TiffIfd.h"

#include <optional>

namespace orv {

struct JpegSegmentsInfo
{
    std::optional<TiffHeader> tiffHeader;
    std::optional<quint32> xmpOffset; // first byte of the XMP packet
    // DateCreated and TimeCreated of the IPTC record in the APP13 Photoshop block.
    std::optional<IptcDateRecord> iptcDate;
    // The walk met a whole scan header with image data after it; false for a file cut off (or
    // broken) before its image data.
    bool reachesImageData = false;
};

// Walks the JPEG segments from the first marker to the scan (SOS) or the end (EOI), looking at each
// APP1 for an Exif TIFF header or an XMP packet. For a JPEG this walk alone decides: the bytes
// are never scanned, so a TIFF magic inside pixel data or a later segment cannot mislead.
class JpegLocator
{
public:
    explicit JpegLocator(const ByteSource &file) : m_file(file) {}

    JpegSegmentsInfo savereadJPGHeader();

private:
    // The IPTC resource (0x0404) among the image resources of an APP13 segment's payload.
    std::optional<IptcDateRecord> iptcDateOfPhotoshopBlock(qint64 payload, qint64 end) const;
    // DateCreated and TimeCreated among the datasets of the IPTC resource.
    std::optional<IptcDateRecord> iptcDateOfRecords(qint64 at, qint64 end) const;

    const ByteSource &m_file;
};

} // namespace orv

#pragma once

#include "formats/ByteSource.h"
#include "formats/TiffIfd.h"

#include <optional>

namespace orv {

struct JpegSegmentsInfo
{
    std::optional<TiffHeader> tiffHeader;
    std::optional<quint32> xmpOffset; // first byte of the XMP packet
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
    const ByteSource &m_file;
};

} // namespace orv

#pragma once

#include "formats/FileReader.h"
#include "formats/TiffIfd.h"

#include <optional>

namespace orv {

struct JpegSegmentsInfo
{
    std::optional<TiffHeader> tiffHeader;
    quint32 xmpOffset = 0; // first byte of the XMP packet; 0 when none
};

// Walks the JPEG segments from the first marker to the start of the pixel data, looking at each
// APP1 for an Exif TIFF header or an XMP packet. For a JPEG this walk alone decides: the bytes
// are never scanned, so a TIFF magic inside pixel data or a later segment cannot mislead.
class JpegLocator
{
public:
    explicit JpegLocator(FileReader &file) : m_file(file) {}

    JpegSegmentsInfo savereadJPGHeader();

private:
    FileReader &m_file;
};

} // namespace orv

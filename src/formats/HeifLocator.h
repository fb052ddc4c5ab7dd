#pragma once

#include "formats/ByteSource.h"

#include <optional>

namespace orv {

// Where the metadata items of a HEIF-family still (HEIC, AVIF) begin: the TIFF header inside
// the Exif item, and the XMP packet of the "application/rdf+xml" item. Offsets are absolute;
// an item whose place lies outside the file, or inside the meta box's own data, is left out.
struct BmffItemOffsets
{
    std::optional<quint32> exif;
    std::optional<quint32> xmp;
};

// Walks ftyp, then meta with its item infos (iinf) and item locations (iloc).
std::optional<BmffItemOffsets> preparedBMFFOffsets(const ByteSource &source);

} // namespace orv

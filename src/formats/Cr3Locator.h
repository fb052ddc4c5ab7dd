#pragma once

#include "formats/ByteSource.h"

#include <optional>

namespace orv {

// Where a Canon CR3 keeps its metadata: CMT1 holds a TIFF structure with IFD0, CMT2 one whose
// first directory is the Exif IFD, CMT4 one whose first directory is the GPS IFD; the XMP packet
// has a uuid box of its own. The CMT offsets are those of the TIFF headers.
struct Cr3Offsets
{
    std::optional<quint32> CMT1Offset;
    std::optional<quint32> CMT2Offset;
    std::optional<quint32> CMT4Offset;
    std::optional<quint32> xmpOffset;
    bool isHeaderIntel = true;
};

std::optional<Cr3Offsets> preparedCF3Offsets(const ByteSource &source);

} // namespace orv

#pragma once

#include "core/PicAttributes.h"

#include <QtGlobal>

#include <optional>

namespace orv {

// What the date locator found in one still image. Every offset is absolute in the file and
// points at the first byte of the value; the data are the bytes read there, so that a save can
// prove them unchanged before it writes. A GPS date stamp is a StampRecord of 11 bytes.
struct DatesData
{
    static constexpr quint32 noHeader = 0xFFFFFFFF;

    std::optional<StampRecord> tiffDateTime;
    std::optional<StampRecord> exifDateTimeOriginal;
    std::optional<StampRecord> exifDateTimeDigitized;
    std::optional<OffsetTagRecord> exifOffsetTIFFTime;
    std::optional<OffsetTagRecord> exifOffsetTimeOriginal;
    std::optional<OffsetTagRecord> exifOffsetTimeDigitized;
    std::optional<GpsStampRecord> gpsTimeStamp;
    std::optional<StampRecord> gpsDateStamp;
    std::optional<GpsLocationRecord> gpsLocation;

    quint32 tiffHeaderStartOffset = noHeader;
    bool isHeaderIntel = false;
    // Start of the XMP packet of a CR3 file, which has no single TIFF header; 0 when none.
    quint32 cr3XmpOffset = 0;
    // Start of an XMP packet seen while walking JPEG segments; 0 when none.
    quint32 jpgXMPOffset = 0;

    bool hasHeader() const { return tiffHeaderStartOffset != noHeader; }
};

} // namespace orv

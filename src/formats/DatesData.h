#pragma once

#include "formats/PicAttributes.h"
#include "formats/TiffIfd.h"

#include <QtGlobal>

#include <optional>
#include <vector>

namespace orv {

// What the date locator found in one still image. Every offset is absolute in the file and
// points at the first byte of the value; the data are the bytes read there, so that a save can
// prove them unchanged before it writes. A GPS date stamp is a StampRecord of 11 bytes.
//
// What was not found is an empty optional; the stored item's 0 and 0xFFFFFFFF for "none" are
// made only where the item's attributes are filled.
struct DatesData
{
    // Where the values' bytes stand. A PNG may keep its EXIF as hex text in a compressed chunk;
    // the values are read from the decoded bytes, and their offsets count in those, where no
    // in-place write can reach them.
    enum class Place { File, DecodedProfile };

    Place place = Place::File;
    std::optional<StampRecord> tiffDateTime;
    std::optional<StampRecord> exifDateTimeOriginal;
    std::optional<StampRecord> exifDateTimeDigitized;
    std::optional<OffsetTagRecord> exifOffsetTIFFTime;
    std::optional<OffsetTagRecord> exifOffsetTimeOriginal;
    std::optional<OffsetTagRecord> exifOffsetTimeDigitized;
    std::optional<GpsStampRecord> gpsTimeStamp;
    std::optional<StampRecord> gpsDateStamp;
    std::optional<GpsLocationRecord> gpsLocation;

    // Only for values in the file.
    std::optional<TiffHeader> tiffHeader;
    // Start of the XMP packet of a CR3 file, which has no single TIFF header.
    std::optional<quint32> cr3XmpOffset;
    // A CR3 is a QuickTime file too: its movie header's times (when set) and the track and
    // media header times that hold the same moments.
    std::optional<MovieStampRecord> movieCreaDate, movieModDate;
    std::vector<QtTrackTimeRecord> movieTrackTimes;
    // Start of an XMP packet seen while walking JPEG segments.
    std::optional<quint32> jpgXMPOffset;
    // A JPEG's IPTC creation date and time.
    std::optional<IptcDateRecord> iptcDateCreated;
    // A JPEG whose segments end before its image data: cut off, or broken in its header.
    bool jpgEndsBeforeImageData = false;
};

} // namespace orv

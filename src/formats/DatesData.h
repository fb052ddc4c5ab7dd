#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <optional>

namespace orv {

// What the date locator found in one still image. Every offset is absolute in the file and
// points at the first byte of the value; the data are the bytes read there, so that a save can
// prove them unchanged before it writes.

// A 19-byte date stamp; dateData holds the 20 bytes with the terminating NUL.
struct StampRecord
{
    QByteArray dateData;
    quint32 dateOffset = 0;
};

// A 7-byte time offset such as "+02:00" with its NUL.
struct OffsetTagRecord
{
    QByteArray offsetData;
    quint32 offsetOffset = 0;
};

// Three rationals, hours, minutes and seconds (24 bytes). needsConv: the rationals are in
// Motorola order and must be swapped on a little-endian machine.
struct GpsStampRecord
{
    QByteArray dateData;
    quint32 dateOffset = 0;
    bool needsConv = false;
};

// Latitude and longitude with their refs are always complete; altitude and positioning error
// are optional and then have empty data and offset 0.
struct GpsLocationRecord
{
    QByteArray latitudeRef_Data;
    quint32 latitudeRef_Offset = 0;
    QByteArray latitude_Data;
    quint32 latitude_Offset = 0;
    QByteArray longitudeRef_Data;
    quint32 longitudeRef_Offset = 0;
    QByteArray longitude_Data;
    quint32 longitude_Offset = 0;
    QByteArray altitudeRef_Data;
    quint32 altitudeRef_Offset = 0;
    QByteArray altitude_Data;
    quint32 altitude_Offset = 0;
    QByteArray hPositioningError_Data;
    quint32 hPositioningError_Offset = 0;
    bool needsConv = false;
};

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
    // 11 bytes "YYYY:MM:DD" with its NUL.
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

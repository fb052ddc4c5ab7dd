#pragma once

#include "core/Instant.h"

#include <QByteArray>
#include <QString>

#include <map>
#include <optional>

namespace orv {

// Bytes of one value as the import saw them, and where they stand in the file. A later save
// proves these bytes unchanged before it overwrites them in place. An offset of 0 means none.
struct ValueAtOffset
{
    QByteArray data;
    quint32 offset = 0;
    bool operator==(const ValueAtOffset &) const = default;
};

// A GPS time (three rationals) or date stamp. needsConv marks Motorola byte order.
struct GpsStampRecord
{
    QByteArray data;
    quint32 offset = 0;
    bool needsConv = false;
    bool operator==(const GpsStampRecord &) const = default;
};

struct GpsLocationRecord
{
    std::optional<ValueAtOffset> latitudeRef, latitude, longitudeRef, longitude;
    std::optional<ValueAtOffset> altitudeRef, altitude, hPositioningError;
    bool needsConv = false;
    bool operator==(const GpsLocationRecord &) const = default;
};

// Zone form of an XMP stamp: 1 ends with "Z", 2 has its own offset, 3 has no zone (local).
// Subtype bits: 1 the offset has no colon, 2 the stamp has no seconds.
struct XmpStampRecord
{
    QByteArray data;
    quint32 offset = 0;
    int type = 0;
    int subtype = 0;
    bool operator==(const XmpStampRecord &) const = default;
};

// XMP stamps found in a packet, keyed by the tag name the system uses: ExifDateTimeOriginal,
// ExifDateTimeDigitized, XmpCreateDate, XmpModifyDate, XmpMetadataDate, TiffDateTime,
// PhotoshopDateCreated, GPSTimeStamp.
using XmpDateInfos = std::map<QString, XmpStampRecord>;

// The byte-level facts of an item: every value a save may overwrite, with its offset, and the
// file attributes seen at import.
struct PicAttributes
{
    std::optional<ValueAtOffset> ExifDateTimeOriginal, ExifDateTimeDigitized, TIFFDateTime;
    std::optional<ValueAtOffset> ExifOffsetTimeOriginal, ExifOffsetTimeDigitized, TIFFOffsetTime;
    std::optional<GpsStampRecord> GPSTimeStamp, GPSDateStamp;
    std::optional<GpsLocationRecord> GPSLocation;
    std::optional<double> GPSLocationXmpHPositioningError;
    std::optional<XmpDateInfos> xmpDateInfos;
    quint32 xmpHeaderStartOffset = 0;
    quint32 cr3XmpOffset = 0;

    OptionalDate NSFileCreationDate, NSFileModificationDate;
    std::optional<qint64> NSFileSize;
};

} // namespace orv

#pragma once

#include "formats/BoxedOptional.h"
#include "formats/InlineBytes.h"
#include "time/Instant.h"

#include <QByteArray>
#include <QString>

#include <map>
#include <optional>
#include <vector>

namespace orv {

// Where a value stands in the file and the bytes the import saw there. A later save proves these
// bytes unchanged before it overwrites them in place. An offset of 0 means none.

// A 19-byte date stamp; dateData holds the 20 bytes with the terminating NUL. A GPS date stamp
// uses the same record with its 11 bytes.
struct StampRecord
{
    InlineBytes<20> dateData;
    quint32 dateOffset = 0;
    bool operator==(const StampRecord &) const = default;
};

// A 7-byte time offset such as "+02:00" with its NUL.
struct OffsetTagRecord
{
    InlineBytes<7> offsetData;
    quint32 offsetOffset = 0;
    bool operator==(const OffsetTagRecord &) const = default;
};

// Three rationals, hours, minutes and seconds (24 bytes). needsConv: the rationals are in
// Motorola order and must be swapped on a little-endian machine.
struct GpsStampRecord
{
    InlineBytes<24> dateData;
    quint32 dateOffset = 0;
    bool needsConv = false;
    bool operator==(const GpsStampRecord &) const = default;
};

// A movie's stamp and where it stands; movies pass 4 GB, so the offset is 64-bit. The QuickTime
// metadata creation date is text of 20, 24 or 25 bytes; a movie header time is 4 bytes (8 in a
// version 1 header); an AVI IDIT stamp is 26 bytes, or 20 with the digits alone.
struct MovieStampRecord
{
    QByteArray dateData;
    quint64 dateOffset = 0;
    bool operator==(const MovieStampRecord &) const = default;
};

// A track or media header time (tkhd, mdhd) that held one of the movie header's two times at
// import: a save gives it the new value of the time it follows, in its own width (4 or 8 bytes),
// so that the tracks keep the movie's moment.
struct QtTrackTimeRecord
{
    MovieStampRecord time;
    bool followsModification = false;
    bool operator==(const QtTrackTimeRecord &) const = default;
};

// One ISO 6709 location text of a movie, by its source: 1 the metadata key, 2 udta's ©xyz,
// 3 ©xyz in udta's item list. The digit counts of latitude and longitude say which texts can be
// rewritten in place (`edit`); the horizontal accuracy rides on the first record.
struct QtLocationRecord
{
    int type = 0;
    MovieStampRecord text;
    MovieStampRecord hAccuracy;
    int int1 = 0, frac1 = 0, int2 = 0, frac2 = 0;
    bool edit = false;
    bool operator==(const QtLocationRecord &) const = default;
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
    bool operator==(const GpsLocationRecord &) const = default;
};

// IPTC-IIM DateCreated (2:55, 8 bytes "CCYYMMDD") and TimeCreated (2:60, "HHMMSS" with an
// offset "+HHMM" in 11 bytes, or without), as photo libraries write them into a JPEG's Photoshop
// block. A time of offset 0 is absent.
struct IptcDateRecord
{
    QByteArray dateData;
    quint32 dateOffset = 0;
    QByteArray timeData;
    quint32 timeOffset = 0;
    // The whole IPTC block and the Photoshop block's MD5 digest of it (resource 0x0425), which a
    // save keeps current so that readers do not take the block for one changed behind their back.
    QByteArray blockData;
    quint32 blockOffset = 0;
    QByteArray digestData;
    quint32 digestOffset = 0;
    bool operator==(const IptcDateRecord &) const = default;
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
// file attributes seen at import. What most items lack (a location, an XMP packet's dates, a
// movie's stamps) is boxed, so that it takes room only where it exists.
struct PicAttributes
{
    std::optional<StampRecord> ExifDateTimeOriginal, ExifDateTimeDigitized, TIFFDateTime;
    std::optional<OffsetTagRecord> ExifOffsetTimeOriginal, ExifOffsetTimeDigitized, TIFFOffsetTime;
    std::optional<GpsStampRecord> GPSTimeStamp;
    std::optional<StampRecord> GPSDateStamp;
    BoxedOptional<GpsLocationRecord> GPSLocation;
    std::optional<double> GPSLocationXmpHPositioningError;
    // Metres of the XMP place the item took (negative below sea level).
    std::optional<double> GPSLocationXmpAltitude;
    BoxedOptional<XmpDateInfos> xmpDateInfos;
    BoxedOptional<IptcDateRecord> IPTCDateCreated;
    quint32 xmpHeaderStartOffset = 0;
    quint32 cr3XmpOffset = 0;
    BoxedOptional<MovieStampRecord> QTMetaDate;
    BoxedOptional<MovieStampRecord> QTMvhdCreaDate, QTMvhdModDate, riffCreaDate;
    std::vector<QtTrackTimeRecord> qtTrackTimes;
    std::vector<QtLocationRecord> qtLocations;

    OptionalDate NSFileCreationDate, NSFileModificationDate;
    std::optional<qint64> NSFileSize;
};

} // namespace orv

#include "formats/TiffLocator.h"

#include "formats/ByteOrder.h"

namespace orv {

namespace {

enum Tag : quint16 {
    NestedJpeg = 46,
    DateTime = 306,
    ExifIfdPointer = 34665,
    GpsIfdPointer = 34853,
    DateTimeOriginal = 36867,
    DateTimeDigitized = 36868,
    OffsetTime = 36880,
    OffsetTimeOriginal = 36881,
    OffsetTimeDigitized = 36882,
};

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// Absolute offsets of the values found by the walk; empty when the tag was not seen.
using Found = std::optional<qint64>;

struct TagOffsets
{
    Found dateTime, dateTimeOriginal, dateTimeDigitized;
    Found offsetTime, offsetTimeOriginal, offsetTimeDigitized;
    Found latitudeRef, latitude, longitudeRef, longitude, altitudeRef, altitude;
    Found timeStamp, dateStamp, hPositioningError;

    // Takes one of the five Exif tags, which may stand in the Exif IFD or in IFD0. Within one
    // IFD the first occurrence wins. Answers whether the tag was one of them.
    bool takeExifTag(const IfdEntry &entry, qint64 base)
    {
        Found *slot = nullptr;
        switch (entry.tag) {
        case DateTimeOriginal: slot = &dateTimeOriginal; break;
        case DateTimeDigitized: slot = &dateTimeDigitized; break;
        case OffsetTime: slot = &offsetTime; break;
        case OffsetTimeOriginal: slot = &offsetTimeOriginal; break;
        case OffsetTimeDigitized: slot = &offsetTimeDigitized; break;
        default: return false;
        }
        if (!*slot)
            *slot = base + entry.value;
        return true;
    }

    // Some cameras write a date both into IFD0 and into the Exif IFD. Every reader takes the
    // Exif IFD's copy as the date, so that is the one a save must move.
    void preferExifTagsOf(const TagOffsets &exifIfd)
    {
        for (auto member : {&TagOffsets::dateTimeOriginal, &TagOffsets::dateTimeDigitized, &TagOffsets::offsetTime,
                            &TagOffsets::offsetTimeOriginal, &TagOffsets::offsetTimeDigitized}) {
            if (exifIfd.*member)
                this->*member = exifIfd.*member;
        }
    }

    bool hasAllExifTags() const
    {
        return dateTimeOriginal && dateTimeDigitized && offsetTime && offsetTimeOriginal
            && offsetTimeDigitized;
    }

    // The refs stand in the entry itself; the other values lie at an offset from the header.
    bool takeGpsTag(const IfdEntry &entry, qint64 base)
    {
        const qint64 atOffset = base + entry.value;
        switch (entry.tag) {
        case 1: latitudeRef = entry.valueFieldOffset; break;
        case 2: latitude = atOffset; break;
        case 3: longitudeRef = entry.valueFieldOffset; break;
        case 4: longitude = atOffset; break;
        case 5: altitudeRef = entry.valueFieldOffset; break;
        case 6: altitude = atOffset; break;
        case 7: timeStamp = atOffset; break;
        case 29: dateStamp = atOffset; break;
        case 31: hPositioningError = atOffset; break;
        default: return false;
        }
        return true;
    }

    bool hasAllGpsTags() const
    {
        return latitudeRef && latitude && longitudeRef && longitude && altitudeRef && altitude
            && timeStamp && dateStamp && hPositioningError;
    }
};

// A stored offset must fit the 32 bits of the attribute map and be non-zero: 0 means none.
std::optional<quint32> storableOffset(const Found &found)
{
    if (!found || *found <= 0 || *found > qint64(0xFFFFFFFF))
        return std::nullopt;
    return quint32(*found);
}

class ValueReader
{
public:
    ValueReader(const ByteSource &file) : m_file(file) {}

    // Exactly `length` bytes at a usable offset, or nothing.
    std::optional<std::pair<QByteArray, quint32>> read(const Found &found, qint64 length)
    {
        const std::optional<quint32> offset = storableOffset(found);
        if (!offset)
            return std::nullopt;
        QByteArray data = m_file.read(*offset, length);
        if (data.size() != length)
            return std::nullopt;
        return std::pair{data, *offset};
    }

    std::optional<StampRecord> stamp(const Found &found)
    {
        auto value = read(found, 19);
        if (!value)
            return std::nullopt;
        value->first.append('\0');
        if (!verifyDateData(value->first))
            return std::nullopt;
        return StampRecord{value->first, value->second};
    }

    std::optional<OffsetTagRecord> offsetTag(const Found &found)
    {
        const auto value = read(found, 7);
        if (!value || !verifyOffsetData(value->first))
            return std::nullopt;
        return OffsetTagRecord{value->first, value->second};
    }

    std::optional<StampRecord> gpsDate(const Found &found)
    {
        const auto value = read(found, 11);
        if (!value || !verifyGpsDateStampData(value->first))
            return std::nullopt;
        return StampRecord{value->first, value->second};
    }

    std::optional<GpsLocationRecord> location(const TagOffsets &tags, bool needsConv)
    {
        const auto latRef = read(tags.latitudeRef, 2), lat = read(tags.latitude, 24);
        const auto lonRef = read(tags.longitudeRef, 2), lon = read(tags.longitude, 24);
        if (!latRef || !lat || !lonRef || !lon)
            return std::nullopt;
        GpsLocationRecord record;
        std::tie(record.latitudeRef_Data, record.latitudeRef_Offset) = *latRef;
        std::tie(record.latitude_Data, record.latitude_Offset) = *lat;
        std::tie(record.longitudeRef_Data, record.longitudeRef_Offset) = *lonRef;
        std::tie(record.longitude_Data, record.longitude_Offset) = *lon;
        const auto altRef = read(tags.altitudeRef, 1), alt = read(tags.altitude, 8);
        if (altRef && alt) {
            std::tie(record.altitudeRef_Data, record.altitudeRef_Offset) = *altRef;
            std::tie(record.altitude_Data, record.altitude_Offset) = *alt;
        }
        if (const auto error = read(tags.hPositioningError, 8))
            std::tie(record.hPositioningError_Data, record.hPositioningError_Offset) = *error;
        record.needsConv = needsConv;
        return record;
    }

private:
    const ByteSource &m_file;
};

void storeGps(ValueReader &values, const TagOffsets &tags, bool intel, DatesData &result)
{
    if (const auto stamp = values.read(tags.timeStamp, 24))
        result.gpsTimeStamp = GpsStampRecord{stamp->first, stamp->second, !intel};
    result.gpsDateStamp = values.gpsDate(tags.dateStamp);
    result.gpsLocation = values.location(tags, !intel);
}

} // namespace

bool verifyDateData(const QByteArray &data)
{
    if (data.size() < 19)
        return false;
    for (int colon : {4, 7, 13, 16}) {
        if (data[colon] != ':')
            return false;
    }
    for (qsizetype i = 0; i + 1 < data.size(); ++i) {
        const char c = data[i];
        if (!isDigit(c) && c != ':' && c != ' ')
            return false;
    }
    return true;
}

bool verifyOffsetData(const QByteArray &data)
{
    if (data.size() != 7 || (data[0] != '+' && data[0] != '-') || data[3] != ':')
        return false;
    for (qsizetype i = 0; i + 1 < data.size(); ++i) {
        const char c = data[i];
        if (!isDigit(c) && c != '+' && c != '-' && c != ':')
            return false;
    }
    return true;
}

bool verifyGpsDateStampData(const QByteArray &data)
{
    if (data.size() != 11 || data[4] != ':' || data[7] != ':' || data[10] != '\0')
        return false;
    for (qsizetype i = 0; i < 10; ++i) {
        if (data[i] < '0' || data[i] > ':')
            return false;
    }
    return true;
}

std::optional<TiffHeader> TiffLocator::headerAt(qint64 offset)
{
    const std::optional<bool> intel = tiffMagicOrder(m_file.read(offset, 4), 0);
    if (!intel || offset < 0 || offset > qint64(0xFFFFFFFF))
        return std::nullopt;
    return TiffHeader{quint32(offset), *intel};
}

std::optional<TiffHeader> TiffLocator::scanForHeader(qint64 start)
{
    if (start == 0) {
        const QByteArray head = m_file.read(0, 2);
        if (head == "II" || head == "MM")
            return TiffHeader{0, head == "II"};
    }
    std::optional<TiffHeader> found;
    m_file.scanBlocks(start, 3, [&](const ByteSource::Block &block) {
        for (qsizetype pos = 0; pos < block.scanEnd; ++pos) {
            const qint64 at = block.offset + pos;
            const std::optional<bool> intel = tiffMagicOrder(block.bytes, pos);
            if (intel && at <= qint64(0xFFFFFFFF)) {
                found = TiffHeader{quint32(at), *intel};
                return false;
            }
        }
        return true;
    });
    return found;
}

void TiffLocator::readDates(const TiffHeader &header, DatesData &result)
{
    const qint64 base = header.offset;
    const bool intel = header.isIntel;
    TagOffsets tags;

    const TiffIfd ifd0 = TiffIfd::first(m_file, base, intel);
    std::optional<quint32> nestedJpeg, exifIfd, gpsIfd;
    std::size_t resumeAt = ifd0.entries().size();
    for (std::size_t i = 0; i < ifd0.entries().size(); ++i) {
        const IfdEntry &entry = ifd0.entries()[i];
        switch (entry.tag) {
        case NestedJpeg: nestedJpeg = entry.value; break;
        case DateTime: tags.dateTime = base + entry.value; break;
        case ExifIfdPointer: exifIfd = entry.pointerValue(); break;
        case GpsIfdPointer: gpsIfd = entry.pointerValue(); break;
        default: tags.takeExifTag(entry, base); break;
        }
        if (tags.dateTime && exifIfd && gpsIfd) {
            resumeAt = i + 1;
            break;
        }
    }

    if (exifIfd) {
        const TiffIfd exif(m_file, base + *exifIfd, intel);
        TagOffsets inExifIfd;
        for (const IfdEntry &entry : exif.entries()) {
            if (inExifIfd.takeExifTag(entry, base) && inExifIfd.hasAllExifTags())
                break;
        }
        tags.preferExifTagsOf(inExifIfd);
    }
    if (gpsIfd) {
        const TiffIfd gps(m_file, base + *gpsIfd, intel);
        for (const IfdEntry &entry : gps.entries()) {
            if (tags.takeGpsTag(entry, base) && tags.hasAllGpsTags())
                break;
        }
    }
    // Some writers put the Exif date tags into IFD0 itself, after the two pointers.
    if (!(tags.dateTimeOriginal && tags.dateTimeDigitized)) {
        for (std::size_t i = resumeAt; i < ifd0.entries().size(); ++i)
            tags.takeExifTag(ifd0.entries()[i], base);
    }
    // Without its own DateTime the file may carry it in the TIFF header of an embedded JPEG,
    // 12 bytes in (SOI, APP1 marker and length, "Exif\0\0"). That header has its own order.
    if (!tags.dateTime && nestedJpeg) {
        if (const std::optional<TiffHeader> nested = headerAt(base + *nestedJpeg + 12)) {
            const TiffIfd nestedIfd0 = TiffIfd::first(m_file, nested->offset, nested->isIntel);
            if (const IfdEntry *entry = nestedIfd0.find(DateTime))
                tags.dateTime = nested->offset + entry->value;
        }
    }

    ValueReader values(m_file);
    result.tiffDateTime = values.stamp(tags.dateTime);
    result.exifDateTimeOriginal = values.stamp(tags.dateTimeOriginal);
    result.exifDateTimeDigitized = values.stamp(tags.dateTimeDigitized);
    result.exifOffsetTIFFTime = values.offsetTag(tags.offsetTime);
    result.exifOffsetTimeOriginal = values.offsetTag(tags.offsetTimeOriginal);
    result.exifOffsetTimeDigitized = values.offsetTag(tags.offsetTimeDigitized);
    storeGps(values, tags, intel, result);
    result.tiffHeader = header;
}

void TiffLocator::readGpsDirectory(const TiffHeader &header, DatesData &result)
{
    TagOffsets tags;
    const TiffIfd gps = TiffIfd::first(m_file, header.offset, header.isIntel);
    for (const IfdEntry &entry : gps.entries()) {
        if (tags.takeGpsTag(entry, header.offset) && tags.hasAllGpsTags())
            break;
    }
    ValueReader values(m_file);
    storeGps(values, tags, header.isIntel, result);
}

} // namespace orv

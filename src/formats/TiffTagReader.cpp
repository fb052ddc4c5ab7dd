#include "formats/TiffTagReader.h"

#include "formats/ByteOrder.h"

#include <climits>

namespace orv {

namespace {

enum Tag : quint16 {
    ImageWidth = 256,
    ImageLength = 257,
    Make = 271,
    Model = 272,
    Orientation = 274,
    ExifIfdPointer = 34665,
    MakerNote = 37500,
    PixelXDimension = 40962,
    PixelYDimension = 40963,
    AppleContentIdentifier = 17,
    ExposureTime = 0x829A,
    FNumber = 0x829D,
    ISOSpeedRatings = 0x8827,
    ISOSpeed = 0x8833,
    FocalLength = 0x920A,
    DigitalZoomRatio = 0xA404,
    BodySerialNumber = 0xA431,
    LensMake = 0xA433,
    LensModel = 0xA434,
    LensSerialNumber = 0xA435,
    CameraSerialNumber = 0xC62F, // DNG, IFD0
};

constexpr quint16 typeShort = 3;
constexpr quint16 typeLong = 4;
constexpr quint16 typeRational = 5;
constexpr quint16 typeSRational = 10;

int dimension(const IfdEntry *entry)
{
    if (!entry)
        return 0;
    if (entry->type == typeShort)
        return entry->shortValue;
    if (entry->type == typeLong && entry->value <= quint32(INT_MAX))
        return int(entry->value);
    return 0;
}

QSize sizeOf(const TiffIfd &ifd, quint16 widthTag, quint16 heightTag)
{
    const int width = dimension(ifd.find(widthTag));
    const int height = dimension(ifd.find(heightTag));
    return width > 0 && height > 0 ? QSize(width, height) : QSize();
}

} // namespace

TiffImageTags TiffTagReader::read(const TiffHeader &header)
{
    const qint64 base = header.offset;
    const bool intel = header.isIntel;
    TiffImageTags tags;
    const TiffIfd ifd0 = TiffIfd::first(m_file, base, intel);
    if (const IfdEntry *make = ifd0.find(Make))
        tags.make = QString::fromUtf8(tiffAsciiValue(m_file, *make, base));
    if (const IfdEntry *model = ifd0.find(Model))
        tags.model = QString::fromUtf8(tiffAsciiValue(m_file, *model, base));
    if (const IfdEntry *orientation = ifd0.find(Orientation);
        orientation && orientation->shortValue >= 1 && orientation->shortValue <= 8)
        tags.orientation = orientation->shortValue;

    const IfdEntry *exifPointer = ifd0.find(ExifIfdPointer);
    if (const std::optional<quint32> exifIfd = exifPointer ? exifPointer->pointerValue() : std::nullopt) {
        const TiffIfd exif(m_file, base + *exifIfd, intel);
        tags.pixelSize = sizeOf(exif, PixelXDimension, PixelYDimension);
        if (const IfdEntry *makerNote = exif.find(MakerNote))
            tags.contentIdentifier = appleContentIdentifier(base + makerNote->value);
        readShot(exif, base, intel, tags);
    }
    if (!tags.pixelSize.isValid())
        tags.pixelSize = sizeOf(ifd0, ImageWidth, ImageLength);
    if (tags.bodySerial.isEmpty())
        tags.bodySerial = text(ifd0.find(CameraSerialNumber), base);
    return tags;
}

void TiffTagReader::readShot(const TiffIfd &exif, qint64 base, bool intel, TiffImageTags &tags) const
{
    ShotSettings &shot = tags.shot;
    shot.exposureTime = ratio(exif.find(ExposureTime), base, intel);
    shot.fNumber = ratio(exif.find(FNumber), base, intel);
    shot.focalLength = ratio(exif.find(FocalLength), base, intel);
    shot.digitalZoomRatio = ratio(exif.find(DigitalZoomRatio), base, intel);
    shot.iso = firstInteger(exif.find(ISOSpeedRatings), base, intel);
    if (shot.iso == 0)
        shot.iso = firstInteger(exif.find(ISOSpeed), base, intel);
    tags.bodySerial = text(exif.find(BodySerialNumber), base);
    tags.lensMake = text(exif.find(LensMake), base);
    tags.lensModel = text(exif.find(LensModel), base);
    tags.lensSerial = text(exif.find(LensSerialNumber), base);
}

// A text the file's end cuts short is no serial or lens: it is left out whole.
QString TiffTagReader::text(const IfdEntry *entry, qint64 base) const
{
    const std::optional<QByteArray> text = entry ? tiffWholeAsciiValue(m_file, *entry, base) : std::nullopt;
    return text ? QString::fromUtf8(*text).trimmed() : QString();
}

// A single rational's quotient; whole numbers of the integer types count too, as some writers
// use them. A zero denominator (exiftool's "undef" or "inf") names no value.
double TiffTagReader::ratio(const IfdEntry *entry, qint64 base, bool intel) const
{
    if (!entry || entry->count == 0)
        return ShotSettings::none;
    if (entry->type == typeShort || entry->type == typeLong)
        return firstInteger(entry, base, intel);
    if (entry->type != typeRational && entry->type != typeSRational)
        return ShotSettings::none;
    const QByteArray value = m_file.read(base + entry->value, 8);
    if (value.size() < 8)
        return ShotSettings::none;
    const quint32 numerator = get32(value, 0, intel), denominator = get32(value, 4, intel);
    if (denominator == 0)
        return ShotSettings::none;
    if (entry->type == typeSRational)
        return double(qint32(numerator)) / double(qint32(denominator));
    return double(numerator) / double(denominator);
}

// The first value of a SHORT or LONG tag, inline or where the entry points; 0 for none.
quint32 TiffTagReader::firstInteger(const IfdEntry *entry, qint64 base, bool intel) const
{
    if (!entry || entry->count == 0)
        return 0;
    if (entry->type == typeShort)
        return entry->count <= 2 ? entry->shortValue : m_file.read16(base + entry->value, intel).value_or(0);
    if (entry->type == typeLong)
        return entry->count == 1 ? entry->value : m_file.read32(base + entry->value, intel).value_or(0);
    return 0;
}

// Apple's maker note: "Apple iOS\0", a version, its own byte order mark, then an IFD whose
// offsets count from the start of the maker note.
QString TiffTagReader::appleContentIdentifier(qint64 makerNoteOffset)
{
    const QByteArray head = m_file.read(makerNoteOffset, 14);
    if (!hasBytesAt(head, 0, QByteArrayView("Apple iOS\0", 10)))
        return {};
    const QByteArray order = head.mid(12, 2);
    if (order != "MM" && order != "II")
        return {};
    const TiffIfd notes(m_file, makerNoteOffset + 14, order == "II");
    const IfdEntry *identifier = notes.find(AppleContentIdentifier);
    return identifier ? QString::fromUtf8(tiffAsciiValue(m_file, *identifier, makerNoteOffset))
                      : QString();
}

} // namespace orv

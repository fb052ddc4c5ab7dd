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
};

constexpr quint16 typeShort = 3;
constexpr quint16 typeLong = 4;

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
    }
    if (!tags.pixelSize.isValid())
        tags.pixelSize = sizeOf(ifd0, ImageWidth, ImageLength);
    return tags;
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

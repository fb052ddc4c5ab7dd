#pragma once

#include <QByteArray>
#include <QString>
#include <map>
#include <vector>

namespace orv::test {

// Bytes [begin, end) of a file.
struct ByteRange
{
    quint32 begin = 0;
    quint32 end = 0;
};

// Where a builder placed what it wrote: absolute file offsets, as the locators report them.
// 0 means "not placed"; only tiffHeader and xmpPacket can be a real 0 (a TIFF file, a sidecar).
struct TiffOffsets
{
    quint32 tiffHeader = 0;
    quint32 ifd0 = 0;
    quint32 exifIfd = 0;
    quint32 gpsIfd = 0;

    // First byte of each tag's value (the value field itself for values of 4 bytes or less).
    quint32 make = 0;
    quint32 model = 0;
    quint32 dateTime = 0;
    quint32 dateTimeOriginal = 0;
    quint32 dateTimeDigitized = 0;
    quint32 offsetTime = 0;
    quint32 offsetTimeOriginal = 0;
    quint32 offsetTimeDigitized = 0;
    quint32 gpsLatitudeRef = 0;
    quint32 gpsLatitude = 0;
    quint32 gpsLongitudeRef = 0;
    quint32 gpsLongitude = 0;
    quint32 gpsAltitudeRef = 0;
    quint32 gpsAltitude = 0;
    quint32 gpsTimeStamp = 0;
    quint32 gpsDateStamp = 0;
    quint32 gpsHPositioningError = 0;
    quint32 embeddedJpeg = 0; // start of the JPEG that IFD0 tag 46 points to
};

struct MediaOffsets : TiffOffsets
{
    // Containers: the JPEG APP1 marker, the PNG chunk's length field, the RIFF chunk's type.
    quint32 exifSegment = 0;
    quint32 xmpSegment = 0;
    quint32 xmpPacket = 0;                  // "<?xpacket" or "<x:xmpmeta"; in TIFF: tag 700's value
    std::map<QString, quint32> xmpValues{}; // "exif:DateTimeOriginal" -> first byte of its value
    std::vector<ByteRange> previews{};      // embedded JPEGs, SOI up to just past EOI

    quint32 xmpValue(const QString &qualifiedName) const
    {
        const auto found = xmpValues.find(qualifiedName);
        return found == xmpValues.end() ? 0 : found->second;
    }
};

// A built file in memory and the offsets of what was placed in it.
struct MediaFile
{
    QByteArray bytes{};
    MediaOffsets offsets{};
    QString suffix{};

    // Writes dir/baseName.suffix and answers its path; throws std::runtime_error on failure.
    QString write(const QString &dir, const QString &baseName = QStringLiteral("built")) const;
};

} // namespace orv::test

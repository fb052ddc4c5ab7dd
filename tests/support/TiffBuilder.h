#pragma once

#include "support/ByteWriter.h"
#include "support/MediaFile.h"
#include "support/XmpBuilder.h"

#include <QByteArray>
#include <QSize>
#include <array>
#include <optional>
#include <vector>

namespace orv::test {

// The exact bytes of an ASCII value; the tag's count is their length, NULs included.
struct Stamp
{
    QByteArray bytes{};

    static Stamp text(QByteArrayView text) { return {text.toByteArray() + '\0'}; }
    static Stamp blank() { return text("    :  :     :  :  "); }
    static Stamp zeros() { return text("0000:00:00 00:00:00"); }
    // text followed by NULs up to length, e.g. padded("2024:05:01 10:00", 20): 16 chars, 4 NULs
    static Stamp padded(QByteArrayView text, qsizetype length)
    {
        return {text.toByteArray().leftJustified(length, '\0', true)};
    }
    static Stamp raw(QByteArray bytes) { return {std::move(bytes)}; }
};

struct Rational
{
    quint32 numerator = 0;
    quint32 denominator = 1;
};
using RationalTriple = std::array<Rational, 3>;

// |degrees| as degrees, minutes and seconds in thousandths.
RationalTriple degreesMinutesSeconds(double degrees);

struct GpsShape
{
    std::optional<Stamp> latitudeRef{}; // Stamp::text("N"): 2 bytes, in the entry itself
    std::optional<RationalTriple> latitude{};
    std::optional<Stamp> longitudeRef{};
    std::optional<RationalTriple> longitude{};
    std::optional<quint8> altitudeRef{}; // 0 above, 1 below sea level
    std::optional<Rational> altitude{};
    std::optional<RationalTriple> timeStamp{}; // hours, minutes, seconds UTC
    std::optional<Stamp> dateStamp{};          // Stamp::text("2024:05:01"): 11 bytes with its NUL
    std::optional<Rational> hPositioningError{};

    // Both refs and coordinates of a signed position.
    static GpsShape at(double latitude, double longitude);
    // A position with the UTC time and date stamps of its fix, "2024:05:01 23:10:00".
    static GpsShape fixAt(double latitude, double longitude, const char *utcStamp);
};

// A camera's serials and lens and the settings of a shot, in the Exif IFD; the DNG camera serial
// in IFD0. Texts are written with a NUL.
struct ShotShape
{
    std::optional<Rational> exposureTime{};     // 33434
    std::optional<Rational> fNumber{};          // 33437
    std::vector<quint32> isoSpeedRatings{};     // 34855, SHORTs
    std::optional<quint32> isoSpeed{};          // 34867, a LONG
    std::optional<Rational> focalLength{};      // 37386
    std::optional<Rational> digitalZoomRatio{}; // 41988
    std::optional<QByteArray> bodySerial{};     // 42033
    std::optional<QByteArray> lensMake{};       // 42035
    std::optional<QByteArray> lensModel{};      // 42036
    std::optional<QByteArray> lensSerial{};     // 42037
    std::optional<QByteArray> cameraSerial{};   // 50735, IFD0
};

// Where the five Exif date and offset tags (36867, 36868, 36880-36882) stand.
enum class ExifDatePlace {
    ExifIfd,
    Ifd0,               // in IFD0, sorted by tag: after the Exif and GPS pointers
    Ifd0BeforePointers, // in IFD0, out of tag order, ahead of the pointers
};

// The tags of a TIFF/EXIF block. IFD0 entries are sorted by tag; the Exif and GPS IFDs exist
// only when something is placed in them. With the dates in IFD0, set pixelSize to keep an
// Exif IFD and its pointer.
struct TiffShape
{
    ByteOrder order = ByteOrder::Intel;
    std::optional<QByteArray> make{}; // written with a NUL
    std::optional<QByteArray> model{};
    std::optional<quint16> orientation{};
    std::optional<Stamp> dateTime{}; // 306

    std::optional<Stamp> dateTimeOriginal{};    // 36867
    std::optional<Stamp> dateTimeDigitized{};   // 36868
    std::optional<Stamp> offsetTime{};          // 36880, Stamp::text("+02:00"): 7 bytes
    std::optional<Stamp> offsetTimeOriginal{};  // 36881
    std::optional<Stamp> offsetTimeDigitized{}; // 36882
    ExifDatePlace exifDatePlace = ExifDatePlace::ExifIfd;
    // Every directory's entries in descending tag order, as some phones write them.
    bool descendingEntries = false;
    std::optional<QSize> pixelSize{}; // Exif 40962, 40963
    std::optional<ShotShape> shot{};

    std::optional<GpsShape> gps{};
    std::optional<XmpPacket> xmp{};           // IFD0 700
    std::optional<QByteArray> embeddedJpeg{}; // IFD0 46: a whole JPEG, e.g. buildJpeg(...).bytes

    // A camera's three date tags (original, digitized, modified) at one stamp.
    static TiffShape camera(const char *stamp);
};

// A bare TIFF block, to be embedded at fileOffset of a container (offsets are reported as if
// it stood there). Without an image it is also a metadata-only TIFF file.
MediaFile buildExifBlock(const TiffShape &recipe, quint32 fileOffset = 0);

struct TiffFileShape
{
    TiffShape tags{};
    QSize imageSize{8, 8};              // an uncompressed RGB strip
    std::vector<QByteArray> previews{}; // JPEGs, each in its own IFD chained after IFD0, as in RAWs
};

// A TIFF file: header at 0, IFD0 describing a real strip image plus the recipe's tags.
MediaFile buildTiffFile(const TiffFileShape &recipe);

} // namespace orv::test

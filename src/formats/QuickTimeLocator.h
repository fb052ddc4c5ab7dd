#pragma once

#include "formats/ByteSource.h"
#include "formats/PicAttributes.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QSize>

#include <optional>
#include <vector>

namespace orv {

// Bytes of a value and the absolute offset of their first byte. Movies pass 4 GB, so offsets
// are 64-bit here.
struct MovieValue
{
    QByteArray data;
    quint64 offset = 0;
    bool operator==(const MovieValue &) const = default;
};

// What a QuickTime or MPEG-4 movie says about its dates and places.
struct MovieHeaderData
{
    enum MovieType : int {
        NoHeader = 0,
        RiffStamp = 15,
        CreationGood = 16,
        OnlyModificationGood = 17,
        BothZero = 19,
    };

    int movieType = NoHeader;
    // The movie header's creation and modification times: 4 bytes in a version 0 header, 8 in
    // a version 1 header, big-endian seconds since 1904.
    std::optional<MovieValue> creaDate, modDate;
    // The track and media header times that hold the same moment as one of those two.
    std::vector<QtTrackTimeRecord> trackTimes;
    // com.apple.quicktime.creationdate: ISO text of 20, 24 or 25 bytes (other lengths are read
    // but not written).
    std::optional<MovieValue> QtCreationdate;
    // ISO 6709 texts: the metadata key, udta's ©xyz, and ©xyz in udta's own item list.
    std::optional<MovieValue> locationISO6709, locationISO6709_2, locationISO6709_3;
    std::optional<MovieValue> locationHAccuracy;
    // com.apple.quicktime.content.identifier, which pairs a Live Photo's movie with its still.
    QByteArray contentIdentifier;
    // com.apple.quicktime.make and .model: the camera, as a phone names it.
    QByteArray make, model;
    // From the first track header with a size, and the movie header's time scale.
    QSize pixelSize;
    std::optional<double> duration;
};

// The digit counts of an ISO 6709 text such as "+52.2097-000.8955+103.640/": digits before and
// after the dot of the latitude and of the longitude.
struct Iso6709Digits
{
    int int1 = 0, frac1 = 0, int2 = 0, frac2 = 0;
    qsizetype longitudeStart = 0, longitudeEnd = 0;
    // Latitude of 2 integer digits with the longitude right behind it: the common form, which
    // a save can rewrite with the same digit counts.
    bool edit = false;
};

// A metadata creation date: "yyyy-MM-ddTHH:mm:ss" with "Z", "+hhmm" or "+hh:mm" (20, 24 or 25
// bytes); the last byte is not looked at.
bool isValidQtCreationDateData(QByteArrayView data);
// A sign, then digits, signs and dots, ending in a digit or "/", with 2 or 3 signed parts.
bool isValidQtLocationData(QByteArrayView data);
// A movie header time that is set: not all zero.
bool seemsValidMVHDDate(QByteArrayView data);
Iso6709Digits measureIso6709(QByteArrayView text);
// Latitude and longitude of a valid text; nothing when out of range or both 0.
std::optional<std::pair<double, double>> coordinatesFromIso6709(QByteArrayView text);
// The text with latitude and longitude replaced in the same digit counts; empty when they do
// not fit them (or the text is not in the common form).
QByteArray iso6709WithCoordinates(QByteArrayView text, double latitude, double longitude);

// Walks ftyp, moov, its mvhd, trak headers, meta keys and item list, and udta. The media data
// are never read. `quickTime`: a .mov file, which may begin without an ftyp box.
MovieHeaderData quicktimeHeaderDataForMovie(const ByteSource &source, bool quickTime);

} // namespace orv

#include "support/TiffBuilder.h"

#include "support/TiffLayout.h"

#include <QList>
#include <algorithm>
#include <cmath>

namespace orv::test {
namespace {

using Report = quint32 MediaOffsets::*;

TiffEntry ascii(quint16 tag, const Stamp &stamp, Report reportedAs = nullptr)
{
    return {.tag = tag, .type = TiffType::Ascii, .bytes = stamp.bytes, .reportedAs = reportedAs};
}

TiffEntry bytes(quint16 tag, TiffType type, QByteArray value, Report reportedAs = nullptr)
{
    return {.tag = tag, .type = type, .bytes = std::move(value), .reportedAs = reportedAs};
}

TiffEntry numbers(quint16 tag, TiffType type, std::vector<quint32> values)
{
    return {.tag = tag, .type = type, .numbers = std::move(values)};
}

TiffEntry rationals(quint16 tag, const std::vector<Rational> &values, Report reportedAs)
{
    TiffEntry entry{.tag = tag, .type = TiffType::Rational, .reportedAs = reportedAs};
    for (const Rational &value : values) {
        entry.numbers.push_back(value.numerator);
        entry.numbers.push_back(value.denominator);
    }
    return entry;
}

TiffEntry pointer(quint16 tag, int target)
{
    return {.tag = tag, .type = TiffType::Long, .numbers = {0}, .target = target};
}

void addIf(std::vector<TiffEntry> &entries, const std::optional<Stamp> &stamp, quint16 tag,
           Report reportedAs)
{
    if (stamp)
        entries.push_back(ascii(tag, *stamp, reportedAs));
}

void addIf(std::vector<TiffEntry> &entries, const std::optional<RationalTriple> &triple,
           quint16 tag, Report reportedAs)
{
    if (triple)
        entries.push_back(rationals(tag, {triple->begin(), triple->end()}, reportedAs));
}

void addIf(std::vector<TiffEntry> &entries, const std::optional<Rational> &value, quint16 tag,
           Report reportedAs)
{
    if (value)
        entries.push_back(rationals(tag, {*value}, reportedAs));
}

constexpr quint16 kExifPointer = 34665;
constexpr quint16 kGpsPointer = 34853;
constexpr quint16 kXmpTag = 700;

bool isExifDateTag(quint16 tag)
{
    return tag == 36867 || tag == 36868 || (tag >= 36880 && tag <= 36882);
}

std::vector<TiffEntry> exifDateEntries(const TiffShape &recipe)
{
    std::vector<TiffEntry> entries;
    addIf(entries, recipe.dateTimeOriginal, 36867, &MediaOffsets::dateTimeOriginal);
    addIf(entries, recipe.dateTimeDigitized, 36868, &MediaOffsets::dateTimeDigitized);
    addIf(entries, recipe.offsetTime, 36880, &MediaOffsets::offsetTime);
    addIf(entries, recipe.offsetTimeOriginal, 36881, &MediaOffsets::offsetTimeOriginal);
    addIf(entries, recipe.offsetTimeDigitized, 36882, &MediaOffsets::offsetTimeDigitized);
    return entries;
}

std::vector<TiffEntry> gpsEntries(const GpsShape &gps)
{
    std::vector<TiffEntry> entries{bytes(0, TiffType::Byte, QByteArray("\x02\x03\x00\x00", 4))};
    addIf(entries, gps.latitudeRef, 1, &MediaOffsets::gpsLatitudeRef);
    addIf(entries, gps.latitude, 2, &MediaOffsets::gpsLatitude);
    addIf(entries, gps.longitudeRef, 3, &MediaOffsets::gpsLongitudeRef);
    addIf(entries, gps.longitude, 4, &MediaOffsets::gpsLongitude);
    if (gps.altitudeRef)
        entries.push_back(bytes(5, TiffType::Byte, QByteArray(1, char(*gps.altitudeRef)),
                                &MediaOffsets::gpsAltitudeRef));
    addIf(entries, gps.altitude, 6, &MediaOffsets::gpsAltitude);
    addIf(entries, gps.timeStamp, 7, &MediaOffsets::gpsTimeStamp);
    addIf(entries, gps.dateStamp, 29, &MediaOffsets::gpsDateStamp);
    addIf(entries, gps.hPositioningError, 31, &MediaOffsets::gpsHPositioningError);
    return entries;
}

void addIf(std::vector<TiffEntry> &entries, const std::optional<QByteArray> &text, quint16 tag)
{
    if (text)
        entries.push_back(ascii(tag, Stamp::text(*text)));
}

std::vector<TiffEntry> shotEntries(const ShotShape &shot)
{
    std::vector<TiffEntry> entries;
    addIf(entries, shot.exposureTime, 33434, nullptr);
    addIf(entries, shot.fNumber, 33437, nullptr);
    if (!shot.isoSpeedRatings.empty())
        entries.push_back(numbers(34855, TiffType::Short, shot.isoSpeedRatings));
    if (shot.isoSpeed)
        entries.push_back(numbers(34867, TiffType::Long, {*shot.isoSpeed}));
    addIf(entries, shot.focalLength, 37386, nullptr);
    addIf(entries, shot.digitalZoomRatio, 41988, nullptr);
    addIf(entries, shot.bodySerial, 42033);
    addIf(entries, shot.lensMake, 42035);
    addIf(entries, shot.lensModel, 42036);
    addIf(entries, shot.lensSerial, 42037);
    return entries;
}

void placeEntries(std::vector<TiffEntry> &entries, bool descending)
{
    if (descending)
        std::stable_sort(entries.begin(), entries.end(),
                         [](const TiffEntry &a, const TiffEntry &b) { return a.tag > b.tag; });
}

void sortIfd0(std::vector<TiffEntry> &entries, ExifDatePlace place, bool descending)
{
    const auto key = [place](const TiffEntry &entry) {
        if (place == ExifDatePlace::Ifd0BeforePointers && isExifDateTag(entry.tag))
            return 2 * int(kExifPointer) - 1;
        return 2 * int(entry.tag);
    };
    std::stable_sort(entries.begin(), entries.end(),
                     [&](const TiffEntry &a, const TiffEntry &b) { return key(a) < key(b); });
    placeEntries(entries, descending);
}

// Adds IFD0 and the Exif and GPS IFDs the recipe needs; answers IFD0's entries, unsorted, so a
// file can add its image tags before they are placed.
std::vector<TiffEntry> addMetadata(TiffLayout &layout, const TiffShape &recipe)
{
    std::vector<TiffEntry> entries;
    if (recipe.make)
        entries.push_back(ascii(271, Stamp::text(*recipe.make), &MediaOffsets::make));
    if (recipe.model)
        entries.push_back(ascii(272, Stamp::text(*recipe.model), &MediaOffsets::model));
    if (recipe.orientation)
        entries.push_back(numbers(274, TiffType::Short, {*recipe.orientation}));
    addIf(entries, recipe.dateTime, 306, &MediaOffsets::dateTime);
    if (recipe.xmp)
        entries.push_back(
            bytes(kXmpTag, TiffType::Byte, recipe.xmp->bytes, &MediaOffsets::xmpPacket));
    if (recipe.embeddedJpeg)
        entries.push_back(
            bytes(46, TiffType::Undefined, *recipe.embeddedJpeg, &MediaOffsets::embeddedJpeg));

    std::vector<TiffEntry> exif;
    std::vector<TiffEntry> dates = exifDateEntries(recipe);
    std::vector<TiffEntry> &datesGoTo =
        recipe.exifDatePlace == ExifDatePlace::ExifIfd ? exif : entries;
    datesGoTo.insert(datesGoTo.end(), dates.begin(), dates.end());
    if (recipe.pixelSize) {
        exif.push_back(numbers(40962, TiffType::Long, {quint32(recipe.pixelSize->width())}));
        exif.push_back(numbers(40963, TiffType::Long, {quint32(recipe.pixelSize->height())}));
    }
    if (recipe.shot) {
        const std::vector<TiffEntry> shot = shotEntries(*recipe.shot);
        exif.insert(exif.end(), shot.begin(), shot.end());
        addIf(entries, recipe.shot->cameraSerial, 50735);
    }
    if (!exif.empty()) {
        const int exifIfd = layout.addDirectory(&MediaOffsets::exifIfd);
        std::stable_sort(exif.begin(), exif.end(), [](const TiffEntry &a, const TiffEntry &b) { return a.tag < b.tag; });
        placeEntries(exif, recipe.descendingEntries);
        layout.setEntries(exifIfd, exif);
        entries.push_back(pointer(kExifPointer, exifIfd));
    }
    if (recipe.gps) {
        const int gpsIfd = layout.addDirectory(&MediaOffsets::gpsIfd);
        std::vector<TiffEntry> gps = gpsEntries(*recipe.gps);
        placeEntries(gps, recipe.descendingEntries);
        layout.setEntries(gpsIfd, gps);
        entries.push_back(pointer(kGpsPointer, gpsIfd));
    }
    return entries;
}

MediaFile finish(TiffLayout &layout, const TiffShape &recipe, quint32 fileOffset)
{
    MediaFile file;
    file.suffix = QStringLiteral("tif");
    file.bytes = layout.write(recipe.order, fileOffset, file.offsets);
    file.offsets.tiffHeader = fileOffset;
    if (recipe.xmp)
        placeXmp(file.offsets, file.offsets.xmpPacket, *recipe.xmp);
    return file;
}

// Uncompressed RGB rows with no 0xFF byte, so no JPEG marker can appear in the strip.
QByteArray stripPixels(QSize size)
{
    QByteArray pixels;
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            for (int channel = 0; channel < 3; ++channel)
                pixels.append(char((x * 7 + y * 13 + channel * 50) % 200));
        }
    }
    return pixels;
}

std::vector<TiffEntry> imageEntries(QSize size, int strip, quint32 stripSize)
{
    return {
        numbers(256, TiffType::Long, {quint32(size.width())}),
        numbers(257, TiffType::Long, {quint32(size.height())}),
        numbers(258, TiffType::Short, {8, 8, 8}),
        numbers(259, TiffType::Short, {1}),
        numbers(262, TiffType::Short, {2}),
        pointer(273, strip),
        numbers(277, TiffType::Short, {3}),
        numbers(278, TiffType::Long, {quint32(size.height())}),
        numbers(279, TiffType::Long, {stripSize}),
        rationals(282, {{72, 1}}, nullptr),
        rationals(283, {{72, 1}}, nullptr),
        numbers(284, TiffType::Short, {1}),
        numbers(296, TiffType::Short, {2}),
    };
}

// A reduced-resolution IFD holding a JPEG, the way RAW files keep their previews.
std::vector<TiffEntry> previewEntries(int jpeg, quint32 jpegSize)
{
    return {
        numbers(254, TiffType::Long, {1}),
        numbers(259, TiffType::Short, {6}),
        pointer(513, jpeg),
        numbers(514, TiffType::Long, {jpegSize}),
    };
}

} // namespace

RationalTriple degreesMinutesSeconds(double degrees)
{
    const auto thousandthsOfSeconds = quint64(std::llround(std::fabs(degrees) * 3600.0 * 1000.0));
    return {Rational{quint32(thousandthsOfSeconds / 3600000), 1},
            Rational{quint32(thousandthsOfSeconds / 60000 % 60), 1},
            Rational{quint32(thousandthsOfSeconds % 60000), 1000}};
}

GpsShape GpsShape::at(double latitude, double longitude)
{
    GpsShape gps;
    gps.latitudeRef = Stamp::text(latitude < 0 ? "S" : "N");
    gps.latitude = degreesMinutesSeconds(latitude);
    gps.longitudeRef = Stamp::text(longitude < 0 ? "W" : "E");
    gps.longitude = degreesMinutesSeconds(longitude);
    return gps;
}

GpsShape GpsShape::fixAt(double latitude, double longitude, const char *utcStamp)
{
    GpsShape gps = at(latitude, longitude);
    const QList<QByteArray> dateAndTime = QByteArray(utcStamp).split(' ');
    const QList<QByteArray> hms = dateAndTime.value(1).split(':');
    gps.timeStamp = RationalTriple{
        {{hms.value(0).toUInt(), 1}, {hms.value(1).toUInt(), 1}, {hms.value(2).toUInt(), 1}}};
    gps.dateStamp = Stamp::text(dateAndTime.value(0));
    return gps;
}

TiffShape TiffShape::camera(const char *stamp)
{
    TiffShape tags;
    tags.dateTimeOriginal = Stamp::text(stamp);
    tags.dateTimeDigitized = Stamp::text(stamp);
    tags.dateTime = Stamp::text(stamp);
    return tags;
}

MediaFile buildExifBlock(const TiffShape &recipe, quint32 fileOffset)
{
    TiffLayout layout;
    const int ifd0 = layout.addDirectory(&MediaOffsets::ifd0);
    std::vector<TiffEntry> entries = addMetadata(layout, recipe);
    sortIfd0(entries, recipe.exifDatePlace, recipe.descendingEntries);
    layout.setEntries(ifd0, std::move(entries));
    return finish(layout, recipe, fileOffset);
}

MediaFile buildTiffFile(const TiffFileShape &recipe)
{
    TiffLayout layout;
    const int ifd0 = layout.addDirectory(&MediaOffsets::ifd0);
    std::vector<TiffEntry> entries = addMetadata(layout, recipe.tags);
    const QByteArray pixels = stripPixels(recipe.imageSize);
    const int strip = layout.addBlob(pixels);
    const std::vector<TiffEntry> image =
        imageEntries(recipe.imageSize, strip, quint32(pixels.size()));
    entries.insert(entries.end(), image.begin(), image.end());
    sortIfd0(entries, recipe.tags.exifDatePlace, recipe.tags.descendingEntries);
    layout.setEntries(ifd0, std::move(entries));

    std::vector<int> previewBlobs;
    int previous = ifd0;
    for (const QByteArray &jpeg : recipe.previews) {
        const int directory = layout.addDirectory();
        previewBlobs.push_back(layout.addBlob(jpeg));
        layout.setEntries(directory, previewEntries(previewBlobs.back(), quint32(jpeg.size())));
        layout.chain(previous, directory);
        previous = directory;
    }

    MediaFile file = finish(layout, recipe.tags, 0);
    for (std::size_t i = 0; i < recipe.previews.size(); ++i) {
        const quint32 begin = layout.sectionOffset(previewBlobs[i]);
        file.offsets.previews.push_back({begin, begin + quint32(recipe.previews[i].size())});
    }
    return file;
}

} // namespace orv::test

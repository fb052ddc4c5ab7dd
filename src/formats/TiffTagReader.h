#pragma once

#include "formats/ByteSource.h"
#include "formats/TiffIfd.h"

#include <QSize>
#include <QString>

#include <cmath>
#include <limits>

namespace orv {

// How the camera was set for the shot, from the Exif IFD: the four ratios as the file's
// rationals divide out, NaN where the file names none (or a zero denominator); the ISO speed
// from ISOSpeedRatings' first value, else ISOSpeed, 0 where neither is there. Plain numbers, as
// 100,000 items each keep one.
struct ShotSettings
{
    static constexpr double none = std::numeric_limits<double>::quiet_NaN();
    double exposureTime = none; // seconds
    double fNumber = none;
    double focalLength = none;  // millimetres
    double digitalZoomRatio = none;
    quint32 iso = 0;

    static bool has(double value) { return !std::isnan(value); }
    bool isEmpty() const
    {
        return !has(exposureTime) && !has(fNumber) && !has(focalLength) && !has(digitalZoomRatio) && iso == 0;
    }
    bool operator==(const ShotSettings &other) const
    {
        const auto same = [](double a, double b) { return a == b || (!has(a) && !has(b)); };
        return same(exposureTime, other.exposureTime) && same(fNumber, other.fNumber)
               && same(focalLength, other.focalLength) && same(digitalZoomRatio, other.digitalZoomRatio)
               && iso == other.iso;
    }
};

// The few non-date facts the scan needs from a still image's own TIFF structure.
struct TiffImageTags
{
    QString make;
    QString model;
    int orientation = 1; // the TIFF default when the tag is absent
    QSize pixelSize;     // invalid when the file names none
    // The Live Photo content identifier of the Apple maker note; empty when absent.
    QString contentIdentifier;
    // The Exif IFD's BodySerialNumber, else a DNG's CameraSerialNumber in IFD0; the lens's make,
    // model and serial number. Trimmed; empty when absent.
    QString bodySerial;
    QString lensMake;
    QString lensModel;
    QString lensSerial;
    ShotSettings shot;

    // The size as displayed: orientations 5 to 8 turn the image by a quarter.
    QSize orientedPixelSize() const
    {
        return orientation >= 5 && orientation <= 8 ? pixelSize.transposed() : pixelSize;
    }
};

class TiffTagReader
{
public:
    explicit TiffTagReader(const ByteSource &file) : m_file(file) {}

    TiffImageTags read(const TiffHeader &header);

private:
    QString text(const IfdEntry *entry, qint64 base) const;
    double ratio(const IfdEntry *entry, qint64 base, bool intel) const;
    quint32 firstInteger(const IfdEntry *entry, qint64 base, bool intel) const;
    void readShot(const TiffIfd &exif, qint64 base, bool intel, TiffImageTags &tags) const;
    QString appleContentIdentifier(qint64 makerNoteOffset);

    const ByteSource &m_file;
};

} // namespace orv

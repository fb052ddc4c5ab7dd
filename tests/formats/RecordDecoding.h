#pragma once

// Turns located value bytes into numbers, to compare them with exiftool's reading.

#include "BothSources.h"
#include "formats/DatesData.h"
#include "formats/MySingleFolderDataReader.h"

#include <QByteArray>
#include <QFileInfo>
#include <QString>
#include <QStringList>
#include <QtEndian>

namespace orv::test {

inline double rationalOf(const QByteArray &data, qsizetype at, bool motorola)
{
    const auto u32 = [&](qsizetype pos) {
        const char *bytes = data.constData() + pos;
        return motorola ? qFromBigEndian<quint32>(bytes) : qFromLittleEndian<quint32>(bytes);
    };
    const quint32 denominator = u32(at + 4);
    return denominator == 0 ? 0.0 : double(u32(at)) / denominator;
}

inline double degreesOf(const QByteArray &data, bool motorola)
{
    return rationalOf(data, 0, motorola) + rationalOf(data, 8, motorola) / 60.0 +
           rationalOf(data, 16, motorola) / 3600.0;
}

inline double gpsTimeSeconds(const GpsStampRecord &record)
{
    return rationalOf(record.dateData, 0, record.needsConv) * 3600.0 +
           rationalOf(record.dateData, 8, record.needsConv) * 60.0 +
           rationalOf(record.dateData, 16, record.needsConv);
}

// "14:28:17.24" as seconds of the day.
inline double secondsOfClockText(const QString &text)
{
    const QStringList parts = text.split(':');
    return parts.size() == 3
               ? parts[0].toDouble() * 3600.0 + parts[1].toDouble() * 60.0 + parts[2].toDouble()
               : -1.0;
}

inline int formatForSuffix(const QString &path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix == "jpg" || suffix == "jpeg")
        return JpegFormat;
    if (suffix == "tif" || suffix == "tiff")
        return TiffFormat;
    if (suffix == "png")
        return PngFormat;
    if (suffix == "webp")
        return WebpFormat;
    if (suffix == "heic")
        return HeicFormat;
    if (suffix == "avif")
        return AvifFormat;
    return RawFormat;
}

// As the scan calls the reader: WebP goes through its EXIF chunk, all others straight in.
inline DatesData readDatesAsTheScanDoes(const ByteSource &source, int format)
{
    MySingleFolderDataReader reader;
    if (format != WebpFormat)
        return reader.savereadDates(source, format);
    const WebpChunkOffsets chunks = reader.riffHeaderDataForWebP(source);
    return chunks.exifOffset ? reader.savereadDates(source, format, *chunks.exifOffset)
                             : DatesData{};
}

inline DatesData readDatesAsTheScanDoes(const QString &path,
                                        SourceKind kind = SourceKind::File)
{
    return readDatesAsTheScanDoes(*openSource(kind, path), formatForSuffix(path));
}

} // namespace orv::test

#pragma once

#include "formats/ByteSource.h"

#include <QByteArray>
#include <QSize>

#include <optional>

namespace orv {

// The recording date of an AVI file: the bytes of the IDIT chunk in the header list, most
// often the 26 of "EEE MMM dd HH:mm:ss yyyy\n" and a NUL, some cameras' 20 of
// "yyyy/MM/dd HH:mm:ss" and a NUL; and the software named by the INFO list's ISFT.
struct RiffMovieData
{
    QByteArray creaDateData;
    quint64 creaDateDataOffset = 0;
    QByteArray infoString;
    // From the main AVI header.
    QSize pixelSize;
    std::optional<double> duration;
};

// Nothing unless the file is a RIFF AVI with an IDIT chunk of the size of a stamp. Whether the
// bytes are a date is the codec's to tell.
std::optional<RiffMovieData> riffHeaderDataForMovie(const ByteSource &source);

} // namespace orv

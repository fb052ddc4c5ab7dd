#pragma once

#include "formats/ByteSource.h"

#include <QByteArray>
#include <QSize>

#include <optional>

namespace orv {

// The recording date of an AVI file: the 26 bytes of the IDIT chunk in the header list,
// "EEE MMM dd HH:mm:ss yyyy\n" and a NUL, and the software named by the INFO list's ISFT.
struct RiffMovieData
{
    QByteArray creaDateData;
    quint64 creaDateDataOffset = 0;
    QByteArray infoString;
    // From the main AVI header.
    QSize pixelSize;
    std::optional<double> duration;
};

// Nothing unless the file is a RIFF AVI with an IDIT chunk of exactly 26 bytes.
std::optional<RiffMovieData> riffHeaderDataForMovie(const ByteSource &source);

} // namespace orv

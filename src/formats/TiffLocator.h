#pragma once

#include "formats/DatesData.h"
#include "formats/ByteSource.h"
#include "formats/TiffIfd.h"

#include <optional>

namespace orv {

// The stamp tests applied to bytes read at a tag's offset. A value that fails is treated as
// absent. A stamp of blanks and colons passes on purpose: the tag exists and is to be filled.
bool verifyDateData(const QByteArray &data);
bool verifyOffsetData(const QByteArray &data);
bool verifyGpsDateStampData(const QByteArray &data);

// Finds a TIFF header and walks IFD0, the Exif IFD and the GPS IFD for the date, offset and GPS
// tags, then reads and verifies each value at its absolute offset.
class TiffLocator
{
public:
    explicit TiffLocator(const ByteSource &file) : m_file(file) {}

    // A header whose 4-byte magic stands exactly at `offset`.
    std::optional<TiffHeader> headerAt(qint64 offset);
    // The first header from `start` on. At the very start of a file, "II" or "MM" alone is
    // taken as a header too: some RAW formats put their own magic number after the order mark.
    std::optional<TiffHeader> scanForHeader(qint64 start);
    // Fills the tag values, the header offset and the byte order into `result`.
    void readDates(const TiffHeader &header, DatesData &result);
    // The GPS values of a TIFF structure whose first directory is itself the GPS IFD, as a CR3's
    // CMT4 box holds it.
    void readGpsDirectory(const TiffHeader &header, DatesData &result);

private:
    const ByteSource &m_file;
};

} // namespace orv

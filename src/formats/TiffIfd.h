#pragma once

#include "formats/ByteSource.h"

#include <QtGlobal>

#include <optional>
#include <vector>

namespace orv {

// A TIFF header found in a file: its absolute offset and byte order. All offsets inside the
// TIFF structure are relative to `offset`.
struct TiffHeader
{
    quint32 offset = 0;
    bool isIntel = false;
};

// The byte order named by a 4-byte TIFF magic, "II*\0" or "MM\0*"; nothing for other bytes.
std::optional<bool> tiffMagicOrder(const QByteArray &bytes, qsizetype pos);

struct IfdEntry
{
    quint16 tag = 0;
    quint16 type = 0;
    quint32 count = 0;
    quint32 value = 0;       // the value field read as a 32-bit number
    quint16 shortValue = 0;  // the value field's first 16 bits, for inline SHORT values
    quint8 byteValue = 0;    // its first byte, for inline BYTE values
    qint64 valueFieldOffset = 0; // absolute offset of the entry's value field

    // The offset a pointer tag (Exif IFD, GPS IFD) names. Writers get its type wrong; like
    // exiftool, a single value of any integer type is followed, read at its type's width, and
    // other types or counts are not.
    std::optional<quint32> pointerValue() const;
};

// The entries of one image file directory, read with a single file read. A directory that
// runs past the end of the file yields the entries that are complete.
class TiffIfd
{
public:
    TiffIfd() = default;
    TiffIfd(const ByteSource &file, qint64 ifdOffset, bool intel);
    // IFD0 of the TIFF structure whose header stands at `base`.
    static TiffIfd first(const ByteSource &file, qint64 base, bool intel);

    const std::vector<IfdEntry> &entries() const { return m_entries; }
    const IfdEntry *find(quint16 tag) const;

private:
    std::vector<IfdEntry> m_entries;
};

// Reads an ASCII tag's text up to its first NUL: from the value field when it fits there,
// else from `base` plus the value. At most `maxLength` bytes are read.
QByteArray tiffAsciiValue(const ByteSource &file, const IfdEntry &entry, qint64 base,
                          qint64 maxLength = 128);
// The same, nothing when the file ends before the value's first maxLength bytes do.
std::optional<QByteArray> tiffWholeAsciiValue(const ByteSource &file, const IfdEntry &entry, qint64 base,
                                              qint64 maxLength = 128);

} // namespace orv

#include "formats/TiffIfd.h"

#include "formats/ByteOrder.h"

namespace orv {

std::optional<bool> tiffMagicOrder(const QByteArray &bytes, qsizetype pos)
{
    if (hasBytesAt(bytes, pos, QByteArrayView("II*\0", 4)))
        return true;
    if (hasBytesAt(bytes, pos, QByteArrayView("MM\0*", 4)))
        return false;
    return std::nullopt;
}

std::optional<quint32> IfdEntry::pointerValue() const
{
    enum : quint16 { Byte = 1, Short = 3, Long = 4, SByte = 6, Undefined = 7, SShort = 8,
                     SLong = 9, Ifd = 13 };
    if (count != 1)
        return std::nullopt;
    switch (type) {
    case Byte:
    case SByte:
    case Undefined:
        return byteValue;
    case Short:
    case SShort:
        return shortValue;
    case Long:
    case SLong:
    case Ifd:
        return value;
    default:
        return std::nullopt;
    }
}

TiffIfd::TiffIfd(const ByteSource &file, qint64 ifdOffset, bool intel)
{
    constexpr int entrySize = 12;
    const std::optional<quint16> count = file.read16(ifdOffset, intel);
    if (!count)
        return;
    const QByteArray table = file.read(ifdOffset + 2, qint64(*count) * entrySize);
    const qsizetype complete = table.size() / entrySize;
    m_entries.reserve(complete);
    for (qsizetype i = 0; i < complete; ++i) {
        const qsizetype at = i * entrySize;
        m_entries.push_back(IfdEntry{get16(table, at, intel), get16(table, at + 2, intel),
                                     get32(table, at + 4, intel), get32(table, at + 8, intel),
                                     get16(table, at + 8, intel), quint8(table[at + 8]),
                                     ifdOffset + 2 + at + 8});
    }
}

TiffIfd TiffIfd::first(const ByteSource &file, qint64 base, bool intel)
{
    const std::optional<quint32> offset = file.read32(base + 4, intel);
    return offset ? TiffIfd(file, base + *offset, intel) : TiffIfd();
}

const IfdEntry *TiffIfd::find(quint16 tag) const
{
    for (const IfdEntry &entry : m_entries) {
        if (entry.tag == tag)
            return &entry;
    }
    return nullptr;
}

namespace {

// At most maxLength bytes of the value: in the value field when the whole value fits there.
QByteArray asciiBytes(const ByteSource &file, const IfdEntry &entry, qint64 base, qint64 maxLength)
{
    const qint64 at = entry.count <= 4 ? entry.valueFieldOffset : base + entry.value;
    return file.read(at, qMin<qint64>(entry.count, maxLength));
}

QByteArray upToNul(QByteArray text)
{
    const qsizetype nul = text.indexOf('\0');
    if (nul >= 0)
        text.truncate(nul);
    return text;
}

} // namespace

QByteArray tiffAsciiValue(const ByteSource &file, const IfdEntry &entry, qint64 base, qint64 maxLength)
{
    return upToNul(asciiBytes(file, entry, base, maxLength));
}

std::optional<QByteArray> tiffWholeAsciiValue(const ByteSource &file, const IfdEntry &entry, qint64 base,
                                              qint64 maxLength)
{
    QByteArray bytes = asciiBytes(file, entry, base, maxLength);
    if (bytes.size() < qMin<qint64>(entry.count, maxLength))
        return std::nullopt;
    return upToNul(std::move(bytes));
}

} // namespace orv

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

TiffIfd::TiffIfd(FileReader &file, qint64 ifdOffset, bool intel)
{
    constexpr int entrySize = 12;
    const quint16 count = file.read16(ifdOffset, intel);
    const QByteArray table = file.readDataOfLength(qint64(count) * entrySize, ifdOffset + 2);
    const qsizetype complete = table.size() / entrySize;
    m_entries.reserve(complete);
    for (qsizetype i = 0; i < complete; ++i) {
        const qsizetype at = i * entrySize;
        m_entries.push_back(IfdEntry{get16(table, at, intel), get16(table, at + 2, intel),
                                     get32(table, at + 4, intel), get32(table, at + 8, intel),
                                     get16(table, at + 8, intel), ifdOffset + 2 + at + 8});
    }
}

const IfdEntry *TiffIfd::find(quint16 tag) const
{
    for (const IfdEntry &entry : m_entries) {
        if (entry.tag == tag)
            return &entry;
    }
    return nullptr;
}

QByteArray tiffAsciiValue(FileReader &file, const IfdEntry &entry, qint64 base,
                          qint64 maxLength)
{
    const qint64 length = qMin<qint64>(entry.count, maxLength);
    const qint64 at = entry.count <= 4 ? entry.valueFieldOffset : base + entry.value;
    QByteArray text = file.readDataOfLength(length, at);
    const qsizetype nul = text.indexOf('\0');
    if (nul >= 0)
        text.truncate(nul);
    return text;
}

} // namespace orv

#pragma once

#include <QByteArray>
#include <QtGlobal>

namespace orv {

// Unsigned reads from a byte array in either TIFF byte order. A position whose bytes do not all
// lie inside the array reads as 0, the same answer a short file read gives.
inline quint16 get16(const QByteArray &bytes, qsizetype pos, bool intel)
{
    if (pos < 0 || pos + 2 > bytes.size())
        return 0;
    const auto b0 = quint8(bytes[pos]), b1 = quint8(bytes[pos + 1]);
    return intel ? quint16(b0 | (b1 << 8)) : quint16((b0 << 8) | b1);
}

inline quint32 get32(const QByteArray &bytes, qsizetype pos, bool intel)
{
    if (pos < 0 || pos + 4 > bytes.size())
        return 0;
    const quint32 lo = get16(bytes, intel ? pos : pos + 2, intel);
    const quint32 hi = get16(bytes, intel ? pos + 2 : pos, intel);
    return (hi << 16) | lo;
}

inline bool hasBytesAt(const QByteArray &bytes, qsizetype pos, QByteArrayView expected)
{
    return pos >= 0 && pos + expected.size() <= bytes.size()
        && QByteArrayView(bytes).sliced(pos, expected.size()) == expected;
}

} // namespace orv

#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QtEndian>

namespace orv::test {

// Boxes of ISO base media and QuickTime files, and chunks of RIFF files, with exact bytes: the
// walkers' tests craft their containers from these.

inline QByteArray be16(quint16 value)
{
    QByteArray bytes(2, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

inline QByteArray be32(quint32 value)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

inline QByteArray be64(quint64 value)
{
    QByteArray bytes(8, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

inline QByteArray le32(quint32 value)
{
    QByteArray bytes(4, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

// 32-bit size, type, payload.
inline QByteArray box(QByteArrayView type, QByteArrayView payload = {})
{
    return be32(quint32(8 + payload.size())) + type.toByteArray() + payload.toByteArray();
}

// Size 1 and the 64-bit size behind the type.
inline QByteArray largeBox(QByteArrayView type, QByteArrayView payload = {})
{
    return be32(1) + type.toByteArray() + be64(quint64(16 + payload.size())) + payload.toByteArray();
}

// Version and flags in front of the payload.
inline QByteArray fullBox(QByteArrayView type, quint8 version, QByteArrayView payload = {})
{
    return box(type, QByteArray(1, char(version)) + QByteArray(3, '\0') + payload.toByteArray());
}

// A box whose size field says `size`, whatever follows.
inline QByteArray boxClaiming(quint32 size, QByteArrayView type, QByteArrayView payload = {})
{
    return be32(size) + type.toByteArray() + payload.toByteArray();
}

// Type, little-endian payload size, payload and the pad byte of odd sizes.
inline QByteArray riffChunk(QByteArrayView type, QByteArrayView payload)
{
    QByteArray bytes = type.toByteArray() + le32(quint32(payload.size())) + payload.toByteArray();
    if (payload.size() % 2)
        bytes.append('\0');
    return bytes;
}

inline QByteArray riffList(QByteArrayView listType, QByteArrayView children)
{
    return riffChunk("LIST", listType.toByteArray() + children.toByteArray());
}

} // namespace orv::test

#pragma once

// Small hand-made files with exact tags, for the edge cases the corpus does not show.

#include <QBuffer>
#include <QByteArray>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <zlib.h>

#include <vector>

namespace orv::test {

// QByteArray{a, b} would be the (size, fill) constructor.
inline QByteArray twoBytes(char first, char second)
{
    QByteArray bytes;
    bytes.append(first).append(second);
    return bytes;
}

class ByteOrderWriter
{
public:
    explicit ByteOrderWriter(bool intel) : m_intel(intel) {}
    QByteArray u16(quint16 v) const
    {
        return m_intel ? twoBytes(char(v), char(v >> 8)) : twoBytes(char(v >> 8), char(v));
    }
    QByteArray u32(quint32 v) const
    {
        return m_intel ? u16(quint16(v)) + u16(quint16(v >> 16))
                       : u16(quint16(v >> 16)) + u16(quint16(v));
    }

private:
    bool m_intel;
};

struct TiffEntry
{
    quint16 tag;
    quint16 type;
    quint32 count;
    QByteArray data;      // in the file's order; up to 4 bytes stand in the entry
    int pointsToIfd = -1; // a LONG pointer to another directory of the same block

    static TiffEntry ascii(quint16 tag, QByteArray text) // with a NUL added
    {
        text.append('\0');
        return {tag, 2, quint32(text.size()), text};
    }
    static TiffEntry pointer(quint16 tag, int ifd) { return {tag, 4, 1, {}, ifd}; }
};

// A TIFF block: header, the directories one after another, then the values. Directory 0 is
// IFD0. valueOffsets() tells where each entry's value landed, relative to the header.
class TiffBlock
{
public:
    TiffBlock(bool intel, std::vector<std::vector<TiffEntry>> ifds)
        : m_intel(intel), m_ifds(std::move(ifds))
    {
    }

    QByteArray bytes(quint32 *valueOffsetOfTag = nullptr, quint16 tag = 0) const
    {
        const ByteOrderWriter w(m_intel);
        std::vector<quint32> ifdOffsets;
        quint32 at = 8;
        for (const auto &ifd : m_ifds) {
            ifdOffsets.push_back(at);
            at += quint32(2 + 12 * ifd.size() + 4);
        }
        QByteArray head = m_intel ? QByteArray("II*\0", 4) : QByteArray("MM\0*", 4);
        head += w.u32(8);
        QByteArray directories, values;
        for (const auto &ifd : m_ifds) {
            directories += w.u16(quint16(ifd.size()));
            for (const TiffEntry &e : ifd) {
                directories += w.u16(e.tag) + w.u16(e.type) + w.u32(e.count);
                if (e.pointsToIfd >= 0) {
                    directories += w.u32(ifdOffsets[e.pointsToIfd]);
                } else if (e.data.size() <= 4) {
                    if (valueOffsetOfTag && e.tag == tag)
                        *valueOffsetOfTag = quint32(8 + directories.size());
                    directories += e.data.leftJustified(4, '\0');
                } else {
                    const quint32 valueAt = at + quint32(values.size());
                    if (valueOffsetOfTag && e.tag == tag)
                        *valueOffsetOfTag = valueAt;
                    directories += w.u32(valueAt);
                    values += e.data;
                    if (values.size() % 2)
                        values += '\0';
                }
            }
            directories += w.u32(0);
        }
        return head + directories + values;
    }

private:
    bool m_intel;
    std::vector<std::vector<TiffEntry>> m_ifds;
};

inline QByteArray bigEndian16(quint16 v) { return twoBytes(char(v >> 8), char(v)); }
inline QByteArray bigEndian32(quint32 v) { return bigEndian16(quint16(v >> 16)) + bigEndian16(quint16(v)); }

inline QByteArray jpegSegment(quint8 marker, const QByteArray &payload)
{
    return twoBytes(char(0xFF), char(marker)) + bigEndian16(quint16(payload.size() + 2)) + payload;
}

inline QByteArray exifApp1(const QByteArray &tiff)
{
    return jpegSegment(0xE1, QByteArray("Exif\0\0", 6) + tiff);
}

inline QByteArray xmpApp1(const QByteArray &packet)
{
    return jpegSegment(0xE1, QByteArray("http://ns.adobe.com/xap/1.0/\0", 29) + packet);
}

// A real JPEG of the given size, as an encoder writes it.
inline QByteArray encodedJpeg(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPEG");
    return bytes;
}

inline QByteArray encodedPng()
{
    QImage image(4, 4, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

inline QByteArray pngChunk(const QByteArray &type, const QByteArray &data)
{
    const QByteArray covered = type + data;
    const uLong crc = crc32(crc32(0L, Z_NULL, 0), reinterpret_cast<const Bytef *>(covered.constData()),
                            uInt(covered.size()));
    return bigEndian32(quint32(data.size())) + covered + bigEndian32(quint32(crc));
}

// The offset of the first chunk of `type` in a PNG.
inline qsizetype pngChunkOffset(const QByteArray &png, const QByteArray &type)
{
    return png.indexOf(type) - 4;
}

inline QString writeTemporary(const QTemporaryDir &dir, const QString &name, const QByteArray &bytes)
{
    const QString path = dir.filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(bytes) != bytes.size())
        ADD_FAILURE() << "cannot write " << path.toStdString();
    return path;
}

} // namespace orv::test

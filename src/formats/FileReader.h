#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

#include <functional>

namespace orv {

// The one door for reading a media file's bytes (writes go through InPlaceWriter). Every locator
// reads through it, so that out-of-range
// offsets, short files and unreadable paths are handled in one place: a read past the end
// yields short data and the numeric reads yield 0, never an error.
class FileReader
{
public:
    static constexpr qint64 blockSize = 131072;

    explicit FileReader(const QString &path);

    bool isOpen() const { return m_file.isOpen(); }
    qint64 length() const { return m_length; }

    QByteArray readDataOfLength(qint64 length, qint64 offset);
    quint16 read16(qint64 offset, bool intel);
    quint32 read32(qint64 offset, bool intel);

    // One block of a forward scan. Positions below scanEnd are the ones this block is to test;
    // from each of them at least `lookahead` bytes are in `bytes`, except in the file's last
    // block, where the scan must bounds-check. Consecutive blocks overlap by `lookahead` bytes,
    // so every file position is tested exactly once and no pattern is split by a boundary.
    struct Block
    {
        const QByteArray &bytes;
        qint64 fileOffset;
        qsizetype scanEnd;
        bool isLast;
    };
    // Calls `visit` per block from `start` until it answers false or the file ends. Uses one
    // buffer of blockSize bytes.
    void scanBlocks(qint64 start, int lookahead, const std::function<bool(const Block &)> &visit);

private:
    QFile m_file;
    qint64 m_length = 0;
};

} // namespace orv

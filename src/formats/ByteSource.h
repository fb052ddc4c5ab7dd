#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>

namespace orv {

// Where a locator reads bytes from: a file opened once and read with pread at absolute offsets,
// or bytes already in memory. Every locator is a function of a ByteSource, so the same walk runs
// on a file and, in tests and fuzzers, on a buffer.
//
// A read never fails loudly: past the end, or when the disk answers short, it returns fewer
// bytes. The numeric reads answer nothing unless every byte was there, so a short read is never
// taken for a real zero.
class ByteSource
{
public:
    virtual ~ByteSource() = default;

    virtual qint64 length() const = 0;
    // Up to `length` bytes from `offset`; fewer at the end or on a read error, none when the
    // offset lies outside the source.
    virtual QByteArray read(qint64 offset, qint64 length) const = 0;

    std::optional<quint8> read8(qint64 offset) const;
    std::optional<quint16> read16(qint64 offset, bool intel) const;
    std::optional<quint32> read32(qint64 offset, bool intel) const;
    std::optional<quint64> read64(qint64 offset, bool intel) const;

    bool contains(qint64 offset, qint64 length) const
    {
        return offset >= 0 && length >= 0 && offset <= this->length()
            && length <= this->length() - offset;
    }

    // Forward scans (a TIFF magic in a RAW, preview markers, XMP tag names) read this much at a
    // time, into one buffer.
    static constexpr qint64 blockSize = 131072;

    // One block of a forward scan. Positions below scanEnd are the ones this block is to test;
    // from each of them at least `lookahead` bytes are in `bytes`, except in the source's last
    // block, where the scan must bounds-check. Consecutive blocks overlap by `lookahead` bytes,
    // so every position is tested exactly once and no pattern is split by a boundary.
    struct Block
    {
        const QByteArray &bytes;
        qint64 offset;
        qsizetype scanEnd;
        bool isLast;
    };
    // Calls `visit` per block from `start` until it answers false or the source ends.
    void scanBlocks(qint64 start, int lookahead,
                    const std::function<bool(const Block &)> &visit) const;
};

// What one statx tells about a path: the scan takes the item's file dates and size from the
// same call that decides whether the file may be opened at all.
struct FileStatus
{
    enum class Kind { Missing, Regular, Directory, Other };

    Kind kind = Kind::Missing;
    qint64 size = 0;
    // Seconds since the epoch, with nanoseconds as the fraction.
    double modificationTime = 0;
    // Not every file system keeps a birth time.
    std::optional<double> birthTime;

    static FileStatus of(const QString &path);
};

class MemoryByteSource final : public ByteSource
{
public:
    explicit MemoryByteSource(QByteArray bytes) : m_bytes(std::move(bytes)) {}

    qint64 length() const override { return m_bytes.size(); }
    QByteArray read(qint64 offset, qint64 length) const override;

private:
    QByteArray m_bytes;
};

// A regular file, opened once read-only and never seeked. The first `headSize` bytes are read
// in one call at open and served from memory: the JPEG, TIFF, PNG and WebP walks all begin
// there, and most of them end there too. A small read beyond the head brings in the
// `headSize` bytes from its offset on, and the following reads there are served from them: a
// still whose metadata stands behind its image data (a phone's HEIC with its meta box at the
// end) is walked field by field, and each field would otherwise cost a system call.
// Not to be shared between threads.
class FileByteSource : public ByteSource
{
public:
    static constexpr qint64 headSize = 65536;
    // Reads up to this long go through the block behind the head; longer ones go to the file.
    static constexpr qint64 smallReadSize = 4096;

    // Opens the file if it is a regular file (or a link to one). Devices, pipes and sockets are
    // refused before any open, since opening a pipe can block forever.
    explicit FileByteSource(const QString &path);
    // The same, with the status already taken for this path.
    FileByteSource(const QString &path, const FileStatus &status);
    ~FileByteSource() override;
    FileByteSource(const FileByteSource &) = delete;
    FileByteSource &operator=(const FileByteSource &) = delete;

    bool isOpen() const { return m_fd >= 0; }
    bool isRegularFile() const { return m_status.kind == FileStatus::Kind::Regular; }
    const FileStatus &status() const { return m_status; }

    qint64 length() const override { return m_length; }
    QByteArray read(qint64 offset, qint64 length) const override;

private:
    int m_fd = -1;
    FileStatus m_status;
    qint64 m_length = 0;
    QByteArray m_head;
    mutable QByteArray m_block;
    mutable qint64 m_blockOffset = 0;

    QByteArray readFile(qint64 offset, qint64 length) const;
};

} // namespace orv

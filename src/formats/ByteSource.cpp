#include "formats/ByteSource.h"

#include "formats/FileRead.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orv {

namespace {

template<typename T>
std::optional<T> readUnsigned(const ByteSource &source, qint64 offset, bool intel)
{
    const QByteArray bytes = source.read(offset, sizeof(T));
    if (bytes.size() != qsizetype(sizeof(T)))
        return std::nullopt;
    T value = 0;
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const qsizetype at = intel ? bytes.size() - 1 - i : i;
        value = T((value << 8) | quint8(bytes[at]));
    }
    return value;
}

double seconds(const struct statx_timestamp &t)
{
    return double(t.tv_sec) + double(t.tv_nsec) / 1e9;
}

} // namespace

std::optional<quint8> ByteSource::read8(qint64 offset) const
{
    return readUnsigned<quint8>(*this, offset, false);
}

std::optional<quint16> ByteSource::read16(qint64 offset, bool intel) const
{
    return readUnsigned<quint16>(*this, offset, intel);
}

std::optional<quint32> ByteSource::read32(qint64 offset, bool intel) const
{
    return readUnsigned<quint32>(*this, offset, intel);
}

std::optional<quint64> ByteSource::read64(qint64 offset, bool intel) const
{
    return readUnsigned<quint64>(*this, offset, intel);
}

void ByteSource::scanBlocks(qint64 start, int lookahead,
                            const std::function<bool(const Block &)> &visit) const
{
    qint64 offset = start;
    while (offset >= 0 && offset < length()) {
        const QByteArray bytes = read(offset, blockSize);
        const bool isLast = offset + bytes.size() >= length() || bytes.size() <= lookahead;
        const qsizetype scanEnd = isLast ? bytes.size() : bytes.size() - lookahead;
        if (bytes.isEmpty() || !visit(Block{bytes, offset, scanEnd, isLast}) || isLast)
            return;
        offset += scanEnd;
    }
}

QByteArray MemoryByteSource::read(qint64 offset, qint64 length) const
{
    if (offset < 0 || length <= 0 || offset >= m_bytes.size())
        return {};
    return m_bytes.mid(offset, qMin(length, m_bytes.size() - offset));
}

FileStatus FileStatus::of(const QString &path)
{
    FileStatus status;
    struct statx sx{};
    if (statx(AT_FDCWD, QFile::encodeName(path).constData(), 0,
              STATX_BASIC_STATS | STATX_BTIME, &sx) != 0)
        return status;
    status.kind = S_ISREG(sx.stx_mode)   ? Kind::Regular
                : S_ISDIR(sx.stx_mode) ? Kind::Directory
                                       : Kind::Other;
    status.size = qint64(sx.stx_size);
    status.modificationTime = seconds(sx.stx_mtime);
    if (sx.stx_mask & STATX_BTIME)
        status.birthTime = seconds(sx.stx_btime);
    return status;
}

FileByteSource::FileByteSource(const QString &path) : FileByteSource(path, FileStatus::of(path))
{
}

FileByteSource::FileByteSource(const QString &path, const FileStatus &status) : m_status(status)
{
    if (!isRegularFile())
        return;
    m_fd = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (m_fd < 0)
        return;
    m_length = status.size;
    m_head = readFile(0, qMin(headSize, m_length));
}

FileByteSource::~FileByteSource()
{
    if (m_fd >= 0)
        ::close(m_fd);
}

QByteArray FileByteSource::read(qint64 offset, qint64 length) const
{
    if (m_fd < 0 || offset < 0 || length <= 0 || offset >= m_length)
        return {};
    length = qMin(length, m_length - offset);
    if (offset + length <= m_head.size())
        return m_head.mid(offset, length);
    if (length > smallReadSize)
        return readFile(offset, length);
    const auto inBlock = [&] { return offset >= m_blockOffset && offset + length <= m_blockOffset + m_block.size(); };
    if (!inBlock()) {
        // Walks go forward and now and then look back a little, at a directory's own header.
        m_blockOffset = qMax<qint64>(0, offset - smallReadSize);
        m_block = readFile(m_blockOffset, qMin(headSize, m_length - m_blockOffset));
    }
    // A short read of the block ends where the disk stopped answering.
    return inBlock() ? m_block.mid(offset - m_blockOffset, length) : readFile(offset, length);
}

QByteArray FileByteSource::readFile(qint64 offset, qint64 length) const
{
    return readAtOffset(m_fd, offset, length);
}

QByteArray readAtOffset(int fd, qint64 offset, qint64 length)
{
    QByteArray bytes(std::max<qint64>(0, length), Qt::Uninitialized);
    qint64 done = 0;
    while (done < bytes.size()) {
        const ssize_t n = ::pread(fd, bytes.data() + done, size_t(bytes.size() - done), offset + done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            break;
        done += n;
    }
    bytes.truncate(done);
    return bytes;
}

} // namespace orv

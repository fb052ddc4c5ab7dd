#include "formats/ByteSource.h"

#include <QFile>

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

QByteArray MemoryByteSource::read(qint64 offset, qint64 length) const
{
    if (offset < 0 || length <= 0 || offset >= m_bytes.size())
        return {};
    return m_bytes.mid(offset, qMin(length, m_bytes.size() - offset));
}

FileByteSource::FileByteSource(const QString &path)
{
    const QByteArray native = QFile::encodeName(path);
    struct statx sx{};
    if (statx(AT_FDCWD, native.constData(), 0, STATX_TYPE | STATX_SIZE, &sx) != 0
        || !S_ISREG(sx.stx_mode))
        return;
    m_isRegular = true;
    m_fd = ::open(native.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (m_fd < 0)
        return;
    m_length = qint64(sx.stx_size);
    m_head = read(0, qMin(headSize, m_length));
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

    QByteArray bytes(length, Qt::Uninitialized);
    qint64 done = 0;
    while (done < length) {
        const ssize_t n = ::pread(m_fd, bytes.data() + done, size_t(length - done), offset + done);
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

#include "core/FileAttributes.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>

namespace orv {

namespace {

Instant fromTimestamp(const struct statx_timestamp &t)
{
    return Instant(double(t.tv_sec) + double(t.tv_nsec) / 1e9);
}

} // namespace

std::optional<FileAttributes> FileAttributes::read(const QString &path)
{
    const QByteArray native = QFile::encodeName(path);
    struct statx sx{};
    if (statx(AT_FDCWD, native.constData(), 0, STATX_BASIC_STATS | STATX_BTIME, &sx) != 0)
        return std::nullopt;

    FileAttributes a;
    a.modificationDate = fromTimestamp(sx.stx_mtime);
    a.creationDate = (sx.stx_mask & STATX_BTIME) ? fromTimestamp(sx.stx_btime) : a.modificationDate;
    a.size = qint64(sx.stx_size);
    a.isDirectory = S_ISDIR(sx.stx_mode);
    a.isRegularFile = S_ISREG(sx.stx_mode);
    a.isExtensionHidden = QFileInfo(path).fileName().startsWith(QLatin1Char('.'));
    return a;
}

} // namespace orv

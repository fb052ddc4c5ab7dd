#include "formats/NoReplaceRename.h"

#include "formats/InPlaceWriter.h"

#include <QFile>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orv {

namespace {

// A folder opened for the *at calls, closed with its scope.
class FolderHandle
{
public:
    explicit FolderHandle(const QString &folder)
        : m_fd(::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
    {
    }
    ~FolderHandle()
    {
        if (m_fd >= 0)
            ::close(m_fd);
    }
    FolderHandle(const FolderHandle &) = delete;
    FolderHandle &operator=(const FolderHandle &) = delete;
    int fd() const { return m_fd; }

private:
    int m_fd;
};

bool isRefusedFlag(int error)
{
    return error == EINVAL || error == ENOSYS || error == ENOTSUP;
}

bool isRefusedLink(int error)
{
    return error == EPERM || error == ENOTSUP || error == EOPNOTSUPP || error == EMLINK;
}

} // namespace

int renameWithoutReplacing(const QString &folder, const QString &from, const QString &to)
{
    return moveWithoutReplacing(folder, from, folder, to);
}

int moveWithoutReplacing(const QString &fromFolder, const QString &from, const QString &toFolder, const QString &to)
{
    if (!InPlaceWriter::mayWrite())
        return EIO;
    const FolderHandle sourceDir(fromFolder);
    if (sourceDir.fd() < 0)
        return errno;
    const FolderHandle targetDir(toFolder);
    if (targetDir.fd() < 0)
        return errno;
    const int in = sourceDir.fd();
    const int out = targetDir.fd();
    const QByteArray source = QFile::encodeName(from);
    const QByteArray target = QFile::encodeName(to);
    if (::renameat2(in, source.constData(), out, target.constData(), RENAME_NOREPLACE) == 0)
        return 0;
    if (!isRefusedFlag(errno))
        return errno;
    if (::linkat(in, source.constData(), out, target.constData(), 0) == 0) {
        if (::unlinkat(in, source.constData(), 0) == 0)
            return 0;
        const int error = errno;
        ::unlinkat(out, target.constData(), 0);
        return error;
    }
    if (!isRefusedLink(errno))
        return errno;
    // No links either (FAT, some network shares): only the check before stands between the
    // rename and a file of that name, and this run holds the journal's lock.
    struct stat status{};
    if (::fstatat(out, target.constData(), &status, AT_SYMLINK_NOFOLLOW) == 0)
        return EEXIST;
    return ::renameat(in, source.constData(), out, target.constData()) == 0 ? 0 : errno;
}

bool copyWithItsTimes(const QString &from, const QString &to)
{
    const int in = ::open(QFile::encodeName(from).constData(), O_RDONLY | O_CLOEXEC);
    if (in < 0)
        return false;
    struct stat status{};
    const int out = ::fstat(in, &status) == 0
                        ? ::open(QFile::encodeName(to).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC,
                                 status.st_mode & 07777)
                        : -1;
    bool copied = out >= 0;
    for (off_t left = status.st_size; copied && left > 0;) {
        const ssize_t n = ::sendfile(out, in, nullptr, size_t(left));
        copied = n > 0;
        left -= n;
    }
    const timespec times[2] = {{0, UTIME_OMIT}, status.st_mtim};
    copied = copied && ::fchmod(out, status.st_mode & 07777) == 0 && ::futimens(out, times) == 0 &&
             ::fsync(out) == 0;
    ::close(in);
    if (out >= 0)
        ::close(out);
    if (!copied && out >= 0)
        ::unlink(QFile::encodeName(to).constData());
    return copied;
}

bool isOnOneFileSystem(const QString &path, const QString &folder)
{
    struct stat first{}, second{};
    return ::stat(QFile::encodeName(path).constData(), &first) == 0 &&
           ::stat(QFile::encodeName(folder).constData(), &second) == 0 && first.st_dev == second.st_dev;
}

QString renameFailureText(int error, const QString &to)
{
    switch (error) {
    case EEXIST:
        return QStringLiteral("the name %1 is taken").arg(to);
    case ENOENT:
        return QStringLiteral("is missing");
    case EACCES:
    case EPERM:
        return QStringLiteral("permission denied in its folder");
    case EROFS:
        return QStringLiteral("the file system is read-only");
    case ENAMETOOLONG:
        return QStringLiteral("the name %1 is too long for the file system").arg(to);
    default:
        return QStringLiteral("cannot be renamed to %1: %2").arg(to, QString::fromLocal8Bit(std::strerror(error)));
    }
}

} // namespace orv

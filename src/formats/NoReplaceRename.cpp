#include "formats/NoReplaceRename.h"

#include "formats/InPlaceWriter.h"

#include <QFile>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
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
    if (!InPlaceWriter::mayWrite())
        return EIO;
    const FolderHandle dir(folder);
    if (dir.fd() < 0)
        return errno;
    const QByteArray source = QFile::encodeName(from);
    const QByteArray target = QFile::encodeName(to);
    if (::renameat2(dir.fd(), source.constData(), dir.fd(), target.constData(), RENAME_NOREPLACE) == 0)
        return 0;
    if (!isRefusedFlag(errno))
        return errno;
    if (::linkat(dir.fd(), source.constData(), dir.fd(), target.constData(), 0) == 0) {
        if (::unlinkat(dir.fd(), source.constData(), 0) == 0)
            return 0;
        const int error = errno;
        ::unlinkat(dir.fd(), target.constData(), 0);
        return error;
    }
    if (!isRefusedLink(errno))
        return errno;
    // No links either (FAT, some network shares): only the check before stands between the
    // rename and a file of that name, and this run holds the journal's lock.
    struct stat status{};
    if (::fstatat(dir.fd(), target.constData(), &status, AT_SYMLINK_NOFOLLOW) == 0)
        return EEXIST;
    return ::renameat(dir.fd(), source.constData(), dir.fd(), target.constData()) == 0 ? 0 : errno;
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

#include "folders/FolderToken.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

namespace orv {

namespace {

FolderAccessError errorFromErrno(int error)
{
    switch (error) {
    case EACCES:
    case EPERM:
        return FolderAccessError::Refused;
    case ENOTCONN:
    case EHOSTDOWN:
    case EHOSTUNREACH:
    case ESTALE:
    case EIO:
        return FolderAccessError::Unreachable;
    default:
        return FolderAccessError::Missing;
    }
}

} // namespace

std::optional<FileIdentity> FileIdentity::of(const QString &path)
{
    struct stat st{};
    if (::stat(QFile::encodeName(path).constData(), &st) != 0)
        return std::nullopt;
    return FileIdentity{quint64(st.st_dev), quint64(st.st_ino)};
}

std::optional<FolderToken> FolderToken::forPath(const QString &path)
{
    const QString absolute = QFileInfo(path).absoluteFilePath();
    if (!QFileInfo(absolute).isDir())
        return std::nullopt;
    const std::optional<FileIdentity> identity = FileIdentity::of(absolute);
    if (!identity)
        return std::nullopt;
    return FolderToken(QDir::cleanPath(absolute), *identity);
}

std::optional<FolderToken> FolderToken::derived(const FolderToken &parent, const QString &path)
{
    const Resolution resolved = parent.resolve();
    if (resolved.path.isEmpty() || !isAccessible(resolved.path))
        return std::nullopt;
    const QString child = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
    if (child != resolved.path && !child.startsWith(resolved.path + QLatin1Char('/')))
        return std::nullopt;
    return forPath(child);
}

bool FolderToken::isAccessible(const QString &directory)
{
    return ::access(QFile::encodeName(directory).constData(), R_OK | X_OK) == 0;
}

FolderToken::Resolution FolderToken::resolve() const
{
    Resolution result;
    if (isNull()) {
        result.error = FolderAccessError::Missing;
        return result;
    }
    struct stat st{};
    if (::stat(QFile::encodeName(m_path).constData(), &st) == 0 && S_ISDIR(st.st_mode)) {
        result.path = m_path;
        result.isStale = FileIdentity{quint64(st.st_dev), quint64(st.st_ino)} != m_identity;
        return result;
    }
    const int error = errno;
    result.path = renamedPath();
    if (result.path.isEmpty())
        result.error = errorFromErrno(error);
    else
        result.isStale = true;
    return result;
}

QString FolderToken::renamedPath() const
{
    const QString parent = QFileInfo(m_path).absolutePath();
    QDirIterator siblings(parent, QDir::Dirs | QDir::NoDotAndDotDot | QDir::Hidden);
    while (siblings.hasNext()) {
        const QString candidate = siblings.next();
        if (FileIdentity::of(candidate) == m_identity)
            return candidate;
    }
    return {};
}

} // namespace orv

#include "trash/FreedesktopTrash.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUrl>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orv {

namespace {

// A trash folder, and for a volume's trash the top of the volume its paths are relative to.
struct TrashLocation
{
    QString folder;
    QString top; // empty for the home trash, whose paths are absolute
};

std::optional<dev_t> deviceOf(const QString &path)
{
    struct stat st {};
    if (::lstat(QFile::encodeName(path).constData(), &st) != 0)
        return std::nullopt;
    return st.st_dev;
}

// The trash folder itself private to the user, its files/ and info/ inside, all writable.
bool makeTrashFolder(const QString &folder)
{
    for (const QString &dir : {folder, folder + QLatin1String("/files"), folder + QLatin1String("/info")}) {
        const QByteArray name = QFile::encodeName(dir);
        if (::mkdir(name.constData(), 0700) != 0 && errno != EEXIST)
            return false;
        struct stat st {};
        if (::lstat(name.constData(), &st) != 0 || !S_ISDIR(st.st_mode) || ::access(name.constData(), W_OK) != 0)
            return false;
    }
    return true;
}

// The highest directory above the file that is still on its file system: its mount point.
QString volumeTop(const QString &path, dev_t device)
{
    QDir dir = QFileInfo(path).absoluteDir();
    for (;;) {
        QDir parent = dir;
        if (!parent.cdUp() || parent == dir || deviceOf(parent.absolutePath()) != device)
            return dir.absolutePath();
        dir = parent;
    }
}

std::optional<TrashLocation> locate(const QString &path)
{
    const std::optional<dev_t> device = deviceOf(path);
    if (!device)
        return std::nullopt;
    const QString home = FreedesktopTrash::homeTrash();
    if (QDir().mkpath(QFileInfo(home).absolutePath()) && makeTrashFolder(home) && deviceOf(home) == device)
        return TrashLocation{home, {}};

    const QString top = volumeTop(path, *device);
    const QString uid = QString::number(::getuid());
    // An administrator's shared .Trash counts only when it is a real directory with the sticky bit,
    // so that no other user can have planted it to read what we throw away.
    const QString shared = top + QLatin1String("/.Trash");
    struct stat st {};
    if (::lstat(QFile::encodeName(shared).constData(), &st) == 0 && S_ISDIR(st.st_mode) && (st.st_mode & S_ISVTX)
        && makeTrashFolder(shared + QLatin1Char('/') + uid))
        return TrashLocation{shared + QLatin1Char('/') + uid, top};
    const QString own = top + QLatin1String("/.Trash-") + uid;
    if (makeTrashFolder(own) && ::lstat(QFile::encodeName(own).constData(), &st) == 0 && st.st_uid == ::getuid())
        return TrashLocation{own, top};
    return std::nullopt;
}

QString errnoText()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

// A rename that never replaces what stands at the target.
bool renameWithoutReplacing(const QString &from, const QString &to)
{
    return ::renameat2(AT_FDCWD, QFile::encodeName(from).constData(), AT_FDCWD, QFile::encodeName(to).constData(),
                       RENAME_NOREPLACE)
           == 0;
}

// The name in the trash: the file's own, then with a counter before its extension.
QString trashName(const QFileInfo &file, int attempt)
{
    if (attempt == 1)
        return file.fileName();
    const QString suffix = file.suffix();
    const QString base = suffix.isEmpty() ? file.fileName() : file.completeBaseName();
    return base + QLatin1Char('.') + QString::number(attempt) + (suffix.isEmpty() ? QString() : QLatin1Char('.') + suffix);
}

} // namespace

QString FreedesktopTrash::homeTrash()
{
    QString data = qEnvironmentVariable("XDG_DATA_HOME");
    if (data.isEmpty() || QDir::isRelativePath(data))
        data = QDir::homePath() + QLatin1String("/.local/share");
    return data + QLatin1String("/Trash");
}

std::optional<QString> FreedesktopTrash::trashFor(const QString &path)
{
    const std::optional<TrashLocation> location = locate(QFileInfo(path).absoluteFilePath());
    return location ? std::optional<QString>(location->folder) : std::nullopt;
}

QByteArray FreedesktopTrash::trashInfo(const QString &pathInInfo, const QDateTime &deletionDate)
{
    return QByteArrayLiteral("[Trash Info]\nPath=") + QUrl::toPercentEncoding(pathInInfo, "/")
           + QByteArrayLiteral("\nDeletionDate=")
           + deletionDate.toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss")).toLatin1() + '\n';
}

std::optional<TrashedFile> FreedesktopTrash::moveToTrash(const QString &path, QString *error,
                                                        const QDateTime &deletionDate)
{
    const QFileInfo file(path);
    const QString absolute = file.absoluteFilePath();
    const std::optional<TrashLocation> location = locate(absolute);
    if (!location) {
        *error = deviceOf(absolute) ? QStringLiteral("no trash can be written on its file system")
                                    : QStringLiteral("it does not exist");
        return std::nullopt;
    }
    const QString pathInInfo = location->top.isEmpty() ? absolute : QDir(location->top).relativeFilePath(absolute);
    const QByteArray info = trashInfo(pathInInfo, deletionDate);
    // The .trashinfo is made first and exclusively: it reserves the name, so two programs
    // trashing files of one name at once never take the same.
    for (int attempt = 1; attempt < 10000; ++attempt) {
        const QString name = trashName(file, attempt);
        const QString infoPath = location->folder + QLatin1String("/info/") + name + QLatin1String(".trashinfo");
        const int fd = ::open(QFile::encodeName(infoPath).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (fd < 0) {
            if (errno == EEXIST)
                continue;
            *error = errnoText();
            return std::nullopt;
        }
        const bool written = ::write(fd, info.constData(), size_t(info.size())) == info.size();
        ::close(fd);
        const QString trashedPath = location->folder + QLatin1String("/files/") + name;
        if (written && renameWithoutReplacing(absolute, trashedPath))
            return TrashedFile{absolute, trashedPath, infoPath};
        const int cause = written ? errno : ENOSPC;
        QFile::remove(infoPath);
        if (cause == EEXIST)
            continue;
        errno = cause;
        *error = errnoText();
        return std::nullopt;
    }
    *error = QStringLiteral("no free name in the trash");
    return std::nullopt;
}

bool FreedesktopTrash::restore(const TrashedFile &file, QString *error)
{
    if (!deviceOf(file.trashedPath)) {
        *error = QStringLiteral("it is no longer in the trash");
        return false;
    }
    if (!renameWithoutReplacing(file.trashedPath, file.originalPath)) {
        *error = errno == EEXIST ? QStringLiteral("another file has taken its place") : errnoText();
        return false;
    }
    QFile::remove(file.infoPath);
    return true;
}

} // namespace orv

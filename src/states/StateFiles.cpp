#include "states/StateFiles.h"

#include "states/SavedThumbs.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

#include <fcntl.h>
#include <unistd.h>

namespace orv::StateFiles {

namespace {

using namespace Qt::StringLiterals;

// A rename is durable only once its folder is on the disk.
bool syncFolder(const QString &folder)
{
    const int fd = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return false;
    const bool synced = ::fsync(fd) == 0;
    ::close(fd);
    return synced;
}

} // namespace

QString supportFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
}

QString quitFoldersPath()
{
    return QDir(supportFolder()).filePath(foldersQuitName);
}

QStringList olderGenerationsOf(const QString &quitFoldersFile)
{
    const QFileInfo info(quitFoldersFile);
    if (info.fileName() != foldersQuitName)
        return {};
    return {info.dir().filePath(u"savedFolders_v5"_s), info.dir().filePath(foldersPackageName)};
}

QString foldersFileOf(const QString &statePath)
{
    return QFileInfo(statePath).isDir() ? QDir(statePath).filePath(foldersPackageName) : statePath;
}

QString thumbsFileOf(const QString &statePath)
{
    const QFileInfo folders(foldersFileOf(statePath));
    if (folders.fileName() == foldersQuitName)
        return folders.dir().filePath(SavedThumbs::quitName);
    if (folders.fileName() == u"savedFolders_v5"_s)
        return folders.dir().filePath(u"savedThumbs_v5"_s);
    return folders.dir().filePath(SavedThumbs::packageName);
}

QString additionalDataFileOf(const QString &foldersFile)
{
    const QFileInfo info(foldersFile);
    if (info.fileName() == foldersQuitName)
        return info.dir().filePath(additionalDataQuitName);
    if (info.fileName() == u"savedFolders_v5"_s)
        return info.dir().filePath(u"savedAdditionalData_v5"_s);
    if (info.fileName() == foldersPackageName)
        return info.dir().filePath(additionalDataPackageName);
    return {};
}

QString writeDurably(const QString &path, const QByteArray &data)
{
    const QString folder = QFileInfo(path).absolutePath();
    if (!QDir().mkpath(folder))
        return u"cannot make the folder %1"_s.arg(folder);
    // QSaveFile writes a new file and syncs it before it takes the old one's place.
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size() || !file.commit())
        return u"cannot write %1: %2"_s.arg(path, file.errorString());
    if (!syncFolder(folder))
        return u"cannot sync the folder %1"_s.arg(folder);
    return {};
}

QString keepAside(const QString &path, const QString &why)
{
    const QString stamp = QDateTime::currentDateTime().toString(u"yyyy-MM-dd HH-mm-ss"_s);
    const QString label = why.isEmpty() ? u"unreadable"_s : why;
    QString aside = u"%1.%2 %3"_s.arg(path, label, stamp);
    for (int n = 2; QFileInfo::exists(aside); ++n)
        aside = u"%1.%2 %3 (%4)"_s.arg(path, label, stamp).arg(n);
    return QFile::rename(path, aside) ? aside : QString();
}

NewPackage writePackage(const QString &parentFolder, const QByteArray &folders, const QByteArray &additionalData)
{
    QList<std::pair<QString, QByteArray>> files{{foldersPackageName, folders}};
    if (!additionalData.isEmpty())
        files.append({additionalDataPackageName, additionalData});
    return writePackage(parentFolder, files);
}

NewPackage writePackage(const QString &parentFolder, const QList<std::pair<QString, QByteArray>> &files)
{
    const QString name = QDateTime::currentDateTime().toString(u"yyyy-MM-dd HH-mm-ss"_s);
    QString path = QDir(parentFolder).filePath(name + u'.' + packageExtension);
    for (int n = 2; QFileInfo::exists(path); ++n)
        path = QDir(parentFolder).filePath(u"%1 (%2).%3"_s.arg(name).arg(n).arg(packageExtension));
    if (!QDir().mkpath(path))
        return {{}, u"cannot make the package %1"_s.arg(path)};
    for (const auto &[fileName, data] : files) {
        if (const QString problem = writeDurably(QDir(path).filePath(fileName), data); !problem.isEmpty()) {
            QDir(path).removeRecursively();
            return {{}, problem};
        }
    }
    return {path, {}};
}

} // namespace orv::StateFiles

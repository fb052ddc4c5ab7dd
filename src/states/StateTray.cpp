#include "states/StateTray.h"

#include "states/SavedThumbs.h"
#include "trash/FreedesktopTrash.h"

#include <QBuffer>
#include <QCollator>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QLocale>

#include <algorithm>

namespace orv {

using namespace Qt::StringLiterals;

namespace {

QString timeName()
{
    return QDateTime::currentDateTime().toString(u"yyyy-MM-dd HH-mm-ss"_s);
}

// The first path in folder of the form "base.suffix", "base 2.suffix", ... that is free.
QString freePath(const QString &folder, const QString &base, const QString &suffix)
{
    const QDir dir(folder);
    QString path = dir.filePath(base + suffix);
    for (int n = 2; QFileInfo::exists(path); ++n)
        path = dir.filePath(u"%1 %2%3"_s.arg(base).arg(n).arg(suffix));
    return path;
}

QString packageSuffix()
{
    return u'.' + StateFiles::packageExtension;
}

QByteArray encodedPreviewImage(const QImage &image)
{
    QImage shown = image;
    if (shown.isNull()) {
        shown = QImage(10, 10, QImage::Format_ARGB32);
        shown.fill(Qt::transparent);
    }
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    shown.save(&buffer, shown.hasAlphaChannel() ? "PNG" : "JPEG", 85);
    return data;
}

TrayRow stateRow(const QFileInfo &info)
{
    TrayRow row;
    row.path = info.absoluteFilePath();
    row.preview = StateTray::readPreview(row.path);
    row.sortName = row.preview.sortName(info.completeBaseName());
    row.sortCreation = info.birthTime().isValid() ? info.birthTime() : info.lastModified();
    row.sortModification = info.lastModified();
    return row;
}

TrayRow folderRow(const QFileInfo &info, TrayRow::Type type)
{
    TrayRow row;
    row.type = type;
    row.path = info.absoluteFilePath();
    row.sortName = info.fileName();
    row.sortCreation = info.birthTime().isValid() ? info.birthTime() : info.lastModified();
    row.sortModification = info.lastModified();
    return row;
}

double fromSeconds(const OptionalDate &date)
{
    return date ? date->secondsSinceEpoch() : Instant::distantPast().secondsSinceEpoch();
}

// A quit file takes its name in a package.
QString packageNameOf(const QString &fileName)
{
    static const QHash<QString, QString> names{
        {StateFiles::foldersQuitName, StateFiles::foldersPackageName},
        {StateFiles::additionalDataQuitName, StateFiles::additionalDataPackageName},
        {SavedThumbs::quitName, SavedThumbs::packageName},
    };
    return names.value(fileName, fileName);
}

// Moves a package into folder under a name from the time; the package.
StateTray::Moved movePackage(const QFileInfo &entry, const QString &folder)
{
    const QString target = freePath(folder, timeName(), packageSuffix());
    if (!QDir().rename(entry.absoluteFilePath(), target))
        return {{}, u"cannot move %1 to %2"_s.arg(entry.absoluteFilePath(), target)};
    return {target, {}};
}

// Loose files are the files of one state: they go together into a new package.
StateTray::Moved packLooseFiles(const QFileInfoList &files, const QString &folder)
{
    const QString target = freePath(folder, timeName(), packageSuffix());
    if (!QDir().mkpath(target))
        return {{}, u"cannot make the package %1"_s.arg(target)};
    for (const QFileInfo &file : files) {
        const QString to = QDir(target).filePath(packageNameOf(file.fileName()));
        if (!QFile::rename(file.absoluteFilePath(), to))
            return {target, u"cannot move %1 to %2"_s.arg(file.absoluteFilePath(), to)};
    }
    return {target, {}};
}

} // namespace

StateTray::StateTray(QString supportFolder) : m_supportFolder(std::move(supportFolder))
{
}

QString StateTray::appStateTrayRootPath() const
{
    const QString root = QDir(m_supportFolder).filePath(rootName);
    QDir().mkpath(root);
    return root;
}

QString StateTray::deletedStatesPath() const
{
    return QDir(m_supportFolder).filePath(deletedStatesName);
}

bool StateTray::isUnderRoot(const QString &path) const
{
    const QString root = QDir(appStateTrayRootPath()).canonicalPath();
    const QString canonical = QFileInfo(path).canonicalFilePath();
    return !canonical.isEmpty() && canonical.startsWith(root + u'/');
}

TrayPreview StateTray::readPreview(const QString &statePath)
{
    QFile file(QDir(statePath).filePath(StateFiles::trayPreviewDataName));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return TrayPreview::fromCbor(file.readAll(), file.fileName()).preview;
}

QList<TrayRow> StateTray::refreshData(const QString &folder) const
{
    QList<TrayRow> rows;
    const QDir dir(folder);
    if (QDir(folder).canonicalPath() != QDir(appStateTrayRootPath()).canonicalPath() && isUnderRoot(folder))
        rows.append(folderRow(QFileInfo(dir.absoluteFilePath(u".."_s)), TrayRow::Type::Superfolder));
    for (const QFileInfo &entry : dir.entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        if (entry.suffix() == StateFiles::packageExtension)
            rows.append(stateRow(entry));
        else
            rows.append(folderRow(entry, TrayRow::Type::Subfolder));
    }
    return rows;
}

void StateTray::sortStateArray(QList<TrayRow> &rows, int sortType, bool ascending)
{
    // The C locale collates by code points, numbers and case included: names then sort as in
    // English.
    QCollator collator(QLocale().language() == QLocale::C ? QLocale(QLocale::English) : QLocale());
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    // Each sort type is a chain of keys, the later ones breaking ties of the earlier.
    const auto byName = [&collator](const TrayRow &a, const TrayRow &b) { return collator.compare(a.sortName, b.sortName); };
    const auto byCreation = [](const TrayRow &a, const TrayRow &b) {
        return a.sortCreation < b.sortCreation ? -1 : b.sortCreation < a.sortCreation ? 1 : 0;
    };
    const auto byModification = [](const TrayRow &a, const TrayRow &b) {
        return a.sortModification < b.sortModification ? -1 : b.sortModification < a.sortModification ? 1 : 0;
    };
    const auto byDate = [](double a, double b) { return a < b ? -1 : b < a ? 1 : 0; };
    const auto compare = [&](const TrayRow &a, const TrayRow &b) {
        int order = 0;
        switch (sortType) {
        case 2:
            order = byDate(fromSeconds(a.preview.fromDate), fromSeconds(b.preview.fromDate));
            break;
        case 3:
            order = byDate(fromSeconds(a.preview.toDate), fromSeconds(b.preview.toDate));
            break;
        case 4:
        case 102:
            order = byCreation(a, b);
            break;
        case 103:
            order = byModification(a, b);
            break;
        default:
            break;
        }
        if (order == 0)
            order = byName(a, b);
        if (order == 0)
            order = byCreation(a, b);
        if (order == 0)
            order = QString::compare(a.path, b.path);
        return order;
    };
    // The way up stays first whichever way the rest goes.
    const auto firstOther = std::stable_partition(rows.begin(), rows.end(), [](const TrayRow &row) {
        return row.type == TrayRow::Type::Superfolder;
    });
    std::stable_sort(firstOther, rows.end(), [&](const TrayRow &a, const TrayRow &b) {
        return ascending ? compare(a, b) < 0 : compare(b, a) < 0;
    });
}

StateFiles::NewPackage StateTray::storeState(const QString &folder, const QByteArray &savedFolders,
                                             const TrayPreview &preview, const QImage &previewImage,
                                             const QByteArray &thumbs, const QByteArray &additionalData,
                                             const QByteArray &windowsData) const
{
    QList<std::pair<QString, QByteArray>> files{{StateFiles::foldersPackageName, savedFolders},
                                                {StateFiles::trayPreviewDataName, preview.toCbor()},
                                                {StateFiles::previewImageName, encodedPreviewImage(previewImage)}};
    if (!thumbs.isEmpty())
        files.append({SavedThumbs::packageName, thumbs});
    if (!additionalData.isEmpty())
        files.append({StateFiles::additionalDataPackageName, additionalData});
    if (!windowsData.isEmpty())
        files.append({StateFiles::windowsDataName, windowsData});
    return StateFiles::writePackage(folder, files);
}

QString StateTray::setUserData(const QString &statePath, const QString &title, const QString &note) const
{
    TrayPreview preview = readPreview(statePath);
    preview.altFolderName = title;
    preview.additionalInfos = note;
    return StateFiles::writeDurably(QDir(statePath).filePath(StateFiles::trayPreviewDataName), preview.toCbor());
}

QString StateTray::deleteStateAtPath(const QString &statePath) const
{
    QString error;
    return FreedesktopTrash::moveToTrash(statePath, &error) ? QString() : error;
}

StateTray::Moved StateTray::takeOver(const QString &statePath) const
{
    const QString folder = deletedStatesPath();
    if (!QDir().mkpath(folder))
        return {{}, u"cannot make the folder %1"_s.arg(folder)};
    const QString target = freePath(folder, takenOverName, packageSuffix());
    if (!QDir().rename(statePath, target))
        return {{}, u"cannot move %1 to %2"_s.arg(statePath, target)};
    // The folder of states to verify goes once its last state has been taken up again.
    const QFileInfo parent(QFileInfo(statePath).absolutePath());
    if (parent.fileName() == toVerifyName && QDir(parent.absoluteFilePath()).isEmpty())
        QDir().rmdir(parent.absoluteFilePath());
    return {target, {}};
}

StateTray::Moved StateTray::putBack(const QString &takenPath, const QString &statePath) const
{
    const QFileInfo state(statePath);
    const QString folder = state.absolutePath();
    if (!QDir().mkpath(folder))
        return {{}, u"cannot make the folder %1"_s.arg(folder)};
    const QString target = freePath(folder, state.completeBaseName(), packageSuffix());
    if (!QDir().rename(takenPath, target))
        return {{}, u"cannot move %1 to %2"_s.arg(takenPath, target)};
    return {target, {}};
}

StateTray::Moved StateTray::checkForUncleanedTempFiles() const
{
    const QDir deleted(deletedStatesPath());
    const QFileInfoList left = deleted.entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    if (left.isEmpty())
        return {};
    const QString toVerify = QDir(appStateTrayRootPath()).filePath(toVerifyName);
    if (!QDir().mkpath(toVerify))
        return {{}, u"cannot make the folder %1"_s.arg(toVerify)};
    QList<Moved> moves;
    QFileInfoList looseFiles;
    for (const QFileInfo &entry : left) {
        if (entry.isDir())
            moves.append(movePackage(entry, toVerify));
        else
            looseFiles.append(entry);
    }
    if (!looseFiles.isEmpty())
        moves.append(packLooseFiles(looseFiles, toVerify));
    QStringList problems;
    for (const Moved &moved : std::as_const(moves)) {
        if (!moved.problem.isEmpty())
            problems.append(moved.problem);
        if (moved.path.isEmpty())
            continue;
        if (QFileInfo::exists(QDir(moved.path).filePath(StateFiles::trayPreviewDataName)))
            continue;
        TrayPreview preview;
        preview.isUndeletedState = true;
        preview.activeFolderName = QFileInfo(moved.path).completeBaseName();
        if (const QString problem =
                StateFiles::writeDurably(QDir(moved.path).filePath(StateFiles::trayPreviewDataName), preview.toCbor());
            !problem.isEmpty())
            problems.append(problem);
    }
    if (deleted.isEmpty())
        QDir().rmdir(deleted.path());
    return {toVerify, problems.join(u'\n')};
}

QString StateTray::deleteTempDeletedStatePath() const
{
    const QString folder = deletedStatesPath();
    if (!QFileInfo::exists(folder) || QDir().rmdir(folder))
        return {}; // nothing, or nothing left since the openings were undone
    QString error;
    return FreedesktopTrash::moveToTrash(folder, &error) ? QString() : error;
}

} // namespace orv

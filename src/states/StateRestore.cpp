#include "states/StateRestore.h"

#include "core/FileAttributes.h"
#include "core/MySinglePic.h"
#include "core/PicSaver.h"
#include "folders/MySingleFolder.h"
#include "folders/ZoneCorrection.h"
#include "states/SavedThumbs.h"
#include "states/StateFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QtConcurrent/QtConcurrentMap>

namespace orv {

using namespace Qt::StringLiterals;

QStringList RestoreReport::lines() const
{
    QStringList all;
    for (const QString &folder : movedFolders)
        all.append(u"folder found again: %1"_s.arg(folder));
    for (const QString &folder : missingFolders)
        all.append(u"folder not found: %1"_s.arg(folder));
    for (const QString &file : missingFiles)
        all.append(u"file not found: %1"_s.arg(file));
    for (const QString &file : changedFiles)
        all.append(u"file changed since the state was kept: %1"_s.arg(file));
    for (const QString &folder : foldersAlreadyOpen)
        all.append(u"folder already open, left out: %1"_s.arg(folder));
    if (!additionalDataProblem.isEmpty())
        all.append(u"tracks not restored: %1"_s.arg(additionalDataProblem));
    if (conversionType == AdditionalData::ConversionType::OtherSystemZone)
        all.append(u"kept under another system time zone: the dates of %1 item(s) without a zone of their own were read anew in this one"_s.arg(itemsReadInThisZone));
    return all;
}

namespace StateRestore {

namespace {

// Marks the item by what stands at its path now.
void checkItem(MySinglePic *pic)
{
    const std::optional<FileAttributes> attributes = FileAttributes::read(pic->spPath());
    if (!attributes || attributes->isDirectory)
        pic->fileUnchangedState = 1;
    else if (!attributes->isRegularFile || !PicSaver::areTheFileAttributesUnchanged(*pic, *attributes))
        pic->fileUnchangedState = 3;
    else if (pic->fileUnchangedState == 1)
        pic->fileUnchangedState = 0; // missing when the state was kept, back as it was
}

// The files of a folder are examined on the pool, and listed in the folder's order.
void checkItems(const MySingleFolder &folder, RestoreReport &report)
{
    QList<MySinglePic *> pics;
    for (MySinglePic *pic : folder.sfPicDetails_fullArray) {
        pics.append(pic);
        if (pic->bundleDependentImage)
            pics.append(pic->bundleDependentImage);
    }
    QtConcurrent::blockingMap(pics, checkItem);
    for (const MySinglePic *pic : std::as_const(pics)) {
        if (pic->fileUnchangedState == 1)
            report.missingFiles.append(pic->spPath());
        else if (pic->fileUnchangedState == 3)
            report.changedFiles.append(pic->spPath());
    }
}

// The records name items by their place in the source the state was written from, which the
// items keep; the thumbnails of movie positions are rebuilt when shown.
void readThumbnails(const QString &path, Restored &restored)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return;
    QHash<qint64, const MySinglePic *> byIndex;
    qint64 itemCount = 0;
    for (const std::unique_ptr<MySingleFolder> &folder : restored.read.folders) {
        for (const MySinglePic *pic : folder->sfPicDetails_fullArray) {
            if (pic->indexInSource_full >= 0) {
                byIndex.insert(pic->indexInSource_full, pic);
                itemCount = std::max(itemCount, qint64(pic->indexInSource_full) + 1);
            }
        }
    }
    const SavedThumbs::ReadResult read = SavedThumbs::read(file.readAll(), itemCount, path);
    restored.thumbnailsProblem = read.problem;
    for (const ThumbRecord &record : read.records)
        if (const MySinglePic *pic = byIndex.value(record.indexInSource); pic && record.seconds == 0.0)
            restored.thumbnails.append({pic->sessionUniqueId, record.data});
}

// The additional data of a state whose folders were read; a state without one has none.
void readAdditionalData(const QString &foldersPath, Restored &restored)
{
    const QString path = StateFiles::additionalDataFileOf(foldersPath);
    if (path.isEmpty() || !QFileInfo::exists(path))
        return;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        restored.report.additionalDataProblem = u"%1: %2"_s.arg(path, file.errorString());
        return;
    }
    restored.additional = AdditionalData::read(file.readAll(), path);
    if (restored.additional.problem.isEmpty()) {
        restored.report.conversionType =
            AdditionalData::conversionNeeded(restored.additional.stateVersion, restored.additional.view);
        return;
    }
    file.close();
    const QString aside = StateFiles::keepAside(path);
    restored.report.additionalDataProblem =
        aside.isEmpty() ? restored.additional.problem
                        : u"%1 (kept as %2)"_s.arg(restored.additional.problem, aside);
}

} // namespace

QString reconnect(MySingleFolder &folder, const QString &directory, RestoreReport &report)
{
    const std::optional<FolderToken> token = FolderToken::forPath(directory);
    if (!token || !FolderToken::isAccessible(directory))
        return u"%1 is no folder that can be read"_s.arg(directory);
    const bool sameDirectory = token->identity() == folder.sfSecBookmark.identity();
    if (!sameDirectory) {
        const QDir dir(directory);
        for (const MySinglePic *pic : folder.sfPicDetails_fullArray) {
            for (const MySinglePic *each : {pic, static_cast<const MySinglePic *>(pic->bundleDependentImage)}) {
                if (each && !QFileInfo(dir.filePath(each->spName)).isFile())
                    return u"%1 does not hold the files of %2 (%3 is missing)"_s.arg(directory, folder.sfFolder, each->spName);
            }
        }
    }
    const QString before = folder.sfFolderPath;
    folder.sfSecBookmark = *token;
    folder.errorType = FolderAccessError::None;
    if (folder.unlockedSecUrl().isEmpty())
        return u"%1 is no folder that can be read"_s.arg(directory);
    folder.isDisconnected = false;
    report.missingFolders.removeOne(before);
    report.movedFolders.append(u"%1 -> %2"_s.arg(before, folder.sfFolderPath));
    checkItems(folder, report);
    return {};
}

RestoredView resolveView(const AdditionalData::ViewState &kept, AdditionalData::ConversionType conversion,
                         const QList<MySingleFolder *> &foldersInStateOrder)
{
    RestoredView view;
    view.kept = kept;
    const QList<qint64> folderPlaces =
        kept.selectedCompoundFoldersIndexSet.isEmpty() && kept.selectedFolderIndex >= 0
            ? QList<qint64>{kept.selectedFolderIndex}
            : kept.selectedCompoundFoldersIndexSet;
    for (qint64 place : folderPlaces)
        if (MySingleFolder *folder = foldersInStateOrder.value(place))
            view.selectedFolders.append(folder);
    QHash<qint64, MySinglePic *> byPlace;
    for (const MySingleFolder *folder : foldersInStateOrder)
        if (folder)
            for (MySinglePic *pic : folder->sfPicDetails_fullArray)
                if (pic->indexInSource_full >= 0)
                    byPlace.insert(pic->indexInSource_full, pic);
    const auto pics = [&byPlace](const QList<qint64> &places) {
        QList<MySinglePic *> found;
        for (qint64 place : places)
            if (MySinglePic *pic = byPlace.value(place))
                found.append(pic);
        return found;
    };
    const bool selects = conversion != AdditionalData::ConversionType::OlderThanSelections;
    for (const AdditionalData::SubStrip &sub : kept.subTLs) {
        RestoredStrip strip{sub, pics(sub.subTLShelfSourceIndexSet), nullptr, {}};
        if (selects) {
            strip.current = byPlace.value(sub.picSelectionCurrentIndex);
            strip.selected = pics(sub.selectedThumbsIndexSet);
        }
        view.strips.append(strip);
    }
    if (selects) {
        view.current = byPlace.value(kept.picSelectionCurrentIndex);
        view.selected = pics(kept.selectedThumbsIndexSet);
    }
    return view;
}

RestoreReport checkFolders(const std::vector<std::unique_ptr<MySingleFolder>> &folders)
{
    RestoreReport report;
    for (const std::unique_ptr<MySingleFolder> &folder : folders) {
        const QString before = folder->sfFolderPath;
        const QString now = folder->unlockedSecUrl();
        if (now.isEmpty()) {
            folder->isDisconnected = true;
            report.missingFolders.append(before);
            for (MySinglePic *pic : folder->sfPicDetails_fullArray) {
                pic->fileUnchangedState = 1;
                if (pic->bundleDependentImage)
                    pic->bundleDependentImage->fileUnchangedState = 1;
            }
            continue;
        }
        if (now != before)
            report.movedFolders.append(u"%1 -> %2"_s.arg(before, now));
        checkItems(*folder, report);
    }
    return report;
}

Restored fromFile(const QString &statePath)
{
    Restored restored;
    const QString path = StateFiles::foldersFileOf(statePath);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        restored.read.problem = u"%1: %2"_s.arg(path, file.errorString());
        return restored;
    }
    restored.read = SavedFolders::read(file.readAll(), path);
    file.close();
    if (!restored.read.problem.isEmpty()) {
        restored.keptAsidePath = StateFiles::keepAside(path);
        return restored;
    }
    restored.report = checkFolders(restored.read.folders);
    readAdditionalData(path, restored);
    // A local stamp means another instant in this zone: the items stand as a fresh import
    // would read them here, with their pending changes on top.
    if (restored.report.conversionType == AdditionalData::ConversionType::OtherSystemZone) {
        QList<MySingleFolder *> folders;
        for (const std::unique_ptr<MySingleFolder> &folder : restored.read.folders)
            folders.append(folder.get());
        restored.report.itemsReadInThisZone = ZoneCorrection::updateEveryFileDate(folders);
    }
    readThumbnails(StateFiles::thumbsFileOf(statePath), restored);
    return restored;
}

} // namespace StateRestore

} // namespace orv

#include "states/StateRestore.h"

#include "core/FileAttributes.h"
#include "core/MySinglePic.h"
#include "core/PicSaver.h"
#include "folders/MySingleFolder.h"
#include "states/StateFiles.h"

#include <QFile>
#include <QFileInfo>
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
    if (restored.additional.problem.isEmpty())
        return;
    file.close();
    const QString aside = StateFiles::keepAside(path);
    restored.report.additionalDataProblem =
        aside.isEmpty() ? restored.additional.problem
                        : u"%1 (kept as %2)"_s.arg(restored.additional.problem, aside);
}

} // namespace

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
    return restored;
}

} // namespace StateRestore

} // namespace orv

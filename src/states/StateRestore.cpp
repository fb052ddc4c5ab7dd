#include "states/StateRestore.h"

#include "core/FileAttributes.h"
#include "core/MySinglePic.h"
#include "core/PicSaver.h"
#include "folders/MySingleFolder.h"
#include "states/StateFiles.h"

#include <QFile>

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
    return all;
}

namespace StateRestore {

namespace {

void checkItem(MySinglePic &pic, RestoreReport &report)
{
    const QString path = pic.spPath();
    const std::optional<FileAttributes> attributes = FileAttributes::read(path);
    if (!attributes || attributes->isDirectory) {
        pic.fileUnchangedState = 1;
        report.missingFiles.append(path);
    } else if (!attributes->isRegularFile || !PicSaver::areTheFileAttributesUnchanged(pic, *attributes)) {
        pic.fileUnchangedState = 3;
        report.changedFiles.append(path);
    }
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
        for (MySinglePic *pic : folder->sfPicDetails_fullArray) {
            checkItem(*pic, report);
            if (pic->bundleDependentImage)
                checkItem(*pic->bundleDependentImage, report);
        }
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
    return restored;
}

} // namespace StateRestore

} // namespace orv

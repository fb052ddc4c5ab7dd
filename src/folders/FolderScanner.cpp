#include "folders/FolderScanner.h"

#include "core/MySinglePic.h"
#include "core/PicScanner.h"
#include "folders/MySingleFolder.h"

#include <QCollator>
#include <QDir>
#include <QtConcurrent>

#include <algorithm>

namespace orv {

QStringList FolderScanner::filesIn(const QString &directory)
{
    const QDir dir(directory);
    QStringList names = dir.entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::NoSort);
    QCollator collator;
    collator.setNumericMode(true);
    std::sort(names.begin(), names.end(), collator);
    QStringList paths;
    paths.reserve(names.size());
    for (const QString &name : names)
        paths.append(dir.filePath(name));
    return paths;
}

void FolderScanner::scanFiles(MySingleFolder &folder, const QStringList &paths, ImportQuestions &questions)
{
    const bool exifIgnored = folder.isEXIFIgnored();
    const QList<ScanFacts> facts = QtConcurrent::blockingMapped(
        paths, [exifIgnored](const QString &path) { return PicScanner::readFacts(path, exifIgnored); });
    for (const ScanFacts &fileFacts : facts) {
        if (std::unique_ptr<MySinglePic> pic = PicScanner::buildPic(fileFacts, folder, questions))
            folder.adoptPic(std::move(pic));
    }
}

} // namespace orv

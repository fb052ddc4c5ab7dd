#include "cli/PathImport.h"

#include "core/MySinglePic.h"
#include "folders/FolderScanner.h"
#include "folders/ImportQuestions.h"
#include "folders/MySingleFolder.h"

#include <QFileInfo>

namespace orv {

PathImport PathImport::importPaths(const QStringList &paths, QTextStream &err)
{
    ImportOptions fileDate;
    fileDate.withEmptyExifFixDate = ImportOptions::UseFileDate;
    FixedImportAnswers answers(fileDate);

    PathImport result;
    for (const QString &path : paths) {
        const QFileInfo info(path);
        if (!info.exists()) {
            err << "orvelle-cli: " << path << ": no such file or folder\n";
            result.failed = true;
            continue;
        }
        if (!info.isReadable()) {
            err << "orvelle-cli: " << path << ": permission denied\n";
            result.failed = true;
            continue;
        }
        const bool isFolder = info.isDir();
        auto folder = std::make_unique<MySingleFolder>(
            isFolder ? info.absoluteFilePath() : info.absolutePath(), false);
        folder->isAdvanced = !isFolder;
        const QStringList files = isFolder ? FolderScanner::filesIn(info.absoluteFilePath())
                                           : QStringList{info.absoluteFilePath()};
        for (const QString &file : files) {
            if (!QFileInfo(file).isReadable()) {
                err << "orvelle-cli: " << file
                    << ": cannot be read; dated by the file system only\n";
                result.failed = true;
            }
        }
        FolderScanner::scanFiles(*folder, files, answers);
        result.folders.push_back(std::move(folder));
    }
    return result;
}

} // namespace orv

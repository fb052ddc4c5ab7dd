#include "cli/ScanCommand.h"

#include "cli/ItemJson.h"
#include "core/DateSourceText.h"
#include "core/MakerModel.h"
#include "core/MySinglePic.h"
#include "folders/FolderScanner.h"
#include "folders/ImportQuestions.h"
#include "folders/MySingleFolder.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTextStream>

#include <memory>
#include <vector>

namespace orv {

namespace {

QString readableLine(const MySinglePic &pic)
{
    QString location = QStringLiteral("-");
    if (pic.gpsLat && pic.gpsLong)
        location = QString::asprintf("%.6f, %.6f", *pic.gpsLat, *pic.gpsLong);
    const QString date = pic.spDateTimeModified() ? ItemJson::date(pic.spDateTimeModified()).toString()
                                                  : QStringLiteral("-");
    const QString camera = pic.pivMakeModel.isEmpty() ? QStringLiteral("-")
                                                      : MakerModel::WA_displayOptimizedModelMake(pic.pivMakeModel);
    return QStringLiteral("%1\t%2\t%3\t%4\t%5")
        .arg(pic.spName, date, DateSourceText::forPic(pic), camera, location);
}

} // namespace

int ScanCommand::run(const QStringList &arguments)
{
    QTextStream out(stdout);
    QTextStream err(stderr);
    bool json = false;
    QStringList paths;
    for (const QString &argument : arguments) {
        if (argument == QLatin1String("--json"))
            json = true;
        else if (argument.startsWith(QLatin1String("--"))) {
            err << "orvelle-cli scan: unknown option " << argument << "\n";
            return 2;
        } else
            paths.append(argument);
    }
    if (paths.isEmpty()) {
        err << "orvelle-cli scan: name at least one file or folder\n";
        return 2;
    }

    // Empty tags take the file's date: a script is never asked.
    ImportOptions fileDate;
    fileDate.withEmptyExifFixDate = ImportOptions::UseFileDate;
    FixedImportAnswers answers(fileDate);

    bool failed = false;
    std::vector<std::unique_ptr<MySingleFolder>> folders;
    for (const QString &path : paths) {
        const QFileInfo info(path);
        if (!info.exists()) {
            err << "orvelle-cli: " << path << ": no such file or folder\n";
            failed = true;
            continue;
        }
        if (!info.isReadable()) {
            err << "orvelle-cli: " << path << ": permission denied\n";
            failed = true;
            continue;
        }
        const bool isFolder = info.isDir();
        auto folder = std::make_unique<MySingleFolder>(isFolder ? info.absoluteFilePath() : info.absolutePath(), false);
        folder->isAdvanced = !isFolder;
        const QStringList files = isFolder ? FolderScanner::filesIn(info.absoluteFilePath())
                                           : QStringList{info.absoluteFilePath()};
        for (const QString &file : files) {
            if (!QFileInfo(file).isReadable()) {
                err << "orvelle-cli: " << file << ": cannot be read; dated by the file system only\n";
                failed = true;
            }
        }
        FolderScanner::scanFiles(*folder, files, answers);
        folders.push_back(std::move(folder));
    }

    if (json) {
        QJsonArray items;
        for (const auto &folder : folders)
            for (const MySinglePic *pic : folder->sfPicDetails_fullArray)
                items.append(ItemJson::forPic(*pic));
        out << QJsonDocument(items).toJson(QJsonDocument::Compact) << "\n";
    } else {
        for (const auto &folder : folders)
            for (const MySinglePic *pic : folder->sfPicDetails_fullArray)
                out << readableLine(*pic) << "\n";
    }
    return failed ? 1 : 0;
}

} // namespace orv

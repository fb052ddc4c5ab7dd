#include "cli/ScanCommand.h"

#include "cli/ItemJson.h"
#include "cli/PathImport.h"
#include "core/DateSourceText.h"
#include "core/MakerModel.h"
#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTextStream>


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

    const PathImport imported = PathImport::importPaths(paths, err);
    const auto &folders = imported.folders;

    if (json) {
        QJsonArray items;
        for (const auto &folder : folders)
            for (const MySinglePic *pic : folder->sfPicDetails_fullArray)
                items.append(ItemJson::forPic(*pic));
        out << QJsonDocument(items).toJson(QJsonDocument::Indented);
    } else {
        for (const auto &folder : folders)
            for (const MySinglePic *pic : folder->sfPicDetails_fullArray)
                out << readableLine(*pic) << "\n";
    }
    return imported.failed ? 1 : 0;
}

} // namespace orv

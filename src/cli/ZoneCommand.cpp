#include "cli/ZoneCommand.h"

#include "app/AppController.h"
#include "cli/DateSaveRun.h"
#include "cli/PathImport.h"
#include "core/Preferences.h"
#include "folders/MySingleFolder.h"
#include "time/TimeZone.h"

#include <QTextStream>

namespace orv {

namespace {

struct Options : DateSaveRun::Options
{
    QString source;
    std::optional<QString> target;
};

std::optional<Options> parseArguments(const QStringList &arguments, QTextStream &err)
{
    Options options;
    const auto takeZone = [&options](const QString &option, const QString &value) {
        if (!TimeZone::fromName(value))
            return QLatin1String("'") + value + QLatin1String("' is no time zone; name one of the tz database, "
                                                              "e.g. Europe/Berlin");
        if (option == QLatin1String("--source"))
            options.source = value;
        else
            options.target = value;
        return QString();
    };
    const QString problem = DateSaveRun::parseArguments(
        arguments, {QStringLiteral("--source"), QStringLiteral("--target")}, QStringLiteral("ZONE"), takeZone, options);
    if (problem.isEmpty())
        return options;
    err << "orvelle-cli zone: " << problem << "\n"
        << "Usage: orvelle-cli zone --source ZONE [--target ZONE] [--dry-run] [--json] [--pref KEY=VALUE]... "
           "PATH...\n";
    return std::nullopt;
}

} // namespace

int ZoneCommand::run(const QStringList &arguments)
{
    QTextStream err(stderr);
    const std::optional<Options> options = parseArguments(arguments, err);
    if (!options)
        return 2;
    return DateSaveRun::run(*options, [&options](PathImport &imported, Preferences &, QTextStream &) {
        QList<ZoneChangeCommand::FolderChange> changes;
        for (MySingleFolder *folder : imported.folders()) {
            ZoneChangeCommand::Zones after;
            after.source.defaultZone = options->source;
            after.target.defaultZone = options->target;
            changes.append({folder, {folder->sourceTimeZones, folder->targetTimeZones}, after});
        }
        imported.controller().dateChanges().changeTimeZones(changes, {});
        return DateSaveRun::ChangeOutcome{};
    });
}

} // namespace orv

#include "cli/RenameCommand.h"

#include "cli/PathImport.h"
#include "core/MySinglePic.h"
#include "core/Preferences.h"
#include "folders/MySingleFolder.h"
#include "formats/SaveJournal.h"
#include "naming/RenameRun.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>

#include <algorithm>
#include <optional>

namespace orv {

namespace {

struct Arguments
{
    NameSettings settings;
    std::optional<int> start;
    bool dryRun = false;
    bool json = false;
    QStringList paths;
};

const char *const usageLine =
    "Usage: orvelle-cli rename --template TEXT [--text TEXT]... [--start N] [--dry-run] [--json] PATH...\n";

std::optional<Arguments> parsed(const QStringList &arguments, QTextStream &err)
{
    Arguments args;
    int texts = 0;
    bool hasTemplate = false;
    const auto problem = [&err](const QString &message) {
        err << "orvelle-cli rename: " << message << "\n" << usageLine;
        return std::nullopt;
    };
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments[i];
        const bool takesValue = argument == QLatin1String("--template") || argument == QLatin1String("--text") ||
                                argument == QLatin1String("--start");
        if (takesValue && i + 1 >= arguments.size())
            return problem(argument + QLatin1String(" needs a value"));
        if (argument == QLatin1String("--template")) {
            const ParsedTemplate read = RenameTemplate::fromPlainText(arguments[++i]);
            if (!read.result)
                return problem(read.problem);
            args.settings.renameTemplate = *read.result;
            hasTemplate = true;
        } else if (argument == QLatin1String("--text")) {
            if (texts == RenameTemplate::maxAdditionalTexts)
                return problem(QStringLiteral("--text is given at most three times"));
            args.settings.additionalTexts[texts++] = arguments[++i];
        } else if (argument == QLatin1String("--start")) {
            bool ok = false;
            args.start = arguments[++i].toInt(&ok);
            if (!ok || *args.start < 0)
                return problem(QStringLiteral("--start takes a counter value of 0 or more"));
        } else if (argument == QLatin1String("--dry-run")) {
            args.dryRun = true;
        } else if (argument == QLatin1String("--json")) {
            args.json = true;
        } else if (argument.startsWith(QLatin1String("--"))) {
            return problem(QLatin1String("unknown option ") + argument);
        } else {
            args.paths.append(argument);
        }
    }
    if (!hasTemplate)
        return problem(QStringLiteral("--template is required"));
    if (args.paths.isEmpty())
        return problem(QStringLiteral("name at least one file or folder"));
    return args;
}

QList<MySinglePic *> allItems(const PathImport &imported)
{
    QList<MySinglePic *> pics;
    for (const MySingleFolder *folder : imported.folders())
        pics.append(folder->sfPicDetails_fullArray);
    return pics;
}

QJsonObject itemJson(const RenameItem &item)
{
    QJsonArray files;
    for (qsizetype i = 0; i < item.from.size(); ++i)
        files.append(QJsonObject{{QStringLiteral("old"), item.from[i]}, {QStringLiteral("new"), item.to.value(i)}});
    QJsonArray errors;
    for (const int id : item.errorIds)
        errors.append(id);
    QJsonObject json{{QStringLiteral("path"), QDir(item.folder).filePath(item.from.first())},
                     {QStringLiteral("old"), item.from.first()},
                     {QStringLiteral("new"), item.to.value(0)},
                     {QStringLiteral("files"), files},
                     {QStringLiteral("renamed"), item.renamed},
                     {QStringLiteral("numberAdded"), item.numberAdded},
                     {QStringLiteral("errors"), errors}};
    if (!item.problem.isEmpty())
        json.insert(QStringLiteral("problem"), item.problem);
    return json;
}

void report(const std::vector<RenameItem> &items, bool json, QTextStream &out, QTextStream &err)
{
    QJsonArray all;
    for (const RenameItem &item : items) {
        if (!item.problem.isEmpty())
            err << "orvelle-cli: " << QDir(item.folder).filePath(item.from.first()) << ": not renamed: " << item.problem
                << "\n";
        if (json) {
            all.append(itemJson(item));
            continue;
        }
        for (qsizetype i = 0; i < item.from.size(); ++i)
            out << QDir(item.folder).filePath(item.from[i]) << "\t" << item.to.value(i, item.from[i]) << "\n";
    }
    if (json)
        out << QJsonDocument(all).toJson(QJsonDocument::Compact) << "\n";
}

} // namespace

int RenameCommand::run(const QStringList &arguments)
{
    QTextStream out(stdout);
    QTextStream err(stderr);
    const std::optional<Arguments> args = parsed(arguments, err);
    if (!args)
        return 2;
    PathImport imported(args->paths, {}, err);
    // The registered defaults (a script never sees the user's settings), with the line's choices.
    const Preferences &prefs = imported.controller().prefs();
    NameSettings settings = NameSettings::fromPreferences(prefs);
    settings.renameTemplate = args->settings.renameTemplate;
    settings.additionalTexts = args->settings.additionalTexts;
    RenameRun::Counter counter = RenameRun::Counter::fromPreferences(prefs);
    if (args->start)
        counter.startValue = *args->start;
    const RenameRun run(settings, counter);
    std::vector<RenameItem> items = run.plan(RenameRun::inDateOrder(allItems(imported)));
    if (const QStringList clashes = RenameRun::checkPlan(items); !clashes.isEmpty()) {
        for (const QString &clash : clashes)
            err << "orvelle-cli rename: " << clash << "\n";
        err << "orvelle-cli rename: the plan was refused: nothing was renamed\n";
        return 1;
    }
    if (!args->dryRun) {
        QString problem;
        if (!RenameRun::execute(items, SaveJournal::defaultPath(), problem)) {
            err << "orvelle-cli rename: " << problem << ": nothing was renamed\n";
            return 1;
        }
    }
    report(items, args->json, out, err);
    const bool allFine = std::all_of(items.begin(), items.end(), [](const RenameItem &item) { return item.problem.isEmpty(); });
    return allFine && !imported.failed() ? 0 : 1;
}

} // namespace orv

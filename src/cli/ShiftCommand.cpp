#include "cli/ShiftCommand.h"

#include "app/LogController.h"
#include "app/Preferences.h"
#include "cli/ItemJson.h"
#include "cli/PathImport.h"
#include "core/MySinglePic.h"
#include "core/SaveRun.h"
#include "folders/MySingleFolder.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTextStream>
#include <array>

namespace orv {

namespace {

struct Slot
{
    const char *name;
    OptionalDate MySinglePic::*oldDate;
    OptionalDate MySinglePic::*newDate;
};

constexpr std::array<Slot, 5> slots = {{
    {"exifDateTimeOriginal", &MySinglePic::exifDateTimeOriginalOLD,
     &MySinglePic::exifDateTimeOriginalNEW},
    {"exifDateTimeDigitized", &MySinglePic::exifDateTimeDigitizedOLD,
     &MySinglePic::exifDateTimeDigitizedNEW},
    {"tiffDateTime", &MySinglePic::tiffDateTimeOLD, &MySinglePic::tiffDateTimeNEW},
    {"fileCreationDate", &MySinglePic::fileCreationDateOLD, &MySinglePic::fileCreationDateNEW},
    {"fileModificationDate", &MySinglePic::fileModificationDateOLD,
     &MySinglePic::fileModificationDateNEW},
}};

// OLD as the file held it before the run; a save makes OLD take NEW.
using OldDates = std::array<OptionalDate, slots.size()>;

struct Options
{
    double offset = 0.0;
    bool dryRun = false;
    bool json = false;
    QList<std::pair<QString, QString>> prefs;
    QStringList paths;
};

QString usageError(QTextStream &err, const QString &message)
{
    err << "orvelle-cli shift: " << message << "\n"
        << "Usage: orvelle-cli shift --by OFFSET [--dry-run] [--json] [--pref KEY=VALUE]... "
           "PATH...\n";
    return message;
}

std::optional<Options> parseArguments(const QStringList &arguments, QTextStream &err)
{
    Options options;
    bool hasOffset = false;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments[i];
        const bool takesValue =
            argument == QLatin1String("--by") || argument == QLatin1String("--pref");
        if (takesValue && i + 1 >= arguments.size()) {
            usageError(err, argument + QLatin1String(" needs a value"));
            return std::nullopt;
        }
        if (argument == QLatin1String("--by")) {
            const std::optional<double> offset = ShiftCommand::parseOffset(arguments[++i]);
            if (!offset) {
                usageError(err, QLatin1String("'") + arguments[i] +
                                    QLatin1String("' is no offset; write [+-][Nd]H:MM[:SS], e.g. "
                                                  "+1:00:00, -0:30, +2d3:00:00"));
                return std::nullopt;
            }
            options.offset = *offset;
            hasOffset = true;
        } else if (argument == QLatin1String("--pref")) {
            const QString &pair = arguments[++i];
            const qsizetype equals = pair.indexOf(QLatin1Char('='));
            if (equals <= 0) {
                usageError(err, QLatin1String("--pref takes KEY=VALUE, not '") + pair +
                                    QLatin1Char('\''));
                return std::nullopt;
            }
            options.prefs.append({pair.left(equals), pair.mid(equals + 1)});
        } else if (argument == QLatin1String("--dry-run")) {
            options.dryRun = true;
        } else if (argument == QLatin1String("--json")) {
            options.json = true;
        } else if (argument.startsWith(QLatin1String("--"))) {
            usageError(err, QLatin1String("unknown option ") + argument);
            return std::nullopt;
        } else {
            options.paths.append(argument);
        }
    }
    if (!hasOffset) {
        usageError(err, QStringLiteral("--by OFFSET is required"));
        return std::nullopt;
    }
    if (options.paths.isEmpty()) {
        usageError(err, QStringLiteral("name at least one file or folder"));
        return std::nullopt;
    }
    return options;
}

QJsonArray jsonList(const QStringList &values)
{
    return QJsonArray::fromStringList(values);
}

QJsonObject itemJson(const MySinglePic &pic, const OldDates &old, const SaveOutcome &outcome,
                     const SaveErrors &errors, const QStringList &preSaveKeys)
{
    QJsonObject o{{QStringLiteral("path"), pic.spPath()},
                  {QStringLiteral("spName"), pic.spName},
                  {QStringLiteral("saved"), outcome.savedPics.contains(&pic)}};
    QJsonArray ids;
    for (const int id : errors.errorIdsFor(pic))
        ids.append(id);
    o.insert(QStringLiteral("errors"), ids);
    QJsonArray steps;
    for (const ToolStep step : errors.toolStepsFor(pic))
        steps.append(int(step));
    o.insert(QStringLiteral("unavailableSteps"), steps);
    o.insert(QStringLiteral("preSaveErrors"), jsonList(preSaveKeys));
    for (std::size_t i = 0; i < slots.size(); ++i) {
        o.insert(QLatin1String(slots[i].name) + QLatin1String("OLD"), ItemJson::date(old[i]));
        o.insert(QLatin1String(slots[i].name) + QLatin1String("NEW"),
                 ItemJson::date(pic.*slots[i].newDate));
    }
    return o;
}

QString readableItem(const MySinglePic &pic, const OldDates &old, const SaveOutcome &outcome,
                     const SaveErrors &errors, const QStringList &preSaveKeys, bool dryRun)
{
    QString text = pic.spName;
    if (!dryRun) {
        QStringList problems;
        for (const int id : errors.errorIdsFor(pic))
            problems << QStringLiteral("error %1").arg(id);
        for (const ToolStep step : errors.toolStepsFor(pic))
            problems << QStringLiteral("step %1 unavailable").arg(int(step));
        text += outcome.savedPics.contains(&pic) ? QStringLiteral("\tsaved")
                : problems.isEmpty()
                    ? QStringLiteral("\tnot saved")
                    : QStringLiteral("\tnot saved: ") + problems.join(QStringLiteral(", "));
    }
    text += QLatin1Char('\n');
    for (std::size_t i = 0; i < slots.size(); ++i) {
        const OptionalDate newDate = pic.*slots[i].newDate;
        if (!old[i] && !newDate)
            continue;
        text +=
            QStringLiteral("  %1\t%2 -> %3\n")
                .arg(QLatin1String(slots[i].name), ItemJson::date(old[i]).toVariant().toString(),
                     ItemJson::date(newDate).toVariant().toString());
    }
    for (const QString &key : preSaveKeys)
        text += QStringLiteral("  pre-save: %1\n").arg(key);
    return text;
}

} // namespace

std::optional<double> ShiftCommand::parseOffset(const QString &text)
{
    static const QRegularExpression grammar(
        QStringLiteral("^([+-])(?:(\\d{1,6})d)?(\\d{1,6}):([0-5]\\d)(?::([0-5]\\d))?$"));
    const QRegularExpressionMatch m = grammar.match(text);
    if (!m.hasMatch())
        return std::nullopt;
    const double magnitude = m.captured(2).toDouble() * 86400.0 +
                             m.captured(3).toDouble() * 3600.0 + m.captured(4).toDouble() * 60.0 +
                             m.captured(5).toDouble();
    return m.captured(1) == QLatin1String("-") ? -magnitude : magnitude;
}

int ShiftCommand::run(const QStringList &arguments)
{
    QTextStream out(stdout);
    QTextStream err(stderr);
    const std::optional<Options> options = parseArguments(arguments, err);
    if (!options)
        return 2;

    // The user's choices hold; --pref shadows them for this run and is never stored.
    Preferences prefs(Preferences::defaultSettingsPath());
    for (const auto &[key, value] : options->prefs)
        prefs.overrideForThisRun(key, value);

    const PathImport imported(options->paths, {}, err);
    QList<MySingleFolder *> folders;
    std::vector<std::pair<MySinglePic *, OldDates>> items;
    for (MySingleFolder *folder : imported.folders()) {
        folder->setSfDateModificationsFromTimeInterval(options->offset, options->offset < 0.0);
        folders.append(folder);
        for (MySinglePic *pic : folder->sfPicDetails_fullArray) {
            OldDates old;
            for (std::size_t i = 0; i < slots.size(); ++i)
                old[i] = pic->*slots[i].oldDate;
            items.emplace_back(pic, old);
        }
    }

    LogController log(prefs, LogController::defaultLogFilePath());
    FixedSaveAnswers proceed(true);
    SaveRun run(folders, SaveSettings::fromPreferences(prefs, currentInstant()), proceed, &log);
    SaveOutcome outcome;
    if (options->dryRun)
        outcome.preSaveErrors = run.preProcess();
    else
        outcome = run.run();

    QJsonArray json;
    bool anyFailed = false;
    for (const auto &[pic, old] : items) {
        QStringList preSaveKeys;
        for (auto it = outcome.preSaveErrors.cbegin(); it != outcome.preSaveErrors.cend(); ++it) {
            if (it->contains(pic))
                preSaveKeys << it.key();
        }
        const QList<int> ids = run.errors().errorIdsFor(*pic);
        const QList<ToolStep> steps = run.errors().toolStepsFor(*pic);
        anyFailed = anyFailed || !ids.isEmpty() || !steps.isEmpty();
        // Each problem on its own line, with the path and the reason in words beside its id.
        for (const int id : ids)
            err << "orvelle-cli: " << pic->spPath() << ": error " << id << ": "
                << SaveErrors::reasonForId(id) << "\n";
        for (const ToolStep step : steps)
            err << "orvelle-cli: " << pic->spPath() << ": step " << int(step) << ": "
                << SaveErrors::descriptionForStep(step) << "\n";
        if (options->json)
            json.append(itemJson(*pic, old, outcome, run.errors(), preSaveKeys));
        else
            out << readableItem(*pic, old, outcome, run.errors(), preSaveKeys, options->dryRun);
    }
    if (options->json)
        out << QJsonDocument(json).toJson(QJsonDocument::Indented);
    return imported.failed() || anyFailed ? 1 : 0;
}

} // namespace orv

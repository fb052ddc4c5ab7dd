#include "cli/DateSaveRun.h"

#include "app/AppController.h"
#include "cli/ItemJson.h"
#include "cli/PathImport.h"
#include "core/DaylightSaving.h"
#include "core/MySinglePic.h"
#include "core/Preferences.h"
#include "folders/SaveRun.h"
#include "folders/MySingleFolder.h"
#include "folders/ZoneCorrection.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <array>
#include <map>

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

// What the item's zone made of its stamps before the run, and by how many seconds a stored
// offset disagrees with that zone (0 when none does).
struct ZoneFindings
{
    QJsonObject flags;
    double offsetDifference = 0.0;

    static ZoneFindings of(const MySinglePic &pic)
    {
        ZoneFindings findings;
        ItemJson::insertDaylightSaving(findings.flags, pic);
        const TimeZone zone = ZoneCorrection::sourceZoneOf(pic);
        findings.offsetDifference = DaylightSaving::checkMDTADateWithTimeZone(pic, zone);
        if (findings.offsetDifference == 0.0)
            findings.offsetDifference = DaylightSaving::checkEXOFTimeWithTimeZone(pic, zone);
        findings.flags.insert(QStringLiteral("storedOffsetDifference"), findings.offsetDifference);
        return findings;
    }
    bool isEmpty() const
    {
        return offsetDifference == 0.0 && flags.value(QStringLiteral("dstDivergenceState")).toInt() == 0
               && flags.value(QStringLiteral("dstAmbiguityAtImportState")).toInt() == 0
               && flags.value(QStringLiteral("majorDateDifferenceType")).toInt() == 0;
    }
};

struct Before
{
    OldDates dates;
    ZoneFindings zone;
};

constexpr std::size_t fileCreationSlot = 3;

// A saved item dated by its file alone that took no date tags: only its modification date holds
// the new date, since no call sets a birth time here.
bool tookFileDateOnly(const MySinglePic &pic, const Before &before, const SaveOutcome &outcome)
{
    const OptionalDate &oldCreation = before.dates[fileCreationSlot];
    const OptionalDate &newCreation = pic.fileCreationDateNEW;
    return outcome.savedPics.contains(&pic) && pic.isDatedByFileCreation() && oldCreation &&
           newCreation && oldCreation->wholeSeconds() != newCreation->wholeSeconds();
}

QJsonArray jsonList(const QStringList &values)
{
    return QJsonArray::fromStringList(values);
}

QJsonObject itemJson(const MySinglePic &pic, const Before &before, const SaveOutcome &outcome,
                     const SaveErrors &errors, const QStringList &preSaveKeys, const QJsonObject &facts)
{
    const OldDates &old = before.dates;
    QJsonObject o = before.zone.flags;
    for (auto it = facts.begin(); it != facts.end(); ++it)
        o.insert(it.key(), it.value());
    o.insert(QStringLiteral("path"), pic.spPath());
    o.insert(QStringLiteral("spName"), pic.spName);
    o.insert(QStringLiteral("saved"), outcome.savedPics.contains(&pic));
    QJsonArray ids;
    for (const int id : errors.errorIdsFor(pic))
        ids.append(id);
    o.insert(QStringLiteral("errors"), ids);
    QJsonArray steps;
    for (const ToolStep step : errors.toolStepsFor(pic))
        steps.append(int(step));
    o.insert(QStringLiteral("unavailableSteps"), steps);
    o.insert(QStringLiteral("preSaveErrors"), jsonList(preSaveKeys));
    o.insert(QStringLiteral("fileDateOnly"), tookFileDateOnly(pic, before, outcome));
    if (pic.gpsLat && pic.gpsLong) {
        o.insert(QStringLiteral("gpsLat"), *pic.gpsLat);
        o.insert(QStringLiteral("gpsLong"), *pic.gpsLong);
    }
    for (std::size_t i = 0; i < slots.size(); ++i) {
        o.insert(QLatin1String(slots[i].name) + QLatin1String("OLD"), ItemJson::date(old[i]));
        o.insert(QLatin1String(slots[i].name) + QLatin1String("NEW"),
                 ItemJson::date(pic.*slots[i].newDate));
    }
    return o;
}

QString readableItem(const MySinglePic &pic, const Before &before, const SaveOutcome &outcome,
                     const SaveErrors &errors, const QStringList &preSaveKeys, bool dryRun, const QString &facts)
{
    const OldDates &old = before.dates;
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
    if (!before.zone.isEmpty()) {
        const QJsonObject &f = before.zone.flags;
        text += QStringLiteral("  zone: divergence %1, ambiguity %2, major difference %3, stored offset off by %4 s\n")
                    .arg(f.value(QStringLiteral("dstDivergenceState")).toInt())
                    .arg(f.value(QStringLiteral("dstAmbiguityAtImportState")).toInt())
                    .arg(f.value(QStringLiteral("majorDateDifferenceType")).toInt())
                    .arg(before.zone.offsetDifference);
    }
    for (const QString &key : preSaveKeys)
        text += QStringLiteral("  pre-save: %1\n").arg(key);
    if (tookFileDateOnly(pic, before, outcome))
        text += QStringLiteral("  no date tags: only the file's modification date was set to the new "
                               "date (--add-missing-dates adds date tags)\n");
    if (!facts.isEmpty())
        text += QStringLiteral("  ") + facts + QLatin1Char('\n');
    return text;
}

} // namespace

QString DateSaveRun::parseArguments(const QStringList &arguments, const QStringList &ownOptions,
                                   const QString &requiredValue, const TakeValue &take, Options &options)
{
    bool hasRequired = false;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments[i];
        if (argument == QLatin1String("--dry-run")) {
            options.dryRun = true;
            continue;
        }
        if (argument == QLatin1String("--json")) {
            options.json = true;
            continue;
        }
        if (!argument.startsWith(QLatin1String("--"))) {
            options.paths.append(argument);
            continue;
        }
        const bool isOwn = ownOptions.contains(argument);
        if (!isOwn && argument != QLatin1String("--pref"))
            return QLatin1String("unknown option ") + argument;
        if (i + 1 >= arguments.size())
            return argument + QLatin1String(" needs a value");
        const QString &value = arguments[++i];
        if (isOwn) {
            if (const QString problem = take(argument, value); !problem.isEmpty())
                return problem;
            hasRequired = hasRequired || argument == ownOptions.first();
            continue;
        }
        const qsizetype equals = value.indexOf(QLatin1Char('='));
        if (equals <= 0)
            return QLatin1String("--pref takes KEY=VALUE, not '") + value + QLatin1Char('\'');
        options.prefs.append({value.left(equals), value.mid(equals + 1)});
    }
    if (!ownOptions.isEmpty() && !hasRequired)
        return ownOptions.first() + QLatin1Char(' ') + requiredValue + QLatin1String(" is required");
    if (options.paths.isEmpty())
        return QStringLiteral("name at least one file or folder");
    return {};
}

void DateSaveRun::applyPrefs(Preferences &prefs, const Options &options)
{
    for (const auto &[key, value] : options.prefs)
        prefs.overrideForThisRun(key, value);
}

int DateSaveRun::run(const Options &options, const Change &change)
{
    QTextStream out(stdout);
    QTextStream err(stderr);
    Preferences prefs(Preferences::defaultSettingsPath());
    applyPrefs(prefs, options);
    PathImport imported(options.paths, {}, err);
    const ChangeOutcome outcome = change(imported, prefs, err);
    if (outcome.stop)
        return outcome.exitCode;
    return std::max(saveAndReport(imported, prefs, options, out, outcome.itemFacts), outcome.exitCode);
}

int DateSaveRun::saveAndReport(PathImport &imported, Preferences &prefs, const Options &options, QTextStream &out,
                               const ItemFactsMap &facts)
{
    QList<MySingleFolder *> folders;
    std::vector<std::pair<MySinglePic *, Before>> items;
    // A group's dependent is reported inside its master's entry, as scan shows it.
    std::map<const MySinglePic *, Before> dependentsOld;
    const auto beforeOf = [](const MySinglePic &pic) {
        Before before{{}, ZoneFindings::of(pic)};
        for (std::size_t i = 0; i < slots.size(); ++i)
            before.dates[i] = pic.*slots[i].oldDate;
        return before;
    };
    for (MySingleFolder *folder : imported.folders()) {
        folders.append(folder);
        for (MySinglePic *pic : folder->sfPicDetails_fullArray) {
            items.emplace_back(pic, beforeOf(*pic));
            if (pic->bundleDependentImage)
                dependentsOld[pic->bundleDependentImage] = beforeOf(*pic->bundleDependentImage);
        }
    }

    AppController &controller = imported.controller();
    FixedSaveAnswers proceed(true, options.addMissingDates);
    SaveRun run(folders, SaveSettings::fromPreferences(prefs, currentInstant()), proceed, &controller.log());
    SaveOutcome outcome;
    if (options.dryRun) {
        outcome.preSaveErrors = run.preProcess();
    } else {
        controller.saveWillStart();
        outcome = run.run();
        controller.didSaveFolders(folders);
    }

    QTextStream err(stderr);
    QJsonArray json;
    bool anyFailed = !outcome.journalProblem.isEmpty();
    if (anyFailed)
        err << "orvelle-cli: " << outcome.journalProblem << "; the save stopped before it touched a file\n";
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
                << SaveErrors::descriptionForStep(step) << " ("
                << run.errors().toolReasonFor(*pic, step) << ")\n";
        const MySinglePic *dependent = pic->bundleDependentImage;
        const ItemFacts fact = facts.value(pic);
        if (options.json) {
            QJsonObject entry = itemJson(*pic, old, outcome, run.errors(), preSaveKeys, fact.json);
            if (dependent)
                entry.insert(QStringLiteral("dependent"), itemJson(*dependent, dependentsOld.at(dependent), outcome,
                                                                   run.errors(), preSaveKeys, {}));
            json.append(entry);
        } else {
            out << readableItem(*pic, old, outcome, run.errors(), preSaveKeys, options.dryRun, fact.text);
            if (dependent)
                out << readableItem(*dependent, dependentsOld.at(dependent), outcome, run.errors(), preSaveKeys,
                                    options.dryRun, {});
        }
    }
    if (options.json)
        out << QJsonDocument(json).toJson(QJsonDocument::Indented);
    return imported.failed() || anyFailed ? 1 : 0;
}

} // namespace orv

#include "cli/AlignCommand.h"

#include "app/AppController.h"
#include "cli/DateSaveRun.h"
#include "cli/PathImport.h"
#include "core/MySinglePic.h"
#include "core/Preferences.h"
#include "core/SaveSettings.h"
#include "folders/MySingleFolder.h"

#include <QDir>
#include <QFileInfo>
#include <QTextStream>

#include <optional>

namespace orv {

namespace {

struct Options : DateSaveRun::Options
{
    AlignTag tag = AlignTag::MatchingGaps;
    QString main;
};

const char *const usage = "Usage: orvelle-cli align --by gaps|minimize|filename|reverse|reverse-intervals|copy:SLOT "
                          "[--main PATH] [--dry-run] [--json] [--pref KEY=VALUE]... PATH...\n";

struct Rule
{
    const char *name;
    AlignTag tag;
};

constexpr Rule rules[] = {
    {"gaps", AlignTag::MatchingGaps},
    {"minimize", AlignTag::MinimizingGaps},
    {"filename", AlignTag::Filename},
    {"reverse", AlignTag::Reversing},
    {"reverse-intervals", AlignTag::ReversingIntervals},
    {"copy:exifDateTimeDigitizedOLD", AlignTag::ExifDigitizedOld},
    {"copy:exifDateTimeDigitizedNEW", AlignTag::ExifDigitizedNew},
    {"copy:tiffDateTimeOLD", AlignTag::TiffDateTimeOld},
    {"copy:tiffDateTimeNEW", AlignTag::TiffDateTimeNew},
    {"copy:fileCreationDateOLD", AlignTag::FileCreationOld},
    {"copy:fileCreationDateNEW", AlignTag::FileCreationNew},
    {"copy:fileModificationDateOLD", AlignTag::FileModificationOld},
    {"copy:fileModificationDateNEW", AlignTag::FileModificationNew},
};

void usageError(QTextStream &err, const QString &message)
{
    err << "orvelle-cli align: " << message << "\n" << usage;
}

std::optional<AlignTag> ruleNamed(const QString &name)
{
    for (const Rule &rule : rules)
        if (name == QLatin1String(rule.name))
            return rule.tag;
    return std::nullopt;
}

std::optional<Options> parseArguments(const QStringList &arguments, QTextStream &err)
{
    Options options;
    const auto takeValue = [&options](const QString &option, const QString &value) {
        if (option == QLatin1String("--main")) {
            options.main = QDir::cleanPath(QFileInfo(value).absoluteFilePath());
            return QString();
        }
        const std::optional<AlignTag> tag = ruleNamed(value);
        if (!tag)
            return QLatin1String("'") + value + QLatin1String("' is no alignment rule");
        options.tag = *tag;
        return QString();
    };
    const QString problem = DateSaveRun::parseArguments(
        arguments, {QStringLiteral("--by"), QStringLiteral("--main")}, QStringLiteral("RULE"),
        takeValue, options);
    if (problem.isEmpty())
        return options;
    usageError(err, problem);
    return std::nullopt;
}

} // namespace

int AlignCommand::run(const QStringList &arguments)
{
    QTextStream err(stderr);
    const std::optional<Options> options = parseArguments(arguments, err);
    if (!options)
        return 2;
    return DateSaveRun::run(*options, [&options](PathImport &imported, Preferences &prefs, QTextStream &err) {
        QList<MySinglePic *> selection;
        const MySinglePic *main = nullptr;
        for (const MySingleFolder *folder : imported.folders()) {
            for (MySinglePic *pic : folder->sfPicDetails_fullArray) {
                selection.append(pic);
                if (QDir::cleanPath(pic->spPath()) == options->main)
                    main = pic;
            }
        }
        if (!options->main.isEmpty() && !main) {
            usageError(err, QLatin1String("--main ") + options->main + QLatin1String(" is none of the imported files"));
            return DateSaveRun::ChangeOutcome{2, true};
        }
        // Alignments give each item its own change.
        DateChanges &changes = imported.controller().dateChanges();
        changes.changeEditMode(imported.folders(), MySingleFolder::EditSeparately);
        const NewDateOptions dateOptions = SaveSettings::fromPreferences(prefs, currentInstant()).options;
        if (changes.realignSelection(options->tag, selection, main, dateOptions) == DateChangeResult::Refused) {
            err << "orvelle-cli align: the dates could not be changed\n";
            return DateSaveRun::ChangeOutcome{1, true};
        }
        return DateSaveRun::ChangeOutcome{};
    });
}

} // namespace orv

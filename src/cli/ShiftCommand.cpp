#include "cli/ShiftCommand.h"

#include "app/AppController.h"
#include "app/FileTagRequests.h"
#include "cli/DateSaveRun.h"
#include "cli/PathImport.h"
#include "core/MySinglePic.h"
#include "core/Preferences.h"
#include "core/SaveErrors.h"
#include "folders/MySingleFolder.h"

#include <QRegularExpression>
#include <QTextStream>
#include <algorithm>

namespace orv {

namespace {

struct Options : DateSaveRun::Options
{
    double offset = 0.0;
};

const QString addMissingDatesFlag = QStringLiteral("--add-missing-dates");

void usageError(QTextStream &err, const QString &message)
{
    err << "orvelle-cli shift: " << message << "\n"
        << "Usage: orvelle-cli shift --by OFFSET [--add-missing-dates] [--dry-run] [--json] "
           "[--pref KEY=VALUE]... PATH...\n";
}

std::optional<Options> parseArguments(const QStringList &arguments, QTextStream &err)
{
    Options options;
    const auto takeOffset = [&options](const QString &, const QString &value) {
        const std::optional<double> offset = ShiftCommand::parseOffset(value);
        if (!offset)
            return QLatin1String("'") + value +
                   QLatin1String("' is no offset; write [+-][Nd]H:MM[:SS], e.g. +1:00:00, -0:30, "
                                 "+2d3:00:00");
        options.offset = *offset;
        return QString();
    };
    QStringList rest = arguments;
    options.addMissingDates = rest.removeAll(addMissingDatesFlag) > 0;
    const QString problem = DateSaveRun::parseArguments(rest, {QStringLiteral("--by")},
                                                        QStringLiteral("OFFSET"), takeOffset, options);
    if (problem.isEmpty())
        return options;
    usageError(err, problem);
    return std::nullopt;
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
    QTextStream err(stderr);
    const std::optional<Options> options = parseArguments(arguments, err);
    if (!options)
        return 2;
    return DateSaveRun::run(*options, [&options](PathImport &imported, Preferences &, QTextStream &err) {
        // The same change as the window's offset controls, range test included. A folder that the
        // range test refuses takes the change item by item instead: an item whose date would
        // leave the range fails alone, named, and the others are saved.
        DateChanges &changes = imported.controller().dateChanges();
        DateSaveRun::ChangeOutcome outcome;
        for (MySingleFolder *folder : imported.folders()) {
            if (changes.dragChangedDates({folder}, options->offset, options->offset < 0.0) !=
                DateChangeResult::Refused)
                continue;
            changes.changeEditMode({folder}, MySingleFolder::EditSeparately);
            for (MySinglePic *pic : folder->sfPicDetails_fullArray) {
                if (changes.dragChangedSinglePicModeDate({pic}, options->offset) ==
                    DateChangeResult::Refused) {
                    err << "orvelle-cli: " << pic->spPath() << ": error " << SaveErrorId::DateOutOfRange
                        << ": " << SaveErrors::reasonForId(SaveErrorId::DateOutOfRange) << "\n";
                    outcome.exitCode = 1;
                }
            }
        }
        if (options->addMissingDates) {
            for (MySingleFolder *folder : imported.folders())
                FileTagRequests::addMissingDateTags(folder->sfPicDetails_fullArray);
        }
        return outcome;
    });
}

} // namespace orv

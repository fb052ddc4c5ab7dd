#include "cli/ScanCommand.h"

#include "cli/ItemJson.h"
#include "cli/PathImport.h"
#include "core/DateSourceText.h"
#include "core/MakerModel.h"
#include "core/MySinglePic.h"
#include "core/Preferences.h"
#include "folders/DropEntry.h"
#include "folders/ImportFilter.h"
#include "folders/ImportQuestions.h"
#include "folders/MyDroppedFolders.h"
#include "folders/MySingleFolder.h"

#include <QDateTime>
#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QFile>
#include <QTextStream>

#include <algorithm>
#include <optional>
#include <string>

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

// "file-date", or "fixed:DATE:STEP" with DATE as 2024-05-01T10:00:00 (local) or with Z or an
// offset, and STEP in seconds.
std::optional<ImportOptions> emptyTagOptionsFrom(const QString &text)
{
    ImportOptions options;
    if (text == QLatin1String("file-date")) {
        options.withEmptyExifFixDate = ImportOptions::UseFileDate;
        return options;
    }
    const QString prefix = QStringLiteral("fixed:");
    const qsizetype stepAt = text.lastIndexOf(QLatin1Char(':'));
    if (!text.startsWith(prefix) || stepAt <= prefix.size())
        return std::nullopt;
    const QDateTime start = QDateTime::fromString(text.mid(prefix.size(), stepAt - prefix.size()), Qt::ISODate);
    bool stepIsNumber = false;
    const double step = text.mid(stepAt + 1).toDouble(&stepIsNumber);
    if (!start.isValid() || !stepIsNumber)
        return std::nullopt;
    options.withEmptyExifFixDate = ImportOptions::UseFixedDate;
    options.prefFixDateDate = Instant(double(start.toSecsSinceEpoch()));
    options.prefFixDateStepValue = step;
    options.prefFixDateStepperKind = 0;
    return options;
}

struct ScanArguments
{
    bool json = false;
    qint64 subfolderDepth = 0;
    KeyStatesAtImport keys;
    ImportOptions emptyTags;
    QStringList paths;
};

// Usage errors are said on err; nothing then.
std::optional<ScanArguments> parsed(const QStringList &arguments, QTextStream &err)
{
    ScanArguments parsedArguments;
    parsedArguments.emptyTags.withEmptyExifFixDate = ImportOptions::UseFileDate;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments[i];
        const bool takesValue = argument == QLatin1String("--subfolders") || argument == QLatin1String("--filter")
                                || argument == QLatin1String("--exclude") || argument == QLatin1String("--empty-tags");
        if (takesValue && i + 1 >= arguments.size()) {
            err << "orvelle-cli scan: " << argument << " needs a value\n";
            return std::nullopt;
        }
        if (argument == QLatin1String("--json")) {
            parsedArguments.json = true;
        } else if (argument == QLatin1String("--subfolders")) {
            bool isNumber = false;
            parsedArguments.subfolderDepth = arguments[++i].toLongLong(&isNumber);
            if (!isNumber || parsedArguments.subfolderDepth < 0) {
                err << "orvelle-cli scan: --subfolders takes a depth of 0 or more\n";
                return std::nullopt;
            }
        } else if (argument == QLatin1String("--filter") || argument == QLatin1String("--exclude")) {
            parsedArguments.keys.tioFilterValues = arguments[++i];
            parsedArguments.keys.tioFilterType =
                argument == QLatin1String("--filter") ? ImportFilter::KeepOnly : ImportFilter::LeaveOut;
        } else if (argument == QLatin1String("--empty-tags")) {
            const std::optional<ImportOptions> options = emptyTagOptionsFrom(arguments[++i]);
            if (!options) {
                err << "orvelle-cli scan: --empty-tags takes file-date or fixed:DATE:STEP "
                       "(e.g. fixed:2024-05-01T10:00:00Z:60)\n";
                return std::nullopt;
            }
            parsedArguments.emptyTags = *options;
        } else if (argument.startsWith(QLatin1String("--"))) {
            err << "orvelle-cli scan: unknown option " << argument << "\n";
            return std::nullopt;
        } else {
            parsedArguments.paths.append(argument);
        }
    }
    if (parsedArguments.paths.isEmpty()) {
        err << "orvelle-cli scan: name at least one file or folder\n";
        return std::nullopt;
    }
    parsedArguments.keys.isSubFolderAutoImportEnabled = parsedArguments.subfolderDepth > 0;
    return parsedArguments;
}

// An empty result is said, not left to a silent exit: above all when the files lie in subfolders
// that only --subfolders imports.
void reportNothingFound(const ScanArguments &args, QTextStream &err)
{
    qsizetype subfolders = 0;
    if (args.subfolderDepth == 0) {
        for (const QString &path : args.paths)
            subfolders += QDir(path).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
    }
    err << "orvelle-cli scan: no media file found";
    if (subfolders > 0)
        err << "; the folders hold " << subfolders
            << " subfolder(s), which --subfolders DEPTH imports (e.g. --subfolders 1)";
    err << "\n";
}

bool hasItems(const PathImport &imported)
{
    const QList<MySingleFolder *> folders = imported.folders();
    return std::any_of(folders.begin(), folders.end(),
                       [](const MySingleFolder *folder) { return !folder->sfPicDetails_fullArray.isEmpty(); });
}

} // namespace

int ScanCommand::run(const QStringList &arguments)
{
    QTextStream out(stdout);
    QTextStream err(stderr);
    const std::optional<ScanArguments> args = parsed(arguments, err);
    if (!args)
        return 2;

    const PathImport imported(args->paths, {args->subfolderDepth, args->keys, args->emptyTags}, err);
    if (!hasItems(imported))
        reportNothingFound(*args, err);

    if (!args->json) {
        for (const MySingleFolder *folder : imported.folders()) {
            for (const MySinglePic *pic : folder->sfPicDetails_fullArray)
                out << readableLine(*pic) << "\n";
        }
        return imported.failed() ? 1 : 0;
    }
    // The JSON array is written item by item, as its compact form would read, in blocks of
    // bytes straight to the output: a large folder never stands in memory twice, and no text
    // conversion stands between the items and the pipe.
    QFile output;
    if (!output.open(stdout, QIODevice::WriteOnly))
        return 1;
    constexpr std::size_t blockSize = 1 << 20;
    std::string block = "[";
    bool first = true;
    for (const MySingleFolder *folder : imported.folders()) {
        for (const MySinglePic *pic : folder->sfPicDetails_fullArray) {
            if (!first)
                block += ',';
            ItemJson::writePic(*pic, block);
            first = false;
            if (block.size() >= blockSize) {
                output.write(block.data(), qint64(block.size()));
                block.clear();
            }
        }
    }
    block += "]\n";
    output.write(block.data(), qint64(block.size()));
    return imported.failed() ? 1 : 0;
}

} // namespace orv

#include "cli/StillCommand.h"

#include "cli/ItemJson.h"
#include "cli/PathImport.h"
#include "core/MySinglePic.h"
#include "core/XtController.h"
#include "export/MovieStillExportController.h"
#include "folders/MySingleFolder.h"
#include "movieframes/FfmpegMovieFrames.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>

#include <cmath>

namespace orv {

namespace {

struct Options
{
    QList<double> positions;
    MovieStillSettings settings;
    bool withChapters = false;
    bool json = false;
    QStringList movies;
};

void usageError(QTextStream &err, const QString &message)
{
    err << "orvelle-cli still: " << message << "\n"
        << "Usage: orvelle-cli still --at SECONDS[,SECONDS...] [--chapters] [--format jpg|tif|heic] [--live] [--json] "
           "MOVIE...\n";
}

std::optional<Options> parseArguments(const QStringList &arguments, QTextStream &err)
{
    Options options;
    bool hasPositions = false;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments[i];
        const bool takesValue = argument == QLatin1String("--at") || argument == QLatin1String("--format");
        if (takesValue && i + 1 >= arguments.size()) {
            usageError(err, argument + QStringLiteral(" needs a value"));
            return std::nullopt;
        }
        if (argument == QLatin1String("--at")) {
            const std::optional<QList<double>> positions = StillCommand::parsePositions(arguments[++i]);
            if (!positions) {
                usageError(err, QStringLiteral("--at takes seconds of 0 or more, separated by commas, e.g. 1.5,3"));
                return std::nullopt;
            }
            options.positions += *positions;
            hasPositions = true;
        } else if (argument == QLatin1String("--format")) {
            static const QStringList formats{QStringLiteral("tif"), QStringLiteral("jpg"), QStringLiteral("heic")};
            const qsizetype format = formats.indexOf(arguments[++i]);
            if (format < 0) {
                usageError(err, QStringLiteral("--format takes jpg, tif or heic"));
                return std::nullopt;
            }
            options.settings.format = int(format);
        } else if (argument == QLatin1String("--chapters")) {
            options.withChapters = true;
            hasPositions = true;
        } else if (argument == QLatin1String("--live")) {
            options.settings.livePhotos = true;
        } else if (argument == QLatin1String("--json")) {
            options.json = true;
        } else if (argument.startsWith(QLatin1String("--"))) {
            usageError(err, QStringLiteral("unknown option ") + argument);
            return std::nullopt;
        } else {
            options.movies.append(argument);
        }
    }
    if (!hasPositions || options.movies.isEmpty()) {
        usageError(err, QStringLiteral("name the positions (--at, --chapters) and at least one movie"));
        return std::nullopt;
    }
    return options;
}

// The imported item of each movie named, in the order named; a path that is no movie is said.
QList<const MySinglePic *> moviesNamed(const PathImport &imported, const QStringList &paths, QTextStream &err,
                                       bool &failed)
{
    QList<const MySinglePic *> movies;
    for (const QString &path : paths) {
        const QString wanted = QFileInfo(path).canonicalFilePath();
        const MySinglePic *found = nullptr;
        for (const MySingleFolder *folder : imported.folders()) {
            for (const MySinglePic *pic : folder->sfPicDetails_fullArray) {
                if (QFileInfo(pic->spPath()).canonicalFilePath() == wanted)
                    found = pic;
            }
        }
        if (found && found->isMovie()) {
            movies.append(found);
        } else if (QFileInfo::exists(path)) {
            err << "orvelle-cli: " << path << ": not a movie\n";
            failed = true;
        }
    }
    return movies;
}

QJsonObject stillJson(const MovieStillResult &result, const MovieStillResult::Still &still, const char *status,
                      bool livePhotos)
{
    QJsonObject object{{QStringLiteral("movie"), result.movie},
            {QStringLiteral("position"), still.position},
            {QStringLiteral("path"), still.path},
            {QStringLiteral("status"), QLatin1String(status)},
            {QStringLiteral("date"), ItemJson::date(still.metadata.date)},
            {QStringLiteral("stamp"), still.metadata.exifStamp()},
            {QStringLiteral("offset"), still.metadata.offsetText().isEmpty() ? QJsonValue() : still.metadata.offsetText()}};
    if (livePhotos)
        object.insert(QStringLiteral("livePhotoMovie"), MovieStillExportController::pairedMoviePath(still.path));
    return object;
}

} // namespace

std::optional<QList<double>> StillCommand::parsePositions(const QString &text)
{
    QList<double> positions;
    for (const QString &part : text.split(QLatin1Char(','))) {
        bool isNumber = false;
        const double seconds = part.trimmed().toDouble(&isNumber);
        if (!isNumber || !std::isfinite(seconds) || seconds < 0)
            return std::nullopt;
        positions.append(seconds);
    }
    return positions;
}

int StillCommand::run(const QStringList &arguments)
{
    QTextStream out(stdout);
    QTextStream err(stderr);
    const std::optional<Options> options = parseArguments(arguments, err);
    if (!options)
        return 2;
    const PathImport imported(options->movies, {}, err);
    bool failed = imported.failed();
    QList<MovieStillJob> jobs;
    for (const MySinglePic *movie : moviesNamed(imported, options->movies, err, failed)) {
        if (const std::optional<StillMetadata> atStart = StillMetadata::forPosition(*movie, 0.0)) {
            jobs.append({movie->spPath(), options->positions, *atStart, options->withChapters});
        } else {
            err << "orvelle-cli: " << movie->spPath() << ": the movie has no date for its stills\n";
            failed = true;
        }
    }

    XtController xt;
    MovieStillExportController controller(&FfmpegMovieFrames::open, xt);
    const QList<MovieStillResult> results = controller.exportChapterCoversThreadedForMovies(jobs, options->settings);

    QJsonArray stills;
    for (const MovieStillResult &result : results) {
        for (const MovieStillResult::Still &still : result.successes) {
            stills.append(stillJson(result, still, "written", options->settings.livePhotos));
            if (options->json)
                continue;
            const QString date = ItemJson::date(still.metadata.date).toString();
            out << still.path << "\t" << date << "\n";
            if (options->settings.livePhotos)
                out << MovieStillExportController::pairedMoviePath(still.path) << "\t" << date << "\n";
        }
        for (const MovieStillResult::Still &still : result.duplicates) {
            stills.append(stillJson(result, still, "exists", options->settings.livePhotos));
            err << "orvelle-cli: " << still.path << ": exists already; left as it is\n";
        }
        for (const MovieStillResult::Failure &failure : result.failures) {
            err << "orvelle-cli: " << result.movie;
            if (failure.position >= 0)
                err << ": at " << QString::number(failure.position, 'f', 3) << " s";
            err << ": " << failure.reason << "\n";
            failed = true;
        }
    }
    if (options->json)
        out << QJsonDocument(stills).toJson(QJsonDocument::Compact) << "\n";
    return failed ? 1 : 0;
}

} // namespace orv

#include "app/MovieStillRun.h"

#include "app/AppController.h"
#include "core/MySinglePic.h"
#include "core/Preferences.h"
#include "core/XtController.h"
#include "folders/DropEntry.h"
#include "folders/MyDroppedFolders.h"

#include <QCoreApplication>
#include <QtConcurrent/QtConcurrentRun>


namespace orv {

namespace {

// The value of a key the user may never have set: its default until then.
QVariant valueOr(const Preferences &prefs, const QString &key, const QVariant &fallback)
{
    return prefs.hasValueForKey(key) ? prefs.valueForKey(key) : fallback;
}

} // namespace

MovieStillRun::MovieStillRun(AppController &controller, MovieFramesOpener opener, QObject *parent)
    : QObject(parent), m_controller(controller), m_opener(std::move(opener))
{
    connect(&m_watcher, &QFutureWatcher<QList<MovieStillResult>>::finished, this, &MovieStillRun::runEnded);
}

MovieStillRun::~MovieStillRun()
{
    // The worker holds files half made: it stops at the next still, and the files it leaves
    // are whole.
    abort();
    m_watcher.waitForFinished();
}

MovieStillSettings MovieStillRun::settingsFrom(const Preferences &prefs)
{
    MovieStillSettings settings;
    settings.format = valueOr(prefs, QStringLiteral("movieStillsFormat"), 1).toInt();
    // HEIC is written as JPEG, with the quality chosen for HEIC.
    settings.jpegQuality = settings.format == MovieStillSettings::Heic
                               ? valueOr(prefs, QStringLiteral("movieStillsQuality3"), 70.0).toDouble()
                               : valueOr(prefs, QStringLiteral("movieStillsQuality2"), 75.0).toDouble();
    settings.tiffCompression = valueOr(prefs, QStringLiteral("movieStillsQuality1"), 0).toInt();
    settings.livePhotos = valueOr(prefs, QStringLiteral("movieStillsExportAsLivePhotos"), false).toBool();
    settings.livePhotoLength = valueOr(prefs, QStringLiteral("livePhotoExportDuration"), 2).toInt() + 1.0;
    return settings;
}

QList<MovieStillJob> MovieStillRun::jobsFor(const QList<MySinglePic *> &movies, QStringList &problems)
{
    QList<MovieStillJob> jobs;
    for (const MySinglePic *movie : movies) {
        if (!movie->isMovie())
            continue;
        const MoviePositions positions = MoviePositions::of(*movie);
        if (positions.movPositions.isEmpty()) {
            problems.append(QCoreApplication::translate("movie_stills", "%1: no positions are kept in the movie")
                                .arg(movie->spName));
            continue;
        }
        const std::optional<StillMetadata> atStart = StillMetadata::forPosition(*movie, 0.0);
        if (!atStart) {
            problems.append(QCoreApplication::translate("movie_stills", "%1: the movie has no date for its stills")
                                .arg(movie->spName));
            continue;
        }
        MovieStillJob job{movie->spPath(), {}, *atStart, false};
        for (const MoviePosition &position : positions.sortedPositions())
            job.positions.append(position.seconds);
        jobs.append(job);
    }
    return jobs;
}

QStringList MovieStillRun::resultingFolders(const QList<MovieStillResult> &results)
{
    QStringList folders;
    for (const MovieStillResult &result : results)
        if (!result.successes.isEmpty() && !folders.contains(result.coverFolderPath))
            folders.append(result.coverFolderPath);
    return folders;
}

void MovieStillRun::start(const QList<MovieStillJob> &jobs, const MovieStillSettings &settings)
{
    if (isRunning())
        return;
    m_run = std::make_shared<Run>(m_opener);
    m_run->exporter.setProgressHandler([this](qsizetype done, qsizetype total) {
        QMetaObject::invokeMethod(this, [this, done, total] { Q_EMIT progressChanged(done, total); },
                                  Qt::QueuedConnection);
    });
    m_watcher.setFuture(QtConcurrent::run(
        [run = m_run, jobs, settings] { return run->exporter.exportChapterCoversThreadedForMovies(jobs, settings); }));
}

void MovieStillRun::abort()
{
    if (m_run)
        m_run->exporter.abortExportChapterCovers();
}

void MovieStillRun::runEnded()
{
    m_run.reset();
    const QList<MovieStillResult> results = m_watcher.result();
    const QStringList folders = resultingFolders(results);
    if (!folders.isEmpty()
        && valueOr(m_controller.prefs(), QStringLiteral("movieStillsImportsResultingFolders"), true).toBool()) {
        QList<DropEntry> entries;
        for (const QString &folder : folders)
            if (std::optional<DropEntry> entry = DropEntry::pathAndBookmarkFromAccessable(folder))
                entries.append(*entry);
        m_controller.theDataSource().processDroppedFolders(entries, nullptr, 0, KeyStatesAtImport{});
    }
    Q_EMIT finished(results);
}

} // namespace orv

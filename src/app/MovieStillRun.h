#pragma once

#include "core/XtController.h"
#include "export/MovieStillExportController.h"

#include <QFutureWatcher>
#include <QObject>

#include <memory>

namespace orv {

class AppController;
class MySinglePic;
class Preferences;

// The window's export of stills (or Live Photo pairs) from the positions kept in movies. What
// each still says of itself is taken from the movies' items here, on the main thread, as they
// stand now (a pending date change included); the files are then made on a worker thread by
// MovieStillExportController, which can be stopped between two stills. When
// "movieStillsImportsResultingFolders" is on, the folders that got new files are imported, so
// the stills stand in the timeline at their dates.
class MovieStillRun : public QObject
{
    Q_OBJECT
public:
    MovieStillRun(AppController &controller, MovieFramesOpener opener, QObject *parent = nullptr);
    ~MovieStillRun() override;

    // The settings in force: "movieStillsFormat", its quality, "movieStillsExportAsLivePhotos"
    // and "livePhotoExportDuration", each with its default until first set.
    static MovieStillSettings settingsFrom(const Preferences &prefs);
    // One job per movie with kept positions, its positions in the movie's order; `problems`
    // names each movie that has none or no date to give its stills.
    static QList<MovieStillJob> jobsFor(const QList<MySinglePic *> &movies, QStringList &problems);
    // The folders that got new files.
    static QStringList resultingFolders(const QList<MovieStillResult> &results);

    bool isRunning() const { return m_watcher.isRunning(); }
    void start(const QList<MovieStillJob> &jobs, const MovieStillSettings &settings);
    // Stops before the next still; finished() follows with what was made.
    void abort();

Q_SIGNALS:
    void progressChanged(qsizetype done, qsizetype total);
    // The run has ended; the import of the resulting folders, if any, has begun.
    void finished(const QList<orv::MovieStillResult> &results);

private:
    void runEnded();

    AppController &m_controller;
    MovieFramesOpener m_opener;
    // Made for each run, used by its worker and stopped from here.
    struct Run
    {
        explicit Run(const MovieFramesOpener &opener) : exporter(opener, xt) {}
        XtController xt;
        MovieStillExportController exporter;
    };
    std::shared_ptr<Run> m_run;
    QFutureWatcher<QList<MovieStillResult>> m_watcher;
};

} // namespace orv

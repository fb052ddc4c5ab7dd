#pragma once

#include "export/MovieFrames.h"
#include "export/StillMetadata.h"

#include <QList>
#include <QString>

#include <atomic>
#include <functional>

namespace orv {

class XtController;

// How stills are written.
struct MovieStillSettings
{
    // The stored "movieStillsFormat": 0 TIFF, 1 JPEG, 2 HEIC, which is written as JPEG: the
    // stills stay readable wherever the movie is.
    enum Format : int { Tiff = 0, Jpeg = 1, Heic = 2 };
    int format = Jpeg;
    // "movieStillsQuality2": percent.
    double jpegQuality = 75.0;
    // "movieStillsQuality1": not 0 compresses the TIFF (LZW).
    int tiffCompression = 0;
    // Pairs of a still and a short movie that a phone's gallery shows as one Live Photo,
    // instead of stills; the movie part lasts "livePhotoExportDuration" + 1 seconds.
    bool livePhotos = false;
    double livePhotoLength = 3.0;

    // A pair's still is a JPEG, as phones' galleries take it.
    QString extension() const
    {
        return format == Tiff && !livePhotos ? QStringLiteral("tif") : QStringLiteral("jpg");
    }
};

// One movie and its positions, with what a still of its first frame says of itself: taken from
// the movie's item on the thread that owns it, before the run.
struct MovieStillJob
{
    QString moviePath;
    QList<double> positions;
    StillMetadata atStart;
    // The starts of the movie's chapters are positions too.
    bool withChapters = false;
};

struct MovieStillResult
{
    struct Still
    {
        double position = 0.0;
        QString path;
        StillMetadata metadata;
    };
    struct Failure
    {
        double position = -1.0; // below 0: the movie as a whole
        QString reason;
    };
    QString movie;
    QString coverFolderPath;
    QList<Still> successes;
    QList<Failure> failures;
    QList<Still> duplicates; // not written: a file of that name exists
};

// Turns the positions of movies into stills in a folder beside each movie, named by their
// position, dated, placed and attributed to the movie's camera. Each still is made whole under
// a hidden name (pixels, then its metadata in one exiftool action, its file dates, a sync) and
// only then takes its name, never over a file that has it: a failure leaves no file behind, and
// an existing still is listed as a duplicate, never replaced. Each movie is opened once for all
// its positions; a movie that fails does not stop the others. Runs on the calling thread.
class MovieStillExportController
{
public:
    MovieStillExportController(MovieFramesOpener opener, XtController &xt) : m_opener(std::move(opener)), m_xt(xt) {}

    QList<MovieStillResult> exportChapterCoversThreadedForMovies(const QList<MovieStillJob> &jobs,
                                                                 const MovieStillSettings &settings);
    // Stops the run before its next still.
    void abortExportChapterCovers() { m_isChapterExportAborted = true; }
    // Told on the run's thread after each position, made or not: how many of the jobs'
    // positions are done, of how many.
    using Progress = std::function<void(qsizetype done, qsizetype total)>;
    void setProgressHandler(Progress progress) { m_progress = std::move(progress); }

    // "01_02_03.456" for 3723.456 seconds.
    static QString chapterCoverNameFromSeconds(double seconds);
    // "<movie's name> Stills" beside the movie, or "... Live Photos" for pairs.
    static QString stillsFolderFor(const QString &moviePath, bool livePhotos = false);
    // The movie of a pair: the still's name with ".mov".
    static QString pairedMoviePath(const QString &stillPath);
    // The reason when the file at `path` does not carry `identifier` as our readers find it:
    // the QuickTime metadata key of a movie, the Apple maker note of a still.
    static QString verifyNewAssetAtURL(const QString &path, const QString &identifier);

private:
    MovieStillResult exportMovie(const MovieStillJob &job, const MovieStillSettings &settings);
    void reportProgress();
    // The hidden name a file is made under before it takes its own.
    static QString hiddenPathFor(const QString &path);
    // Each gives the reason when the still or the pair could not be made, and then leaves no file.
    // `image` is the frame at the still's position.
    QString makeStill(const QImage &image, const MovieStillResult::Still &still, const MovieStillSettings &settings,
                      const QString &contentIdentifier);
    QString makePair(MovieFrames &frames, const QImage &image, const MovieStillResult::Still &still,
                     const MovieStillSettings &settings);
    // One exiftool action on a file this run made; the reason when it changed nothing.
    QString writeMetadata(const QString &path, const QStringList &arguments);
    // The still under its hidden name, complete; the reason when it could not be made.
    QString writeStill(const QImage &image, const StillMetadata &metadata, const QString &temporary,
                       const MovieStillSettings &settings, const QString &contentIdentifier);

    MovieFramesOpener m_opener;
    XtController &m_xt;
    std::atomic<bool> m_isChapterExportAborted = false;
    Progress m_progress;
    qsizetype m_positionsDone = 0, m_positionsTotal = 0;
};

} // namespace orv

#include "export/MovieStillExportController.h"

#include "core/XtController.h"
#include "formats/AppleMakerNote.h"
#include "formats/MySingleFolderDataReader.h"

#include <QDir>
#include <QFileInfo>
#include <QImageWriter>
#include <QUuid>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orv {

namespace {

// Gives `from` the name `to` unless a file has it; the reason when not.
QString renameWithoutReplacing(const QString &from, const QString &to)
{
    const QByteArray source = QFile::encodeName(from);
    const QByteArray target = QFile::encodeName(to);
    if (::renameat2(AT_FDCWD, source.constData(), AT_FDCWD, target.constData(), RENAME_NOREPLACE) == 0)
        return {};
    // File systems without the no-replace rename take a hard link, which never replaces either.
    if (errno == EINVAL && ::link(source.constData(), target.constData()) == 0) {
        ::unlink(source.constData());
        return {};
    }
    return QString::fromLocal8Bit(std::strerror(errno));
}

// The file's dates take the still's moment, and its bytes reach the disk.
QString settleFile(const QString &path, Instant date)
{
    const int fd = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return QString::fromLocal8Bit(std::strerror(errno));
    const double whole = std::floor(date.secondsSinceEpoch());
    timespec times[2];
    times[0].tv_sec = time_t(whole);
    times[0].tv_nsec = long((date.secondsSinceEpoch() - whole) * 1e9);
    times[1] = times[0];
    const bool done = ::futimens(fd, times) == 0 && ::fsync(fd) == 0;
    const QString why = done ? QString() : QString::fromLocal8Bit(std::strerror(errno));
    ::close(fd);
    return why;
}

} // namespace

namespace {

// Positions are kept to the millisecond.
qint64 millisecondsOf(double seconds)
{
    return qint64(std::llround(seconds * 1000.0));
}

} // namespace

QString MovieStillExportController::chapterCoverNameFromSeconds(double seconds)
{
    const qint64 milliseconds = millisecondsOf(seconds);
    const qint64 whole = milliseconds / 1000;
    return QString::asprintf("%02lld_%02lld_%02lld.%03lld", whole / 3600, whole / 60 % 60, whole % 60,
                             milliseconds % 1000);
}

QString MovieStillExportController::stillsFolderFor(const QString &moviePath, bool livePhotos)
{
    const QFileInfo movie(moviePath);
    return movie.absoluteDir().filePath(movie.completeBaseName()
                                        + (livePhotos ? QStringLiteral(" Live Photos") : QStringLiteral(" Stills")));
}

QList<MovieStillResult> MovieStillExportController::exportChapterCoversThreadedForMovies(const QList<MovieStillJob> &jobs,
                                                                                         const MovieStillSettings &settings)
{
    m_isChapterExportAborted = false;
    m_positionsDone = 0;
    m_positionsTotal = 0;
    for (const MovieStillJob &job : jobs)
        m_positionsTotal += job.positions.size();
    QList<MovieStillResult> results;
    for (const MovieStillJob &job : jobs) {
        if (m_isChapterExportAborted)
            break;
        results.append(exportMovie(job, settings));
    }
    m_xt.cleanup();
    return results;
}

MovieStillResult MovieStillExportController::exportMovie(const MovieStillJob &job, const MovieStillSettings &settings)
{
    MovieStillResult result;
    result.movie = job.moviePath;
    const QString folder = stillsFolderFor(job.moviePath, settings.livePhotos);
    const QFileInfo movieFolder(QFileInfo(job.moviePath).absolutePath());
    const bool folderExisted = QFileInfo(folder).isDir();
    if (!folderExisted && !movieFolder.isWritable()) {
        result.failures.append({-1.0, QStringLiteral("the movie's folder is not writable")});
        return result;
    }
    result.coverFolderPath = folder;

    std::unique_ptr<MovieFrames> frames;
    QString openProblem;
    const auto open = [&] {
        if (!frames && openProblem.isEmpty()) {
            frames = m_opener(job.moviePath, openProblem);
            if (!frames && openProblem.isEmpty())
                openProblem = QStringLiteral("the movie cannot be read");
        }
    };
    QList<double> positions = job.positions;
    if (job.withChapters) {
        open();
        if (frames)
            positions += frames->chapterStarts();
    }
    // In the movie's order, so the frames are decoded in one pass; positions within one
    // millisecond share a name and make one still.
    std::sort(positions.begin(), positions.end());
    positions.erase(std::unique(positions.begin(), positions.end(),
                                [](double a, double b) { return millisecondsOf(a) == millisecondsOf(b); }),
                    positions.end());

    for (const double position : positions) {
        if (m_isChapterExportAborted)
            break;
        const MovieStillResult::Still still{
            position, QDir(folder).filePath(chapterCoverNameFromSeconds(position) + QLatin1Char('.') + settings.extension()),
            job.atStart.atPosition(position)};
        if (QFileInfo::exists(still.path) || (settings.livePhotos && QFileInfo::exists(pairedMoviePath(still.path)))) {
            result.duplicates.append(still);
            reportProgress();
            continue;
        }
        open();
        QString why = openProblem;
        const QImage image = frames ? frames->frameAt(position, why) : QImage();
        if (!image.isNull())
            why = settings.livePhotos ? makePair(*frames, image, still, settings) : makeStill(image, still, settings, {});
        if (why.isEmpty())
            result.successes.append(still);
        else
            result.failures.append({position, why});
        reportProgress();
    }
    // A folder this run made and left empty goes again (rmdir leaves one that holds anything).
    if (!folderExisted)
        QDir().rmdir(folder);
    return result;
}

void MovieStillExportController::reportProgress()
{
    ++m_positionsDone;
    if (m_progress)
        // Chapter starts come on top of the positions asked for once the movie is open.
        m_progress(m_positionsDone, std::max(m_positionsDone, m_positionsTotal));
}

QString MovieStillExportController::pairedMoviePath(const QString &stillPath)
{
    const QFileInfo still(stillPath);
    return still.dir().filePath(still.completeBaseName() + QStringLiteral(".mov"));
}

QString MovieStillExportController::hiddenPathFor(const QString &path)
{
    const QFileInfo file(path);
    return file.dir().filePath(QLatin1Char('.') + file.completeBaseName() + QStringLiteral(".partial.") + file.suffix());
}

QString MovieStillExportController::makeStill(const QImage &image, const MovieStillResult::Still &still,
                                              const MovieStillSettings &settings, const QString &contentIdentifier)
{
    const QString folder = QFileInfo(still.path).absolutePath();
    if (!QDir().mkpath(folder))
        return QStringLiteral("the folder %1 cannot be made").arg(folder);
    const QString temporary = hiddenPathFor(still.path);
    QString why = writeStill(image, still.metadata, temporary, settings, contentIdentifier);
    if (why.isEmpty() && !contentIdentifier.isEmpty())
        why = verifyNewAssetAtURL(temporary, contentIdentifier);
    if (why.isEmpty())
        why = renameWithoutReplacing(temporary, still.path);
    if (!why.isEmpty()) {
        QFile::remove(temporary);
        QFile::remove(XtController::temporaryFileOf(temporary));
    }
    return why;
}

QString MovieStillExportController::makePair(MovieFrames &frames, const QImage &image,
                                             const MovieStillResult::Still &still, const MovieStillSettings &settings)
{
    const QString identifier = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
    const QString movie = pairedMoviePath(still.path);
    const QString temporaryMovie = hiddenPathFor(movie);
    // The movie first: the still takes its name last, once its partner stands beside it.
    QDir().mkpath(QFileInfo(movie).absolutePath());
    QString why = frames.writeLivePhotoMovie(temporaryMovie, still.position, settings.livePhotoLength,
                                             still.metadata.livePhotoMovieTags(identifier));
    if (why.isEmpty())
        why = settleFile(temporaryMovie, still.metadata.date);
    if (why.isEmpty())
        why = verifyNewAssetAtURL(temporaryMovie, identifier);
    if (why.isEmpty())
        why = renameWithoutReplacing(temporaryMovie, movie);
    if (!why.isEmpty()) {
        QFile::remove(temporaryMovie);
        return why;
    }
    why = makeStill(image, still, settings, identifier);
    // The movie is this run's own, named a moment ago: half a pair is no pair.
    if (!why.isEmpty())
        QFile::remove(movie);
    return why;
}

QString MovieStillExportController::verifyNewAssetAtURL(const QString &path, const QString &identifier)
{
    MySingleFolderDataReader reader;
    QByteArray found;
    if (QFileInfo(path).suffix() == QLatin1String("mov")) {
        found = reader.quicktimeHeaderDataForMovieFileAtPath(path, 1).contentIdentifier;
    } else {
        const DatesData dates = reader.savereadDatesAtPath(path, JpegFormat);
        if (dates.tiffHeader)
            found = reader.imageTagsAtPath(path, *dates.tiffHeader).contentIdentifier.toUtf8();
    }
    if (found != identifier.toUtf8())
        return QStringLiteral("the new file %1 does not carry its pair's content identifier").arg(path);
    return {};
}

QString MovieStillExportController::writeStill(const QImage &image, const StillMetadata &metadata,
                                               const QString &temporary, const MovieStillSettings &settings,
                                               const QString &contentIdentifier)
{
    QImageWriter writer(temporary, settings.format == MovieStillSettings::Tiff ? "tiff" : "jpeg");
    if (settings.format == MovieStillSettings::Tiff)
        writer.setCompression(settings.tiffCompression != 0 ? 1 : 0);
    else
        writer.setQuality(int(std::lround(settings.jpegQuality)));
    if (!writer.write(image))
        return QStringLiteral("the image cannot be written: %1").arg(writer.errorString());
    QStringList arguments = metadata.exiftoolArguments();
    // The maker note that joins a pair goes in as a whole block, from a file of its own.
    const QString makerNote = temporary + QStringLiteral(".makernote");
    if (!contentIdentifier.isEmpty()) {
        QFile note(makerNote);
        if (!note.open(QIODevice::WriteOnly) || note.write(appleMakerNoteWithContentIdentifier(contentIdentifier.toUtf8())) < 0)
            return QStringLiteral("the content identifier cannot be prepared: %1").arg(note.errorString());
        arguments << QStringLiteral("-MakerNotes<=") + makerNote;
    }
    const QString why = writeMetadata(temporary, arguments);
    QFile::remove(makerNote);
    return why.isEmpty() ? settleFile(temporary, metadata.date) : why;
}

QString MovieStillExportController::writeMetadata(const QString &path, const QStringList &arguments)
{
    if (!XtController::isPassablePath(path))
        return QStringLiteral("a path with a line break cannot be given to exiftool");
    XtController::Action action;
    action.arguments = arguments;
    action.path = path;
    const XtController::Outcome outcome = m_xt.run(action);
    if (!outcome.didChangeOnLastAction)
        return QStringLiteral("the metadata cannot be written: %1")
            .arg(outcome.error.isEmpty() ? QStringLiteral("exiftool did not answer") : outcome.error);
    return {};
}

} // namespace orv

#include "app/MoviePositionChanges.h"

#include "core/MySinglePic.h"

#include <QCoreApplication>
#include <QUndoStack>

namespace orv {

bool MoviePositionChanges::push(MySinglePic &movie, const MoviePositions &before, const MoviePositions &after,
                                const QString &text)
{
    if (before == after)
        return false;
    // The stack's push runs the step's redo, which puts `after` on the item.
    m_stack.push(new MoviePositionCommand(&movie, before, after, text, m_changed));
    return true;
}

QString MoviePositionChanges::saveMoviePosition(MySinglePic &movie, double seconds, const QByteArray &thumb)
{
    if (m_blocked || !movie.isMovie() || seconds < 0.0)
        return {};
    const MoviePositions before = MoviePositions::of(movie);
    MoviePositions after = before;
    const QString key = after.saveMoviePosition(MovieTime::fromSeconds(seconds), thumb);
    if (key.isEmpty())
        return {};
    push(movie, before, after, QCoreApplication::translate("movie_positions", "Mark Position"));
    return key;
}

bool MoviePositionChanges::removeMoviePosition(MySinglePic &movie, const QString &key)
{
    if (m_blocked)
        return false;
    const MoviePositions before = MoviePositions::of(movie);
    MoviePositions after = before;
    return after.removeMoviePosition(key)
           && push(movie, before, after, QCoreApplication::translate("movie_positions", "Remove Position"));
}

bool MoviePositionChanges::fixateMoviePosition(MySinglePic &movie, const QString &key)
{
    if (m_blocked)
        return false;
    const MoviePositions before = MoviePositions::of(movie);
    MoviePositions after = before;
    return after.fixateMoviePosition(key)
           && push(movie, before, after, QCoreApplication::translate("movie_positions", "Choose Position"));
}

void MoviePositionChanges::standAt(MySinglePic &movie, double seconds)
{
    MoviePositions positions = MoviePositions::of(movie);
    positions.standAt(MovieTime::fromSeconds(seconds));
    positions.applyTo(movie);
}

void MoviePositionChanges::loadChaptersForAsset(MySinglePic &movie, const QList<double> &starts)
{
    MoviePositions positions = MoviePositions::of(movie);
    if (positions.didTryToLoadChapters)
        return;
    positions.loadChapters(starts);
    positions.applyTo(movie);
    if (m_changed)
        m_changed(&movie);
}

} // namespace orv

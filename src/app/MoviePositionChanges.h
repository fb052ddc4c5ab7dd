#pragma once

#include "app/MoviePositionCommand.h"

#include <QList>

class QUndoStack;

namespace orv {

// The positions remembered in movies change here: marking, removing and choosing a position
// are each one undo step on the main stack. Where the player stands and the chapters read from
// the movie are no edits of the user's and take no step.
//
// Main thread only, like every change of items.
class MoviePositionChanges
{
public:
    MoviePositionChanges(QUndoStack &stack, MoviePositionCommand::Changed changed)
        : m_stack(stack), m_changed(std::move(changed))
    {
    }

    // A save owns the items: every change is refused until it ends.
    void setBlocked(bool blocked) { m_blocked = blocked; }

    // Remembers the movie's frame at `seconds` with its thumbnail (compressed image bytes, or
    // empty); the key, or an empty one when that position is kept already or the item is no
    // movie.
    QString saveMoviePosition(MySinglePic &movie, double seconds, const QByteArray &thumb);
    bool removeMoviePosition(MySinglePic &movie, const QString &key);
    // Chooses the position as the movie's thumbnail and start, or clears the choice of it.
    bool fixateMoviePosition(MySinglePic &movie, const QString &key);

    // The player stands at `seconds`.
    void standAt(MySinglePic &movie, double seconds);
    // The movie's chapter starts, read once per item, join its positions.
    void loadChaptersForAsset(MySinglePic &movie, const QList<double> &starts);

private:
    bool push(MySinglePic &movie, const MoviePositions &before, const MoviePositions &after, const QString &text);

    QUndoStack &m_stack;
    MoviePositionCommand::Changed m_changed;
    bool m_blocked = false;
};

} // namespace orv

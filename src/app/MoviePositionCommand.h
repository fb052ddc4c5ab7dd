#pragma once

#include "app/DateChangeCommands.h"
#include "core/MoviePositions.h"

#include <functional>

namespace orv {

// A position of a movie marked, removed or chosen: one undo step that holds the movie's whole
// set of positions before and after, so undo and redo give back exactly what was there,
// thumbnails included.
class MoviePositionCommand : public DateChangeCommand
{
public:
    using Changed = std::function<void(MySinglePic *movie)>;

    MoviePositionCommand(MySinglePic *movie, MoviePositions before, MoviePositions after, const QString &text,
                         Changed changed);

    static constexpr int commandId = 40;
    int id() const override { return commandId; }
    std::unique_ptr<DateChangeCommand> withoutFolder(const MySingleFolder *folder) const override;
    QList<MySingleFolder *> folders() const override;
    MySinglePic *movie() const { return m_movie; }

private:
    void apply(bool forward) override;

    MySinglePic *m_movie;
    MoviePositions m_before, m_after;
    Changed m_changed;
};

} // namespace orv

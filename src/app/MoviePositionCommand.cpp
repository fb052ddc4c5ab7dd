#include "app/MoviePositionCommand.h"

#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"

namespace orv {

MoviePositionCommand::MoviePositionCommand(MySinglePic *movie, MoviePositions before, MoviePositions after,
                                           const QString &text, Changed changed)
    : DateChangeCommand(text, {}),
      m_movie(movie),
      m_before(std::move(before)),
      m_after(std::move(after)),
      m_changed(std::move(changed))
{
}

void MoviePositionCommand::apply(bool forward)
{
    (forward ? m_after : m_before).applyTo(*m_movie);
    if (m_changed)
        m_changed(m_movie);
}

std::unique_ptr<DateChangeCommand> MoviePositionCommand::withoutFolder(const MySingleFolder *folder) const
{
    if (MySingleFolder::of(*m_movie) == folder)
        return nullptr;
    return std::make_unique<MoviePositionCommand>(m_movie, m_before, m_after, text(), m_changed);
}

QList<MySingleFolder *> MoviePositionCommand::folders() const
{
    return {MySingleFolder::of(*m_movie)};
}

} // namespace orv

#pragma once

#include "app/RatingCommand.h"

#include <QList>

class QUndoStack;

namespace orv {

class DateChanges;

// Rates items as keepers, neutrals or rejects, each user event one RatingCommand on the one undo
// stack. A group is rated as one: whichever of its files is chosen, its master takes the rating.
// Refused (nothing happens) while a save runs, like every other change.
class PicRatings
{
public:
    PicRatings(QUndoStack &stack, const DateChanges &changes, RatingCommand::Changed changed)
        : m_stack(stack), m_changes(changes), m_changed(std::move(changed))
    {
    }

    // The rating keys and menu: every item takes the rating; an item that has it keeps it. Answers
    // the items whose rating changed; none leaves no undo step.
    QList<MySinglePic *> setRating(const QList<MySinglePic *> &pics, PicRating rating);
    // A click on an item's rating marker: an item with this rating loses it, any other takes it.
    // Answers the item's rating after.
    PicRating toggle(MySinglePic &pic, PicRating rating);

private:
    QList<MySinglePic *> record(QList<RatingCommand::Change> changes, PicRating rating);

    QUndoStack &m_stack;
    const DateChanges &m_changes;
    RatingCommand::Changed m_changed;
};

} // namespace orv

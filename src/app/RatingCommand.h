#pragma once

#include "app/DateChangeCommands.h"

#include <functional>

namespace orv {

// What an item is rated. A group is rated as one: its master carries the rating.
enum class PicRating : qint8 { Rejected = -1, Neutral = 0, Keeper = 1 };

PicRating ratingOf(const MySinglePic &pic);

// Ratings of items changed by one user event: one undo step. It holds every item's rating
// before and after, and keeps its folders' keeper and reject counts in step both ways.
class RatingCommand : public DateChangeCommand
{
public:
    // Told the items whose rating changed, forwards and backwards alike.
    using Changed = std::function<void(const QList<MySinglePic *> &pics)>;

    struct Change
    {
        MySinglePic *pic = nullptr;
        PicRating before = PicRating::Neutral, after = PicRating::Neutral;
    };
    RatingCommand(QList<Change> changes, const QString &text, Changed changed);

    static constexpr int commandId = 40;
    int id() const override { return commandId; }
    std::unique_ptr<DateChangeCommand> withoutFolder(const MySingleFolder *folder) const override;
    QList<MySingleFolder *> folders() const override;

    // Sets the item's rating and moves its folder's counts by the difference.
    static void rate(MySinglePic &pic, PicRating rating);

private:
    void apply(bool forward) override;

    QList<Change> m_changes;
    Changed m_changed;
};

} // namespace orv

#include "app/PicRatings.h"

#include "app/DateChanges.h"
#include "core/MySinglePic.h"

#include <QCoreApplication>
#include <QUndoStack>

namespace orv {

namespace {

MySinglePic *ratingCarrier(MySinglePic *pic)
{
    return pic->bundleMasterImage ? pic->bundleMasterImage : pic;
}

QString undoText(PicRating rating)
{
    switch (rating) {
    case PicRating::Keeper: return QCoreApplication::translate("PicRatings", "Rate as Keeper");
    case PicRating::Rejected: return QCoreApplication::translate("PicRatings", "Rate as Reject");
    case PicRating::Neutral: break;
    }
    return QCoreApplication::translate("PicRatings", "Rate as Neutral");
}

} // namespace

QList<MySinglePic *> PicRatings::setRating(const QList<MySinglePic *> &pics, PicRating rating)
{
    QList<RatingCommand::Change> changes;
    QList<MySinglePic *> seen;
    for (MySinglePic *pic : pics) {
        MySinglePic *carrier = ratingCarrier(pic);
        if (seen.contains(carrier))
            continue;
        seen.append(carrier);
        if (ratingOf(*carrier) != rating)
            changes.append({carrier, ratingOf(*carrier), rating});
    }
    return record(std::move(changes), rating);
}

PicRating PicRatings::toggle(MySinglePic &pic, PicRating rating)
{
    MySinglePic *carrier = ratingCarrier(&pic);
    const PicRating before = ratingOf(*carrier);
    const PicRating after = before == rating ? PicRating::Neutral : rating;
    record({{carrier, before, after}}, after);
    return ratingOf(*carrier);
}

QList<MySinglePic *> PicRatings::record(QList<RatingCommand::Change> changes, PicRating rating)
{
    if (changes.isEmpty() || m_changes.isBlocked())
        return {};
    QList<MySinglePic *> changed;
    for (const RatingCommand::Change &change : std::as_const(changes))
        changed.append(change.pic);
    // push() runs the command's first redo.
    m_stack.push(new RatingCommand(std::move(changes), undoText(rating), m_changed));
    return changed;
}

} // namespace orv

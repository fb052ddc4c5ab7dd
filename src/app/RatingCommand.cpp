#include "app/RatingCommand.h"

#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"

namespace orv {

PicRating ratingOf(const MySinglePic &pic)
{
    const MySinglePic &carrier = pic.bundleMasterImage ? *pic.bundleMasterImage : pic;
    if (carrier.isRejected)
        return PicRating::Rejected;
    return carrier.isKeeper ? PicRating::Keeper : PicRating::Neutral;
}

RatingCommand::RatingCommand(QList<Change> changes, const QString &text, Changed changed)
    : DateChangeCommand(text, {}), m_changes(std::move(changes)), m_changed(std::move(changed))
{
}

void RatingCommand::rate(MySinglePic &pic, PicRating rating)
{
    const bool keeper = rating == PicRating::Keeper;
    const bool rejected = rating == PicRating::Rejected;
    if (MySingleFolder *folder = MySingleFolder::of(pic)) {
        folder->keepers += int(keeper) - int(pic.isKeeper);
        folder->rejects += int(rejected) - int(pic.isRejected);
    }
    pic.isKeeper = keeper;
    pic.isRejected = rejected;
}

void RatingCommand::apply(bool forward)
{
    QList<MySinglePic *> pics;
    pics.reserve(m_changes.size());
    for (const Change &change : std::as_const(m_changes)) {
        rate(*change.pic, forward ? change.after : change.before);
        pics.append(change.pic);
    }
    if (m_changed)
        m_changed(pics);
}

std::unique_ptr<DateChangeCommand> RatingCommand::withoutFolder(const MySingleFolder *folder) const
{
    QList<Change> kept = m_changes;
    kept.removeIf([folder](const Change &c) { return c.pic->spSingleFolder == folder; });
    if (kept.isEmpty())
        return nullptr;
    return std::make_unique<RatingCommand>(kept, text(), m_changed);
}

QList<MySingleFolder *> RatingCommand::folders() const
{
    QList<MySingleFolder *> folders;
    for (const Change &change : m_changes) {
        MySingleFolder *folder = MySingleFolder::of(*change.pic);
        if (folder && !folders.contains(folder))
            folders.append(folder);
    }
    return folders;
}

} // namespace orv

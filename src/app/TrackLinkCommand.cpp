#include "app/TrackLinkCommand.h"

#include "app/CommandFolders.h"
#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"

namespace orv {

TrackLinkCommand::PicState TrackLinkCommand::PicState::of(const MySinglePic &pic)
{
    PicState state{PicLocation::of(pic), std::nullopt, pic.locAddedByTrackKey, pic.linkedToFolderTracksType,
                   pic.isTrackLinkingPrevented};
    if (pic.locationBeforeTrack)
        state.locationBeforeTrack = *pic.locationBeforeTrack;
    return state;
}

void TrackLinkCommand::PicState::applyTo(MySinglePic &pic) const
{
    location.applyTo(pic);
    pic.locationBeforeTrack = locationBeforeTrack ? std::make_unique<PicLocation>(*locationBeforeTrack) : nullptr;
    pic.locAddedByTrackKey = locAddedByTrackKey;
    pic.linkedToFolderTracksType = linkedToFolderTracksType;
    pic.isTrackLinkingPrevented = isTrackLinkingPrevented;
}

TrackLinkCommand::TrackLinkCommand(QList<FolderChange> folders, QList<PicChange> pics, const QString &text,
                                   DateChangeListener listener)
    : DateChangeCommand(text, std::move(listener)), m_folders(std::move(folders)), m_pics(std::move(pics))
{
}

void TrackLinkCommand::apply(bool forward)
{
    for (const FolderChange &change : std::as_const(m_folders))
        change.folder->linkedTracksKeys = forward ? change.after : change.before;
    for (const PicChange &change : std::as_const(m_pics))
        (forward ? change.after : change.before).applyTo(*change.pic);
    const QList<MySingleFolder *> changed = folders();
    for (MySingleFolder *folder : changed)
        folder->updateFolderValuesOnPicMove();
    if (m_listener.datesChanged)
        m_listener.datesChanged(changed);
}

std::unique_ptr<DateChangeCommand> TrackLinkCommand::withoutFolder(const MySingleFolder *folder) const
{
    QList<FolderChange> folders = m_folders;
    QList<PicChange> pics = m_pics;
    if (!removeChangesOfFolder(folders, pics, folder))
        return nullptr;
    return std::make_unique<TrackLinkCommand>(folders, pics, text(), m_listener);
}

QList<MySingleFolder *> TrackLinkCommand::folders() const
{
    return foldersOfChanges(m_folders, m_pics);
}

} // namespace orv

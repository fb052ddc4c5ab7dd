#pragma once

#include "app/DateChangeCommands.h"
#include "core/PicLocation.h"

#include <QSet>

#include <optional>

namespace orv {

// Tracks linked to folders or items opened to or closed from tracks: one undo step that puts
// back every location field of every item it touched, and the folders' links.
class TrackLinkCommand : public DateChangeCommand
{
public:
    // Everything about an item's place that a link changes.
    struct PicState
    {
        PicLocation location;
        std::optional<PicLocation> locationBeforeTrack;
        QString locAddedByTrackKey;
        qint8 linkedToFolderTracksType = 0;
        bool isTrackLinkingPrevented = false;

        static PicState of(const MySinglePic &pic);
        void applyTo(MySinglePic &pic) const;
        bool operator==(const PicState &) const = default;
    };
    struct PicChange
    {
        MySinglePic *pic = nullptr;
        PicState before, after;
    };
    struct FolderChange
    {
        MySingleFolder *folder = nullptr;
        QSet<QString> before, after;
    };

    TrackLinkCommand(QList<FolderChange> folders, QList<PicChange> pics, const QString &text,
                     DateChangeListener listener);

    std::unique_ptr<DateChangeCommand> withoutFolder(const MySingleFolder *folder) const override;
    QList<MySingleFolder *> folders() const override;

private:
    void apply(bool forward) override;

    QList<FolderChange> m_folders;
    QList<PicChange> m_pics;
};

} // namespace orv

#pragma once

#include "app/DateChanges.h"
#include "places/MyGpxTrackParser.h"

#include <QSet>

#include <functional>

namespace orv {

class LOTController;

// Every change of places that tracks make, each user event one undo step on the main undo
// stack: folders linking and unlinking tracks, items opened to or closed from them; and the
// places the user gives on the map, kept in the same step type. The rules
// live in places/LOTController; this records what they changed, so that undo and redo put back
// every location field exactly. Refused while a save owns the folders. Main thread only.
class TrackLinks
{
public:
    TrackLinks(QUndoStack &stack, LOTController &tracks, const DateChanges &dateChanges, DateChangeListener listener)
        : m_stack(stack), m_tracks(tracks), m_dateChanges(dateChanges), m_listener(std::move(listener))
    {
    }

    // Reads GPX files; any thread, as it touches nothing of the working set.
    static QList<GpxFile> readFiles(const QStringList &paths);
    struct ImportedTracks
    {
        QStringList keys;     // of the tracks taken, in file order
        QStringList problems; // "PATH: problem", one a line
        bool anyFileBroken = false; // some file could not be read to its end
        bool anyUsable = false;     // some track taken can place items
    };
    // The files' tracks join the imported ones (not an undo step: a track placed nothing yet).
    ImportedTracks importFiles(QList<GpxFile> files);
    // How many of the folders' items have their place from one of the tracks.
    static qsizetype placedBy(const QList<MySingleFolder *> &folders, const QStringList &keys);
    // A track's zone offered as the source zone of the folders whose camera wrote no offset
    // tags (and as their target zone where they have none, so the stamps keep their wall
    // clock): the changes for those of the folders that have such an item and another source
    // zone, for DateChanges::changeTimeZones.
    static QList<ZoneChangeCommand::FolderChange> trackZoneChanges(const QList<MySingleFolder *> &folders,
                                                                    const QString &zone);

    DateChangeResult linkTracks(const QList<MySingleFolder *> &folders, const QStringList &keys);
    DateChangeResult unlinkTracks(const QList<MySingleFolder *> &folders, const QStringList &keys);
    // The user opens the items to their folders' tracks, a place of their own giving way, or
    // closes them, each getting back what it had.
    DateChangeResult linkPics(const QList<MySinglePic *> &pics);
    DateChangeResult unlinkPics(const QList<MySinglePic *> &pics);
    // The user puts the items at a place of their own (a pin dragged on the map, the selection
    // put where the map was double-clicked), the save writing it: one step named by text. A
    // place off the globe is refused and changes nothing; items already there are left out.
    DateChangeResult placePics(const QList<MySinglePic *> &pics, GeoCoordinate place, const QString &text);
    // Each item its own place (locations aligned along a line), the same way, as one step.
    struct PicPlace
    {
        MySinglePic *pic = nullptr;
        GeoCoordinate place;
    };
    DateChangeResult placeEach(const QList<PicPlace> &places, const QString &text);

private:
    // Runs the change on the model, then records what it did as one undo step.
    DateChangeResult record(const QList<MySingleFolder *> &folders, const QList<MySinglePic *> &pics,
                            const QString &text, const std::function<void()> &change);

    QUndoStack &m_stack;
    LOTController &m_tracks;
    const DateChanges &m_dateChanges;
    DateChangeListener m_listener;
};

} // namespace orv

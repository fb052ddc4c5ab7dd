#pragma once

#include "places/MyGpxTrackParser.h"
#include "places/TrackMatch.h"

#include <QHash>
#include <QSet>

#include <map>
#include <memory>

namespace orv {

class MySingleFolder;
class MySinglePic;

// The imported tracks, keyed by their key, and the rules by which an item of a folder linked to
// tracks takes its place from them. The rules change items and folders directly; app/ makes
// each user event of them one undo step. Main thread only, like every item.
class LOTController
{
public:
    // Takes the file's tracks, each with a new key; a track equal to one already imported is
    // left out. Unusable tracks are kept too (they are listed with their reason). Answers the
    // keys taken, in file order.
    QStringList importTracks(GpxFile &file);
    // The tracks of a kept state take their places under their own keys, so that the links that
    // name them hold again; a key here already is that same import, and stays as it is.
    void restoreTracks(QList<MyGpxTrack> tracks);
    // Every imported track, in the order of their keys.
    QList<const MyGpxTrack *> importedTracks() const;
    // The track list's rows: the usable tracks by their start (then key), the others after them
    // by their file's name.
    QList<const MyGpxTrack *> activeGpxTracks() const;
    // The zone the track was recorded in: that of the place nearest its first point. Empty
    // without points or without the zone search data. The first answer loads that data.
    QString trackTimeZone(const QString &key) const;
    const MyGpxTrack *track(const QString &key) const;
    MyGpxTrack *track(const QString &key);
    QStringList keys() const;

    // The existing tracks of the keys, in order of their start (the earlier start wins an
    // overlap); unknown keys are skipped.
    QList<const MyGpxTrack *> gpxTracksForKeys(const QSet<QString> &keys) const;
    // Of the item's folder's links.
    QList<const MyGpxTrack *> gpxTracksForPic(const MySinglePic &pic) const;
    // How the item's date in force meets its folder's tracks; a NoTrack match for an item
    // without a date of its own.
    TrackMatch matchForPic(const MySinglePic &pic) const;
    // A date from the file's tags (or one the user fixed), not the file system's date: only
    // such a date says where a photo was taken.
    static bool hasDateOfItsOwn(const MySinglePic &pic);
    // A location from the file or the user, not from a track.
    static bool hasOwnLocation(const MySinglePic &pic);

    // --- The rules ---
    // Gives a linked item the place of its folder's tracks at its date in force, or, when they
    // have none for it, puts back what it had before a track placed it.
    void refreshPositionForPic(MySinglePic &pic) const;
    // The folder links the track: its items without a place of their own follow the folder's
    // tracks; an item with a place of its own keeps it and is closed to tracks.
    void addLocations(MySingleFolder &folder, const QString &key) const;
    // The folder lets go of the tracks: its items take their place from the tracks left, or
    // what they had before.
    void removeLocations(MySingleFolder &folder, const QSet<QString> &keys) const;
    // The folder's items that follow tracks take their places anew, after their dates or the
    // tracks moved. A pure function of dates, tracks and links, so it may run after any change
    // and its undo alike.
    void refreshTrackLocationsForFolder(MySingleFolder &folder) const;
    // The user opens the item to tracks (a place of its own gives way) or closes it.
    void linkPic(MySinglePic &pic) const;
    void unlinkPic(MySinglePic &pic) const;

private:
    static QString simpleTimeKey();
    std::map<QString, std::unique_ptr<MyGpxTrack>> m_importedGpxTracks;
    mutable QHash<QString, QString> m_trackZones; // by key: the search is a walk of every place
};

} // namespace orv

#include "app/TrackLinks.h"

#include "app/FileTagRequests.h"
#include "app/TrackLinkCommand.h"
#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"
#include "places/LOTController.h"

#include <QCoreApplication>
#include <QUndoStack>

#include <algorithm>
#include <cmath>

namespace orv {

QList<GpxFile> TrackLinks::readFiles(const QStringList &paths)
{
    QList<GpxFile> files;
    for (const QString &path : paths)
        files.append(MyGpxTrackParser::parseFile(path));
    return files;
}

TrackLinks::ImportedTracks TrackLinks::importFiles(QList<GpxFile> files)
{
    ImportedTracks imported;
    for (GpxFile &file : files) {
        for (const QString &problem : file.problems())
            imported.problems << file.filePath + QStringLiteral(": ") + problem;
        imported.anyFileBroken = imported.anyFileBroken || !file.problem.isEmpty();
        for (const QString &key : m_tracks.importTracks(file)) {
            imported.keys << key;
            imported.anyUsable = imported.anyUsable || m_tracks.track(key)->trackState == TrackState::Usable;
        }
    }
    return imported;
}

qsizetype TrackLinks::placedBy(const QList<MySingleFolder *> &folders, const QStringList &keys)
{
    qsizetype placed = 0;
    for (const MySingleFolder *folder : folders)
        for (const MySinglePic *pic : folder->sfPicDetails_fullArray)
            placed += keys.contains(pic->locAddedByTrackKey) ? 1 : 0;
    return placed;
}

QList<ZoneChangeCommand::FolderChange> TrackLinks::trackZoneChanges(const QList<MySingleFolder *> &folders,
                                                                    const QString &zone)
{
    const auto withoutOffsetTags = [](const MySinglePic *pic) {
        const PicAttributes &a = pic->singlePicAttributes;
        return !a.ExifOffsetTimeOriginal && !a.ExifOffsetTimeDigitized && !a.TIFFOffsetTime;
    };
    QList<ZoneChangeCommand::FolderChange> changes;
    for (MySingleFolder *folder : folders) {
        if (zone.isEmpty() || folder->sourceTimeZones.defaultZone == zone
            || std::none_of(folder->sfPicDetails_fullArray.cbegin(), folder->sfPicDetails_fullArray.cend(),
                            withoutOffsetTags))
            continue;
        ZoneChangeCommand::Zones after{folder->sourceTimeZones, folder->targetTimeZones};
        after.source.defaultZone = zone;
        // Without a zone to write in, the stamps stay the camera's wall clock: only what they
        // mean changes, not what the files say.
        if (!after.target.defaultZone)
            after.target.defaultZone = zone;
        changes.append({folder, {folder->sourceTimeZones, folder->targetTimeZones}, after});
    }
    return changes;
}

DateChangeResult TrackLinks::record(const QList<MySingleFolder *> &folders, const QList<MySinglePic *> &pics,
                                    const QString &text, const std::function<void()> &change)
{
    if (m_dateChanges.isBlocked()) {
        if (m_listener.refused)
            m_listener.refused();
        return DateChangeResult::Refused;
    }
    QList<TrackLinkCommand::FolderChange> folderChanges;
    for (MySingleFolder *folder : folders)
        folderChanges.append({folder, folder->linkedTracksKeys, {}});
    QList<TrackLinkCommand::PicChange> picChanges;
    for (MySinglePic *pic : pics)
        picChanges.append({pic, TrackLinkCommand::PicState::of(*pic), {}});

    change();

    for (TrackLinkCommand::FolderChange &c : folderChanges)
        c.after = c.folder->linkedTracksKeys;
    for (TrackLinkCommand::PicChange &c : picChanges)
        c.after = TrackLinkCommand::PicState::of(*c.pic);
    folderChanges.removeIf([](const TrackLinkCommand::FolderChange &c) { return c.before == c.after; });
    picChanges.removeIf([](const TrackLinkCommand::PicChange &c) { return c.before == c.after; });
    if (folderChanges.isEmpty() && picChanges.isEmpty())
        return DateChangeResult::Unchanged;
    auto *command = new TrackLinkCommand(folderChanges, picChanges, text, m_listener);
    // The model already holds the change: the push only records it, and tells the views.
    const QList<MySingleFolder *> changed = command->folders();
    for (MySingleFolder *folder : changed)
        folder->updateFolderValuesOnPicMove();
    command->skipNextApply();
    m_stack.push(command);
    if (m_listener.datesChanged)
        m_listener.datesChanged(changed);
    return DateChangeResult::Changed;
}

namespace {

QList<MySinglePic *> picsOf(const QList<MySingleFolder *> &folders)
{
    QList<MySinglePic *> pics;
    for (const MySingleFolder *folder : folders)
        pics += folder->sfPicDetails_fullArray;
    return pics;
}

} // namespace

DateChangeResult TrackLinks::linkTracks(const QList<MySingleFolder *> &folders, const QStringList &keys)
{
    return record(folders, picsOf(folders), QCoreApplication::translate("TrackLinks", "Link Track"), [&] {
        for (MySingleFolder *folder : folders)
            for (const QString &key : keys)
                m_tracks.addLocations(*folder, key);
    });
}

DateChangeResult TrackLinks::unlinkTracks(const QList<MySingleFolder *> &folders, const QStringList &keys)
{
    const QSet<QString> keySet(keys.cbegin(), keys.cend());
    return record(folders, picsOf(folders), QCoreApplication::translate("TrackLinks", "Unlink Track"), [&] {
        for (MySingleFolder *folder : folders)
            m_tracks.removeLocations(*folder, keySet);
    });
}

DateChangeResult TrackLinks::linkPics(const QList<MySinglePic *> &pics)
{
    return record({}, pics, QCoreApplication::translate("TrackLinks", "Link to Tracks"), [&] {
        for (MySinglePic *pic : pics)
            m_tracks.linkPic(*pic);
    });
}

DateChangeResult TrackLinks::unlinkPics(const QList<MySinglePic *> &pics)
{
    return record({}, pics, QCoreApplication::translate("TrackLinks", "Unlink from Tracks"), [&] {
        for (MySinglePic *pic : pics)
            m_tracks.unlinkPic(*pic);
    });
}

DateChangeResult TrackLinks::placePics(const QList<MySinglePic *> &pics, GeoCoordinate place, const QString &text)
{
    QList<PicPlace> places;
    for (MySinglePic *pic : pics)
        places.append({pic, place});
    return placeEach(places, text);
}

DateChangeResult TrackLinks::placeEach(const QList<PicPlace> &places, const QString &text)
{
    const bool offTheGlobe = std::any_of(places.cbegin(), places.cend(), [](const PicPlace &p) {
        return !std::isfinite(p.place.latitude) || !std::isfinite(p.place.longitude) || std::abs(p.place.latitude) > 90.0
            || std::abs(p.place.longitude) > 180.0;
    });
    if (offTheGlobe)
        return DateChangeResult::Refused;
    QList<PicPlace> moving = places;
    moving.removeIf([](const PicPlace &p) {
        return !p.pic->takesEdits() || (p.pic->gpsLat == p.place.latitude && p.pic->gpsLong == p.place.longitude);
    });
    QList<MySinglePic *> pics;
    for (const PicPlace &p : moving)
        pics.append(p.pic);
    return record({}, pics, text, [&] {
        for (const PicPlace &p : moving) {
            // A place the user gives is the item's own: the folder's tracks no longer move it.
            m_tracks.unlinkPic(*p.pic);
            FileTagRequests::setUserLocation({p.pic}, p.place.latitude, p.place.longitude,
                                             MySinglePic::notSetAccuracy, MySinglePic::notSetAccuracy);
        }
    });
}

} // namespace orv

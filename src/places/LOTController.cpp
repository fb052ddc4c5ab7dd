#include "places/LOTController.h"

#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"
#include "places/ZonePlaces.h"

#include <QDateTime>
#include <QFileInfo>

#include <algorithm>
#include <tuple>

namespace orv {

QString LOTController::simpleTimeKey()
{
    return QString::asprintf("%f", double(QDateTime::currentMSecsSinceEpoch()) / 1000.0);
}

QStringList LOTController::importTracks(GpxFile &file)
{
    QStringList taken;
    for (MyGpxTrack &track : file.tracks) {
        const bool known = std::any_of(m_importedGpxTracks.cbegin(), m_importedGpxTracks.cend(),
                                       [&track](const auto &entry) { return *entry.second == track; });
        if (known)
            continue;
        // Tracks of one import share the moment: the key steps on until it is free.
        QString key = simpleTimeKey();
        while (m_importedGpxTracks.count(key))
            key = QString::asprintf("%f", key.toDouble() + 0.000001);
        track.key = key;
        taken << key;
        m_importedGpxTracks.emplace(key, std::make_unique<MyGpxTrack>(std::move(track)));
    }
    return taken;
}

void LOTController::restoreTracks(QList<MyGpxTrack> tracks)
{
    for (MyGpxTrack &restored : tracks) {
        const QString key = restored.key;
        m_importedGpxTracks.try_emplace(key, std::make_unique<MyGpxTrack>(std::move(restored)));
    }
}

QList<const MyGpxTrack *> LOTController::importedTracks() const
{
    QList<const MyGpxTrack *> tracks;
    for (const auto &entry : m_importedGpxTracks)
        tracks << entry.second.get();
    return tracks;
}

QList<const MyGpxTrack *> LOTController::activeGpxTracks() const
{
    QList<const MyGpxTrack *> rows = importedTracks();
    const auto sortKey = [](const MyGpxTrack *track) {
        const bool usable = track->trackState == TrackState::Usable;
        const OptionalDate start = track->startTime();
        return std::tuple(!usable, usable ? QString() : QFileInfo(track->filePath).fileName(),
                          start ? start->secondsSinceEpoch() : 0.0, track->key);
    };
    std::stable_sort(rows.begin(), rows.end(),
                     [&sortKey](const MyGpxTrack *a, const MyGpxTrack *b) { return sortKey(a) < sortKey(b); });
    return rows;
}

QString LOTController::trackTimeZone(const QString &key) const
{
    const auto known = m_trackZones.constFind(key);
    if (known != m_trackZones.cend())
        return *known;
    QString zone;
    if (const MyGpxTrack *found = track(key)) {
        const auto first = std::find_if(found->trackSegments.cbegin(), found->trackSegments.cend(),
                                        [](const MyGpxTrackSegment &s) { return !s.trackPoints.isEmpty(); });
        if (first != found->trackSegments.cend())
            if (const MyTimeZoneCityObject *place = ZonePlaces::shared().nearest(first->trackPoints.first().coordinate()))
                zone = place->timezone;
    }
    m_trackZones.insert(key, zone);
    return zone;
}

const MyGpxTrack *LOTController::track(const QString &key) const
{
    const auto found = m_importedGpxTracks.find(key);
    return found == m_importedGpxTracks.end() ? nullptr : found->second.get();
}

MyGpxTrack *LOTController::track(const QString &key)
{
    const auto found = m_importedGpxTracks.find(key);
    return found == m_importedGpxTracks.end() ? nullptr : found->second.get();
}

QStringList LOTController::keys() const
{
    QStringList keys;
    for (const auto &entry : m_importedGpxTracks)
        keys << entry.first;
    return keys;
}

QList<const MyGpxTrack *> LOTController::gpxTracksForKeys(const QSet<QString> &keys) const
{
    QList<const MyGpxTrack *> tracks;
    for (const QString &key : keys)
        if (const MyGpxTrack *found = track(key))
            tracks << found;
    // Tracks without a start sort last; the key keeps the order the same from run to run.
    std::sort(tracks.begin(), tracks.end(), [](const MyGpxTrack *a, const MyGpxTrack *b) {
        const OptionalDate startA = a->startTime(), startB = b->startTime();
        if (startA != startB)
            return startA && (!startB || *startA < *startB);
        return a->key < b->key;
    });
    return tracks;
}

QList<const MyGpxTrack *> LOTController::gpxTracksForPic(const MySinglePic &pic) const
{
    const MySingleFolder *folder = MySingleFolder::of(pic);
    return folder ? gpxTracksForKeys(folder->linkedTracksKeys) : QList<const MyGpxTrack *>{};
}

bool LOTController::hasDateOfItsOwn(const MySinglePic &pic)
{
    const OptionalDate date = pic.spDateTimeModified_sort();
    if (!date || date->isSentinel())
        return false;
    switch (pic.sortPic()->spType) {
    case SpTypeFileDatePreferredOverTiff:
    case SpTypeEmptyOriginalFileDate:
    case SpTypeEmptyDigitizedFileDate:
    case SpTypeEmptyTiffFileDate:
    case SpTypeNoTagsFileDate:
    case SpTypeUnsupportedPhoto:
    case SpTypeMovieFileDate:
    case SpTypeFileDatePreferredOverMvhd:
    case SpTypeMvhdZeroFileDate:
        return false;
    default:
        return true;
    }
}

bool LOTController::hasOwnLocation(const MySinglePic &pic)
{
    if (!pic.locAddedByTrackKey.isEmpty())
        return false;
    return pic.gpsLat || (pic.bundleDependentImage && pic.bundleDependentImage->gpsLat);
}

TrackMatch LOTController::matchForPic(const MySinglePic &pic) const
{
    if (!hasDateOfItsOwn(pic))
        return {};
    return matchTime(gpxTracksForPic(pic), *pic.spDateTimeModified_sort());
}

void LOTController::refreshPositionForPic(MySinglePic &pic) const
{
    const bool follows = pic.isLinkedToFolderTracks() && !pic.isTrackLinkingPrevented && pic.takesEdits();
    const TrackMatch match = follows ? matchForPic(pic) : TrackMatch{};
    // What the item had before a track placed it comes back first, so the new place finds it
    // as the location it replaces.
    if (!pic.locAddedByTrackKey.isEmpty() && pic.locationBeforeTrack)
        pic.locationBeforeTrack->applyTo(pic);
    if (!match.hasPlace()) {
        pic.locationBeforeTrack.reset();
        pic.locAddedByTrackKey.clear();
        return;
    }
    pic.locationBeforeTrack = std::make_unique<PicLocation>(PicLocation::of(pic));
    const double hAcc = match.infos.hAcc != MyGpxTrackPoint::notSet ? match.infos.hAcc : pic.newLocationHAccuracy;
    pic.takeNewLocation(match.infos.coordinate.latitude, match.infos.coordinate.longitude, match.infos.elevation,
                        hAcc, 2);
    pic.locAddedByTrackKey = match.track->key;
}

void LOTController::addLocations(MySingleFolder &folder, const QString &key) const
{
    folder.linkedTracksKeys.insert(key);
    const MyGpxTrack *added = track(key);
    if (!added || added->trackState != TrackState::Usable)
        return;
    for (MySinglePic *pic : folder.sortedSfPicDetails_Full()) {
        if (pic->locAddedByTrackKey.isEmpty()) {
            if (hasOwnLocation(*pic) && !pic->isLinkedToFolderTracks()) {
                pic->isTrackLinkingPrevented = true;
                continue;
            }
            if (!pic->takesEdits() || pic->isTrackLinkingPrevented)
                continue;
            pic->linkedToFolderTracksType = 1;
        }
        refreshPositionForPic(*pic);
    }
    folder.updateFolderValuesOnPicMove();
}

void LOTController::removeLocations(MySingleFolder &folder, const QSet<QString> &keys) const
{
    folder.linkedTracksKeys.subtract(keys);
    for (MySinglePic *pic : std::as_const(folder.sfPicDetails_fullArray))
        if (keys.contains(pic->locAddedByTrackKey))
            refreshPositionForPic(*pic);
    folder.updateFolderValuesOnPicMove();
}

void LOTController::refreshTrackLocationsForFolder(MySingleFolder &folder) const
{
    bool any = false;
    for (MySinglePic *pic : std::as_const(folder.sfPicDetails_fullArray)) {
        if (pic->isLinkedToFolderTracks() || !pic->locAddedByTrackKey.isEmpty()) {
            refreshPositionForPic(*pic);
            any = true;
        }
    }
    if (any)
        folder.updateFolderValuesOnPicMove();
}

void LOTController::linkPic(MySinglePic &pic) const
{
    pic.isTrackLinkingPrevented = false;
    pic.linkedToFolderTracksType = 1;
    refreshPositionForPic(pic);
}

void LOTController::unlinkPic(MySinglePic &pic) const
{
    pic.isTrackLinkingPrevented = true;
    pic.linkedToFolderTracksType = 0;
    refreshPositionForPic(pic);
}

} // namespace orv

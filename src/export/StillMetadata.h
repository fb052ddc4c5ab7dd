#pragma once

#include "export/MovieFrames.h"
#include "time/Instant.h"
#include "time/TimeZone.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace orv {

class MySinglePic;

// What a still made from a movie says about itself: the moment of its frame, the zone its
// stamps are written in, the movie's place and camera. Taken on the thread that owns the movie's
// item, so the export's worker never reads the item.
struct StillMetadata
{
    // The movie's present date (what a save would write, pending offsets included) plus the
    // position.
    Instant date;
    // The zone of the stamps; known: the folder's target zone, else the offset of the movie's
    // own metadata date. Unknown: the stamps are the computer's wall clock without offset tags.
    std::optional<TimeZone> zone;
    std::optional<double> latitude, longitude, altitude;
    QString make, model;

    // `movie`'s item as it stands, `position` seconds into it. The camera, the altitude and a
    // zone of the movie's own are read from the movie's metadata (make, model, ISO 6709 place,
    // creation date); an unreadable movie gives only what its item holds. Empty when the item has
    // no date.
    static std::optional<StillMetadata> forPosition(const MySinglePic &movie, double position);
    // The same still `seconds` later in the movie.
    StillMetadata atPosition(double seconds) const;

    // The lines of one exiftool action that writes all of it into a new still: EXIF dates with
    // their milliseconds (and offset tags with a known zone), GPS place and time, make and model.
    QStringList exiftoolArguments() const;

    // The metadata of the movie of a pair joined by `contentIdentifier`: the same date, place
    // and camera.
    LivePhotoMovieTags livePhotoMovieTags(const QString &contentIdentifier) const;

    // "yyyy:MM:dd HH:mm:ss" in the stamps' zone, as the still's EXIF stamps hold it.
    QString exifStamp() const;
    // The offset tag's text, "+01:00"; empty when the zone is unknown.
    QString offsetText() const;
    // The milliseconds of the date, "SSS".
    QString milliseconds() const;
};

// The third part of an ISO 6709 text, "+52.2097-000.8955+103.640/": metres above sea level.
std::optional<double> altitudeFromIso6709(QByteArrayView text);

} // namespace orv

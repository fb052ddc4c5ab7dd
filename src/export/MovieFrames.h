#pragma once

#include <QImage>
#include <QList>
#include <QString>

#include <functional>
#include <memory>

namespace orv {

// What the movie of a Live Photo pair says of itself: the QuickTime metadata keys a phone
// writes, and the movie header's date.
struct LivePhotoMovieTags
{
    QString contentIdentifier;
    QString make, model;
    QString location;     // ISO 6709, "+52.2097-000.8955+103.640/"; empty for none
    QString creationDate; // "2021-04-10T11:43:59+0100"
    QString creationTime; // the movie header's, UTC: "2021-04-10T10:43:59.000000Z"
};

// One open movie whose frames are read at positions, upright (the display matrix applied).
// The decoding itself is a platform adapter's (movieframes/); the export only asks.
class MovieFrames
{
public:
    virtual ~MovieFrames() = default;
    // Seconds from the first frame to the end; 0 when the movie does not say.
    virtual double duration() const = 0;
    // The turn, in degrees counterclockwise, that the movie's display matrix asks of its frames
    // (a phone held upright: 90 or -90); frameAt() has applied it already.
    virtual double displayRotation() const { return 0.0; }
    // The start of each chapter the movie names, in seconds from its start.
    virtual QList<double> chapterStarts() const = 0;
    // The frame on screen at `seconds` from the start: the last one that begins at or before
    // it (a position kept to the millisecond still names the frame that begins within that
    // millisecond). A null image, and the reason in `why`, when there is none.
    virtual QImage frameAt(double seconds, QString &why) = 0;
    // The movie half of a Live Photo pair: `length` seconds around `seconds` (moved inside the
    // movie where they would reach over its start or end), its video copied as it is, from the
    // key frame before the start on, shown from the start by an edit list, with `tags`. The
    // reason when it could not be written; the file at `target` is then incomplete, and the
    // caller's to remove.
    virtual QString writeLivePhotoMovie(const QString &target, double seconds, double length,
                                        const LivePhotoMovieTags &tags) = 0;
};

// Opens a movie for reading frames; nothing, with the reason in `why`, when it cannot be read.
using MovieFramesOpener = std::function<std::unique_ptr<MovieFrames>(const QString &path, QString &why)>;

} // namespace orv

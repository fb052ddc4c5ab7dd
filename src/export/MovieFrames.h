#pragma once

#include <QImage>
#include <QString>

#include <functional>
#include <memory>

namespace orv {

// One open movie whose frames are read at positions, upright (the display matrix applied).
// The decoding itself is a platform adapter's (movieframes/); the export only asks.
class MovieFrames
{
public:
    virtual ~MovieFrames() = default;
    // Seconds from the first frame to the end; 0 when the movie does not say.
    virtual double duration() const = 0;
    // The frame on screen at `seconds` from the start: the last one that begins at or before
    // it (a position kept to the millisecond still names the frame that begins within that
    // millisecond). A null image, and the reason in `why`, when there is none.
    virtual QImage frameAt(double seconds, QString &why) = 0;
};

// Opens a movie for reading frames; nothing, with the reason in `why`, when it cannot be read.
using MovieFramesOpener = std::function<std::unique_ptr<MovieFrames>(const QString &path, QString &why)>;

} // namespace orv

#include "core/MoviePositions.h"

#include "core/MySinglePic.h"

#include <algorithm>
#include <cmath>

namespace orv {

namespace {

// Positions closer than this count as the present one when stepping.
constexpr double stepMargin = 0.0001;

} // namespace

MovieTime MovieTime::fromSeconds(double seconds)
{
    return {qint64(std::llround(seconds * defaultTimescale)), defaultTimescale, validFlag, 0};
}

double MovieTime::seconds() const
{
    return timescale > 0 ? double(value) / double(timescale) : 0.0;
}

QString MoviePositions::keyFor(double seconds)
{
    return QString::asprintf("%.3f", seconds);
}

QList<MoviePosition> MoviePositions::sortedPositions() const
{
    QList<MoviePosition> sorted = movPositions.values();
    std::sort(sorted.begin(), sorted.end(),
              [](const MoviePosition &a, const MoviePosition &b) { return a.seconds < b.seconds; });
    return sorted;
}

QString MoviePositions::saveMoviePosition(MovieTime at, const QByteArray &thumb)
{
    const QString key = keyFor(at.seconds());
    if (movPositions.contains(key))
        return {};
    movPositions.insert(key, {at, at.seconds(), false});
    movPositionThumbs.insert(key, thumb);
    movCurrentTime = at;
    currentMovPosKey = key;
    return key;
}

bool MoviePositions::removeMoviePosition(const QString &key)
{
    if (!movPositions.contains(key))
        return false;
    if (chapterMovPosKey == key)
        fixateMoviePosition(key);
    movPositions.remove(key);
    movPositionThumbs.remove(key);
    if (currentMovPosKey == key)
        currentMovPosKey.clear();
    return true;
}

bool MoviePositions::fixateMoviePosition(const QString &key)
{
    if (!movPositions.contains(key))
        return false;
    if (chapterMovPosKey == key) {
        chapterMovPosKey.clear();
        movChapterTime = MovieTime();
    } else {
        chapterMovPosKey = key;
        movChapterTime = movPositions.value(key).time;
    }
    didMoviePositionChange = true;
    return true;
}

QString MoviePositions::positionKeyFor(double seconds, bool isForewards) const
{
    QList<MoviePosition> sorted = sortedPositions();
    if (!isForewards)
        std::reverse(sorted.begin(), sorted.end());
    for (const MoviePosition &position : std::as_const(sorted)) {
        if (isForewards ? position.seconds > seconds + stepMargin : position.seconds < seconds - stepMargin)
            return keyFor(position.seconds);
    }
    return isForewards ? positionKeyFor(seconds, false) : QString();
}

void MoviePositions::loadChapters(const QList<double> &starts)
{
    if (didTryToLoadChapters)
        return;
    didTryToLoadChapters = true;
    for (const double start : starts) {
        const MovieTime time = MovieTime::fromSeconds(start);
        const QString key = keyFor(time.seconds());
        if (!movPositions.contains(key))
            movPositions.insert(key, {time, time.seconds(), true});
    }
}

void MoviePositions::standAt(MovieTime at)
{
    movCurrentTime = at;
    const QString key = keyFor(at.seconds());
    currentMovPosKey = movPositions.contains(key) ? key : QString();
}

MoviePositions MoviePositions::of(const MySinglePic &pic)
{
    return pic.moviePositions ? *pic.moviePositions : MoviePositions();
}

void MoviePositions::applyTo(MySinglePic &pic) const
{
    if (isEmpty())
        pic.moviePositions.reset();
    else if (pic.moviePositions)
        *pic.moviePositions = *this;
    else
        pic.moviePositions = std::make_unique<MoviePositions>(*this);
}

} // namespace orv

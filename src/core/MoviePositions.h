#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>

namespace orv {

class MySinglePic;

// A moment in a movie as the player counts it: a value in units of 1/timescale second, with
// the validity flags and the epoch, so that a position goes back to the very frame it named.
struct MovieTime
{
    qint64 value = 0;
    qint32 timescale = 1;
    quint32 flags = validFlag;
    qint64 epoch = 0;

    static constexpr quint32 validFlag = 1;
    // Fine enough for every common frame rate (24, 25, 30, 50, 60 and their 1000/1001 forms).
    static constexpr qint32 defaultTimescale = 600;

    static MovieTime fromSeconds(double seconds);
    double seconds() const;
    bool isZero() const { return value == 0; }
    bool operator==(const MovieTime &) const = default;
};

// One remembered position. isSaved is false for one the user marked since the working set was
// last kept, and true for a chapter start read from the movie.
struct MoviePosition
{
    MovieTime time;
    double seconds = 0.0;
    bool isSaved = false;
    bool operator==(const MoviePosition &) const = default;
};

// Where a movie stands and what the user remembers of it: the present position, the saved
// positions (bookmarks, with their thumbnails) and the one chosen as the movie's thumbnail and
// start. Positions are keyed by their seconds in "%.3f", so two within one thousandth of a
// second are one. Plain data: an undo step keeps it whole before and after.
struct MoviePositions
{
    MovieTime movCurrentTime;
    MovieTime movChapterTime; // zero when none is chosen
    QString chapterMovPosKey; // empty when none is chosen
    QString currentMovPosKey; // empty off a saved position
    QMap<QString, MoviePosition> movPositions;
    QMap<QString, QByteArray> movPositionThumbs; // compressed images by the same keys
    bool didTryToLoadChapters = false;
    bool didMoviePositionChange = false; // the item's thumbnail has to be made again

    bool operator==(const MoviePositions &) const = default;

    static QString keyFor(double seconds);
    // All at their defaults: the item keeps nothing.
    bool isEmpty() const { return *this == MoviePositions(); }
    // The positions in the movie's order.
    QList<MoviePosition> sortedPositions() const;

    // Remembers the position at `at` with its thumbnail and stands on it; the key, or an empty
    // one when a position with that key exists already.
    QString saveMoviePosition(MovieTime at, const QByteArray &thumb);
    // Forgets the position (the choice of it too); false when there is none of that key.
    bool removeMoviePosition(const QString &key);
    // Chooses the position as the movie's thumbnail and start, or, when it is chosen already,
    // clears the choice.
    bool fixateMoviePosition(const QString &key);
    // The key of the next position after `seconds` (or the one before it, backwards). Forwards
    // from the last, the nearest one behind; backwards from the first, none.
    QString positionKeyFor(double seconds, bool isForewards) const;
    // The movie's chapter starts join the positions, once per item.
    void loadChapters(const QList<double> &starts);
    // The player stands at `at`: on a saved position or between them.
    void standAt(MovieTime at);

    static MoviePositions of(const MySinglePic &pic);
    // An empty set leaves the item without any.
    void applyTo(MySinglePic &pic) const;
};

} // namespace orv

#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace orv {

// One thumbnail kept with a state: the compressed image of an item, known by the item's place
// in the full source (indexInSource_full), and for a movie the position it shows (0 for the
// item's main thumbnail).
struct ThumbRecord
{
    qint64 indexInSource = 0;
    QByteArray data;
    double seconds = 0.0;

    bool operator==(const ThumbRecord &) const = default;
};

// The thumbnails file of a state (savedThumbs_v6 at quit, savedThumbs in a package), so that a
// restored working set shows its thumbnails at once: the magic text "orvelThumbs", the version
// and the count of records, then each record as the data's length, the item's index, the data
// and the position in seconds. Integers are 8 bytes, little-endian; the position a
// little-endian double. Records are written one after the other, so the file can be written as
// it goes.
namespace SavedThumbs {

inline const QString quitName = QStringLiteral("savedThumbs_v6");
inline const QString packageName = QStringLiteral("savedThumbs");
constexpr qint64 version = 4;

QByteArray write(const QList<ThumbRecord> &records);

struct ReadResult
{
    QList<ThumbRecord> records;
    // Empty when read to the end; otherwise names the file and what is wrong. The records read
    // before it are kept: a state without some of its thumbnails still restores.
    QString problem;
};
// itemCount bounds the indexes: a record beyond it ends the reading.
ReadResult read(const QByteArray &data, qint64 itemCount, const QString &fileName);

} // namespace SavedThumbs

} // namespace orv

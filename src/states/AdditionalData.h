#pragma once

#include "places/MyGpxTrack.h"

#include <QByteArray>
#include <QList>
#include <QString>

namespace orv {

// The additional data file of a state: what belongs to the working set but to no folder, beside
// the folders file. A CBOR map under the self-describing tag, keyed as the design's dictionary:
// "stateVersion" and "importedTracks", every imported GPX track with its key, so that the links
// of the folders and items that name the key find their track again after a restore.
//
// A track's points are stored as columns, one byte string of little-endian doubles for each of
// "latitude", "longitude", "elevation", "hAcc" and "time" (NaN for a point without a time):
// 40 bytes a point, so a long track costs about what it costs in memory. The states of the
// segments and the track, and the timed segments, are rebuilt from the points at reading.
namespace AdditionalData {

inline constexpr qint64 stateVersion = 903;

QByteArray write(const QList<const MyGpxTrack *> &importedTracks);

struct ReadResult
{
    QList<MyGpxTrack> importedTracks;
    // Empty when the file was read; otherwise names the file and what is wrong, and nothing of
    // it was taken.
    QString problem;
};
// fileName names the file in a problem.
ReadResult read(const QByteArray &data, const QString &fileName);

} // namespace AdditionalData

} // namespace orv

// A GPX file: the streaming XML walk, points, times, and the track validation behind it.

#include "places/MyGpxTrackParser.h"

#include <QBuffer>

#include <cstddef>
#include <cstdint>

using namespace orv;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    const GpxFile file = MyGpxTrackParser::parse(buffer, QStringLiteral("fuzz.gpx"));
    // The questions a track answers once read: each point's place at its own time.
    for (const MyGpxTrack &track : file.tracks)
        for (const MyGpxTrackSegment &segment : track.timeSegments())
            for (const MyGpxTrackPoint &point : segment.trackPoints)
                if (point.originalTime)
                    track.infosAtTime(track.time(point));
    file.problems();
    return 0;
}

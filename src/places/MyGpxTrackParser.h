#pragma once

#include "places/MyGpxTrack.h"

#include <QStringList>

class QIODevice;

namespace orv {

struct MyGpxWaypoint
{
    MyGpxTrackPoint point;
    QString name;
};

// A planned way (`rte`): points in order, usually without times, so it never places an item.
struct MyGpxRoute
{
    QString name;
    QList<MyGpxTrackPoint> routePoints;
};

// Everything one GPX file gave. A file that breaks off keeps the tracks, routes and waypoints
// that ended before the break, and says why it stopped.
struct GpxFile
{
    QString filePath;
    QList<MyGpxTrack> tracks; // validated, in file order, without keys yet
    QList<MyGpxRoute> routes;
    QList<MyGpxWaypoint> waypoints;
    // Why the file could not be read to its end; empty when it could.
    QString problem;
    // Points whose lat and lon are no place on the globe; they are left out.
    qsizetype pointsWithoutPlace = 0;

    // One line per problem: the file's own, then each track that cannot place anything.
    QStringList problems() const;
};

// Reads GPX 1.0 and 1.1 as a stream, element by element, so a file of any size costs only its
// points. Elements are matched by their local names, so any namespace prefix will do. Never
// throws; never hangs on a broken or endless file (only regular files are read).
class MyGpxTrackParser
{
public:
    static GpxFile parseFile(const QString &path);
    static GpxFile parse(QIODevice &device, const QString &path);

    // An XML Schema dateTime as GPX writes it: "2024-05-01T10:00:00Z", with fractions of a
    // second, with an offset ("+02:00", "+0200", "+02"), or without a zone, which GPX defines
    // as UTC. Nothing for any other text.
    static OptionalDate parseTime(QStringView text);

    // The reason a track of this state cannot place anything; empty for a usable one.
    static QString stateReason(TrackState state);
};

} // namespace orv

#include "states/AdditionalData.h"

#include "states/CborFields.h"

#include <QCborStreamWriter>
#include <QSet>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cmath>

namespace orv::AdditionalData {

namespace {

using namespace Qt::StringLiterals;

constexpr qsizetype doubleSize = sizeof(double);

struct PointColumn
{
    QLatin1StringView key;
    double (*value)(const MyGpxTrackPoint &);
};

const std::array<PointColumn, 5> pointColumns = {{
    {"latitude"_L1, [](const MyGpxTrackPoint &p) { return p.latitude; }},
    {"longitude"_L1, [](const MyGpxTrackPoint &p) { return p.longitude; }},
    {"elevation"_L1, [](const MyGpxTrackPoint &p) { return p.elevation; }},
    {"hAcc"_L1, [](const MyGpxTrackPoint &p) { return p.hAcc; }},
    {"time"_L1,
     [](const MyGpxTrackPoint &p) { return p.originalTime ? p.originalTime->secondsSinceEpoch() : std::nan(""); }},
}};

void writePoints(QCborStreamWriter &writer, const QList<MyGpxTrackPoint> &points)
{
    writer.startMap(quint64(pointColumns.size()));
    for (const PointColumn &column : pointColumns) {
        QByteArray bytes(points.size() * doubleSize, Qt::Uninitialized);
        for (qsizetype i = 0; i < points.size(); ++i)
            qToLittleEndian<double>(column.value(points[i]), bytes.data() + i * doubleSize);
        writer.append(column.key);
        writer.append(bytes);
    }
    writer.endMap();
}

void writeTrack(QCborStreamWriter &writer, const MyGpxTrack &track)
{
    CborMapWriter map(writer);
    map.put("key"_L1, track.key);
    map.put("filePath"_L1, track.filePath);
    map.put("name"_L1, track.name);
    map.put("type"_L1, track.type);
    map.putDouble("timeCorrection"_L1, track.timeCorrection);
    QCborStreamWriter &segments = map.entry("trackSegments"_L1);
    segments.startArray(quint64(track.trackSegments.size()));
    for (const MyGpxTrackSegment &segment : track.trackSegments) {
        CborMapWriter segmentMap(segments);
        writePoints(segmentMap.entry("trackPoints"_L1), segment.trackPoints);
    }
    segments.endArray();
}

// A place on the globe, heights and accuracies that are numbers or not set, times that are
// numbers or NaN for none: anything else is no point a GPX file gave.
QList<MyGpxTrackPoint> readPoints(const CborFields &fields)
{
    std::array<QByteArray, pointColumns.size()> bytes;
    for (size_t c = 0; c < pointColumns.size(); ++c)
        bytes[c] = fields.bytes(pointColumns[c].key);
    const qsizetype length = bytes[0].size();
    if (length % doubleSize != 0
        || std::any_of(bytes.cbegin(), bytes.cend(), [length](const QByteArray &b) { return b.size() != length; })) {
        fields.refuse(u"its point columns are not whole numbers of the same length"_s);
        return {};
    }
    QList<MyGpxTrackPoint> points(length / doubleSize);
    for (qsizetype i = 0; i < points.size(); ++i) {
        const auto at = [&](size_t column) { return qFromLittleEndian<double>(bytes[column].constData() + i * doubleSize); };
        MyGpxTrackPoint &point = points[i];
        point.latitude = at(0);
        point.longitude = at(1);
        point.elevation = at(2);
        point.hAcc = at(3);
        const double time = at(4);
        if (!(std::abs(point.latitude) <= 90.0) || !(std::abs(point.longitude) <= 180.0)
            || !std::isfinite(point.elevation) || !std::isfinite(point.hAcc) || std::isinf(time)) {
            fields.refuse(u"point %1 is no place and time"_s.arg(i));
            return {};
        }
        if (!std::isnan(time))
            point.originalTime = Instant(time);
    }
    return points;
}

MyGpxTrack readTrack(const CborFields &fields)
{
    MyGpxTrack track;
    track.key = fields.text("key"_L1);
    track.filePath = fields.text("filePath"_L1);
    track.name = fields.text("name"_L1);
    track.type = fields.text("type"_L1);
    track.timeCorrection = fields.real("timeCorrection"_L1);
    if (!std::isfinite(track.timeCorrection))
        fields.refuse(u"timeCorrection is no number of seconds"_s);
    const QCborArray segments = fields.array("trackSegments"_L1);
    for (qsizetype s = 0; s < segments.size() && !fields.problem().has(); ++s) {
        const CborFields segment(segments.at(s), u"%1, segment %2"_s.arg(fields.where()).arg(s), fields.problem());
        track.trackSegments.append({readPoints(segment.map("trackPoints"_L1)), SegmentState::Usable});
    }
    // What the points say of themselves is found again rather than trusted.
    track.validateTrack();
    return track;
}

} // namespace

QByteArray write(const QList<const MyGpxTrack *> &importedTracks)
{
    QByteArray data;
    QCborStreamWriter writer(&data);
    writer.append(QCborKnownTags::Signature);
    {
        CborMapWriter root(writer);
        root.put("stateVersion"_L1, stateVersion);
        QCborStreamWriter &tracks = root.entry("importedTracks"_L1);
        tracks.startArray(quint64(importedTracks.size()));
        for (const MyGpxTrack *track : importedTracks)
            writeTrack(tracks, *track);
        tracks.endArray();
    }
    return data;
}

ReadResult read(const QByteArray &data, const QString &fileName)
{
    QCborParserError error;
    const QCborValue root = QCborValue::fromCbor(data, &error);
    if (error.error != QCborError::NoError)
        return {{}, fileName + u": "_s + error.errorString()};
    if (!root.isTag() || root.tag() != QCborTag(QCborKnownTags::Signature))
        return {{}, fileName + u": not a state file"_s};
    StateProblem problem;
    const CborFields fields(root.taggedValue(), fileName, problem);
    const QCborArray tracks = fields.array("importedTracks"_L1);
    ReadResult result;
    QSet<QString> keys;
    for (qsizetype t = 0; t < tracks.size() && !problem.has(); ++t) {
        const CborFields track(tracks.at(t), u"%1, track %2"_s.arg(fileName).arg(t), problem);
        result.importedTracks.append(readTrack(track));
        const QString &key = result.importedTracks.last().key;
        if (key.isEmpty() || keys.contains(key))
            track.refuse(u"its key is empty or another track's"_s);
        keys.insert(key);
    }
    if (problem.has())
        return {{}, problem.text()};
    return result;
}

} // namespace orv::AdditionalData

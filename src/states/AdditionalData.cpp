#include "states/AdditionalData.h"

#include "states/CborFields.h"
#include "time/TimeZone.h"

#include <QCborStreamWriter>
#include <QSet>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

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

QList<qint64> readIndexes(const CborFields &fields, QLatin1StringView key)
{
    QList<qint64> indexes;
    for (const QCborValue &value : fields.array(key)) {
        if (!value.isInteger() || value.toInteger() < 0) {
            fields.refuse(u"%1 holds something other than places"_s.arg(key));
            return {};
        }
        indexes.append(value.toInteger());
    }
    return indexes;
}

void writeSubStrips(CborEntryWriter &root, const QList<SubStrip> &strips)
{
    if (strips.isEmpty())
        return;
    QCborStreamWriter &writer = root.entry("subTLs"_L1);
    writer.startArray(quint64(strips.size()));
    for (const SubStrip &strip : strips) {
        CborMapWriter map(writer);
        map.put("subTLIsShelf"_L1, strip.subTLIsShelf);
        map.put("subTLShelfSourceIndexSet"_L1, strip.subTLShelfSourceIndexSet);
        map.putDouble("tlv_subCompleteWidth"_L1, strip.tlv_subCompleteWidth);
        map.putDouble("tlvScrollPosition"_L1, strip.tlvScrollPosition);
        map.put("picSelectionCurrentIndex"_L1, strip.picSelectionCurrentIndex, -1);
        map.put("selectedThumbsIndexSet"_L1, strip.selectedThumbsIndexSet);
    }
    writer.endArray();
}

bool isLength(double width) { return width >= 0.0 && width < 1e12; }

// The closest zoom a tile server offers.
constexpr qint64 maximumMapZoom = 22;

QList<SubStrip> readSubStrips(const CborFields &f)
{
    const QCborArray values = f.array("subTLs"_L1);
    if (values.size() > maximumSubStrips) {
        f.refuse(u"subTLs holds more strips than the window shows under the main one"_s);
        return {};
    }
    QList<SubStrip> strips;
    for (qsizetype i = 0; i < values.size() && !f.problem().has(); ++i) {
        const CborFields sub(values.at(i), u"%1/subTLs %2"_s.arg(f.where()).arg(i), f.problem());
        SubStrip strip;
        strip.subTLIsShelf = sub.flag("subTLIsShelf"_L1);
        strip.subTLShelfSourceIndexSet = readIndexes(sub, "subTLShelfSourceIndexSet"_L1);
        strip.tlv_subCompleteWidth = sub.real("tlv_subCompleteWidth"_L1);
        strip.tlvScrollPosition = sub.real("tlvScrollPosition"_L1);
        if (!isLength(strip.tlv_subCompleteWidth) || !isLength(strip.tlvScrollPosition))
            sub.refuse(u"a width or scroll position of the strip is no length"_s);
        strip.picSelectionCurrentIndex =
            sub.integer("picSelectionCurrentIndex"_L1, -1, -1, std::numeric_limits<qint32>::max());
        strip.selectedThumbsIndexSet = readIndexes(sub, "selectedThumbsIndexSet"_L1);
        strips.append(strip);
    }
    return strips;
}

ViewState readView(const CborFields &f)
{
    constexpr qint64 places = std::numeric_limits<qint32>::max();
    ViewState view;
    view.stateAtQuitType = f.integer("stateAtQuitType"_L1, 0, 0, 1000);
    view.tlvViewWidth = f.real("tlvViewWidth"_L1);
    view.tlvCompleteWidth = f.real("tlvCompleteWidth"_L1);
    view.tlvScrollPosition = f.real("tlvScrollPosition"_L1);
    for (double width : {view.tlvViewWidth, view.tlvCompleteWidth, view.tlvScrollPosition})
        if (!isLength(width))
            f.refuse(u"a width or scroll position of the strip is no length"_s);
    view.selectedFolderIndex = f.integer("selectedFolderIndex"_L1, -1, -1, places);
    view.selectedCompoundFoldersIndexSet = readIndexes(f, "selectedCompoundFoldersIndexSet"_L1);
    view.picSelectionCurrentIndex = f.integer("picSelectionCurrentIndex"_L1, -1, -1, places);
    view.selectedThumbsIndexSet = readIndexes(f, "selectedThumbsIndexSet"_L1);
    view.ratingFilterSelectedOption = f.integer("ratingFilterSelectedOption"_L1, 0, 0, places);
    if (f.has("secondsFromGMTForDate"_L1))
        view.secondsFromGMTForDate = f.integer("secondsFromGMTForDate"_L1, 0, -86400, 86400);
    view.filterSelectionsAndLockState = f.texts("filterSelectionsAndLockState"_L1);
    view.filterExpandedState2 = f.texts("filterExpandedState2"_L1);
    view.selectionRadius = f.real("selectionRadius"_L1);
    // Half the way round the globe at most.
    if (!(view.selectionRadius >= 0.0 && view.selectionRadius <= 2.1e7))
        f.refuse(u"selectionRadius is no distance"_s);
    view.locationWindowVisibilityState_8 = f.integer("locationWindowVisibilityState_8"_L1, 0, 0, 1);
    if (f.has("locationCamera"_L1)) {
        const CborFields camera = f.map("locationCamera"_L1);
        view.locationCamera = MapCamera{camera.real("latitude"_L1), camera.real("longitude"_L1),
                                        camera.integer("zoom"_L1, 0, 0, maximumMapZoom)};
        if (!(std::abs(view.locationCamera->latitude) <= 90.0 && std::abs(view.locationCamera->longitude) <= 180.0))
            camera.refuse(u"the map's camera looks at no place"_s);
    }
    view.subTLs = readSubStrips(f);
    return view;
}

} // namespace

qint64 secondsFromGMTForDateNow()
{
    return TimeZone::systemZone().secondsFromGMTForDate(Instant::fromUtc(2016, 1, 2, 3, 4, 5));
}

ConversionType conversionNeeded(qint64 version, const ViewState &view)
{
    if (version < 500)
        return ConversionType::OlderThanSelections;
    if (view.secondsFromGMTForDate && *view.secondsFromGMTForDate != secondsFromGMTForDateNow())
        return ConversionType::OtherSystemZone;
    return ConversionType::None;
}

QByteArray encodeTracks(const QList<const MyGpxTrack *> &importedTracks)
{
    QByteArray data;
    QCborStreamWriter tracks(&data);
    tracks.startArray(quint64(importedTracks.size()));
    for (const MyGpxTrack *track : importedTracks)
        writeTrack(tracks, *track);
    tracks.endArray();
    return data;
}

QByteArray write(const QByteArray &encodedTracks, const ViewState &view)
{
    // The map is opened and closed by hand around entries written apart, so that the tracks,
    // encoded before, go in as they are. (A stream writer starts its byte array afresh.)
    QByteArray tag;
    QCborStreamWriter(&tag).append(QCborKnownTags::Signature);
    QByteArray entries;
    {
        QCborStreamWriter writer(&entries);
        CborEntryWriter root(writer);
        root.put("stateVersion"_L1, stateVersion);
        root.put("stateAtQuitType"_L1, view.stateAtQuitType);
        root.putDouble("tlvViewWidth"_L1, view.tlvViewWidth);
        root.putDouble("tlvCompleteWidth"_L1, view.tlvCompleteWidth);
        root.putDouble("tlvScrollPosition"_L1, view.tlvScrollPosition);
        root.put("selectedFolderIndex"_L1, view.selectedFolderIndex, -1);
        root.put("selectedCompoundFoldersIndexSet"_L1, view.selectedCompoundFoldersIndexSet);
        root.put("picSelectionCurrentIndex"_L1, view.picSelectionCurrentIndex, -1);
        root.put("selectedThumbsIndexSet"_L1, view.selectedThumbsIndexSet);
        root.put("ratingFilterSelectedOption"_L1, view.ratingFilterSelectedOption);
        if (view.secondsFromGMTForDate)
            root.entry("secondsFromGMTForDate"_L1).append(*view.secondsFromGMTForDate);
        root.put("filterSelectionsAndLockState"_L1, view.filterSelectionsAndLockState);
        root.put("filterExpandedState2"_L1, view.filterExpandedState2);
        root.putDouble("selectionRadius"_L1, view.selectionRadius);
        root.put("locationWindowVisibilityState_8"_L1, view.locationWindowVisibilityState_8);
        if (view.locationCamera) {
            CborMapWriter camera(root.entry("locationCamera"_L1));
            camera.putDouble("latitude"_L1, view.locationCamera->latitude);
            camera.putDouble("longitude"_L1, view.locationCamera->longitude);
            camera.put("zoom"_L1, view.locationCamera->zoom);
        }
        writeSubStrips(root, view.subTLs);
        root.entry("importedTracks"_L1);
    }
    QByteArray data = tag;
    data.append(char(0xbf)); // a map of open length
    data.append(entries);
    data.append(encodedTracks);
    data.append(char(0xff)); // the map's end
    return data;
}

QByteArray write(const QList<const MyGpxTrack *> &importedTracks, const ViewState &view)
{
    return write(encodeTracks(importedTracks), view);
}

ReadResult read(const QByteArray &data, const QString &fileName)
{
    const auto failed = [](const QString &problem) {
        ReadResult result;
        result.problem = problem;
        return result;
    };
    QCborParserError error;
    const QCborValue root = QCborValue::fromCbor(data, &error);
    if (error.error != QCborError::NoError)
        return failed(fileName + u": "_s + error.errorString());
    if (!root.isTag() || root.tag() != QCborTag(QCborKnownTags::Signature))
        return failed(fileName + u": not a state file"_s);
    StateProblem problem;
    const CborFields fields(root.taggedValue(), fileName, problem);
    ReadResult result;
    result.stateVersion = fields.integer("stateVersion"_L1, 0, 0);
    result.view = readView(fields);
    const QCborArray tracks = fields.array("importedTracks"_L1);
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
        return failed(problem.text());
    return result;
}

} // namespace orv::AdditionalData

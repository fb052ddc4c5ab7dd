#include "states/ItemCoder.h"

#include "core/MySinglePic.h"
#include "states/CborFields.h"

#include <array>

namespace orv::ItemCoder {

namespace {

using namespace Qt::StringLiterals;

constexpr qint64 maxU32 = 0xFFFFFFFFll;

// In memory 1..22 to stored, the reworked numbering.
constexpr std::array<int, 22> savedTypes = {1, 2, 3, 21, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 22, 19, 20, 17, 18};

// --- Writing the byte records, each as an array in a fixed order ---

void writeRecord(QCborStreamWriter &w, const QByteArray &data, quint64 offset)
{
    w.startArray(2);
    w.append(data);
    w.append(offset);
    w.endArray();
}

template <typename Record>
void putStamp(CborMapWriter &map, QLatin1StringView key, const std::optional<Record> &record)
{
    if (record)
        writeRecord(map.entry(key), record->dateData, record->dateOffset);
}

void putMovieStamp(CborMapWriter &map, QLatin1StringView key, const BoxedOptional<MovieStampRecord> &record)
{
    if (record)
        writeRecord(map.entry(key), record->dateData, record->dateOffset);
}

void writeAttributes(QCborStreamWriter &w, const PicAttributes &a)
{
    CborMapWriter map(w);
    putStamp(map, "ExifDateTimeOriginal"_L1, a.ExifDateTimeOriginal);
    putStamp(map, "ExifDateTimeDigitized"_L1, a.ExifDateTimeDigitized);
    putStamp(map, "TIFFDateTime"_L1, a.TIFFDateTime);
    putStamp(map, "GPSDateStamp"_L1, a.GPSDateStamp);
    for (const auto &[key, record] : {std::pair{"ExifOffsetTimeOriginal"_L1, &a.ExifOffsetTimeOriginal},
                                      std::pair{"ExifOffsetTimeDigitized"_L1, &a.ExifOffsetTimeDigitized},
                                      std::pair{"TIFFOffsetTime"_L1, &a.TIFFOffsetTime}}) {
        if (*record)
            writeRecord(map.entry(key), (*record)->offsetData, (*record)->offsetOffset);
    }
    if (a.GPSTimeStamp) {
        QCborStreamWriter &e = map.entry("GPSTimeStamp"_L1);
        e.startArray(3);
        e.append(a.GPSTimeStamp->dateData.toByteArray());
        e.append(quint64(a.GPSTimeStamp->dateOffset));
        e.append(a.GPSTimeStamp->needsConv);
        e.endArray();
    }
    if (a.GPSLocation) {
        const GpsLocationRecord &g = *a.GPSLocation;
        QCborStreamWriter &e = map.entry("GPSLocation"_L1);
        e.startArray(15);
        for (const auto &[data, offset] :
             {std::pair{&g.latitudeRef_Data, g.latitudeRef_Offset}, std::pair{&g.latitude_Data, g.latitude_Offset},
              std::pair{&g.longitudeRef_Data, g.longitudeRef_Offset}, std::pair{&g.longitude_Data, g.longitude_Offset},
              std::pair{&g.altitudeRef_Data, g.altitudeRef_Offset}, std::pair{&g.altitude_Data, g.altitude_Offset},
              std::pair{&g.hPositioningError_Data, g.hPositioningError_Offset}}) {
            e.append(*data);
            e.append(quint64(offset));
        }
        e.append(g.needsConv);
        e.endArray();
    }
    map.put("GPSLocationXmpHPositioningError"_L1, a.GPSLocationXmpHPositioningError);
    map.put("GPSLocationXmpAltitude"_L1, a.GPSLocationXmpAltitude);
    if (a.xmpDateInfos) {
        QCborStreamWriter &e = map.entry("xmpDateInfos"_L1);
        e.startMap(quint64(a.xmpDateInfos->size()));
        for (const auto &[name, stamp] : *a.xmpDateInfos) {
            e.append(name);
            e.startArray(4);
            e.append(stamp.data);
            e.append(quint64(stamp.offset));
            e.append(qint64(stamp.type));
            e.append(qint64(stamp.subtype));
            e.endArray();
        }
        e.endMap();
    }
    if (a.IPTCDateCreated) {
        const IptcDateRecord &i = *a.IPTCDateCreated;
        QCborStreamWriter &e = map.entry("IPTCDateCreated"_L1);
        e.startArray(8);
        for (const auto &[data, offset] : {std::pair{&i.dateData, i.dateOffset}, std::pair{&i.timeData, i.timeOffset},
                                           std::pair{&i.blockData, i.blockOffset},
                                           std::pair{&i.digestData, i.digestOffset}}) {
            e.append(*data);
            e.append(quint64(offset));
        }
        e.endArray();
    }
    map.put("xmpHeaderStartOffset"_L1, qint64(a.xmpHeaderStartOffset));
    map.put("cr3XmpOffset"_L1, qint64(a.cr3XmpOffset));
    putMovieStamp(map, "QTMetaDate"_L1, a.QTMetaDate);
    putMovieStamp(map, "QTMvhdCreaDate"_L1, a.QTMvhdCreaDate);
    putMovieStamp(map, "QTMvhdModDate"_L1, a.QTMvhdModDate);
    putMovieStamp(map, "riffCreaDate"_L1, a.riffCreaDate);
    if (!a.qtTrackTimes.empty()) {
        QCborStreamWriter &e = map.entry("qtTrackTimes"_L1);
        e.startArray(quint64(a.qtTrackTimes.size()));
        for (const QtTrackTimeRecord &t : a.qtTrackTimes) {
            e.startArray(3);
            e.append(t.time.dateData);
            e.append(t.time.dateOffset);
            e.append(t.followsModification);
            e.endArray();
        }
        e.endArray();
    }
    if (!a.qtLocations.empty()) {
        QCborStreamWriter &e = map.entry("qtLocations"_L1);
        e.startArray(quint64(a.qtLocations.size()));
        for (const QtLocationRecord &l : a.qtLocations) {
            e.startArray(10);
            e.append(qint64(l.type));
            e.append(l.text.dateData);
            e.append(l.text.dateOffset);
            e.append(l.hAccuracy.dateData);
            e.append(l.hAccuracy.dateOffset);
            for (int digits : {l.int1, l.frac1, l.int2, l.frac2})
                e.append(qint64(digits));
            e.append(l.edit);
            e.endArray();
        }
        e.endArray();
    }
    map.put("NSFileCreationDate"_L1, a.NSFileCreationDate);
    map.put("NSFileModificationDate"_L1, a.NSFileModificationDate);
    if (a.NSFileSize) {
        map.entry("NSFileSize"_L1).append(*a.NSFileSize);
    }
}

// --- Reading them back ---

// One record array of a known length, read from its bytes; a wrong length or element type is
// the map's problem.
class RecordFields
{
public:
    // The record under key in the map.
    RecordFields(const CborFields &owner, QLatin1StringView key, qsizetype length)
        : m_owner(owner), m_key(key)
    {
        take(owner.raw(key).value_or(QByteArrayView()), length);
    }
    // A record met on a walk over a map's entries.
    RecordFields(const QCborValue &value, qsizetype length, const CborFields &owner, QString key)
        : m_bytes(value.toCbor()), m_owner(owner), m_name(std::move(key))
    {
        take(m_bytes, length);
    }
    bool isValid() const { return !m_owner.problem().has(); }
    QByteArray bytes(qsizetype i, qsizetype maximumLength = std::numeric_limits<qsizetype>::max()) const
    {
        const std::optional<QByteArray> data = cborBytes(m_elements.value(i));
        if (!data || data->size() > maximumLength) {
            m_owner.refuse(QStringLiteral("%1[%2] is not bytes of at most %3").arg(name()).arg(i).arg(maximumLength));
            return {};
        }
        return *data;
    }
    qint64 integer(qsizetype i, qint64 minimum, qint64 maximum) const
    {
        const std::optional<qint64> number = cborInteger(m_elements.value(i));
        if (!number || *number < minimum || *number > maximum) {
            m_owner.refuse(QStringLiteral("%1[%2] is not an integer in range").arg(name()).arg(i));
            return 0;
        }
        return *number;
    }
    quint32 offset(qsizetype i) const { return quint32(integer(i, 0, maxU32)); }
    quint64 offset64(qsizetype i) const
    {
        return quint64(integer(i, 0, std::numeric_limits<qint64>::max()));
    }
    bool flag(qsizetype i) const
    {
        const std::optional<bool> flag = cborFlag(m_elements.value(i));
        if (!flag)
            m_owner.refuse(QStringLiteral("%1[%2] is not a boolean").arg(name()).arg(i));
        return flag.value_or(false);
    }

private:
    void take(QByteArrayView record, qsizetype length)
    {
        const std::optional<QList<QByteArrayView>> elements = cborElements(record);
        if (!elements || elements->size() != length) {
            m_owner.refuse(QStringLiteral("%1 is not a record of %2 values").arg(name()).arg(length));
            return;
        }
        m_elements = *elements;
    }
    QString name() const { return m_name.isEmpty() ? QString(m_key) : m_name; }

    QByteArray m_bytes;
    QList<QByteArrayView> m_elements;
    const CborFields &m_owner;
    QLatin1StringView m_key;
    QString m_name;
};

template <qsizetype Capacity, typename Record>
std::optional<Record> readStamp(const CborFields &a, QLatin1StringView key)
{
    if (!a.has(key))
        return std::nullopt;
    const RecordFields r(a, key, 2);
    if (!r.isValid())
        return std::nullopt;
    Record record;
    if constexpr (std::is_same_v<Record, OffsetTagRecord>) {
        record.offsetData = r.bytes(0, Capacity);
        record.offsetOffset = r.offset(1);
    } else {
        record.dateData = r.bytes(0, Capacity);
        record.dateOffset = r.offset(1);
    }
    return record;
}

BoxedOptional<MovieStampRecord> readMovieStamp(const CborFields &a, QLatin1StringView key)
{
    if (!a.has(key))
        return std::nullopt;
    const RecordFields r(a, key, 2);
    if (!r.isValid())
        return std::nullopt;
    return MovieStampRecord{r.bytes(0), r.offset64(1)};
}

PicAttributes readAttributes(const CborFields &a)
{
    PicAttributes p;
    p.ExifDateTimeOriginal = readStamp<20, StampRecord>(a, "ExifDateTimeOriginal"_L1);
    p.ExifDateTimeDigitized = readStamp<20, StampRecord>(a, "ExifDateTimeDigitized"_L1);
    p.TIFFDateTime = readStamp<20, StampRecord>(a, "TIFFDateTime"_L1);
    p.GPSDateStamp = readStamp<20, StampRecord>(a, "GPSDateStamp"_L1);
    p.ExifOffsetTimeOriginal = readStamp<7, OffsetTagRecord>(a, "ExifOffsetTimeOriginal"_L1);
    p.ExifOffsetTimeDigitized = readStamp<7, OffsetTagRecord>(a, "ExifOffsetTimeDigitized"_L1);
    p.TIFFOffsetTime = readStamp<7, OffsetTagRecord>(a, "TIFFOffsetTime"_L1);
    if (a.has("GPSTimeStamp"_L1)) {
        const RecordFields r(a, "GPSTimeStamp"_L1, 3);
        if (r.isValid())
            p.GPSTimeStamp = GpsStampRecord{r.bytes(0, 24), r.offset(1), r.flag(2)};
    }
    if (a.has("GPSLocation"_L1)) {
        const RecordFields r(a, "GPSLocation"_L1, 15);
        if (r.isValid()) {
            GpsLocationRecord g;
            int i = 0;
            for (auto [data, offset] :
                 {std::pair{&g.latitudeRef_Data, &g.latitudeRef_Offset}, std::pair{&g.latitude_Data, &g.latitude_Offset},
                  std::pair{&g.longitudeRef_Data, &g.longitudeRef_Offset},
                  std::pair{&g.longitude_Data, &g.longitude_Offset},
                  std::pair{&g.altitudeRef_Data, &g.altitudeRef_Offset}, std::pair{&g.altitude_Data, &g.altitude_Offset},
                  std::pair{&g.hPositioningError_Data, &g.hPositioningError_Offset}}) {
                *data = r.bytes(i++);
                *offset = r.offset(i++);
            }
            g.needsConv = r.flag(14);
            p.GPSLocation = g;
        }
    }
    p.GPSLocationXmpHPositioningError = a.optionalReal("GPSLocationXmpHPositioningError"_L1);
    p.GPSLocationXmpAltitude = a.optionalReal("GPSLocationXmpAltitude"_L1);
    if (a.has("xmpDateInfos"_L1)) {
        const CborFields infos = a.map("xmpDateInfos"_L1);
        XmpDateInfos stamps;
        const QCborMap infosMap = infos.all();
        for (auto it = infosMap.constBegin(); it != infosMap.constEnd() && !a.problem().has(); ++it) {
            const QString name = it.key().toString();
            const RecordFields r(it.value(), 4, a, u"xmpDateInfos/"_s + name);
            if (r.isValid())
                stamps[name] = XmpStampRecord{r.bytes(0), r.offset(1), int(r.integer(2, 0, 3)),
                                              int(r.integer(3, 0, 3))};
        }
        p.xmpDateInfos = std::move(stamps);
    }
    if (a.has("IPTCDateCreated"_L1)) {
        const RecordFields r(a, "IPTCDateCreated"_L1, 8);
        if (r.isValid())
            p.IPTCDateCreated = IptcDateRecord{r.bytes(0), r.offset(1), r.bytes(2), r.offset(3),
                                               r.bytes(4), r.offset(5), r.bytes(6), r.offset(7)};
    }
    p.xmpHeaderStartOffset = quint32(a.integer("xmpHeaderStartOffset"_L1, 0, 0, maxU32));
    p.cr3XmpOffset = quint32(a.integer("cr3XmpOffset"_L1, 0, 0, maxU32));
    p.QTMetaDate = readMovieStamp(a, "QTMetaDate"_L1);
    p.QTMvhdCreaDate = readMovieStamp(a, "QTMvhdCreaDate"_L1);
    p.QTMvhdModDate = readMovieStamp(a, "QTMvhdModDate"_L1);
    p.riffCreaDate = readMovieStamp(a, "riffCreaDate"_L1);
    for (const QCborValue &value : a.array("qtTrackTimes"_L1)) {
        const RecordFields r(value, 3, a, u"qtTrackTimes"_s);
        if (!r.isValid())
            break;
        p.qtTrackTimes.push_back({MovieStampRecord{r.bytes(0), r.offset64(1)}, r.flag(2)});
    }
    for (const QCborValue &value : a.array("qtLocations"_L1)) {
        const RecordFields r(value, 10, a, u"qtLocations"_s);
        if (!r.isValid())
            break;
        constexpr qint64 digits = 64;
        p.qtLocations.push_back({int(r.integer(0, 0, 3)), MovieStampRecord{r.bytes(1), r.offset64(2)},
                                 MovieStampRecord{r.bytes(3), r.offset64(4)}, int(r.integer(5, 0, digits)),
                                 int(r.integer(6, 0, digits)), int(r.integer(7, 0, digits)),
                                 int(r.integer(8, 0, digits)), r.flag(9)});
    }
    p.NSFileCreationDate = a.date("NSFileCreationDate"_L1);
    p.NSFileModificationDate = a.date("NSFileModificationDate"_L1);
    if (a.has("NSFileSize"_L1))
        p.NSFileSize = a.integer("NSFileSize"_L1, 0, 0);
    return p;
}

void writeLocation(QCborStreamWriter &w, const PicLocation &l)
{
    CborMapWriter map(w);
    map.put("gpsLat"_L1, l.gpsLat);
    map.put("gpsLong"_L1, l.gpsLong);
    map.put("gpsLatOld"_L1, l.gpsLatOld);
    map.put("gpsLongOld"_L1, l.gpsLongOld);
    map.putDouble("newLocationHAccuracy"_L1, l.newLocationHAccuracy, MySinglePic::notSetAccuracy);
    map.putDouble("newLocationAltitude"_L1, l.newLocationAltitude, MySinglePic::notSetAccuracy);
    map.put("hasAddedLocation"_L1, qint64(l.hasAddedLocation));
}

PicLocation readLocation(const CborFields &f)
{
    PicLocation l;
    l.gpsLat = f.optionalReal("gpsLat"_L1);
    l.gpsLong = f.optionalReal("gpsLong"_L1);
    l.gpsLatOld = f.optionalReal("gpsLatOld"_L1);
    l.gpsLongOld = f.optionalReal("gpsLongOld"_L1);
    l.newLocationHAccuracy = f.real("newLocationHAccuracy"_L1, MySinglePic::notSetAccuracy);
    l.newLocationAltitude = f.real("newLocationAltitude"_L1, MySinglePic::notSetAccuracy);
    l.hasAddedLocation = qint8(f.integer("hasAddedLocation"_L1, 0, 0, 2));
    return l;
}

// --- A movie's positions ---

void writeMovieTime(QCborStreamWriter &w, const MovieTime &t)
{
    w.startArray(4);
    w.append(t.value);
    w.append(qint64(t.timescale));
    w.append(quint64(t.flags));
    w.append(t.epoch);
    w.endArray();
}

void writeMoviePositions(CborMapWriter &map, const MoviePositions &m)
{
    if (m.movCurrentTime != MovieTime())
        writeMovieTime(map.entry("movCurrentTime"_L1), m.movCurrentTime);
    if (m.movChapterTime != MovieTime())
        writeMovieTime(map.entry("movChapterTime"_L1), m.movChapterTime);
    map.put("chapterMovPosKey"_L1, m.chapterMovPosKey);
    map.put("currentMovPosKey"_L1, m.currentMovPosKey);
    if (!m.movPositions.isEmpty()) {
        QCborStreamWriter &e = map.entry("movPositions"_L1);
        e.startMap(quint64(m.movPositions.size()));
        for (auto it = m.movPositions.cbegin(); it != m.movPositions.cend(); ++it) {
            e.append(it.key());
            CborMapWriter entry(e);
            writeMovieTime(entry.entry("timeArray"_L1), it->time);
            entry.entry("seconds"_L1).append(it->seconds);
            entry.entry("isSaved"_L1).append(it->isSaved);
        }
        e.endMap();
    }
    if (!m.movPositionThumbs.isEmpty()) {
        QCborStreamWriter &e = map.entry("movPositionThumbs"_L1);
        e.startMap(quint64(m.movPositionThumbs.size()));
        for (auto it = m.movPositionThumbs.cbegin(); it != m.movPositionThumbs.cend(); ++it) {
            e.append(it.key());
            e.append(*it);
        }
        e.endMap();
    }
    map.put("didTryToLoadChapters"_L1, m.didTryToLoadChapters);
    map.put("didMoviePositionChange"_L1, m.didMoviePositionChange);
}

MovieTime readMovieTime(const CborFields &f, const QCborValue &value, const QString &key)
{
    const RecordFields r(value, 4, f, key);
    if (!r.isValid())
        return {};
    constexpr qint64 i64 = std::numeric_limits<qint64>::max();
    return {r.integer(0, -i64, i64), qint32(r.integer(1, 0, std::numeric_limits<qint32>::max())),
            quint32(r.integer(2, 0, maxU32)), r.integer(3, -i64, i64)};
}

MoviePositions readMoviePositions(const CborFields &f)
{
    MoviePositions m;
    if (f.has("movCurrentTime"_L1))
        m.movCurrentTime = readMovieTime(f, f.value("movCurrentTime"_L1), u"movCurrentTime"_s);
    if (f.has("movChapterTime"_L1))
        m.movChapterTime = readMovieTime(f, f.value("movChapterTime"_L1), u"movChapterTime"_s);
    m.chapterMovPosKey = f.text("chapterMovPosKey"_L1);
    m.currentMovPosKey = f.text("currentMovPosKey"_L1);
    const CborFields positions = f.map("movPositions"_L1);
    const QCborMap positionsMap = positions.all();
    for (auto it = positionsMap.constBegin(); it != positionsMap.constEnd() && !f.problem().has(); ++it) {
        const QString key = it.key().toString();
        const CborFields entry(it.value(), f.where() + u"/movPositions/"_s + key, f.problem());
        MoviePosition position;
        position.time = readMovieTime(entry, entry.value("timeArray"_L1), u"timeArray"_s);
        position.seconds = entry.real("seconds"_L1);
        position.isSaved = entry.flag("isSaved"_L1);
        // A position is found again by its key: one that does not name its own seconds is damage.
        if (key != MoviePositions::keyFor(position.seconds))
            entry.refuse(u"the key does not name the position's seconds"_s);
        m.movPositions.insert(key, position);
    }
    const CborFields thumbs = f.map("movPositionThumbs"_L1);
    const QCborMap thumbsMap = thumbs.all();
    for (auto it = thumbsMap.constBegin(); it != thumbsMap.constEnd() && !f.problem().has(); ++it) {
        if (!it.value().isByteArray() || !m.movPositions.contains(it.key().toString()))
            thumbs.refuse(u"a thumbnail that is no image of a position"_s);
        m.movPositionThumbs.insert(it.key().toString(), it.value().toByteArray());
    }
    for (const QString &key : {m.chapterMovPosKey, m.currentMovPosKey})
        if (!key.isEmpty() && !m.movPositions.contains(key))
            f.refuse(u"a chosen or present position that is not kept"_s);
    m.didTryToLoadChapters = f.flag("didTryToLoadChapters"_L1);
    m.didMoviePositionChange = f.flag("didMoviePositionChange"_L1);
    return m;
}

// The shot's settings under the Exif names they came from; a state without them reads as a
// file that named none.
std::optional<double> shotValue(double value)
{
    return ShotSettings::has(value) ? std::optional(value) : std::nullopt;
}

void writeShotSettings(CborEntryWriter &item, const ShotSettings &shot)
{
    if (shot.isEmpty())
        return;
    CborMapWriter map(item.entry("exifDict"_L1));
    map.put("ExposureTime"_L1, shotValue(shot.exposureTime));
    map.put("FNumber"_L1, shotValue(shot.fNumber));
    map.put("FocalLength"_L1, shotValue(shot.focalLength));
    map.put("DigitalZoomRatio"_L1, shotValue(shot.digitalZoomRatio));
    map.put("ISOSpeed"_L1, qint64(shot.iso));
}

ShotSettings readShotSettings(const CborFields &f)
{
    ShotSettings shot;
    shot.exposureTime = f.optionalReal("ExposureTime"_L1).value_or(ShotSettings::none);
    shot.fNumber = f.optionalReal("FNumber"_L1).value_or(ShotSettings::none);
    shot.focalLength = f.optionalReal("FocalLength"_L1).value_or(ShotSettings::none);
    shot.digitalZoomRatio = f.optionalReal("DigitalZoomRatio"_L1).value_or(ShotSettings::none);
    shot.iso = quint32(f.integer("ISOSpeed"_L1, 0, 0, std::numeric_limits<quint32>::max()));
    return shot;
}

void writeGear(CborEntryWriter &item, const MySinglePic &p)
{
    item.put("pivBodySn"_L1, p.pivBodySn());
    item.put("pivMakeModelLens"_L1, p.pivMakeModelLens());
    item.put("lensSn"_L1, p.lensSn());
}

std::shared_ptr<const CameraGear> readGear(const CborFields &f)
{
    CameraGear gear{f.text("pivBodySn"_L1), f.text("pivMakeModelLens"_L1), f.text("lensSn"_L1)};
    return gear.isEmpty() ? nullptr : std::make_shared<const CameraGear>(std::move(gear));
}

} // namespace

int savedValueForActualValue(int spType)
{
    return spType >= 1 && spType <= 22 ? savedTypes[std::size_t(spType - 1)] : spType;
}

int actualValueFromSavedValue(int stored)
{
    for (std::size_t i = 0; i < savedTypes.size(); ++i)
        if (savedTypes[i] == stored)
            return int(i) + 1;
    return stored;
}

void write(QCborStreamWriter &writer, const MySinglePic &p, qint64 dependentIndex)
{
    CborMapWriter map(writer);
    map.put("stateVersion"_L1, stateVersion);
    map.put("indexInSource"_L1, qint64(p.indexInSource_full), -1);
    map.put("spName"_L1, p.spName);
    map.put("spSidecarExtensions"_L1, p.spSidecarExtensions);
    writeAttributes(map.entry("singlePicAttributes"_L1), p.singlePicAttributes);
    map.put("spDateTimeOriginal"_L1, p.spDateTimeOriginal);
    map.put("exifDateTimeOriginalOLD"_L1, p.exifDateTimeOriginalOLD);
    map.put("exifDateTimeDigitizedOLD"_L1, p.exifDateTimeDigitizedOLD);
    map.put("tiffDateTimeOLD"_L1, p.tiffDateTimeOLD);
    map.put("fileCreationDateOLD"_L1, p.fileCreationDateOLD);
    map.put("fileModificationDateOLD"_L1, p.fileModificationDateOLD);
    map.put("spType"_L1, qint64(savedValueForActualValue(p.spType)));
    map.put("format"_L1, qint64(p.fileFormatType));
    map.put("isKeeper"_L1, p.isKeeper);
    map.put("isRejected"_L1, p.isRejected);
    // Kept whenever the file held a rating, 0 too: a save writes only a rating that changed.
    if (p.fileRating)
        map.put("fileRating"_L1, qint64(*p.fileRating), std::numeric_limits<qint64>::min());
    map.put("saveErrorType"_L1, qint64(p.saveErrorType));
    map.put("tagAddType"_L1, qint64(p.tagAddType));
    map.put("normalizationType"_L1, qint64(p.normalizationType));
    map.put("tiffHeaderStartOffset"_L1, qint64(p.tiffHeaderStartOffset), maxU32);
    map.put("tiffHeaderType"_L1, p.tiffHeaderType);
    map.put("isExtensionHidden"_L1, p.isExtensionHidden);
    map.put("pivImageWidth"_L1, qint64(p.pivImageWidth), -1);
    map.put("pivImageHeight"_L1, qint64(p.pivImageHeight), -1);
    map.put("pivMakeModel"_L1, p.pivMakeModel == u"-"_s ? QString() : p.pivMakeModel);
    writeGear(map, p);
    writeShotSettings(map, p.pivShotSettings);
    writeLocation(map.entry("location"_L1), PicLocation::of(p));
    map.put("locAddedByTrackKey"_L1, p.locAddedByTrackKey);
    map.put("lastSave_locAddedByTrackKey"_L1, p.lastSave_locAddedByTrackKey);
    if (p.locationBeforeTrack)
        writeLocation(map.entry("locationBeforeTrack"_L1), *p.locationBeforeTrack);
    map.put("linkedToFolderTracksType"_L1, qint64(p.linkedToFolderTracksType));
    map.put("isTrackLinkingPrevented"_L1, p.isTrackLinkingPrevented);
    map.put("isPossibleBundlePic"_L1, p.isPossibleBundlePic);
    map.put("isBundleDependentImage"_L1, p.bundleMasterImage != nullptr);
    map.put("isLivePhotoUUIDValidated"_L1, p.isLivePhotoUUIDValidated);
    map.put("hasMinorDateDifference"_L1, p.hasMinorDateDifference);
    map.put("majorDateDifferenceType"_L1, qint64(p.majorDateDifferenceType));
    map.put("dstDivergenceState"_L1, qint64(p.dstDivergenceState));
    map.put("dstDivergenceStateNew"_L1, qint64(p.dstAmbiguityAtExportState));
    map.put("dstAmbiguityAtImportState"_L1, qint64(p.dstAmbiguityAtImportState));
    map.put("usesAltTimeAtAmbiguityReason"_L1, qint64(p.usesAltTimeAtAmbiguityReason));
    map.put("isUnsavedDueToTZC"_L1, p.isUnsavedDueToTZC);
    map.put("spGpsUTCDate"_L1, p.spGpsUTCDate);
    map.putDouble("singlePicModification"_L1, p.singlePicModification);
    map.put("isCreaXmp"_L1, p.isCreaXmp);
    map.put("isDigiXmp"_L1, p.isDigiXmp);
    map.put("isModiXmp"_L1, p.isModiXmp);
    map.put("hasModiXmp"_L1, p.hasModiXmp);
    map.put("isGpsXmp"_L1, p.isGpsXmp);
    map.put("shouldAddExifDateTimeTags"_L1, p.shouldAddExifDateTimeTags);
    map.put("didAddExifDateTimeTags"_L1, p.didAddExifDateTimeTags);
    map.put("shouldReSaveLoc"_L1, p.shouldReSaveLoc);
    map.put("isInvalidDueToChangesAfterImport"_L1, p.isInvalidDueToChangesAfterImport);
    map.put("fileUnchangedState"_L1, qint64(p.fileUnchangedState));
    map.put("movieType"_L1, qint64(p.movieType));
    map.put("marker"_L1, qint64(p.marker));
    map.put("UUID"_L1, p.UUID);
    map.putDouble("movDuration"_L1, p.movDuration, -1.0);
    writeMoviePositions(map, MoviePositions::of(p));
    if (dependentIndex >= 0)
        map.put(p.bundleDependentImage->spType > 13 ? "bundleDependentsLivePhotosIndex"_L1
                                                     : "bundleDependentsRawAndJPGIndex"_L1,
                dependentIndex, -1);
}

ReadItem read(const CborFields &f)
{
    const qint64 version = f.integer("stateVersion"_L1);
    if (version != stateVersion) {
        f.refuse(QStringLiteral("item version %1 is not %2").arg(version).arg(stateVersion));
        return {};
    }
    const QString name = f.text("spName"_L1);
    if (name.isEmpty() || name.contains(QLatin1Char('/'))) {
        f.refuse(QStringLiteral("an item without a plain file name"));
        return {};
    }
    const int spType = actualValueFromSavedValue(int(f.integer("spType"_L1, 0, 0, 99)));
    auto p = std::make_unique<MySinglePic>(name, nullptr, spType, f.date("spDateTimeOriginal"_L1));
    p->indexInSource_full = qint32(f.integer("indexInSource"_L1, -1, -1, std::numeric_limits<qint32>::max()));
    p->spSidecarExtensions = f.texts("spSidecarExtensions"_L1);
    p->singlePicAttributes = readAttributes(f.map("singlePicAttributes"_L1));
    p->exifDateTimeOriginalOLD = f.date("exifDateTimeOriginalOLD"_L1);
    p->exifDateTimeDigitizedOLD = f.date("exifDateTimeDigitizedOLD"_L1);
    p->tiffDateTimeOLD = f.date("tiffDateTimeOLD"_L1);
    p->fileCreationDateOLD = f.date("fileCreationDateOLD"_L1);
    p->fileModificationDateOLD = f.date("fileModificationDateOLD"_L1);
    p->fileFormatType = FileFormatType(f.integer("format"_L1, 0, 0, 255));
    p->isKeeper = f.flag("isKeeper"_L1);
    p->isRejected = f.flag("isRejected"_L1);
    if (f.has("fileRating"_L1))
        p->fileRating = qint8(f.integer("fileRating"_L1, 0, -1, 5));
    p->saveErrorType = quint8(f.integer("saveErrorType"_L1, 0, 0, 255));
    p->tagAddType = quint8(f.integer("tagAddType"_L1, 0, 0, 255));
    p->normalizationType = quint8(f.integer("normalizationType"_L1, 0, 0, 255));
    p->tiffHeaderStartOffset = quint32(f.integer("tiffHeaderStartOffset"_L1, maxU32, 0, maxU32));
    p->tiffHeaderType = f.flag("tiffHeaderType"_L1);
    p->isExtensionHidden = f.flag("isExtensionHidden"_L1);
    p->pivImageWidth = qint32(f.integer("pivImageWidth"_L1, -1, -1, std::numeric_limits<qint32>::max()));
    p->pivImageHeight = qint32(f.integer("pivImageHeight"_L1, -1, -1, std::numeric_limits<qint32>::max()));
    if (f.has("pivMakeModel"_L1))
        p->pivMakeModel = f.text("pivMakeModel"_L1);
    p->pivGear = readGear(f);
    p->pivShotSettings = readShotSettings(f.map("exifDict"_L1));
    readLocation(f.map("location"_L1)).applyTo(*p);
    p->locAddedByTrackKey = f.text("locAddedByTrackKey"_L1);
    p->lastSave_locAddedByTrackKey = f.text("lastSave_locAddedByTrackKey"_L1);
    if (f.has("locationBeforeTrack"_L1))
        p->locationBeforeTrack = std::make_unique<PicLocation>(readLocation(f.map("locationBeforeTrack"_L1)));
    p->linkedToFolderTracksType = qint8(f.integer("linkedToFolderTracksType"_L1, 0, 0, 127));
    p->isTrackLinkingPrevented = f.flag("isTrackLinkingPrevented"_L1);
    p->isPossibleBundlePic = f.flag("isPossibleBundlePic"_L1);
    p->isLivePhotoUUIDValidated = f.flag("isLivePhotoUUIDValidated"_L1);
    p->hasMinorDateDifference = f.flag("hasMinorDateDifference"_L1);
    p->majorDateDifferenceType = quint8(f.integer("majorDateDifferenceType"_L1, 0, 0, 255));
    p->dstDivergenceState = quint8(f.integer("dstDivergenceState"_L1, 0, 0, 7));
    p->dstAmbiguityAtExportState = quint8(f.integer("dstDivergenceStateNew"_L1, 0, 0, 7));
    p->dstAmbiguityAtImportState = quint8(f.integer("dstAmbiguityAtImportState"_L1, 0, 0, 7));
    p->usesAltTimeAtAmbiguityReason = qint8(f.integer("usesAltTimeAtAmbiguityReason"_L1, 0, -128, 127));
    p->isUnsavedDueToTZC = f.flag("isUnsavedDueToTZC"_L1);
    p->spGpsUTCDate = f.date("spGpsUTCDate"_L1);
    p->singlePicModification = f.real("singlePicModification"_L1);
    p->isCreaXmp = f.flag("isCreaXmp"_L1);
    p->isDigiXmp = f.flag("isDigiXmp"_L1);
    p->isModiXmp = f.flag("isModiXmp"_L1);
    p->hasModiXmp = f.flag("hasModiXmp"_L1);
    p->isGpsXmp = f.flag("isGpsXmp"_L1);
    p->shouldAddExifDateTimeTags = f.flag("shouldAddExifDateTimeTags"_L1);
    p->didAddExifDateTimeTags = f.flag("didAddExifDateTimeTags"_L1);
    p->shouldReSaveLoc = f.flag("shouldReSaveLoc"_L1);
    p->isInvalidDueToChangesAfterImport = f.flag("isInvalidDueToChangesAfterImport"_L1);
    p->fileUnchangedState = qint8(f.integer("fileUnchangedState"_L1, 0, 0, 5));
    p->movieType = qint8(f.integer("movieType"_L1, 0, 0, 127));
    p->marker = qint8(f.integer("marker"_L1, 0, -128, 127));
    p->UUID = f.text("UUID"_L1);
    p->movDuration = f.real("movDuration"_L1, -1.0);
    readMoviePositions(f).applyTo(*p);
    ReadItem item;
    item.dependentIsMovie = f.has("bundleDependentsLivePhotosIndex"_L1);
    item.dependentIndex = f.integer(item.dependentIsMovie ? "bundleDependentsLivePhotosIndex"_L1
                                                          : "bundleDependentsRawAndJPGIndex"_L1,
                                    -1, -1, std::numeric_limits<qint32>::max());
    if (f.problem().has())
        return {};
    item.pic = std::move(p);
    return item;
}

} // namespace orv::ItemCoder

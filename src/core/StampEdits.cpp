#include "core/StampEdits.h"

#include "core/FolderFacts.h"
#include "core/IptcDates.h"
#include "core/MySinglePic.h"
#include "core/SaveSettings.h"
#include "formats/QuickTimeLocator.h"
#include "time/DateStampCodec.h"

#include <QCryptographicHash>
#include <QtEndian>

#include <algorithm>
#include <cmath>

namespace orv {

namespace {

constexpr qsizetype stampLength = 19;

// The fixed offset a zone-bearing stamp names: its digits read as UTC, less the instant it says.
TimeZone zoneOfOffset(Instant stated, Instant digitsAsUtc, const TimeZone &fallback)
{
    if (stated.isDistantPast() || digitsAsUtc.isDistantPast())
        return fallback;
    return TimeZone::fromOffsetSeconds(int(std::lround(digitsAsUtc.secondsSince(stated))))
        .value_or(fallback);
}

TimeZone zoneOfXmpStamp(const XmpStampRecord &record, const TimeZone &fallback)
{
    const XmpStampKind kind{record.type, record.subtype};
    const OptionalDate stated = DateStampCodec::xmpDateFromStampInfos(record.data, kind, fallback);
    const int digits = (record.subtype & XmpStampKind::WithoutSeconds) ? 16 : 19;
    const OptionalDate asUtc = DateStampCodec::dateFromXmpTimeStamp(
        QString::fromLatin1(record.data.left(digits)), TimeZone::utc(), true, record.subtype);
    if (!stated || !asUtc)
        return fallback;
    return zoneOfOffset(*stated, *asUtc, fallback);
}

// The fixed offset a metadata date of 24 or 25 bytes names.
TimeZone zoneOfMdtaStamp(const QByteArray &data, const TimeZone &fallback)
{
    const QString text = QString::fromLatin1(data);
    const OptionalDate stated = DateStampCodec::dateFromMDTATimeStamp(text, fallback);
    const OptionalDate asUtc = DateStampCodec::dateIgnoringFromMDTATimeStamp(text, TimeZone::utc());
    if (!stated || !asUtc)
        return fallback;
    return zoneOfOffset(*stated, *asUtc, fallback);
}

bool isRealDate(const OptionalDate &date) { return date && !date->isSentinel(); }

QByteArray patched(QByteArray data, qsizetype at, const QByteArray &bytes)
{
    return data.replace(at, bytes.size(), bytes);
}

TimeZone zoneOfXmpRecord(const XmpStampRecord &record, const TimeZone &localZone)
{
    if (record.type == XmpStampKind::Utc)
        return TimeZone::utc();
    return record.type == XmpStampKind::Local ? localZone : zoneOfXmpStamp(record, localZone);
}

} // namespace

QString StampEdits::supportStamp(const XmpStampRecord &record, Instant date,
                                 const TimeZone &localZone)
{
    const TimeZone zone = zoneOfXmpRecord(record, localZone);
    const int subtype = record.subtype & ~XmpStampKind::WithoutSeconds;
    const QString digits = DateStampCodec::xmpTimeStampFromDate(date, zone, true, subtype);
    if (digits.size() != stampLength)
        return {};
    if (record.type == XmpStampKind::Utc)
        return digits + QLatin1Char('Z');
    if (record.type == XmpStampKind::Local)
        return digits;
    const QString withZone = DateStampCodec::xmpTimeStampFromDate(date, zone, false, subtype);
    return withZone.size() > stampLength ? withZone : QString();
}

void PlannedSave::add(qint64 offset, const QByteArray &bytes, const QByteArray &previous)
{
    if (bytes != previous)
        edits.push_back({offset, bytes, previous});
}

StampEdits::StampEdits(MySinglePic &pic, const SaveSettings &settings)
    : m_pic(pic), m_settings(settings), m_targetZone(targetZoneFor(pic, settings))
{
}

std::optional<TimeZone> StampEdits::targetZoneFor(const MySinglePic &pic, const SaveSettings &settings)
{
    const MySinglePic &master = pic.bundleMasterImage ? *pic.bundleMasterImage : pic;
    const FolderFacts *folder = master.spSingleFolder;
    if (settings.targetTimeZone || !folder || !folder->targetZoneForSave)
        return settings.targetTimeZone;
    return folder->targetZoneForSave(master);
}

TimeZone StampEdits::localZone() const
{
    return m_targetZone.value_or(TimeZone::systemZone());
}

PlannedSave StampEdits::planPhoto()
{
    PlannedSave plan;
    planXmpDates(plan);
    planGps(plan);
    PicAttributes &a = m_pic.singlePicAttributes;
    planCr3MovieHeader(plan);
    planIptcDate(plan);
    planExifSlot(plan, TagAddExifOriginal, a.ExifDateTimeOriginal, a.ExifOffsetTimeOriginal,
                 m_pic.exifDateTimeOriginalOLD, m_pic.exifDateTimeOriginalNEW, m_pic.isCreaXmp);
    planExifSlot(plan, TagAddExifDigitized, a.ExifDateTimeDigitized, a.ExifOffsetTimeDigitized,
                 m_pic.exifDateTimeDigitizedOLD, m_pic.exifDateTimeDigitizedNEW, m_pic.isDigiXmp);
    planExifSlot(plan, TagAddTiffDateTime, a.TIFFDateTime, a.TIFFOffsetTime, m_pic.tiffDateTimeOLD,
                 m_pic.tiffDateTimeNEW, m_pic.isModiXmp);
    return plan;
}

TimeZone StampEdits::zoneForNewStamps() const
{
    return m_settings.targetTimeZone.value_or(cameraClock().value_or(localZone()));
}

std::optional<TimeZone> StampEdits::cameraClockOf(const MySinglePic &pic)
{
    const PicAttributes &a = pic.singlePicAttributes;
    const auto data = [](const std::optional<OffsetTagRecord> &tag) {
        return tag && tag->offsetOffset ? tag->offsetData.toByteArray() : QByteArray();
    };
    const QByteArray offset = DateStampCodec::cameraClockOffset(
        data(a.ExifOffsetTimeOriginal), data(a.ExifOffsetTimeDigitized), data(a.TIFFOffsetTime));
    if (offset.isEmpty())
        return std::nullopt;
    return TimeZone::fromOffsetSeconds(*DateStampCodec::exactExifOffsetSeconds(offset));
}

void StampEdits::planExifSlot(PlannedSave &plan, quint64 slot, std::optional<StampRecord> &stamp,
                              std::optional<OffsetTagRecord> &offsetTag, OptionalDate &oldDate,
                              OptionalDate newDate, bool isXmpSlot)
{
    if (!stamp || isXmpSlot || !newDate)
        return;
    if (stamp->dateOffset == 0) {
        if (isRealDate(oldDate) && isRealDate(newDate) &&
            oldDate->wholeSeconds() != newDate->wholeSeconds())
            plan.stampsOutOfPlace |= slot;
        return;
    }
    // A stamp that is neither a date nor blank is damaged: what it meant is not known.
    const QByteArray digits = stamp->dateData.left(stampLength);
    const bool isBlank = std::all_of(digits.begin(), digits.end(), [](char c) {
        return c == ' ' || c == ':' || c == '0' || c == '\0';
    });
    if ((!oldDate || oldDate->isDistantPast()) && !isBlank &&
        DateStampCodec::isValidZeroStamp(DateStampCodec::exifTimeStampFromData(stamp->dateData))) {
        plan.damagedTags = true;
        return;
    }
    if (!oldDate)
        return;
    const bool hasOwnOffset = offsetTag && offsetTag->offsetOffset;
    const std::optional<int> ownOffset =
        hasOwnOffset ? DateStampCodec::exactExifOffsetSeconds(offsetTag->offsetData) : std::nullopt;
    if (hasOwnOffset && !ownOffset) {
        // The zone the stamp was written in is unknown: neither it nor its tag is written.
        plan.damagedTags = true;
        return;
    }
    QByteArray stampData;
    if (ownOffset) {
        const TimeZone zone = m_targetZone.value_or(
            TimeZone::fromOffsetSeconds(*ownOffset).value_or(localZone()));
        const ExifStampWithOffset written =
            DateStampCodec::exifWithOffsetDatasFromDate(*newDate, zone);
        if (written.stamp.size() != stampLength + 1 || written.offset.size() != 7)
            return;
        stampData = written.stamp;
        plan.add(offsetTag->offsetOffset, written.offset, offsetTag->offsetData);
        plan.whenSaved.push_back(
            [&offsetTag, offset = written.offset] { offsetTag->offsetData = offset; });
    } else {
        // A stamp without a tag of its own keeps the camera's clock that the others name.
        const std::optional<TimeZone> clock = cameraClock();
        const TimeZone zone = clock ? m_targetZone.value_or(*clock) : localZone();
        stampData = DateStampCodec::exifDataFromDate(*newDate, zone);
        if (stampData.size() != stampLength + 1)
            return;
    }
    plan.add(stamp->dateOffset, stampData.left(stampLength), stamp->dateData.left(stampLength));
    plan.touchesExif = true;
    plan.whenSaved.push_back([&stamp, &oldDate, stampData, newDate] {
        stamp->dateData = stampData;
        oldDate = newDate;
    });
}

void StampEdits::planMovieStamp(PlannedSave &plan, MovieStampRecord &stamp, const QByteArray &bytes)
{
    if (bytes.size() != stamp.dateData.size()) {
        plan.needsExiftool = true;
        return;
    }
    plan.add(qint64(stamp.dateOffset), bytes, stamp.dateData);
    plan.whenSaved.push_back([&stamp, bytes] { stamp.dateData = bytes; });
}

QByteArray StampEdits::planMovieHeaderTime(PlannedSave &plan, BoxedOptional<MovieStampRecord> &stamp,
                                           OptionalDate date, bool correction)
{
    if (!stamp || stamp->dateOffset == 0 || !isRealDate(date))
        return {};
    const QByteArray bytes =
        DateStampCodec::mvhdDataFromDate(*date, correction, localZone(), int(stamp->dateData.size()));
    planMovieStamp(plan, *stamp, bytes);
    return bytes;
}

void StampEdits::planTrackTimes(PlannedSave &plan, const QByteArray &creation, const QByteArray &modification)
{
    for (QtTrackTimeRecord &track : m_pic.singlePicAttributes.qtTrackTimes) {
        const OptionalDate date = DateStampCodec::dateFromMVHDData(track.followsModification ? modification : creation);
        if (!date || track.time.dateOffset == 0)
            continue;
        planMovieStamp(plan, track.time,
                       DateStampCodec::mvhdDataFromDate(*date, false, TimeZone::utc(),
                                                        int(track.time.dateData.size())));
    }
}

void StampEdits::planCr3MovieHeader(PlannedSave &plan)
{
    PicAttributes &a = m_pic.singlePicAttributes;
    // How far a date slot moves; the first slot with a date to move from decides.
    const auto shiftOf = [](std::initializer_list<std::pair<OptionalDate, OptionalDate>> slots) {
        for (const auto &[oldDate, newDate] : slots)
            if (isRealDate(oldDate) && isRealDate(newDate))
                return std::optional(newDate->secondsSince(*oldDate));
        return std::optional<double>();
    };
    const std::pair<OptionalDate, OptionalDate> original{m_pic.exifDateTimeOriginalOLD, m_pic.exifDateTimeOriginalNEW},
        digitized{m_pic.exifDateTimeDigitizedOLD, m_pic.exifDateTimeDigitizedNEW},
        modified{m_pic.tiffDateTimeOLD, m_pic.tiffDateTimeNEW};
    // The header's times are UTC, as the camera wrote them: each moves as far as the capture or
    // the modification date.
    const auto movedTime = [&](BoxedOptional<MovieStampRecord> &stamp, std::optional<double> shift) {
        const OptionalDate stored = stamp ? DateStampCodec::dateFromMVHDData(stamp->dateData) : std::nullopt;
        return stored && shift ? planMovieHeaderTime(plan, stamp, stored->addingSeconds(*shift), false) : QByteArray();
    };
    const QByteArray creation = movedTime(a.QTMvhdCreaDate, shiftOf({original, digitized, modified}));
    const QByteArray modification = movedTime(a.QTMvhdModDate, shiftOf({modified, original, digitized}));
    planTrackTimes(plan, creation, modification);
}

void StampEdits::planIptcDate(PlannedSave &plan)
{
    const OptionalDate oldDate = m_pic.exifDateTimeOriginalOLD;
    const OptionalDate newDate = m_pic.exifDateTimeOriginalNEW;
    // Where IPTC's date is the creation slot, no other stamp takes it there.
    const bool isSlot = m_pic.spType == SpTypeIptcDateCreated && !m_pic.isCreaXmp;
    if (isSlot && newDate)
        plan.whenSaved.push_back([&pic = m_pic] { pic.exifDateTimeOriginalOLD = pic.exifDateTimeOriginalNEW; });
    BoxedOptional<IptcDateRecord> &stored = m_pic.singlePicAttributes.IPTCDateCreated;
    if (!stored || stored->dateOffset == 0 || !isRealDate(oldDate) || !isRealDate(newDate))
        return;
    // Beside another date source it moves as far as the creation date.
    const OptionalDate own = IptcDates::dateFrom(*stored, localZone());
    const OptionalDate date = isSlot ? newDate : own ? own->addingSeconds(newDate->secondsSince(*oldDate)) : OptionalDate();
    const std::optional<IptcDateRecord> written = date ? IptcDates::withDate(*stored, *date, localZone()) : std::nullopt;
    if (!written)
        return;
    IptcDateRecord record = *written;
    plan.add(stored->dateOffset, record.dateData, stored->dateData);
    record.blockData = patched(record.blockData, stored->dateOffset - stored->blockOffset, record.dateData);
    if (stored->timeOffset) {
        plan.add(stored->timeOffset, record.timeData, stored->timeData);
        record.blockData = patched(record.blockData, stored->timeOffset - stored->blockOffset, record.timeData);
    }
    // A digest that was current stays current; one that was not is left as the file had it.
    const auto md5 = [](const QByteArray &bytes) { return QCryptographicHash::hash(bytes, QCryptographicHash::Md5); };
    if (stored->digestOffset && stored->digestData == md5(stored->blockData)) {
        record.digestData = md5(record.blockData);
        plan.add(stored->digestOffset, record.digestData, stored->digestData);
    }
    plan.whenSaved.push_back([&stored, record] { *stored = record; });
}

PlannedSave StampEdits::planMovie()
{
    PlannedSave plan;
    PicAttributes &a = m_pic.singlePicAttributes;
    const OptionalDate oldDate = m_pic.exifDateTimeOriginalOLD;
    const OptionalDate newDate = m_pic.exifDateTimeOriginalNEW;
    const bool isMeta = m_pic.spType == SpTypeMdta;
    const bool correction = !isMeta && m_pic.spSingleFolder
                            && m_pic.spSingleFolder->isQuicktimeMVHDTimezoneCorrectionEnabled;
    // How far the item's date moves; nothing when it had none to move from (a header of zeros).
    const bool canMove = isRealDate(oldDate) && isRealDate(newDate);
    const double shift = canMove ? newDate->secondsSince(*oldDate) : 0.0;
    const auto moved = [&](OptionalDate own) -> OptionalDate {
        return own && canMove ? own->addingSeconds(shift) : OptionalDate();
    };

    // The movie header's new times, which the track headers that held them follow.
    QByteArray creation, modification;
    if (oldDate && isRealDate(newDate)) {
        if (m_pic.spType == SpTypeRiff && a.riffCreaDate && a.riffCreaDate->dateOffset) {
            const QByteArray data = DateStampCodec::riffDataLike(a.riffCreaDate->dateData, *newDate, localZone());
            planMovieStamp(plan, *a.riffCreaDate, data);
        }
        if (m_pic.isQtMovie() && a.QTMetaDate && a.QTMetaDate->dateOffset) {
            const QByteArray &stored = a.QTMetaDate->dateData;
            const OptionalDate date =
                isMeta ? newDate
                       : moved(DateStampCodec::dateFromMDTATimeStamp(QString::fromLatin1(stored), localZone()));
            const TimeZone zone = m_targetZone.value_or(zoneOfMdtaStamp(stored, localZone()));
            const int length = int(stored.size());
            if (isRealDate(date))
                planMovieStamp(plan, *a.QTMetaDate,
                               length == 20 || length == 24 || length == 25
                                   ? DateStampCodec::mdtaDataOfLength(length, *date, zone)
                                   : QByteArray());
        }
        if (m_pic.isQtMovie() && a.QTMvhdCreaDate) {
            const OptionalDate date =
                isMeta ? moved(DateStampCodec::dateFromMVHDData(a.QTMvhdCreaDate->dateData)) : newDate;
            creation = planMovieHeaderTime(plan, a.QTMvhdCreaDate, date, correction);
        }
        plan.whenSaved.push_back([&pic = m_pic] { pic.exifDateTimeOriginalOLD = pic.exifDateTimeOriginalNEW; });
    }
    if (m_pic.isQtMovie() && m_pic.tiffDateTimeOLD && a.QTMvhdModDate) {
        modification = planMovieHeaderTime(plan, a.QTMvhdModDate, m_pic.tiffDateTimeNEW, correction);
        plan.whenSaved.push_back([&pic = m_pic] { pic.tiffDateTimeOLD = pic.tiffDateTimeNEW; });
    }
    planTrackTimes(plan, creation, modification);
    return plan;
}

namespace {

// Metres as digits behind a point, in exactly `length` bytes; empty when they do not fit.
QByteArray locationHAccuracyData(double metres, qsizetype length)
{
    const qsizetype whole = QByteArray::number(std::floor(metres), 'f', 0).size();
    const qsizetype decimals = length - whole - 1;
    if (decimals < 1)
        return {};
    const QByteArray text = QByteArray::number(metres, 'f', int(decimals));
    return text.size() == length ? text : QByteArray();
}

} // namespace

bool StampEdits::planMovieLocation(PlannedSave &plan)
{
    std::vector<QtLocationRecord> &records = m_pic.singlePicAttributes.qtLocations;
    if (records.empty() || !m_pic.gpsLat || !m_pic.gpsLong)
        return false;
    std::vector<QByteArray> texts;
    for (const QtLocationRecord &record : records) {
        texts.push_back(iso6709WithCoordinates(record.text.dateData, *m_pic.gpsLat, *m_pic.gpsLong));
        if (texts.back().isEmpty() || record.text.dateOffset == 0)
            return false;
    }
    for (std::size_t i = 0; i < records.size(); ++i) {
        QtLocationRecord &record = records[i];
        plan.add(qint64(record.text.dateOffset), texts[i], record.text.dateData);
        plan.whenSaved.push_back([&record, text = texts[i]] { record.text.dateData = text; });
    }
    // The accuracy text takes the new accuracy, or 0 where a moved place leaves the old one
    // stale, in as many bytes as it has; a value that does not fit stays out.
    MovieStampRecord &accuracy = records.front().hAccuracy;
    const bool wantsAccuracy = m_pic.newLocationHAccuracy != MySinglePic::notSetAccuracy;
    if (accuracy.dateOffset && (wantsAccuracy || m_settings.setPositioningErrorsToZeroOnChange)) {
        const QByteArray text = locationHAccuracyData(
            wantsAccuracy ? std::max(0.0, m_pic.newLocationHAccuracy) : 0.0, accuracy.dateData.size());
        if (!text.isEmpty()) {
            plan.add(qint64(accuracy.dateOffset), text, accuracy.dateData);
            plan.whenSaved.push_back([&accuracy, text] { accuracy.dateData = text; });
        }
    }
    plan.whenSaved.push_back([&pic = m_pic] { pic.takeSavedLocation(); });
    return true;
}

namespace {

QByteArray rational(quint32 numerator, quint32 denominator, bool motorola)
{
    QByteArray bytes(8, '\0');
    uchar *p = reinterpret_cast<uchar *>(bytes.data());
    if (motorola) {
        qToBigEndian(numerator, p);
        qToBigEndian(denominator, p + 4);
    } else {
        qToLittleEndian(numerator, p);
        qToLittleEndian(denominator, p + 4);
    }
    return bytes;
}

// Degrees over 1, minutes over 1, seconds times 1000 over 1000, of a positive decimal.
QByteArray coordDataFrom(double value, bool motorola)
{
    const double degrees = std::floor(value);
    const double minutes = std::floor((value - degrees) * 60.0);
    // Rounded, not cut: 0.8583 degrees must not come back as 0.85829997.
    const double seconds = std::round(((value - degrees) * 60.0 - minutes) * 60.0 * 1000.0);
    return rational(quint32(degrees), 1, motorola) + rational(quint32(minutes), 1, motorola) +
           rational(quint32(seconds), 1000, motorola);
}

// Rounded metres times 100 over 100; exactly 0 is 0 over 1.
QByteArray metresDataFrom(double metres, bool motorola)
{
    const auto hundredths = quint32(std::lround(std::abs(metres) * 100.0));
    return hundredths == 0 ? rational(0, 1, motorola) : rational(hundredths, 100, motorola);
}

} // namespace

bool StampEdits::planPhotoLocation(PlannedSave &plan)
{
    BoxedOptional<GpsLocationRecord> &stored = m_pic.singlePicAttributes.GPSLocation;
    const bool wantsAltitude = m_pic.newLocationAltitude != MySinglePic::notSetAccuracy;
    const bool wantsAccuracy = m_pic.newLocationHAccuracy != MySinglePic::notSetAccuracy;
    // Altitude and positioning error tags the file lacks are exiftool's to add; the parts that
    // exist are written here.
    if (!stored || !m_pic.gpsLat || !m_pic.gpsLong || m_pic.hasXmpSidecar() ||
        !stored->latitude_Offset || !stored->longitude_Offset || !stored->latitudeRef_Offset ||
        !stored->longitudeRef_Offset)
        return false;
    GpsLocationRecord written = *stored;
    const bool motorola = stored->needsConv;
    const double lat = *m_pic.gpsLat;
    const double lon = *m_pic.gpsLong;
    written.latitudeRef_Data = QByteArray(lat < 0.0 ? "S" : "N", 2);
    written.latitude_Data = coordDataFrom(std::abs(lat), motorola);
    written.longitudeRef_Data = QByteArray(lon < 0.0 ? "W" : "E", 2);
    written.longitude_Data = coordDataFrom(std::abs(lon), motorola);
    if (wantsAltitude && stored->altitude_Offset && stored->altitudeRef_Offset) {
        written.altitudeRef_Data = QByteArray(1, m_pic.newLocationAltitude < 0.0 ? '\1' : '\0');
        written.altitude_Data = metresDataFrom(m_pic.newLocationAltitude, motorola);
    }
    if (stored->hPositioningError_Offset &&
        (wantsAccuracy || m_settings.setPositioningErrorsToZeroOnChange))
        written.hPositioningError_Data =
            metresDataFrom(wantsAccuracy ? m_pic.newLocationHAccuracy : 0.0, motorola);
    const std::pair<const QByteArray GpsLocationRecord::*, quint32 GpsLocationRecord::*> parts[] = {
        {&GpsLocationRecord::latitudeRef_Data, &GpsLocationRecord::latitudeRef_Offset},
        {&GpsLocationRecord::latitude_Data, &GpsLocationRecord::latitude_Offset},
        {&GpsLocationRecord::longitudeRef_Data, &GpsLocationRecord::longitudeRef_Offset},
        {&GpsLocationRecord::longitude_Data, &GpsLocationRecord::longitude_Offset},
        {&GpsLocationRecord::altitudeRef_Data, &GpsLocationRecord::altitudeRef_Offset},
        {&GpsLocationRecord::altitude_Data, &GpsLocationRecord::altitude_Offset},
        {&GpsLocationRecord::hPositioningError_Data, &GpsLocationRecord::hPositioningError_Offset},
    };
    for (const auto &[data, offset] : parts) {
        if (written.*offset == 0 || (written.*data).size() != ((*stored).*data).size())
            continue;
        plan.add(written.*offset, written.*data, (*stored).*data);
    }
    plan.touchesExif = true;
    plan.whenSaved.push_back([&stored, written, &pic = m_pic] {
        stored = written;
        pic.takeSavedLocation();
    });
    return true;
}

OptionalDate StampEdits::gpsDateToWrite() const
{
    if (!m_pic.spGpsUTCDate || !m_settings.syncGPSDataOnSave)
        return std::nullopt;
    if (!m_settings.syncGPSDataOnSaveType)
        return m_pic.spDateTimeModified_tempFIX;
    const FolderFacts *folder = m_pic.spSingleFolder;
    const double offset = folder && folder->sfEditMode == FolderFacts::EditTogether
                              ? folder->sfDateModificationsTimeInterval
                              : m_pic.singlePicModification;
    return m_pic.spGpsUTCDate->addingSeconds(offset);
}

void StampEdits::planGps(PlannedSave &plan)
{
    // An XMP GPS date moves with the other XMP stamps.
    if (m_pic.isGpsXmp)
        return;
    const OptionalDate moved = gpsDateToWrite();
    if (!moved || moved->wholeSeconds() == m_pic.spGpsUTCDate->wholeSeconds())
        return;
    PicAttributes &a = m_pic.singlePicAttributes;
    const bool hasTime = a.GPSTimeStamp && a.GPSTimeStamp->dateOffset;
    const bool hasDay = a.GPSDateStamp && a.GPSDateStamp->dateOffset;
    const QByteArray time =
        hasTime
            ? DateStampCodec::gpsTimeDataKeepingPrecision(
                  a.GPSTimeStamp->dateData, *moved,
                  a.GPSTimeStamp->needsConv ? QSysInfo::BigEndian : QSysInfo::LittleEndian)
            : QByteArray();
    const QByteArray day = hasDay ? DateStampCodec::gpsDateDataFromTimeStamp(*moved) : QByteArray();
    if ((hasTime && time.size() != a.GPSTimeStamp->dateData.size()) ||
        (hasDay && day.size() != a.GPSDateStamp->dateData.size()))
        return;
    if (hasTime) {
        plan.add(a.GPSTimeStamp->dateOffset, time, a.GPSTimeStamp->dateData);
        plan.whenSaved.push_back([&a, time] { a.GPSTimeStamp->dateData = time; });
    }
    if (hasDay) {
        plan.add(a.GPSDateStamp->dateOffset, day, a.GPSDateStamp->dateData);
        plan.whenSaved.push_back([&a, day] { a.GPSDateStamp->dateData = day; });
    }
    plan.touchesExif = true;
    plan.whenSaved.push_back([&pic = m_pic, moved] { pic.spGpsUTCDate = moved; });
}

std::vector<ByteEdit> StampEdits::xmpStampEdits(const XmpStampRecord &record, Instant date,
                                                const TimeZone &localZone, bool &needsExtension)
{
    if (record.data.isEmpty() || record.offset == 0)
        return {};
    const bool withoutSeconds = record.subtype & XmpStampKind::WithoutSeconds;
    const qsizetype digits = withoutSeconds ? 16 : stampLength;
    const bool isLocal = record.type == XmpStampKind::Local;
    const TimeZone zone = zoneOfXmpRecord(record, localZone);
    if (withoutSeconds && zone.localCivil(date).second != 0) {
        needsExtension = true;
        return {};
    }
    const QString text = DateStampCodec::xmpTimeStampFromDate(date, zone, isLocal, record.subtype);
    const qsizetype zoneLength = (record.subtype & XmpStampKind::OffsetWithoutColon) ? 5 : 6;
    const bool hasOwnOffset = record.type == XmpStampKind::OwnOffset;
    if (text.size() < (isLocal ? digits : digits + zoneLength) ||
        !DateStampCodec::seemsValidXMPString(text, record.subtype) ||
        record.data.size() < (hasOwnOffset ? digits + zoneLength : digits))
        return {};
    std::vector<ByteEdit> edits{
        {record.offset, text.left(digits).toLatin1(), record.data.left(digits)}};
    // Fractions between the seconds and the offset stay; a "Z" stays too.
    if (hasOwnOffset)
        edits.push_back({record.offset + record.data.size() - zoneLength,
                         text.right(zoneLength).toLatin1(), record.data.right(zoneLength)});
    return edits;
}

void StampEdits::planXmpStamp(PlannedSave &plan, XmpDateInfos &infos, const char *key,
                              OptionalDate date, const TimeZone &localStampZone)
{
    const auto found = infos.find(QLatin1String(key));
    if (found == infos.end() || !date || date->isSentinel())
        return;
    XmpStampRecord &record = found->second;
    QByteArray data = record.data;
    bool needsExtension = false;
    const std::vector<ByteEdit> edits = xmpStampEdits(record, *date, localStampZone, needsExtension);
    if (needsExtension) {
        plan.needsXmpExtension = true;
        plan.supportStamps[found->first] = supportStamp(record, *date, localStampZone);
    }
    for (const ByteEdit &edit : edits) {
        plan.add(quint32(edit.offset), edit.bytes, edit.previous);
        data = patched(data, edit.offset - record.offset, edit.bytes);
    }
    if (data == record.data)
        return;
    plan.touchesXmp = true;
    plan.whenSaved.push_back([&record, data] { record.data = data; });
}

void StampEdits::planXmpDates(PlannedSave &plan)
{
    if (!m_pic.singlePicAttributes.xmpDateInfos)
        return;
    XmpDateInfos &infos = *m_pic.singlePicAttributes.xmpDateInfos;
    // The more specific tag is written; its twin too when the user keeps twins in step, or when
    // it is the only one.
    const TimeZone zone = localZone();
    const auto writeSlot = [&](const char *preferred, const char *twin, OptionalDate date) {
        planXmpStamp(plan, infos, preferred, date, zone);
        if (m_settings.syncXMPDataOnSave || !infos.count(QLatin1String(preferred)))
            planXmpStamp(plan, infos, twin, date, zone);
    };
    if (m_pic.isCreaXmp) {
        writeSlot("PhotoshopDateCreated", "ExifDateTimeOriginal", m_pic.exifDateTimeOriginalNEW);
        plan.whenSaved.push_back(
            [&pic = m_pic] { pic.exifDateTimeOriginalOLD = pic.exifDateTimeOriginalNEW; });
    }
    if (m_pic.isDigiXmp) {
        writeSlot("XmpCreateDate", "ExifDateTimeDigitized", m_pic.exifDateTimeDigitizedNEW);
        plan.whenSaved.push_back(
            [&pic = m_pic] { pic.exifDateTimeDigitizedOLD = pic.exifDateTimeDigitizedNEW; });
    }
    if (m_pic.isModiXmp || m_pic.hasModiXmp) {
        writeSlot("XmpModifyDate", "TiffDateTime", m_pic.tiffDateTimeNEW);
        if (m_pic.isModiXmp)
            plan.whenSaved.push_back([&pic = m_pic] { pic.tiffDateTimeOLD = pic.tiffDateTimeNEW; });
    }
    if (m_pic.isGpsXmp && m_pic.spGpsUTCDate && m_settings.syncGPSDataOnSave) {
        const OptionalDate moved = gpsDateToWrite();
        planXmpStamp(plan, infos, "GPSTimeStamp", moved, zone);
        plan.whenSaved.push_back([&pic = m_pic, moved] { pic.spGpsUTCDate = moved; });
    }
}

PlannedSave StampEdits::planXmpSync(XmpDateInfos &infos)
{
    PlannedSave plan;
    // The twins take the EXIF stamps' dates, so those without a zone take the EXIF stamps' clock:
    // the camera's where its offset tags name one.
    const TimeZone zone = m_targetZone.value_or(cameraClock().value_or(TimeZone::systemZone()));
    const auto writeSlot = [&](const char *first, const char *second, OptionalDate date) {
        planXmpStamp(plan, infos, first, date, zone);
        planXmpStamp(plan, infos, second, date, zone);
    };
    writeSlot("ExifDateTimeOriginal", "PhotoshopDateCreated", m_pic.exifDateTimeOriginalOLD);
    writeSlot("ExifDateTimeDigitized", "XmpCreateDate", m_pic.exifDateTimeDigitizedOLD);
    writeSlot("TiffDateTime", "XmpModifyDate", m_pic.tiffDateTimeOLD);
    const PicAttributes &a = m_pic.singlePicAttributes;
    if (m_settings.syncGPSDataOnSave && a.GPSTimeStamp && a.GPSDateStamp)
        planXmpStamp(plan, infos, "GPSTimeStamp", m_pic.spGpsUTCDate, zone);
    return plan;
}

} // namespace orv

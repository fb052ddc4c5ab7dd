#include "core/DaylightSaving.h"

#include "time/DateStampCodec.h"
#include "core/MySinglePic.h"
#include "core/XmpDates.h"
#include "core/ZoneRereading.h"
#include "time/TimeZone.h"

#include <cmath>

namespace orv {

namespace {

constexpr double oneHour = 3600.0;

bool isRealDate(const OptionalDate &date) { return date && !date->isSentinel(); }

// A repeated hour need not last an hour (Lord Howe repeats half of one): any second instant
// with the same wall clock makes the reading doubtful.
bool isAmbiguous(Instant date, const TimeZone &zone) { return zone.isWallClockRepeatedAtDate(date); }

const XmpStampRecord *xmpRecordOfSlot(const MySinglePic &pic, DateSlotBits slot)
{
    const BoxedOptional<XmpDateInfos> &infos = pic.singlePicAttributes.xmpDateInfos;
    if (!infos)
        return nullptr;
    switch (slot) {
    case DateSlotCreation:
        return pic.isCreaXmp ? XmpDates::xmpCreaDictFrom(*infos) : nullptr;
    case DateSlotDigitized:
        return pic.isDigiXmp ? XmpDates::xmpDigiDictFrom(*infos) : nullptr;
    case DateSlotModification:
        return pic.isModiXmp ? XmpDates::xmpModDictFrom(*infos) : nullptr;
    }
    return nullptr;
}

bool isXmpSlot(const MySinglePic &pic, DateSlotBits slot)
{
    return slot == DateSlotCreation ? pic.isCreaXmp : slot == DateSlotDigitized ? pic.isDigiXmp : pic.isModiXmp;
}

const std::optional<StampRecord> &exifStampOfSlot(const PicAttributes &a, DateSlotBits slot)
{
    return slot == DateSlotCreation ? a.ExifDateTimeOriginal
           : slot == DateSlotDigitized ? a.ExifDateTimeDigitized
                                       : a.TIFFDateTime;
}

const std::optional<OffsetTagRecord> &exifOffsetOfSlot(const PicAttributes &a, DateSlotBits slot)
{
    return slot == DateSlotCreation ? a.ExifOffsetTimeOriginal
           : slot == DateSlotDigitized ? a.ExifOffsetTimeDigitized
                                       : a.TIFFOffsetTime;
}

struct SlotTest
{
    bool tested = false;
    bool diverged = false;
    bool ambiguous = false;
};

// A local stamp of a still, written back from the date it gave: other digits mean the hour does
// not exist in the zone.
SlotTest testStillSlot(const MySinglePic &pic, DateSlotBits slot, OptionalDate date, const TimeZone &zone)
{
    if (!isRealDate(date))
        return {};
    bool diverged = false;
    TimeZone stampZone = zone;
    if (isXmpSlot(pic, slot)) {
        const XmpStampRecord *record = xmpRecordOfSlot(pic, slot);
        if (!record || record->type != XmpStampKind::Local)
            return {};
        const QString written = DateStampCodec::xmpTimeStampFromDate(*date, zone, true, record->subtype);
        diverged = written != QString::fromLatin1(record->data.left(written.size()));
    } else {
        const PicAttributes &a = pic.singlePicAttributes;
        const std::optional<StampRecord> &stamp = exifStampOfSlot(a, slot);
        if (!stamp || exifOffsetOfSlot(a, slot))
            return {};
        // A stamp without a tag of its own was read in the camera clock another tag names, when
        // one does: it goes back in that fixed offset, where no hour is skipped or repeated.
        const QByteArray borrowed =
            offsetOfStamp(std::nullopt, a.ExifOffsetTimeOriginal, a.ExifOffsetTimeDigitized, a.TIFFOffsetTime);
        if (!borrowed.isEmpty())
            stampZone = TimeZone::fromOffsetSeconds(*DateStampCodec::exactExifOffsetSeconds(borrowed)).value_or(zone);
        diverged = DateStampCodec::exifTimeStampFromData(DateStampCodec::exifDataFromDate(*date, stampZone))
                   != DateStampCodec::exifTimeStampFromData(stamp->dateData);
    }
    return {true, diverged, isAmbiguous(*date, stampZone)};
}

SlotTest testMovieHeader(const BoxedOptional<MovieStampRecord> &stamp, OptionalDate date, const TimeZone &zone)
{
    if (!stamp || !isRealDate(date))
        return {};
    const QByteArray written = DateStampCodec::mvhdDataFromDate(*date, true, zone, int(stamp->dateData.size()));
    return {true, written != stamp->dateData, isAmbiguous(*date, zone)};
}

void addBits(DstFindings &findings, const SlotTest &test, quint64 bit)
{
    if (test.diverged)
        findings.divergence |= bit;
    if (test.ambiguous)
        findings.ambiguity |= bit;
}

DstFindings checkStill(const MySinglePic &pic, const TimeZone &zone, OptionalDate crea, OptionalDate digi,
                       OptionalDate mod)
{
    DstFindings findings;
    const SlotTest creation = testStillSlot(pic, DateSlotCreation, crea, zone);
    addBits(findings, creation, DateSlotCreation);
    // Equal dates were written by one clock: the second stamp says nothing the first did not.
    const bool digiAsCreation = creation.tested && digi && crea && *digi == *crea;
    const SlotTest digitized = digiAsCreation ? creation : testStillSlot(pic, DateSlotDigitized, digi, zone);
    addBits(findings, digitized, DateSlotDigitized);
    const bool modAsDigitized = digitized.tested && mod && digi && *mod == *digi;
    addBits(findings, modAsDigitized ? digitized : testStillSlot(pic, DateSlotModification, mod, zone),
            DateSlotModification);
    return findings;
}

DstFindings checkMovie(const MySinglePic &pic, const ZoneReading &reading, OptionalDate crea, OptionalDate mod)
{
    const PicAttributes &a = pic.singlePicAttributes;
    if (pic.spType == SpTypeRiff) {
        if (!a.riffCreaDate || !isRealDate(crea))
            return {};
        const QByteArray &stored = a.riffCreaDate->dateData;
        const QByteArray written = DateStampCodec::riffDataLike(stored, *crea, reading.zone);
        DstFindings findings;
        addBits(findings,
                {true, written.compare(stored, Qt::CaseInsensitive) != 0, isAmbiguous(*crea, reading.zone)},
                DateSlotCreation);
        return findings;
    }
    if (!a.QTMvhdCreaDate && !a.QTMvhdModDate)
        return {};
    if (pic.isNullerFile() || !reading.movieHeaderCorrection || pic.spType == SpTypeMdta)
        return {};
    DstFindings findings;
    addBits(findings, testMovieHeader(a.QTMvhdCreaDate, crea, reading.zone), DateSlotCreation);
    if (!mod)
        return findings;
    if (crea && *mod == *crea) {
        if (findings.divergence)
            findings.divergence |= DateSlotModification;
        if (findings.ambiguity)
            findings.ambiguity |= DateSlotModification;
        return findings;
    }
    addBits(findings, testMovieHeader(a.QTMvhdModDate, mod, reading.zone), DateSlotModification);
    return findings;
}

// What an offset stamp says against what its digits mean in the zone. One hour off on a
// transition proves nothing: the digits may name a repeated hour (both readings are the same
// wall clock) or a skipped one (the digits do not survive a round trip).
double offsetDifference(Instant stated, Instant fromDigits, bool digitsRoundTrip, const TimeZone &zone,
                        DstSpecialCase *special)
{
    const double difference = std::round(stated.secondsSince(fromDigits));
    if (std::fabs(difference) != oneHour)
        return difference;
    const auto wallClock = [&zone](Instant at) {
        return DateStampCodec::exifTimeStampFromData(DateStampCodec::exifDataFromDate(at, zone));
    };
    DstSpecialCase found = DstSpecialCase::None;
    if (wallClock(stated) == wallClock(fromDigits))
        found = DstSpecialCase::Ambiguous;
    else if (!digitsRoundTrip)
        found = DstSpecialCase::Invalid;
    if (special)
        *special = found;
    return found == DstSpecialCase::None ? difference : 0.0;
}

DateSlotBits sourceSlot(int spType)
{
    switch (spType) {
    case SpTypeExifOriginal:
    case SpTypeEmptyOriginalFileDate:
    case SpTypeEmptyOriginalFixedDate:
    case SpTypeIptcDateCreated:
        return DateSlotCreation;
    case SpTypeExifDigitized:
    case SpTypeEmptyDigitizedFileDate:
    case SpTypeEmptyDigitizedFixedDate:
        return DateSlotDigitized;
    default:
        return DateSlotModification;
    }
}

OptionalDate firstDate(const MySinglePic &pic)
{
    if (pic.exifDateTimeOriginalOLD)
        return pic.exifDateTimeOriginalOLD;
    return pic.exifDateTimeDigitizedOLD ? pic.exifDateTimeDigitizedOLD : pic.tiffDateTimeOLD;
}

} // namespace

DstFindings DaylightSaving::checkDSTDivergence(const MySinglePic &pic, const ZoneReading &reading,
                                               OptionalDate creaDate, OptionalDate digiDate, OptionalDate modDate)
{
    if (pic.spType >= SpTypeExifOriginal && pic.spType <= SpTypeFileDatePreferredOverTiff)
        return checkStill(pic, reading.zone, creaDate, digiDate, modDate);
    if (pic.spType == SpTypeRiff || pic.isQtMovie())
        return checkMovie(pic, reading, creaDate, modDate);
    return {};
}

DstFindings DaylightSaving::checkDSTDivergence(const MySinglePic &pic, const ZoneReading &reading)
{
    return checkDSTDivergence(pic, reading, pic.exifDateTimeOriginalOLD, pic.exifDateTimeDigitizedOLD,
                              pic.tiffDateTimeOLD);
}

bool DaylightSaving::hasImportAmbiguityForDate(const MySinglePic &pic, Instant date, const ZoneReading &reading)
{
    if (pic.isMovie()) {
        const PicAttributes &a = pic.singlePicAttributes;
        const bool hasHeaderDates = a.QTMvhdCreaDate || a.QTMvhdModDate;
        if (pic.spType != SpTypeRiff
            && (!hasHeaderDates || !reading.movieHeaderCorrection || pic.spType == SpTypeMdta || pic.isNullerFile()))
            return false;
    }
    return isRealDate(date) && isAmbiguous(date, reading.zone);
}

bool DaylightSaving::isDSTAmbiguityAtExportPossibleForDate(Instant date, const TimeZone &zone)
{
    const Instant before = date.addingSeconds(-2 * oneHour);
    const OptionalDate next = zone.nextDaylightSavingTimeTransitionAfterDate(before);
    return next && next->secondsSince(before) < 4 * oneHour;
}

bool DaylightSaving::hasDSTAmbiguityForDate(const MySinglePic &pic, Instant date, int type,
                                            const ZoneReading &target, bool preFilter)
{
    if (!isRealDate(date) || (preFilter && !isDSTAmbiguityAtExportPossibleForDate(date, target.zone)))
        return false;
    const TimeZone &zone = target.zone;
    OptionalDate back;
    if (pic.spType >= SpTypeExifOriginal && pic.spType <= SpTypeEmptyTiffFixedDate) {
        const DateSlotBits slot = type == 1   ? DateSlotCreation
                                  : type == 2 ? DateSlotDigitized
                                  : type == 0 ? sourceSlot(pic.spType)
                                              : DateSlotModification;
        if (!pic.isStampLocal(slot))
            return false;
        back = DateStampCodec::dateFromExifData(DateStampCodec::exifDataFromDate(date, zone), zone);
    } else if (pic.spType == SpTypeRiff) {
        back = DateStampCodec::dateFromRIFFTimeStamp(DateStampCodec::riffTimeStampFromDate(date, zone), zone);
    } else if (pic.spType >= SpTypeMvhdCreation && pic.spType <= SpTypeMvhdZeroFixedDate
               && target.movieHeaderCorrection) {
        back = DateStampCodec::correctedDateFromMVHDDate(DateStampCodec::mvhdDateFromCorrectedDate(date, zone), zone);
    } else {
        return false;
    }
    return back && std::fabs(back->secondsSince(date)) > 10.0;
}

quint64 DaylightSaving::dstAmbiguityAtExportState(const MySinglePic &pic, const ZoneReading &target)
{
    if (!pic.isThisPureTimeUnsaved() && !pic.isNullerFile())
        return 0;
    const OptionalDate date = pic.spDateTimeModified();
    if (!date || !hasDSTAmbiguityForDate(pic, *date, 0, target))
        return 0;
    switch (pic.spType) {
    case SpTypeExifOriginal:
    case SpTypeRiff:
    case SpTypeMvhdCreation:
        return DateSlotCreation;
    case SpTypeExifDigitized:
        return DateSlotDigitized;
    default:
        return DateSlotModification;
    }
}

double DaylightSaving::checkMDTADateWithTimeZone(const MySinglePic &pic, const TimeZone &zone, DstSpecialCase *special)
{
    const BoxedOptional<MovieStampRecord> &meta = pic.singlePicAttributes.QTMetaDate;
    if (!meta)
        return 0.0;
    const QString text = QString::fromLatin1(meta->dateData);
    if (text.endsWith(QLatin1Char('Z')))
        return 0.0;
    const OptionalDate stated = DateStampCodec::dateFromMDTATimeStamp(text, zone);
    const OptionalDate fromDigits = DateStampCodec::dateIgnoringFromMDTATimeStamp(text, zone);
    if (!stated || !fromDigits)
        return 0.0;
    const bool roundTrip = QString::fromLatin1(DateStampCodec::mdtaDataOfLength(19, *fromDigits, zone)) == text.left(19);
    return offsetDifference(*stated, *fromDigits, roundTrip, zone, special);
}

double DaylightSaving::checkEXOFTimeWithTimeZone(const MySinglePic &pic, const TimeZone &zone, DstSpecialCase *special)
{
    const int xmpType = pic.sourceXmpDateType();
    if (xmpType == XmpStampKind::OwnOffset)
        return checkXmpTZTimeWithTimeZone(pic, zone, special);
    if (xmpType != XmpStampKind::NoStamp)
        return 0.0;
    const std::optional<StampRecord> stamp = pic.sourceDateExifData();
    const std::optional<OffsetTagRecord> offset = pic.sourceOffsetExifData();
    if (!stamp || !offset || !DateStampCodec::exactExifOffsetSeconds(offset->offsetData))
        return 0.0;
    const Instant stated = DateStampCodec::dateFromExifData(stamp->dateData, offset->offsetData);
    const Instant fromDigits = DateStampCodec::dateFromExifData(stamp->dateData, zone);
    if (stated.isDistantPast() || fromDigits.isDistantPast())
        return 0.0;
    const bool roundTrip = DateStampCodec::exifTimeStampFromData(DateStampCodec::exifDataFromDate(fromDigits, zone))
                           == DateStampCodec::exifTimeStampFromData(stamp->dateData);
    return offsetDifference(stated, fromDigits, roundTrip, zone, special);
}

double DaylightSaving::checkXmpTZTimeWithTimeZone(const MySinglePic &pic, const TimeZone &zone, DstSpecialCase *special)
{
    if (pic.sourceXmpDateType() != XmpStampKind::OwnOffset)
        return 0.0;
    const XmpStampRecord *record = xmpRecordOfSlot(pic, sourceSlot(pic.spType));
    if (!record)
        return 0.0;
    const OptionalDate stated =
        DateStampCodec::xmpDateFromStampInfos(record->data, {record->type, record->subtype}, zone);
    const QString digits =
        QString::fromLatin1(record->data.left(record->subtype & XmpStampKind::WithoutSeconds ? 16 : 19));
    const OptionalDate fromDigits = DateStampCodec::dateFromXmpTimeStamp(digits, zone, true, record->subtype);
    if (!stated || !fromDigits)
        return 0.0;
    const bool roundTrip = DateStampCodec::xmpTimeStampFromDate(*fromDigits, zone, true, record->subtype) == digits;
    return offsetDifference(*stated, *fromDigits, roundTrip, zone, special);
}

bool DaylightSaving::validateDateDifferencesUsingTimeZone(MySinglePic &pic, const ZoneReading &source,
                                                          const std::optional<TimeZone> &target)
{
    const bool hadMajor = pic.hasMajorDateDifference();
    const bool hadMinor = pic.hasMinorDateDifference;
    double difference = checkMDTADateWithTimeZone(pic, source.zone);
    if (difference == 0.0)
        difference = checkEXOFTimeWithTimeZone(pic, source.zone);
    if (difference != 0.0)
        pic.majorDateDifferenceType |= MajorDifferenceStampOffset;
    else
        pic.majorDateDifferenceType &= ~quint64(MajorDifferenceStampOffset);
    if (pic.validateGroupDeviations())
        pic.majorDateDifferenceType |= MajorDifferenceGroupLocality;
    else
        pic.majorDateDifferenceType &= ~quint64(MajorDifferenceGroupLocality);
    pic.hasMinorDateDifference = pic.differenceFromGPSDate(pic.spGpsUTCDate, pic.spDateTimeOriginal) != 0.0;

    const DstFindings findings = checkDSTDivergence(pic, source);
    pic.dstDivergenceState = findings.divergence;
    // A corrected item keeps the state that made its correction possible.
    if (pic.usesAltTimeAtAmbiguityReason == 0)
        pic.dstAmbiguityAtImportState = findings.ambiguity;
    if (target)
        pic.dstAmbiguityAtExportState = dstAmbiguityAtExportState(pic, {*target, source.movieHeaderCorrection});
    return hadMajor != pic.hasMajorDateDifference() || hadMinor != pic.hasMinorDateDifference;
}

bool DaylightSaving::isDateSourceAmbiguousAtImport(const MySinglePic &pic)
{
    const quint64 bits = pic.dstAmbiguityAtImportState;
    if (pic.exifDateTimeOriginalOLD)
        return bits & DateSlotCreation;
    if (pic.exifDateTimeDigitizedOLD)
        return bits & DateSlotDigitized;
    return pic.tiffDateTimeOLD && (bits & DateSlotModification);
}

void DaylightSaving::correctAmbiguousDatesBy(MySinglePic &pic, double seconds)
{
    const quint64 bits = pic.dstAmbiguityAtImportState;
    if (bits == 0)
        return;
    for (const auto &[bit, date] : {std::pair{DateSlotCreation, &pic.exifDateTimeOriginalOLD},
                                    std::pair{DateSlotDigitized, &pic.exifDateTimeDigitizedOLD},
                                    std::pair{DateSlotModification, &pic.tiffDateTimeOLD}}) {
        if ((bits & bit) && isRealDate(*date))
            *date = date->value().addingSeconds(seconds);
    }
    pic.spDateTimeOriginal = firstDate(pic);
    updateGpsDateWithCreationDate(pic);
}

void DaylightSaving::changeAmbiguityCorrectionStateTo(MySinglePic &pic, qint64 state)
{
    const bool wasOn = pic.usesAltTimeAtAmbiguityReason != 0;
    pic.usesAltTimeAtAmbiguityReason = state;
    if (wasOn != (state != 0))
        correctAmbiguousDatesBy(pic, state != 0 ? -oneHour : oneHour);
}

void DaylightSaving::reapplyAmbiguityCorrection(MySinglePic &pic)
{
    if (pic.usesAltTimeAtAmbiguityReason != 0)
        correctAmbiguousDatesBy(pic, -oneHour);
}

qint64 DaylightSaving::validatedDSTOffsetStateWithNext(MySinglePic &pic, const MySinglePic &next, const TimeZone &system)
{
    if (pic.dstOffsetState != 0)
        return pic.dstOffsetState;
    const OptionalDate mine = pic.spDateTimeModified_sort();
    const OptionalDate theirs = next.spDateTimeModified_sort();
    if (!mine || !theirs)
        return 0;
    const int own = system.daylightSavingTimeOffsetForDate(*mine);
    const int following = system.daylightSavingTimeOffsetForDate(*theirs);
    pic.dstOffsetState = own == following ? -1 : own > following ? 2 : 1;
    return pic.dstOffsetState;
}

} // namespace orv
